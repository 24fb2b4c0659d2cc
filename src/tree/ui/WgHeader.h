#pragma once
// TWgHeader: the column header on screen. It hosts the screen-free header
// model: mouse events go to the model, the model's requests for capture,
// the resize line, the drag image and repaints come back here, and painting
// goes through the core header painter on a QPainter canvas.

#include "tree/WgHeaderModel.h"
#include "tree/WgHeaderPaint.h"

#include <QImage>
#include <QPointer>
#include <QWidget>

#include <memory>
#include <optional>

class QComboBox;

class TWgHeader : public QWidget, public TWgHeaderHost {
    Q_OBJECT
    Q_PROPERTY(int Tag READ Tag WRITE SetTag)
public:
    explicit TWgHeader(QWidget* Parent = nullptr);
    // A header that shows a model owned elsewhere (a tree's own header).
    explicit TWgHeader(TWgHeaderModel& Model, QWidget* Parent = nullptr);
    ~TWgHeader() override;

    TWgHeaderModel& Model() { return FModel; }
    TWgHeaderSections& Sections() { return FModel.Sections(); }
    TWgHeaderPaintOptions& PaintOptions() { return FOptions; }
    int Tag() const { return FTag; }
    void SetTag(int Value) { FTag = Value; }

    // Where the resize line stands, if it is drawn; a tree draws it across its rows too.
    std::optional<int> ResizeLineX() const { return FLineX; }
    // The lookup field while one is open.
    QComboBox* LookupBox() const { return FLookupBox; }
    // Where the image of a dragged section stands; empty without a drag.
    QRect DragImageRect() const;
    // The image itself: the section's colour is see-through.
    const QImage& DragImage() const { return FDragImage; }

    // TWgHeaderHost
    void SetCapture(bool Captured) override;
    void DrawResizeLine(int X) override;
    void BeginDragImage(TWgHeaderSection* Section) override;
    void MoveDragImage(int X) override;
    void EndDragImage() override;
    void InvalidateSection(TWgHeaderSection* Section) override;
    void InvalidateRight(int Position) override;
    void UpdateNow() override;
    void OpenLookup(TWgHeaderSection* Section) override;
    WideString CloseLookup() override;

    QSize sizeHint() const override;

protected:
    void paintEvent(QPaintEvent* Event) override;
    void mousePressEvent(QMouseEvent* Event) override;
    void mouseMoveEvent(QMouseEvent* Event) override;
    void mouseReleaseEvent(QMouseEvent* Event) override;
    void leaveEvent(QEvent* Event) override;
    void resizeEvent(QResizeEvent* Event) override;
    void keyPressEvent(QKeyEvent* Event) override;
    void changeEvent(QEvent* Event) override;
    bool event(QEvent* Event) override;
    bool eventFilter(QObject* Watched, QEvent* Event) override;

private:
    void UpdateCursor(int X);

    std::unique_ptr<TWgHeaderModel> FOwnModel;
    TWgHeaderModel& FModel;
    TWgHeaderPaintOptions FOptions;
    int FTag = 0;
    std::optional<int> FLineX;
    QImage FDragImage;
    int FDragImageX = 0;
    QComboBox* FLookupBox = nullptr;
    QPointer<QWidget> FLookupFocus; // had the focus before the lookup opened
    bool FLookupChanging = false;
    // Our own release of the mouse is no loss of it.
    bool FReleasing = false;
};
