#pragma once
// Dialogs that answer from a script and record what was asked, so tests of
// commands that prompt never wait in a modal loop.

#include "base/Dialogs.h"

#include <deque>
#include <string>
#include <vector>

class TScriptedDialogs : public TDialogs {
public:
    struct TFileAnswer {
        bool Accept = false;
        AnsiString FileName;
        int FilterIndex = 0; // 0 keeps the index the dialog was opened with
    };

    std::deque<int> MessageAnswers; // IDYES, IDNO, ...; IDCANCEL when empty
    std::deque<std::pair<bool, AnsiString>> InputAnswers;
    std::deque<TFileAnswer> FileAnswers;

    std::vector<std::u16string> Messages; // "caption: text" of each message box
    std::vector<unsigned> MessageFlags;
    std::vector<TFileDialogParams> FileDialogs; // as each dialog was opened

    int MessageBox(const WideString& Text, const WideString& Caption, unsigned Flags) override {
        Messages.push_back(Caption + u": " + Text);
        MessageFlags.push_back(Flags);
        if (MessageAnswers.empty()) return IDCANCEL;
        int answer = MessageAnswers.front();
        MessageAnswers.pop_front();
        return answer;
    }
    bool InputQuery(const WideString&, const WideString&, AnsiString& Value) override {
        if (InputAnswers.empty()) return false;
        auto [ok, text] = InputAnswers.front();
        InputAnswers.pop_front();
        if (ok) Value = text;
        return ok;
    }
    bool OpenDialog(TFileDialogParams& Params) override { return File(Params); }
    bool SaveDialog(TFileDialogParams& Params) override { return File(Params); }

private:
    bool File(TFileDialogParams& Params) {
        FileDialogs.push_back(Params);
        if (FileAnswers.empty()) return false;
        TFileAnswer answer = FileAnswers.front();
        FileAnswers.pop_front();
        if (!answer.Accept) return false;
        Params.FileName = answer.FileName;
        if (answer.FilterIndex > 0) Params.FilterIndex = answer.FilterIndex;
        return true;
    }
};

// Installs dialogs for the lifetime of a scope.
class TDialogsScope {
public:
    explicit TDialogsScope(TDialogs& D) : FOld(SetDialogs(&D)) {}
    ~TDialogsScope() { SetDialogs(FOld); }

private:
    TDialogs* FOld;
};
