#pragma once
// TVeneerForm: the skinned frame of one top-level window. The window turns
// frameless, its contents margins become the frame, and a frame widget on
// top of it, masked to that ring, paints title, borders and title buttons
// and takes the mouse there. Detach puts every flag, margin, mask, size
// limit and colour back as it was.

#include "skin/form.h"

#include <QImage>
#include <QMargins>
#include <QObject>
#include <QPalette>
#include <QPointer>
#include <QRegion>
#include <QSize>
#include <QTimer>
#include <QVariant>
#include <QWidget>

#include <memory>
#include <vector>

class TSkinData;
class TSkinManage;
class TVeneerForm;
class TVeneerMenu;
class QMenu;
class QMenuBar;
class TSkinControl;

// The widget that stands for the frame: it covers the form, is masked to
// the ring around the client area, and hands paint and mouse to its form skin.
class TVeneerFrame : public QWidget {
    Q_OBJECT
public:
    TVeneerFrame(TVeneerForm& Owner, QWidget* Form);

protected:
    void paintEvent(QPaintEvent* Event) override;
    void mousePressEvent(QMouseEvent* Event) override;
    void mouseMoveEvent(QMouseEvent* Event) override;
    void mouseReleaseEvent(QMouseEvent* Event) override;
    void mouseDoubleClickEvent(QMouseEvent* Event) override;
    void leaveEvent(QEvent* Event) override;

private:
    TVeneerForm& FOwner;
};

// Skin states of a form skin.
enum TVeneerState : std::uint8_t {
    ssAttached = 0,
    ssRunning = 1,
    ssRefreshing = 3,
    ssDestroying = 4,
    ssResizing = 5,
    ssDead = 6,
};

class TVeneerForm : public QObject {
    Q_OBJECT
public:
    explicit TVeneerForm(TSkinData& Data);
    ~TVeneerForm() override;

    // Attaches to Form: frameless, margins, size, outline. Once.
    void SetupWithForm(QWidget* Form);
    // The start of the skinning proper, posted after the attachment.
    void Begin();
    // Gives the window its own frame back.
    void Detach();

    QWidget* Form() const { return FForm; }
    TSkinData& Skin() const { return *FSkin; }
    TFormFrame Frame;
    TVeneerState SkinState = ssAttached;
    bool FormSkin = false; // the frame is skinned (the data has xcMainMenu)
    bool Dead() const { return SkinState == ssDead || !FForm; }

    void RebuildButtons();
    // Grows the window by the frame around the client it holds.
    void ResizeToFrame();
    void SetRegion();
    void Refresh();
    void PaintFrame(QPainter& Painter);
    void ShowSystemMenu(QPoint WindowPoint);
    // Window-style bits that stand for the widget's window flags.
    static std::uint32_t StyleOf(const QWidget* Form);
    // The class name the frame rules read ("TMessageForm" for message boxes).
    static AnsiString ClassNameOf(const QWidget* Form);

    // Mouse on the frame, in window coordinates.
    void FramePress(QPoint P, Qt::MouseButton Button);
    void FrameMove(QPoint P, Qt::MouseButtons Buttons);
    void FrameRelease(QPoint P, Qt::MouseButton Button);
    void FrameDoubleClick(QPoint P);
    void FrameLeave();

    // The control skins of the form's controls, in the order they were made.
    std::vector<std::unique_ptr<TSkinControl>> ControlList;
    // Walks the form's controls and gives each the skin the rule picks;
    // controls that have one keep it.
    void AttachControls();
    // Takes every control skin off again, and undoes what the walk set.
    void DetachControls();
    // The skin data changed: every control skin repaints from it.
    void RefreshControls();
    TSkinControl* FindControl(const QWidget* Control) const;

    // Least width of the resize ring, whatever the skin's border.
    static constexpr int ResizeGrip = 6;

    // The strip that stands for the form's Qt menu bar, if it has one.
    TVeneerMenu* Menu() const { return FMenu.get(); }
    // The form's Qt menu bar: a main window's, or its layout's.
    static QMenuBar* PlatformMenuBar(const QWidget* Form);
    // Paints the frame again (the menu strip's buttons changed).
    void RepaintFrame();

protected:
    bool eventFilter(QObject* Watched, QEvent* Event) override;

private:
    TSkinData* FSkin;
    QPointer<QWidget> FForm;
    QPointer<TVeneerFrame> FFrame;
    QPointer<QMenu> FSysMenuPopup;
    QTimer FTimer; // hover clean-up
    bool FSetupDone = false;
    bool FPendingMove = false;

    // What Detach restores.
    Qt::WindowFlags FSavedFlags;
    QMargins FSavedMargins;
    QRegion FSavedMask;
    QPalette FSavedPalette;
    bool FSavedAutoFill = false;
    QSize FSavedMinimum, FSavedMaximum;
    bool FSavedPaletteSet = false;

    void HoverTimer();
    void UpdateFrameWidget();
    void Run(const TFrameAction& Action);
    void SyncState();
    void TakeFaceColour();
    void ShiftChildren(QPoint Origin);
    QPoint FChildOrigin; // where hand-placed children have been moved to

    std::unique_ptr<TVeneerMenu> FMenu;
    int FMenuBarHeight = 0; // the height the hidden bar took in the client
    void AttachMenuStrip();
    void DetachMenuStrip();
    // Properties the control walk set, with the values they had.
    struct TPropertyUndo {
        QPointer<QObject> Object;
        QByteArray Name;
        QVariant Value;
    };
    std::vector<TPropertyUndo> FControlUndo;
};

// A picture of a window as the screen shows it: what its outline cuts away
// is transparent.
QImage WindowPicture(QWidget* Window);
