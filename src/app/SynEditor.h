#pragma once
// TSynForm: the main window. It holds the one open definition: the options,
// block and fold trees, the list pages (TSynFormPages), the side panel that
// picks a section, the menu bar with File and Help, and the status bar with
// the document's name and state word. The document commands (New, Open,
// Save, Save As, Exit, closing the window) and the change tracking live here.
//
// The name of the document is SaveDialog.FileName; empty means a document
// that was never saved. "*New.syx" is only a caption in the status bar.

#include "app/SynFormPages.h"
#include "base/Dialogs.h"
#include "base/ImageList.h"
#include "controls/WgMenu.h"
#include "document/KVSyntax.h"
#include "settings/ScribexSettings.h"
#include "skin/data.h"

class TSkinData;
class TSynFormProblems;
#include "tree/WgTypes.h"

#include <QStringList>
#include <QWidget>

#include <array>
#include <memory>

class QFrame;
class QKeyEvent;
class QLabel;
class QPushButton;
class QStatusBar;
class TAddForm;
class TPlusPageControl;
class TPlusTabSheet;
class TSyntaxAbout;
class TUserMenuForm;
class TWgMenuBar;
class TWgPageControl;
class TWgPanel;
class TWgTabSheet;
class TWgToolbar;
class TWgTree;
class TWgTreeInplaceComboBox;
class TWgTreeInplaceEdit;
class TWgTreeItem;

class TSynForm : public QWidget {
    Q_OBJECT
public:
    explicit TSynForm(QWidget* Parent = nullptr);
    ~TSynForm() override;

    // The three dialogs, created once by the program's entry.
    void SetForms(TSyntaxAbout* About, TUserMenuForm* UserMenuForm, TAddForm* AddForm);

    // ---- the document
    void ResetDocument();
    void OpenDocument(const AnsiString& FileName);
    void SaveDocument(const AnsiString& FileName);
    // Fills the transfer lists (Header, Options, Blocks, Folds, Sample) from
    // the controls, as a save does, so that Document holds what is on screen.
    void HarvestDocument();
    bool QuerySave();
    void MarkModified();
    void OpenFromCommandLine(const AnsiString& FileName);

    // ---- the form's events
    // Opens every file of Params, then brings the first options sheet to
    // the front. Runs once, at the first showing of the window.
    void FormShow();
    // Keeps the block panel at half the options area.
    void FormResize();

    // ---- block and fold records
    void AddBlockRows(int Count);
    void AddFoldRows(int Count);

    // ---- section selection (the side panel's labels), 0 to 8
    void SelectSection(int Section);

    // The sections of the side panel.
    static constexpr int SectionCount = 9;

    // The file names that FormShow opens; the program's arguments by default.
    QStringList Params;

    std::uint8_t SaveEncoding = 2;
    bool Modified = false;
    // The one document: the eleven containers that open and save go through.
    TSyntaxDocument Document;
    // Its transfer lists, filled only at a load and a save.
    std::unique_ptr<TWgWideStringList>&Blocks = Document.Blocks, &Folds = Document.Folds,
    &Options = Document.Options, &Header = Document.Header, &Sample = Document.Sample;
    TSynFormPages Pages; // the live containers' pages, kind bitmaps and list pages
    TFileDialogParams OpenDialog, SaveDialog;
    // The skin choice read from the companion editor's settings at start.
    TSkinChoice SkinChoice;
    // The loaded skin while it is active, null for the plain look.
    const TSkinDataModel* ActiveSkin() const;
    // The skin component of the form (owned by the form).
    TSkinData* SkinData = nullptr;

    // ---- controls, top to bottom
    TWgImageList MainMenuImageList;
    TWgMainMenu WgMainMenu1;
    TWgMenuItem *WgMenuItem2 = nullptr, *FileNew = nullptr, *FileOpen = nullptr,
                *FileSave = nullptr, *FileSaveAs = nullptr, *FileExit = nullptr;
    TWgMenuItem *WgMenuItem1 = nullptr, *HelpContent = nullptr, *HelpAbout = nullptr;
    TWgMenuBar* WgMenuBar1 = nullptr;
    TWgPanel* WgPanel2 = nullptr;
    TWgPanel* panHead = nullptr;
    std::array<TWgPanel*, 5> panSections{};
    TWgPanel* panBottom = nullptr;
    std::array<QLabel*, SectionCount> SectionLabels{}; // Label1 .. Label10 without Label5
    std::array<QLabel*, SectionCount> SectionImages{}; // Image1 .. Image9
    TWgPanel* WgPanel1 = nullptr;
    QFrame* Shape1 = nullptr;
    TWgPageControl* WgPageControl1 = nullptr;
    TWgTabSheet *TabOptions = nullptr, *TabCodeMenu = nullptr, *TabHints = nullptr,
                *TabSample = nullptr, *TabInfo = nullptr, *TabUserMenu = nullptr;
    TPlusPageControl* PlusPageControl1 = nullptr;
    TPlusTabSheet *PlusTabSheet1 = nullptr, *PlusTabSheet2 = nullptr;
    TWgTree* WgTree1 = nullptr;
    QWidget *Panel1 = nullptr, *Panel2 = nullptr;
    TWgTree* WgTree2 = nullptr;
    TWgTree* WgTreeFold = nullptr;
    QPushButton *BtnBlockAdd = nullptr, *BtnBlockDelete = nullptr, *BtnFoldAdd = nullptr,
                *BtnFoldDelete = nullptr;
    TWgTreeInplaceEdit *WgTreeInplaceEdit1 = nullptr, *WgTreeInplaceEdit2 = nullptr,
                       *WgTreeInplaceEdit3 = nullptr;
    TWgTreeInplaceComboBox *WgTreeInplaceComboBox1 = nullptr, *WgTreeInplaceComboBox2 = nullptr,
                           *WgTreeInplaceComboBox3 = nullptr;
    std::array<TWgToolbar*, 3> Toolbars{}; // WgToolbar1 .. WgToolbar3
    QStatusBar* StatusBar1 = nullptr;
    std::array<QLabel*, 2> StatusPanels{};
    // The checks of the definition: the list below the pages, the count in
    // the status bar, the question before a lossy save.
    TSynFormProblems* Problems = nullptr;

    // The text of status panel 0 or 1.
    QString StatusText(int Panel) const;
    // The control that takes the focus when Section is picked.
    QWidget* SectionControl(int Section) const;
    // Shrinks the window (and its minimum) to the screen's free area.
    void FitToScreen();

    // ---- the file on disk, changed by another program
    // Asks whether to reload the document's file when another program has
    // changed it since it was opened or saved here; runs when the window is
    // activated.
    void CheckDiskChange();
    // Before a save over the document's file: true unless the file was
    // changed by another program and the user does not want to overwrite it.
    bool ConfirmOverwriteChanged();

signals:
    // After any edit, after New and after Open: what is on screen may differ
    // from Document until HarvestDocument runs.
    void DocumentChanged();

public slots:
    void FileNewClick();
    void FileOpenClick();
    void FileSaveClick();
    void FileSaveAsClick();
    void FileExitClick();
    void HelpContentClick();
    void HelpAboutClick();
    void BtnBlockAddClick();
    void BtnBlockDeleteClick();
    void BtnFoldAddClick();
    void BtnFoldDeleteClick();

protected:
    void changeEvent(QEvent* Event) override;
    void closeEvent(QCloseEvent* Event) override;
    void showEvent(QShowEvent* Event) override;
    void resizeEvent(QResizeEvent* Event) override;
    bool eventFilter(QObject* Watched, QEvent* Event) override;

private:
    void CreateMenu();
    void CreateSidePanel(QWidget* Parent);
    void CreateOptionsPage();
    void CreateBlockPage();
    void CreateToolbars();
    void CreateStatusBar();
    void CreateSkinData();
    void ApplySkinPalette();
    // Fresh Options (OptionCount empty entries), Blocks, Folds and Header.
    void NewTransferLists(int OptionCount);
    void ReadTreeForms();
    // The form's close event: true lets the window close and frees the document.
    bool FormClose();
    void SetStatus(int Panel, const QString& Text);
    // The shared TryEdit handler of the three trees.
    void TryEdit(TWgTreeItem* Item, int SectionIndex, TWgFieldType& CellType);
    void AddRecordRows(TWgTree& Tree, int Count, const std::array<const char16_t*, 5>& Labels,
                       const std::array<int, 5>& Tags);
    // Add on the block or fold tree: one record, and a further column text on every row.
    void AddRecordWithCells(TWgTree& Tree);
    void DeleteLastRecord(TWgTree& Tree);
    void FillRecords(TWgTree& Tree, const TWgWideStringList& List, bool Blocks);
    void HarvestRecords(TWgTree& Tree, TWgWideStringList& List);
    // Keys of the trees and lists, sheet keys, names for assistive tools,
    // the smallest size; and the value column that fills the tree.
    void CreateKeyboard();
    bool TreeKey(TWgTree& Tree, QKeyEvent& Key);
    void SetAccessibleNames();
    void SetMinimumWindowSize();
    void FitValueColumn(TWgTree& Tree);
    void LabelMouseEnter(QLabel* Label);
    void LabelMouseLeave(QLabel* Label);

    TSyntaxAbout* FAbout = nullptr;
    bool FShown = false;
    bool FFittingColumn = false; // FitValueColumn is setting a width

    // What the document's file was like when it was last read or written here.
    struct TDiskState {
        AnsiString FileName; // empty: no file to watch
        bool Exists = false;
        std::int64_t Size = 0;
        std::int64_t ModifiedMs = 0;
        bool operator==(const TDiskState&) const = default;
    };
    static TDiskState ReadDiskState(const AnsiString& FileName);
    void RememberDiskState(const AnsiString& FileName) { FDisk = ReadDiskState(FileName); }
    bool DiskChanged() const;
    TDiskState FDisk;
    bool FAskingAboutDisk = false; // the question is on screen
    bool FSaveDeclined = false;    // the last save was called off at the question of its losses
    bool FCursorSaved = false;     // SavedCursor: the hand cursor is pushed over the previous one
};

// The companion editor's per-user folder, without a trailing separator:
// LEXSMITH_APPDATA if set, otherwise the platform's rule. Evaluated anew
// at each call.
AnsiString AppDataFolder();
