#pragma once
// TSkinData: the skin component of a form. It holds the loaded skin (the
// model), tells the manager when to attach or detach, and keeps what the
// painters share: the caption font, the menu glyphs, the face brush, the
// application's icon.

#include "base/Canvas.h"
#include "skin/data.h"

#include <QBrush>
#include <QObject>
#include <QPixmap>

#include <functional>
#include <vector>

class QIcon;
class TSkinControl;
class QWidget;

// A 16 x 16 picture of an icon on magenta, the key colour.
TMemoryBitmap SmallIconBitmap(const QIcon& Icon);

class TSkinData : public QObject, public TSkinDataModel {
    Q_OBJECT
public:
    // Owner is the form the component stands on (any may own it).
    explicit TSkinData(QWidget* Owner = nullptr);
    ~TSkinData() override;

    QWidget* OwnerForm() const { return FOwner; }

    bool Active() const { return FActive; }
    // Turning the skin on is refused while nothing is loaded; the change
    // itself lands through the manager's timer, between two events.
    void SetActive(bool Value);

    // After the properties are set: registers with the manager, builds the
    // caption font and the application icon, and for the main form's data
    // posts the pending apply.
    void Loaded();
    bool IsLoaded() const { return FLoaded; }

    void UpdateSkin() override;
    TColor ResolveColor(TColor C) const override;

    // Events.
    std::function<void(QObject* Sender, const AnsiString& ClassName, bool& DoSkin)> OnFormSkin;
    std::function<void(QObject* Sender)> OnSkinChanged;
    // Asked first for every control of a skinned form, with its class name
    // in upper case: a skin returned here is used instead of the rule's,
    // and the form's list owns it from then on.
    std::function<TSkinControl*(QWidget* Control, const AnsiString& ClassName)> OnSkinControl;
    void DoSkinChanged();

    // Shared painting resources.
    TFont CaptionFont;
    std::vector<QPixmap> MenuImages; // restore, maximize, minimize, close
    QBrush FaceBrush() const;
    TMemoryBitmap AppIcon; // 16 x 16 on magenta, the key colour
    int MaxWidth = 0, MaxHeight = 0;

private:
    QWidget* FOwner;
    bool FActive = false;
    bool FLoaded = false;

    void MakeAppIcon();
};
