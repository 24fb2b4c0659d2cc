#include "base/ui/Application.h"
#include "base/ui/Messages.h"
#include "base/ui/Tag.h"

#include "base/Exceptions.h"
#include "support/ScriptedDialogs.h"

#include <QCoreApplication>
#include <QLabel>

#include <gtest/gtest.h>

namespace {

class TThrower : public QObject {
public:
    int Seen = 0;
    bool event(QEvent* E) override {
        if (PrivateMessageNumber(E) == 13570) {
            ++Seen;
            throw EReadError("Stream read error");
        }
        return QObject::event(E);
    }
};

} // namespace

TEST(Application, EscapedExceptionIsShownAndTheLoopGoesOn) {
    auto* app = static_cast<TApplication*>(QCoreApplication::instance());
    TScriptedDialogs dialogs;
    TDialogsScope scope(dialogs);
    app->setApplicationName("Lexsmith");
    TThrower target;
    PostPrivateMessage(&target, 13570);
    PostPrivateMessage(&target, 13570);
    QCoreApplication::processEvents();
    EXPECT_EQ(target.Seen, 2);
    ASSERT_EQ(dialogs.Messages.size(), 2u);
    EXPECT_EQ(dialogs.Messages[0], u"Lexsmith: Stream read error");
    EXPECT_EQ(dialogs.MessageFlags[0], MB_OK | MB_ICONERROR);
}

TEST(Application, PrivateMessagesKeepTheirNumbersAndTagsReadBack) {
    EXPECT_EQ(PrivateMessageType(3859), PrivateMessageType(3859));
    EXPECT_NE(PrivateMessageType(3859), PrivateMessageType(13571));
    TPrivateMessage m(13574, 1, 2);
    EXPECT_EQ(PrivateMessageNumber(&m), 13574);
    QEvent plain(QEvent::Show);
    EXPECT_EQ(PrivateMessageNumber(&plain), 0);

    QLabel label;
    EXPECT_EQ(TagOf(&label), 0);
    SetTag(&label, DisableTag);
    EXPECT_EQ(TagOf(&label), 99);
}

TEST(Dialogs, InputBoxGivesTheDefaultOnCancel) {
    TScriptedDialogs dialogs;
    dialogs.InputAnswers = {{false, "ignored"}, {true, "typed"}};
    EXPECT_EQ(dialogs.InputBox(u"c", u"p", "default"), "default");
    EXPECT_EQ(dialogs.InputBox(u"c", u"p", "default"), "typed");
}
