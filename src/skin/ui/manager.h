#pragma once
// TSkinManage: the one object of the process that knows every window the
// skin has touched. It watches top-level windows come up through one
// application-wide event filter, decides for each whether and with which
// skin data to skin it, and carries out apply, remove and refresh on a
// timer, so that a change never lands inside an event of the window it
// changes.

#include "base/Types.h"
#include "skin/manager.h"

#include <QObject>
#include <QPointer>
#include <QTimer>

#include <functional>
#include <memory>
#include <vector>

class QWidget;
class TSkinData;
class TVeneerForm;
class TVeneerPopMenu;

// Actions of the timer.
enum TSkinAction : int {
    saNone = 0,
    saApply = 1,
    saRemove = 2,
    saRefresh = 3,
    saFreeDead = 6,
    saReattach = 7,
};

class TSkinManage : public QObject {
    Q_OBJECT
public:
    // The manager of the process, created on first use; it lives as long as
    // the application object.
    static TSkinManage& Instance();
    static bool Exists();

    QTimer Timer;
    std::vector<std::unique_ptr<TVeneerForm>> FormList;
    std::vector<TSkinData*> DataList;
    bool Active = false;
    bool Scanning = false;
    int State = 0; // 0 nothing activated yet; 1 a form came up or a skin was applied
    int MenuKind = 0;
    bool MenuTracking = false;
    int Action = saNone;
    TSkinData* CurrentData = nullptr;
    TSkinData* MainData = nullptr;
    QPointer<QWidget> FormHandle; // argument of action 7

    void SetHook();
    void Unhook();
    void AddData(TSkinData* Data);
    void RemoveData(TSkinData* Data);

    // Attaches a form skin when every test passes; the number of the test
    // that failed is kept for the tests (0 after success).
    bool AddForm(QWidget* Window);
    int LastRefusal() const { return FLastRefusal; }
    void AddVisibleForm(QWidget* Form);
    TVeneerForm* FindForm(const QWidget* Window) const;

    void Post(int Action, int Delay);
    // Drops form skins whose windows are gone; never touches those windows.
    void Sweep();
    // Runs the pending action now (the timer's work).
    void OnTimer();

    // Every skinned window answers this probe.
    static bool IsSkinned(const QWidget* Window);

    // Menu windows open now and painted from a skin.
    std::vector<std::unique_ptr<TVeneerPopMenu>> MenuList;
    // Paints a menu window from the skin when MenuKind's set member allows
    // it; a sub-menu follows the menu it opens from.
    bool AddMenu(QWidget* Window);
    void RemoveMenu(QWidget* Window);
    TVeneerPopMenu* FindMenu(const QWidget* Window) const;
    // A menu bar of Form opens a menu (Opening) or its menu has closed.
    void MainMenuTracking(QWidget* Form, bool Opening);

protected:
    bool eventFilter(QObject* Watched, QEvent* Event) override;

private:
    TSkinManage();
    bool FHooked = false;
    int FLastRefusal = 0;

    TDataList Entries() const;
    void Apply();
    void Remove();
    void RefreshForms();
    void Reattach();
    void RemoveForm(std::size_t Index);
    void RemoveMenus(const TSkinData* Data);
    // Lets go of the menus Which picks; with none left no menu is tracked.
    void DropMenus(const std::function<bool(const TVeneerPopMenu&)>& Which);
};
