#pragma once
// The application's modal dialogs behind one interface: message boxes with
// the classic flags and result numbers, the narrow input box, and the file
// dialogs. The UI supplies the real implementation; tests install a
// scripted one so that no test ever waits in a modal loop.

#include "base/Types.h"

#include <memory>

// Button sets and results, numbered as the classic message box numbers them.
inline constexpr unsigned MB_OK = 0x0;
inline constexpr unsigned MB_OKCANCEL = 0x1;
inline constexpr unsigned MB_YESNOCANCEL = 0x3;
inline constexpr unsigned MB_YESNO = 0x4;
inline constexpr unsigned MB_ICONERROR = 0x10;
inline constexpr unsigned MB_ICONQUESTION = 0x20;
inline constexpr unsigned MB_ICONWARNING = 0x30;
inline constexpr unsigned MB_ICONINFORMATION = 0x40;
inline constexpr int IDOK = 1;
inline constexpr int IDCANCEL = 2;
inline constexpr int IDABORT = 3;
inline constexpr int IDRETRY = 4;
inline constexpr int IDIGNORE = 5;
inline constexpr int IDYES = 6;
inline constexpr int IDNO = 7;

// What a file dialog starts with and what it gives back.
struct TFileDialogParams {
    WideString Title;
    WideString Filter;   // "Name|*.ext|Other|*.x", as the classic dialogs take it
    int FilterIndex = 1; // one-based
    AnsiString FileName;
    AnsiString InitialDir;
    WideString DefaultExt;
    bool OverwritePrompt = false;
};

class TDialogs {
public:
    virtual ~TDialogs() = default;
    virtual int MessageBox(const WideString& Text, const WideString& Caption, unsigned Flags) = 0;
    // The narrow input box: Value is the default and the result is narrow.
    // False when the user cancels.
    virtual bool InputQuery(const WideString& Caption, const WideString& Prompt,
                            AnsiString& Value) = 0;
    // True when the user chose a file; Params then holds the file name and
    // the filter index chosen.
    virtual bool OpenDialog(TFileDialogParams& Params) = 0;
    virtual bool SaveDialog(TFileDialogParams& Params) = 0;

    // InputBox: the default comes back when the user cancels.
    AnsiString InputBox(const WideString& Caption, const WideString& Prompt,
                        const AnsiString& Default) {
        AnsiString value = Default;
        return InputQuery(Caption, Prompt, value) ? value : Default;
    }
};

// The dialogs the application uses; null until the UI or a test installs one.
TDialogs* Dialogs();
// Installs Value (not owned) and returns the previous one.
TDialogs* SetDialogs(TDialogs* Value);
