#pragma once
// TSamplePreview: the sample page's view of the sample as the definition on
// screen colours it. Read-only; it never changes the document. After each
// change of the document it waits for a short pause and then harvests the
// controls, highlights Document's Sample with Document and repaints. While
// hidden it only notes that it is behind and catches up when shown.

#include "highlight/Highlighter.h"

#include <QPlainTextEdit>
#include <QTimer>

#include <functional>
#include <vector>

class TSkinDataModel;
class TSynForm;

class TSamplePreview : public QPlainTextEdit {
    Q_OBJECT
public:
    // The pause after the last change before the preview follows.
    static constexpr int PauseMs = 250;

    explicit TSamplePreview(QWidget* Parent = nullptr);

    // Where the text and colours come from: the document with what is on
    // screen harvested into it, and the active skin (null for none).
    std::function<const TSyntaxDocument&()> OnHarvest;
    std::function<const TSkinDataModel*()> OnSkin;
    // Takes both from the main form and follows its DocumentChanged.
    void Attach(TSynForm& Form);

    // The stretches shown, as the highlighter gave them.
    const std::vector<THighlightSpan>& Spans() const { return FSpans; }
    // A change is waiting for the pause to end, or for the preview to be shown.
    bool Behind() const { return FBehind; }
    // How many times rules were built for a definition.
    int RuleBuilds() const { return FHighlighter.Builds(); }

public slots:
    // Starts the pause again; the preview follows when it ends.
    void DocumentChanged();
    // Follows the document now.
    void Refresh();

signals:
    // The preview shows the document as it is now.
    void Refreshed();

protected:
    void showEvent(QShowEvent* Event) override;
    // Ctrl+Tab and Ctrl+Shift+Tab go on along the tab chain, as from the memo.
    void keyPressEvent(QKeyEvent* Event) override;

private:
    void ShowText(const WideString& Text);
    void ApplyFormats(const TSkinDataModel* Skin);

    QTimer FPause;
    THighlighter FHighlighter;
    std::vector<THighlightSpan> FSpans;
    WideString FText;
    bool FBehind = true;
};
