#pragma once
// The dialogs of the program on Qt's message box, input dialog and file
// dialogs.

#include "base/Dialogs.h"

#include <QStringList>

class QFileDialog;
class QWidget;

class TQtDialogs : public TDialogs {
public:
    // Parent of the dialogs; may be null.
    QWidget* Parent = nullptr;
    // Whether the file dialogs are the desktop's (the default) or Qt's own
    // widgets. A skin can paint only Qt's own, so this is off while a skin
    // is active; it holds for the whole process, as the skin does.
    static bool NativeFileDialogs();
    static void SetNativeFileDialogs(bool Value);

    int MessageBox(const WideString& Text, const WideString& Caption, unsigned Flags) override;
    bool InputQuery(const WideString& Caption, const WideString& Prompt,
                    AnsiString& Value) override;
    bool OpenDialog(TFileDialogParams& Params) override;
    bool SaveDialog(TFileDialogParams& Params) override;
};

// Sets Dialog up from Params as an open or a save dialog, native or not as
// the switch above says; OpenDialog and SaveDialog then run it.
void PrepareFileDialog(QFileDialog& Dialog, const TFileDialogParams& Params, bool Save);

// "Name|*.a|Other|*.b" as Qt's name filters "Name (*.a)", "Other (*.b)".
QStringList ToQtNameFilters(const WideString& Filter);

// True without a screen (the offscreen platform): nobody could answer a box.
bool Headless();

// The installed dialogs, or Qt's own when nobody installed any.
TDialogs& InstalledDialogs();
