#include "app/SynFormProblems.h"

#include "app/SynEditor.h"
#include "base/Dialogs.h"
#include "base/Exceptions.h"
#include "base/Streams.h"
#include "base/ui/QtDialogs.h"
#include "controls/ui/PlusPageControl.h"
#include "controls/ui/UniControls.h"
#include "tree/WgTreeItems.h"
#include "tree/ui/WgTree.h"

#include <QApplication>
#include <QHeaderView>
#include <QLabel>
#include <QStatusBar>
#include <QStyle>
#include <QTextBlock>
#include <QTreeWidget>

namespace {

// A block or fold record takes six tree rows: its five values and a separator.
constexpr int RecordSize = 5;

// The side-panel section that shows a part.
int SectionOf(TSyntaxPart Part) {
    switch (Part) {
    case spOptions:
    case spBlocks:
    case spFolds:
        return 0;
    case spKeywords:
        return 1;
    case spTags:
        return 2;
    case spUserMenu:
        return 3;
    case spAutoComplete:
        return 4;
    case spTagComplete:
        return 5;
    case spAutoHint:
        return 6;
    case spSample:
        return 7;
    case spHeader:
        return 8;
    default:
        return -1;
    }
}

// The findings that describe the file on disk rather than what is on screen.
bool DescribesFile(const TSyntaxFinding& F) {
    return F.Check == "dropped-line" || F.Check == "dropped-comment" ||
           F.Check == "ignored-value";
}

// The findings a save makes come true without the user having asked for them.
bool SaveLoses(const TSyntaxFinding& F) {
    return DescribesFile(F) || F.Check == "encoding-loss" || F.Check == "save-drift";
}

// Lines of the question before a save; the rest is counted.
constexpr int QuestionLines = 12;

void SelectMemoLine(TUniMemo& Memo, int Line) {
    const QTextBlock block = Memo.document()->findBlockByNumber(Line);
    if (!block.isValid()) return;
    QTextCursor cursor(block);
    Memo.setTextCursor(cursor);
    Memo.ensureCursorVisible();
}

void FocusRow(TWgTree& Tree, int Row) {
    TWgTreeItems& rows = Tree.Tree().Items();
    if (Row < 0 || Row >= rows.Count()) return;
    TWgTreeItem* item = rows.Item(Row);
    Tree.Tree().SetFocusedItem(item);
    Tree.View().EnsureVisible(item);
}

} // namespace

TSynFormProblems::TSynFormProblems(TSynForm& Form) : QObject(&Form), FForm(Form) {
    List = new QTreeWidget(&Form);
    List->setObjectName(QStringLiteral("ProblemsList"));
    List->setAccessibleName(QStringLiteral("Problems"));
    List->setColumnCount(3);
    List->setHeaderLabels({QStringLiteral("Where"), QStringLiteral("Problem"),
                           QStringLiteral("Check")});
    List->setRootIsDecorated(false);
    List->setUniformRowHeights(true);
    List->setAllColumnsShowFocus(true);
    List->setSelectionMode(QAbstractItemView::SingleSelection);
    List->header()->setStretchLastSection(false);
    List->header()->setSectionResizeMode(0, QHeaderView::ResizeToContents);
    List->header()->setSectionResizeMode(1, QHeaderView::Stretch);
    List->header()->setSectionResizeMode(2, QHeaderView::ResizeToContents);
    List->setMaximumHeight(List->fontMetrics().height() * 7);
    List->hide();
    connect(List, &QTreeWidget::itemActivated, this, [this](QTreeWidgetItem* Item) {
        const int index = List->indexOfTopLevelItem(Item);
        if (index >= 0 && std::size_t(index) < FAll.size()) GoTo(FAll[std::size_t(index)]);
    });

    Count = new QLabel(&Form);
    Count->setObjectName(QStringLiteral("ProblemsCount"));
    Count->hide();

    FPause.setSingleShot(true);
    FPause.setInterval(PauseMs);
    connect(&FPause, &QTimer::timeout, this, &TSynFormProblems::Refresh);
    connect(&Form, &TSynForm::DocumentChanged, &FPause, qOverload<>(&QTimer::start));
}

void TSynFormProblems::FileOpened(const AnsiString& FileName) {
    FFile.clear();
    try {
        TTextLines lines;
        TTextEncoding encoding = teAnsi;
        TFileStream stream(FileName, fmOpenRead | fmShareDenyWrite);
        lines.Load(stream, encoding);
        // Only what describes the file itself; the rest is found live.
        for (TSyntaxFinding& f : TSyntaxChecker().CheckLines(lines))
            if (DescribesFile(f)) FFile.push_back(std::move(f));
    } catch (const Exception&) {
        // The file was read a moment ago; if it cannot be read again there
        // is nothing to say about its lines.
    }
}

void TSynFormProblems::ForgetFile() {
    FFile.clear();
    FPause.start();
}

void TSynFormProblems::Refresh() {
    FPause.stop();
    FForm.HarvestDocument();
    FLive = TSyntaxChecker().CheckDocument(FForm.Document);
    FAll = FFile;
    FAll.insert(FAll.end(), FLive.begin(), FLive.end());
    Fill();
}

QString TSynFormProblems::WhereText(const TSyntaxFinding& F) const {
    if (F.Line > 0) return QStringLiteral("line %1").arg(F.Line);
    const TSyntaxDocument& doc = FForm.Document;
    auto menu = [&](const TMenuList& Menus) {
        QString s = QString::fromLatin1(SyntaxPartName(F.Part));
        if (F.Index < 0 || F.Index >= Menus.MenuCount()) return s;
        s += QStringLiteral(": ") + QString::fromStdU16String(Menus.MenuName(F.Index));
        if (F.Item >= 0 && F.Item < Menus.Menu(F.Index)->Items->Count())
            s += QStringLiteral(" \u203A ") +
                 QString::fromStdU16String(
                     TMenuList::ItemLeft(Menus.Menu(F.Index)->Items->Ref(F.Item)));
        return s;
    };
    switch (F.Part) {
    case spOptions:
        return F.Index >= 0 && F.Index < SyntaxOptionCount
                   ? QString::fromLatin1(SyntaxOptionKeys[std::size_t(F.Index)])
                   : QStringLiteral("Options");
    case spBlocks:
    case spFolds:
        return QStringLiteral("%1, record %2")
            .arg(QString::fromLatin1(SyntaxPartName(F.Part)))
            .arg(F.Index / RecordSize + 1);
    case spKeywords:
        return menu(*doc.Keywords);
    case spTags:
        return menu(*doc.Tags);
    case spAutoComplete:
        return menu(*doc.AutoComplete);
    case spTagComplete:
        return menu(*doc.TagComplete);
    case spUserMenu:
        return menu(*doc.UserMenu);
    case spAutoHint:
        return QStringLiteral("Hints, line %1").arg(F.Index + 1);
    case spSample:
        return QStringLiteral("Sample, line %1").arg(F.Index + 1);
    case spHeader:
        return QStringLiteral("Author information, line %1").arg(F.Index + 1);
    default:
        return QString();
    }
}

void TSynFormProblems::Fill() {
    List->setUpdatesEnabled(false);
    List->clear();
    QStyle* style = List->style();
    const QIcon warning = style->standardIcon(QStyle::SP_MessageBoxWarning);
    const QIcon error = style->standardIcon(QStyle::SP_MessageBoxCritical);
    QList<QTreeWidgetItem*> rows;
    rows.reserve(qsizetype(FAll.size()));
    for (const TSyntaxFinding& f : FAll) {
        auto* row = new QTreeWidgetItem({WhereText(f), QString::fromStdU16String(f.Message),
                                         QString::fromStdString(f.Check)});
        row->setIcon(0, f.Severity == csError ? error : warning);
        row->setToolTip(1, row->text(1));
        rows.append(row);
    }
    List->addTopLevelItems(rows);
    List->setUpdatesEnabled(true);
    List->setVisible(!FAll.empty());
    const int n = int(FAll.size());
    Count->setText(n == 1 ? QStringLiteral("1 problem") : QStringLiteral("%1 problems").arg(n));
    Count->setVisible(n > 0);
}

bool TSynFormProblems::ConfirmSave() {
    Refresh();
    std::vector<const TSyntaxFinding*> losses;
    for (const TSyntaxFinding& f : FAll)
        if (SaveLoses(f)) losses.push_back(&f);
    if (losses.empty()) return true;
    WideString text = u"Saving will change what the file holds:\r\n\r\n";
    for (std::size_t i = 0; i < losses.size() && i < QuestionLines; ++i) {
        const TSyntaxFinding& f = *losses[i];
        const QString where = WhereText(f);
        text += u"\u2022 ";
        if (!where.isEmpty()) text += where.toStdU16String() + u": ";
        text += f.Message + u"\r\n";
    }
    if (losses.size() > QuestionLines)
        text += u"\u2022 and " + QString::number(losses.size() - QuestionLines).toStdU16String() +
                u" more (see the problems list)\r\n";
    text += u"\r\nSave anyway?";
    return InstalledDialogs().MessageBox(text, u"Save", MB_YESNO | MB_ICONWARNING) == IDYES;
}

void TSynFormProblems::GoTo(const TSyntaxFinding& F) {
    const int section = SectionOf(F.Part);
    if (section < 0) return;
    TSynFormPages& pages = FForm.Pages;
    switch (F.Part) {
    case spOptions:
        FForm.PlusPageControl1->SetActivePageIndex(0);
        FForm.SelectSection(section);
        FocusRow(*FForm.WgTree1, F.Index);
        return;
    case spBlocks:
    case spFolds: {
        FForm.PlusPageControl1->SetActivePageIndex(1);
        FForm.SelectSection(section);
        TWgTree& tree = F.Part == spBlocks ? *FForm.WgTree2 : *FForm.WgTreeFold;
        // Entry i stands in row i + i div 5: every record ends with a separator.
        if (F.Index >= 0) FocusRow(tree, F.Index + F.Index / RecordSize);
        tree.ViewWidget()->setFocus(Qt::OtherFocusReason);
        return;
    }
    case spKeywords:
    case spTags:
    case spAutoComplete:
    case spTagComplete:
        FForm.SelectSection(section);
        if (F.Index < 0) return;
        pages.ClearItemFilter();
        pages.lbMenu->SetItemIndex(F.Index);
        pages.lbMenuClick();
        if (F.Item >= 0) {
            pages.lbMenuItem->SetItemIndex(F.Item);
            pages.lbMenuItem->setFocus(Qt::OtherFocusReason);
        }
        return;
    case spUserMenu:
        FForm.SelectSection(section);
        if (F.Item >= 0) pages.lbUserMenu->SetItemIndex(F.Item);
        return;
    case spAutoHint:
        FForm.SelectSection(section);
        if (F.Index >= 0) {
            pages.HintsList->SetItemIndex(F.Index);
            pages.HintsList->setFocus(Qt::OtherFocusReason);
        }
        return;
    case spSample:
        FForm.SelectSection(section);
        SelectMemoLine(*pages.SampleMemo, F.Index);
        return;
    case spHeader:
        FForm.SelectSection(section);
        SelectMemoLine(*pages.InfoMemo, F.Index);
        pages.InfoMemo->setFocus(Qt::OtherFocusReason);
        return;
    default:
        return;
    }
}

void TSynFormProblems::GoToNext() {
    if (FAll.empty()) return;
    const int next = (List->currentIndex().row() + 1) % int(FAll.size());
    List->setCurrentItem(List->topLevelItem(next));
    GoTo(FAll[std::size_t(next)]);
}
