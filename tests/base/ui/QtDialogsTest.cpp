// How the file dialogs are set up: the desktop's own by default, Qt's own
// widgets while the switch says so (a skin can paint only those).

#include "base/ui/QtDialogs.h"

#include <QFileDialog>

#include <gtest/gtest.h>

TEST(QtDialogs, FileDialogsAreNativeUnlessSwitchedOff) {
    TFileDialogParams params;
    params.Filter = u"Syntax files|*.syx|All|*.*";
    params.FilterIndex = 2;
    params.DefaultExt = u"syx";
    ASSERT_TRUE(TQtDialogs::NativeFileDialogs());
    for (bool native : {false, true}) {
        TQtDialogs::SetNativeFileDialogs(native);
        for (bool save : {false, true}) {
            QFileDialog dialog;
            PrepareFileDialog(dialog, params, save);
            SCOPED_TRACE(testing::Message() << "native " << native << " save " << save);
            EXPECT_EQ(dialog.testOption(QFileDialog::DontUseNativeDialog), !native);
            EXPECT_EQ(dialog.acceptMode(),
                      save ? QFileDialog::AcceptSave : QFileDialog::AcceptOpen);
            EXPECT_EQ(dialog.fileMode(), save ? QFileDialog::AnyFile : QFileDialog::ExistingFile);
            EXPECT_TRUE(dialog.testOption(QFileDialog::DontConfirmOverwrite));
            EXPECT_EQ(dialog.selectedNameFilter(), QStringLiteral("All (*.*)"));
            EXPECT_EQ(dialog.defaultSuffix(), QStringLiteral("syx"));
            // No title given: the dialog keeps its own, which the user (and
            // the end-to-end run) look for.
            EXPECT_EQ(dialog.windowTitle(),
                      save ? QStringLiteral("Save As") : QStringLiteral("Open"));
        }
    }
    EXPECT_TRUE(TQtDialogs::NativeFileDialogs());
}
