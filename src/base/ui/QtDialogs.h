#pragma once
// The dialogs of the program on Qt's message box, input dialog and file
// dialogs.

#include "base/Dialogs.h"

#include <QStringList>

class QWidget;

class TQtDialogs : public TDialogs {
public:
    // Parent of the dialogs; may be null.
    QWidget* Parent = nullptr;
    // Use Qt's own dialog widgets instead of the desktop's (needed while a skin paints them).
    bool UseOwnFileDialogs = false;

    int MessageBox(const WideString& Text, const WideString& Caption, unsigned Flags) override;
    bool InputQuery(const WideString& Caption, const WideString& Prompt,
                    AnsiString& Value) override;
    bool OpenDialog(TFileDialogParams& Params) override;
    bool SaveDialog(TFileDialogParams& Params) override;
};

// "Name|*.a|Other|*.b" as Qt's name filters "Name (*.a)", "Other (*.b)".
QStringList ToQtNameFilters(const WideString& Filter);

// True without a screen (the offscreen platform): nobody could answer a box.
bool Headless();

// The installed dialogs, or Qt's own when nobody installed any.
TDialogs& InstalledDialogs();
