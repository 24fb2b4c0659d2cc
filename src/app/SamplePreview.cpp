#include "app/SamplePreview.h"

#include "app/SynEditor.h"
#include "base/ui/Colors.h"
#include "controls/ui/UniControls.h"
#include "document/SyntaxDocument.h"
#include "highlight/HighlightTheme.h"
#include "skin/data.h"

#include <QFontDatabase>
#include <QKeyEvent>
#include <QScrollBar>
#include <QTextBlock>
#include <QTextLayout>

TSamplePreview::TSamplePreview(QWidget* Parent) : QPlainTextEdit(Parent) {
    setReadOnly(true);
    setUndoRedoEnabled(false);
    setLineWrapMode(QPlainTextEdit::NoWrap);
    setAccessibleName(QStringLiteral("Sample preview"));
    QFont font = QFontDatabase::systemFont(QFontDatabase::FixedFont);
    font.setPixelSize(13);
    setFont(font);
    // The paper of the theme, whatever the window's colours.
    QPalette colours = palette();
    for (QPalette::ColorGroup group : {QPalette::Active, QPalette::Inactive, QPalette::Disabled}) {
        colours.setColor(group, QPalette::Base, ToQColor(HighlightPaperColor));
        colours.setColor(group, QPalette::Text, ToQColor(HighlightTextColor));
    }
    setPalette(colours);
    FPause.setSingleShot(true);
    FPause.setInterval(PauseMs);
    connect(&FPause, &QTimer::timeout, this, &TSamplePreview::Refresh);
}

void TSamplePreview::Attach(TSynForm& Form) {
    OnHarvest = [&Form]() -> const TSyntaxDocument& {
        Form.HarvestDocument();
        return Form.Document;
    };
    OnSkin = [&Form] { return Form.ActiveSkin(); };
    connect(&Form, &TSynForm::DocumentChanged, this, &TSamplePreview::DocumentChanged);
}

void TSamplePreview::DocumentChanged() {
    FBehind = true;
    // Hidden, it does no work: showing it catches up.
    if (isVisible()) FPause.start();
}

void TSamplePreview::keyPressEvent(QKeyEvent* Event) {
    if (const int step = CtrlTabStep(Event)) {
        focusNextPrevChild(step > 0);
        return;
    }
    QPlainTextEdit::keyPressEvent(Event);
}

void TSamplePreview::showEvent(QShowEvent* Event) {
    QPlainTextEdit::showEvent(Event);
    if (FBehind) Refresh();
}

void TSamplePreview::Refresh() {
    FPause.stop();
    if (!OnHarvest) return;
    const TSyntaxDocument& document = OnHarvest();
    const WideString text = JoinLines(*document.Sample);
    FHighlighter.Highlight(document, text, FSpans);
    ShowText(text);
    ApplyFormats(OnSkin ? OnSkin() : nullptr);
    FBehind = false;
    emit Refreshed();
}

void TSamplePreview::ShowText(const WideString& Text) {
    if (Text == FText) return;
    // New text keeps the place the user scrolled to.
    const int across = horizontalScrollBar()->value();
    const int down = verticalScrollBar()->value();
    setPlainText(QString::fromStdU16String(Text));
    FText = Text;
    horizontalScrollBar()->setValue(across);
    verticalScrollBar()->setValue(down);
}

void TSamplePreview::ApplyFormats(const TSkinDataModel* Skin) {
    QTextDocument* doc = document();
    std::vector<QList<QTextLayout::FormatRange>> ranges(std::size_t(doc->blockCount()));
    for (const THighlightSpan& piece : SplitAtLineEnds(FText, FSpans)) {
        const THighlightStyle style =
            Skin ? SkinHighlightStyle(piece.Kind, piece.Group, Skin->CustomColors)
                 : DefaultHighlightStyle(piece.Kind, piece.Group);
        QTextCharFormat format;
        format.setForeground(ToQColor(style.Color));
        if (style.Bold) format.setFontWeight(QFont::Bold);
        format.setFontItalic(style.Italic);
        format.setFontUnderline(style.Underline);
        // A piece lies within one line, but a line may hold more than one
        // block of the text document (a paragraph separator character).
        int at = int(piece.Offset);
        const int end = int(piece.End());
        while (at < end) {
            const QTextBlock block = doc->findBlock(at);
            if (!block.isValid()) break;
            const int stop = std::min(end, block.position() + block.length() - 1);
            if (stop > at)
                ranges[std::size_t(block.blockNumber())].append(
                    {at - block.position(), stop - at, format});
            at = std::max(stop, at) + 1;
        }
    }
    for (QTextBlock block = doc->begin(); block.isValid(); block = block.next())
        block.layout()->setFormats(ranges[std::size_t(block.blockNumber())]);
    doc->markContentsDirty(0, doc->characterCount());
}
