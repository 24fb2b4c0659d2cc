#pragma once
// The problems of the open definition, live: a list below the pages
// (hidden while there are none), a count in the status bar, and the
// question before a save that would lose or change what the user did not
// edit. Two kinds of finding meet here:
//   - the file's own, found once when it is opened: lines the reader passed
//     over, comments, yes/no values it did not take. They describe the file
//     on disk and stay until it is saved (the save drops them) or closed;
//   - the live ones, found again after each pause in editing on what is on
//     screen: duplicates, empty groups, keywords that are delimiters,
//     characters the code page lacks, values a save would change.
// Activating a row (double click, Enter) shows the section and selects the
// row, group or item; F8 goes to the next problem.

#include "document/SyntaxCheck.h"

#include <QObject>
#include <QTimer>

#include <vector>

class QLabel;
class QTreeWidget;
class TSynForm;

class TSynFormProblems : public QObject {
    Q_OBJECT
public:
    // Pause after the last edit before the checks run again.
    static constexpr int PauseMs = 300;

    explicit TSynFormProblems(TSynForm& Form);

    QTreeWidget* List = nullptr; // the pane
    QLabel* Count = nullptr;     // the status bar's "N problems"

    // The file was just read into the form: keep what the reader passed over.
    void FileOpened(const AnsiString& FileName);
    // The file now holds what a save wrote; a new document has no file.
    void ForgetFile();
    // Runs the checks on what is on screen now and fills the list.
    void Refresh();
    // Before a save: true when the save loses nothing, or when the user,
    // told what it would lose or change, chooses to save anyway.
    bool ConfirmSave();
    // Shows the section of Finding and selects its row, group or item.
    void GoTo(const TSyntaxFinding& Finding);
    // F8: the problem after the current one, shown as GoTo shows it.
    void GoToNext();

    const std::vector<TSyntaxFinding>& Findings() const { return FAll; }
    // What the list's "Where" column says of Finding.
    QString WhereText(const TSyntaxFinding& Finding) const;

private:
    void Fill();

    TSynForm& FForm;
    QTimer FPause;
    std::vector<TSyntaxFinding> FFile, FLive, FAll;
};
