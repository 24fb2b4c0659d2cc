#pragma once
// TWgHintWindow: the small window that shows a control's hint under the
// pointer, plain or as markup. One window serves the controls of a form; it
// goes away when the pointer leaves the control, on a click or a key, and
// after a pause.

#include "base/Canvas.h"

#include <QPointer>
#include <QTimer>
#include <QWidget>

class TWgHintWindow : public QWidget {
    Q_OBJECT
public:
    explicit TWgHintWindow(QWidget* Parent = nullptr);

    const WideString& Text() const { return FText; }
    const TFont& Font() const { return FFont; }
    void SetFont(const TFont& Value);
    // Lines are broken to stay within this width; 0 is the screen's width.
    int MaxWidth() const { return FMaxWidth; }
    void SetMaxWidth(int Value) { FMaxWidth = Value; }

    // Shows Text with the window's top left at Pos (screen coordinates),
    // kept on the screen; empty text hides the window.
    void ActivateHint(QPoint Pos, const WideString& Text);
    void HideHint();

    // Shows the short form of Hint for Control below the pointer at
    // GlobalPos, in the window of Control's form; false when there is no
    // short form to show.
    static bool ShowControlHint(QWidget* Control, QPoint GlobalPos, const WideString& Hint);
    // The window that shows Control's hints now, or null.
    static TWgHintWindow* ShownFor(const QWidget* Control);
    static void HideControlHint();

    // How long a hint stays when nothing happens.
    static constexpr int HidePause = 2500;
    // How far below the pointer the window stands.
    static constexpr int CursorMargin = 20;

protected:
    void paintEvent(QPaintEvent* Event) override;
    bool eventFilter(QObject* Watched, QEvent* Event) override;

private:
    WideString FText;
    TFont FFont;
    int FMaxWidth = 0;
    // The width the text was broken for, and the window's size.
    int FRoom = 0;
    TSize FSize;
    bool FFiltering = false;
    QTimer FHideTimer;
    QPointer<QWidget> FControl;
};
