#include "tree/ui/WgHeader.h"

#include "base/ui/Colors.h"
#include "base/ui/QtCanvas.h"

#include <QAbstractItemView>
#include <QApplication>
#include <QComboBox>
#include <QKeyEvent>
#include <QLineEdit>
#include <QMouseEvent>
#include <QPainter>

namespace {

QString Q(const WideString& S) {
    return QString::fromStdU16String(S);
}

} // namespace

TWgHeader::TWgHeader(QWidget* Parent) : TWgHeader(*new TWgHeaderModel, Parent) {
    FOwnModel.reset(&FModel);
}

TWgHeader::TWgHeader(TWgHeaderModel& Model, QWidget* Parent) : QWidget(Parent), FModel(Model) {
    setObjectName(QStringLiteral("TWgHeader"));
    setMouseTracking(true);
    setAttribute(Qt::WA_OpaquePaintEvent);
    FOptions.Font.Name = u"Tahoma";
    FOptions.Font.Height = -11;
    FModel.SetHost(this);
    FModel.SetHeight(TWgHeaderModel::InitialHeight(FOptions.Font.Height));
}

TWgHeader::~TWgHeader() {
    FModel.SetHost(nullptr);
}

QSize TWgHeader::sizeHint() const {
    return {FModel.SectionsWidth(), FModel.Height()};
}

void TWgHeader::SetCapture(bool Captured) {
    // Qt holds the mouse for the widget under a pressed button; an explicit
    // grab covers the moves that begin without one.
    // The keyboard comes along, so that Esc reaches a drag.
    if (Captured && QWidget::mouseGrabber() != this) {
        grabMouse();
        grabKeyboard();
    } else if (!Captured) {
        FReleasing = true;
        if (QWidget::mouseGrabber() == this) releaseMouse();
        if (QWidget::keyboardGrabber() == this) releaseKeyboard();
        FReleasing = false;
    }
}

void TWgHeader::DrawResizeLine(int X) {
    // The line is inverted: drawing it twice at one place takes it away.
    if (FLineX == X)
        FLineX.reset();
    else
        FLineX = X;
    update();
}

void TWgHeader::BeginDragImage(TWgHeaderSection* Section) {
    TRect r = FModel.GetSectionRect(Section->SectionIndex());
    r.Bottom = height();
    // At the screen's density, like the header it floats over.
    const qreal ratio = devicePixelRatioF();
    FDragImage = QImage(QSize(std::max(r.Width(), 1), std::max(r.Height(), 1)) * ratio,
                        QImage::Format_ARGB32);
    FDragImage.setDevicePixelRatio(ratio);
    QPainter p(&FDragImage);
    TQtCanvas canvas(p, &palette());
    PaintHeaderSection(canvas, FModel, *Section, TRect{0, 0, r.Width(), r.Height()}, FOptions,
                       true);
    p.end();
    // The mask: the shaded section colour lets the header show through, so
    // only the edges, caption and glyphs float over it.
    const TColor color = Section->ParentColor ? FOptions.Color : Section->Color;
    const TColor mask = DragShadeColor(canvas.ColorToRGB(color), 239);
    const QRgb maskRgb = qRgb(int(mask & 0xFF), int((mask >> 8) & 0xFF), int((mask >> 16) & 0xFF));
    for (int y = 0; y < FDragImage.height(); ++y) {
        auto* line = reinterpret_cast<QRgb*>(FDragImage.scanLine(y));
        for (int x = 0; x < FDragImage.width(); ++x)
            if ((line[x] & 0xFFFFFF) == (maskRgb & 0xFFFFFF)) line[x] = 0;
    }
    FDragImageX = r.Left - FModel.LeftPos();
    update();
}

QRect TWgHeader::DragImageRect() const {
    if (FDragImage.isNull()) return {};
    return {QPoint(FDragImageX, 0), FDragImage.deviceIndependentSize().toSize()};
}

void TWgHeader::MoveDragImage(int X) {
    FDragImageX = X;
    update();
}

void TWgHeader::EndDragImage() {
    FDragImage = QImage();
    update();
}

void TWgHeader::InvalidateSection(TWgHeaderSection* Section) {
    if (!Section) {
        update();
        return;
    }
    TRect r = FModel.GetSectionRect(Section->SectionIndex());
    const int shift = Section == FModel.LockedSection() ? 0 : FModel.LeftPos();
    update(QRect(r.Left - shift, 0, r.Width(), height()));
}

void TWgHeader::InvalidateRight(int Position) {
    const TWgHeaderSection* section = FModel.Sections().GetSectionByPos(Position);
    if (!section) return;
    TRect r = FModel.GetSectionRect(section->SectionIndex());
    update(QRect(r.Left - FModel.LeftPos(), 0, width(), height()));
}

void TWgHeader::UpdateNow() {
    repaint();
}

void TWgHeader::OpenLookup(TWgHeaderSection* Section) {
    if (!FLookupBox) {
        FLookupBox = new QComboBox(this);
        FLookupBox->setEditable(true);
        FLookupBox->installEventFilter(this);
        FLookupBox->lineEdit()->installEventFilter(this);
        // The owner may rewrite the text at each change; it is put back
        // only when it differs, so that the edit position stays.
        connect(FLookupBox, &QComboBox::editTextChanged, this, [this](const QString& Text) {
            TWgHeaderSection* section = FModel.LookupSection();
            if (!section || FLookupChanging || !FModel.OnHeaderLookup) return;
            WideString text = Text.toStdU16String();
            FModel.OnHeaderLookup(FModel, section, text);
            if (Q(text) != Text) {
                FLookupChanging = true;
                FLookupBox->setEditText(Q(text));
                FLookupChanging = false;
            }
        });
    }
    FLookupFocus = QApplication::focusWidget();
    FLookupBox->clear();
    for (const WideString& entry : Section->LookupHistory)
        FLookupBox->addItem(Q(entry));
    WideString text;
    if (FModel.OnHeaderLookup) FModel.OnHeaderLookup(FModel, Section, text);
    FLookupChanging = true;
    FLookupBox->setEditText(Q(text));
    FLookupChanging = false;
    TRect r = FModel.GetSectionRect(Section->SectionIndex());
    FLookupBox->setGeometry(r.Left - FModel.LeftPos() + 1, 1, r.Width() - 2, height() - 2);
    FLookupBox->show();
    FLookupBox->setFocus();
}

WideString TWgHeader::CloseLookup() {
    if (!FLookupBox) return {};
    const WideString text = FLookupBox->currentText().toStdU16String();
    FLookupBox->hide();
    if (FLookupFocus) FLookupFocus->setFocus(Qt::OtherFocusReason);
    FLookupFocus = nullptr;
    return text;
}

bool TWgHeader::eventFilter(QObject* Watched, QEvent* Event) {
    if (FLookupBox && (Watched == FLookupBox || Watched == FLookupBox->lineEdit())) {
        if (Event->type() == QEvent::KeyPress) {
            const int key = static_cast<QKeyEvent*>(Event)->key();
            if (key == Qt::Key_Return || key == Qt::Key_Enter || key == Qt::Key_Escape) {
                FModel.CloseLookup(key != Qt::Key_Escape);
                return true;
            }
        } else if (Event->type() == QEvent::FocusOut && FLookupBox->isVisible() &&
                   !FLookupBox->view()->isVisible()) {
            FModel.CloseLookup(true);
        }
    }
    return QWidget::eventFilter(Watched, Event);
}

void TWgHeader::paintEvent(QPaintEvent*) {
    QPainter p(this);
    TQtCanvas canvas(p, &palette());
    PaintHeader(canvas, FModel, TRect{0, 0, width(), height()}, FOptions);
    if (!FDragImage.isNull()) p.drawImage(QPoint(FDragImageX, 0), FDragImage);
    if (FLineX) {
        p.setCompositionMode(QPainter::RasterOp_NotDestination);
        p.fillRect(QRect(*FLineX, 0, 1, height()), Qt::black);
    }
}

void TWgHeader::UpdateCursor(int X) {
    TWgHeaderSection* section = nullptr;
    const bool divider = FModel.Resizing() || FModel.GetResizableSectionAt(X, section);
    setCursor(divider ? Qt::SplitHCursor : Qt::ArrowCursor);
}

void TWgHeader::mousePressEvent(QMouseEvent* Event) {
    if (Event->button() == Qt::LeftButton)
        FModel.MouseDown(Event->position().toPoint().x(), Event->position().toPoint().y());
}

void TWgHeader::mouseMoveEvent(QMouseEvent* Event) {
    const QPoint pos = Event->position().toPoint();
    FModel.MouseMove(pos.x(), pos.y(), Event->buttons() & Qt::LeftButton);
    UpdateCursor(pos.x());
}

void TWgHeader::mouseReleaseEvent(QMouseEvent* Event) {
    if (Event->button() == Qt::LeftButton)
        FModel.MouseUp(Event->position().toPoint().x(), Event->position().toPoint().y());
}

void TWgHeader::leaveEvent(QEvent*) {
    // Leaving the header ends the hot look of a section.
    if (!FModel.Resizing() && !FModel.Dragging()) FModel.MouseMove(-1, -1, false);
}

void TWgHeader::keyPressEvent(QKeyEvent* Event) {
    // Esc ends a drag as the loss of the mouse does.
    if (Event->key() == Qt::Key_Escape && FModel.Dragging()) {
        FModel.CancelMode();
        return;
    }
    QWidget::keyPressEvent(Event);
}

void TWgHeader::changeEvent(QEvent* Event) {
    // A window that is no longer active loses the mouse with it.
    if (Event->type() == QEvent::ActivationChange && !isActiveWindow()) FModel.CancelMode();
    QWidget::changeEvent(Event);
}

bool TWgHeader::event(QEvent* Event) {
    if (Event->type() == QEvent::UngrabMouse && !FReleasing) FModel.CancelMode();
    return QWidget::event(Event);
}

void TWgHeader::resizeEvent(QResizeEvent*) {
    FModel.Resize(width());
    if (!FModel.LockHeight && height() > 0) FModel.SetHeight(height());
}
