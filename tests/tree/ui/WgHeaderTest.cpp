#include "tree/ui/WgHeader.h"
#include "base/Strings.h"

#include <QApplication>
#include <QComboBox>
#include <QLineEdit>
#include <QTest>

#include <gtest/gtest.h>

namespace {

struct THeaderFixture {
    TWgHeader Header;
    THeaderFixture() {
        for (auto [text, width] : {std::pair{u"Option", 100}, {u"Value", 80}}) {
            TWgHeaderSection* s = Header.Sections().AddSection();
            s->SetText(text);
            s->SetWidth(width);
        }
        Header.resize(300, 20);
        Header.show();
    }
};

} // namespace

TEST(WgHeaderWidget, ClickReportsTheSectionAndDividerDragResizes) {
    THeaderFixture f;
    std::vector<int> clicked;
    std::vector<std::pair<int, int>> resizing;
    f.Header.Model().OnSectionClick = [&](TWgHeaderModel&, TWgHeaderSection* S) {
        clicked.push_back(S->Position());
    };
    f.Header.Model().OnSectionResizing = [&](TWgHeaderModel&, TWgHeaderSection*,
                                             TWgHResizingStates State, int Width) {
        resizing.push_back({int(State), Width});
    };
    QTest::mouseClick(&f.Header, Qt::LeftButton, {}, QPoint(130, 10));
    EXPECT_EQ(clicked, std::vector<int>{1});

    // Press on the first divider, drag 20 pixels right, release.
    QTest::mousePress(&f.Header, Qt::LeftButton, {}, QPoint(99, 10));
    ASSERT_TRUE(f.Header.Model().Resizing());
    EXPECT_EQ(f.Header.ResizeLineX(), std::optional<int>(100));
    QTest::mouseMove(&f.Header, QPoint(119, 10));
    EXPECT_EQ(f.Header.ResizeLineX(), std::optional<int>(120));
    QTest::mouseRelease(&f.Header, Qt::LeftButton, {}, QPoint(119, 10));
    EXPECT_FALSE(f.Header.ResizeLineX().has_value());
    EXPECT_EQ(f.Header.Sections()[0]->Width(), 120);
    ASSERT_GE(resizing.size(), 2u);
    EXPECT_EQ(resizing.front().first, int(trsBegin));
    EXPECT_EQ(resizing.back(), std::make_pair(int(trsEnd), 120));
}

TEST(WgHeaderWidget, PaintsSectionsThroughTheCorePainter) {
    THeaderFixture f;
    f.Header.PaintOptions().Color = 0x00FFFF; // yellow
    const QImage shot = f.Header.grab().toImage();
    // Inside a section, away from edges and text: the header colour.
    EXPECT_EQ(shot.pixelColor(90, 15), QColor(255, 255, 0));
    // Beyond the last section the header colour again, inside its edge.
    EXPECT_EQ(shot.pixelColor(250, 10), QColor(255, 255, 0));
}

TEST(WgHeaderWidget, MovedSectionsKeepTheirOwnRectangles) {
    THeaderFixture f;
    TWgHeaderSection* value = f.Header.Sections()[1];
    value->SetLookupEnabled(true);
    f.Header.Sections().MoveSection(value, 0);
    // "Value" now spans 0..80: its lookup button lies left of 76.
    QTest::mouseClick(&f.Header, Qt::LeftButton, {}, QPoint(72, 6));
    ASSERT_NE(f.Header.LookupBox(), nullptr);
    EXPECT_EQ(f.Header.LookupBox()->geometry(), QRect(1, 1, 78, f.Header.height() - 2));
    f.Header.Model().CloseLookup(false);

    // A drag of "Option", now second, starts its image at its own left edge.
    QTest::mousePress(&f.Header, Qt::LeftButton, {}, QPoint(120, 10));
    QTest::mouseMove(&f.Header, QPoint(130, 10));
    ASSERT_TRUE(f.Header.Model().Dragging());
    EXPECT_EQ(f.Header.DragImageRect(), QRect(90, 0, 100, f.Header.height()));
    QTest::mouseRelease(&f.Header, Qt::LeftButton, {}, QPoint(130, 10));
}

TEST(WgHeaderWidget, EscAndTheLossOfTheMouseEndDragAndResize) {
    THeaderFixture f;
    TWgHeaderSection* option = f.Header.Sections()[0];
    TWgHeaderSection* value = f.Header.Sections()[1];
    // Esc during a drag ends it as a release at (0, -1): the section goes
    // to the place of the first one, and the mouse is free again.
    QTest::mousePress(&f.Header, Qt::LeftButton, {}, QPoint(130, 10));
    QTest::mouseMove(&f.Header, QPoint(150, 10));
    ASSERT_TRUE(f.Header.Model().Dragging());
    QTest::keyClick(&f.Header, Qt::Key_Escape);
    EXPECT_FALSE(f.Header.Model().Dragging());
    EXPECT_TRUE(f.Header.DragImageRect().isNull());
    EXPECT_NE(QWidget::mouseGrabber(), &f.Header);
    EXPECT_EQ(value->Position(), 0);
    QTest::mouseRelease(&f.Header, Qt::LeftButton, {}, QPoint(150, 10));
    EXPECT_EQ(value->Position(), 0);

    // A resize whose mouse grab is taken away ends where the line stood.
    QTest::mousePress(&f.Header, Qt::LeftButton, {}, QPoint(179, 10));
    ASSERT_TRUE(f.Header.Model().Resizing());
    QTest::mouseMove(&f.Header, QPoint(199, 10));
    QEvent lost(QEvent::UngrabMouse);
    QApplication::sendEvent(&f.Header, &lost);
    EXPECT_FALSE(f.Header.Model().Resizing());
    EXPECT_FALSE(f.Header.ResizeLineX().has_value());
    EXPECT_EQ(option->Width(), 120);
}

TEST(WgHeaderWidget, LookupFollowsItsOwnerAndGivesTheFocusBack) {
    QWidget form;
    auto* header = new TWgHeader(&form);
    auto* other = new QLineEdit(&form);
    TWgHeaderSection* s = header->Sections().AddSection();
    s->SetWidth(120);
    s->SetLookupEnabled(true);
    header->setGeometry(0, 0, 300, 20);
    other->setGeometry(0, 30, 100, 20);
    form.show();
    QApplication::setActiveWindow(&form);
    other->setFocus();
    std::vector<WideString> asked;
    header->Model().OnHeaderLookup = [&](TWgHeaderModel&, TWgHeaderSection*, WideString& Text) {
        asked.push_back(Text);
        Text = WideUpperCase(Text);
    };
    QTest::mouseClick(header, Qt::LeftButton, {}, QPoint(112, 6));
    ASSERT_NE(header->LookupBox(), nullptr);
    EXPECT_TRUE(header->LookupBox()->lineEdit()->hasFocus());
    QTest::keyClicks(header->LookupBox()->lineEdit(), "ab");
    EXPECT_EQ(header->LookupBox()->currentText(), "AB");
    EXPECT_EQ(asked, (std::vector<WideString>{u"", u"a", u"Ab"}));
    WideString done;
    header->Model().OnHeaderLookupDone = [&](TWgHeaderModel&, TWgHeaderSection*,
                                             const WideString& Text, bool) { done = Text; };
    QTest::keyClick(header->LookupBox()->lineEdit(), Qt::Key_Return);
    EXPECT_EQ(done, u"AB");
    EXPECT_TRUE(other->hasFocus());
}

TEST(WgHeaderWidget, TheDragImageLetsTheHeaderShowThroughItsColour) {
    THeaderFixture f;
    f.Header.PaintOptions().Color = 0x00C0C0;
    QTest::mousePress(&f.Header, Qt::LeftButton, {}, QPoint(40, 10));
    QTest::mouseMove(&f.Header, QPoint(60, 10));
    ASSERT_TRUE(f.Header.Model().Dragging());
    const QImage& image = f.Header.DragImage();
    ASSERT_FALSE(image.isNull());
    EXPECT_EQ(qAlpha(image.pixel(90, 10)), 0);  // the section's colour
    EXPECT_EQ(qAlpha(image.pixel(0, 10)), 255); // its edge
    QTest::mouseRelease(&f.Header, Qt::LeftButton, {}, QPoint(60, 10));
}
