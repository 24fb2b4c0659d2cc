// Shows the menu bar, a toolbar, the side panel's bands, the header strip,
// the page control with hidden tabs and the gradient page control, laid out
// as the main window lays them out.
//
//   controls_demo [--screenshot FILE] [--menu] [--page N]
//
// --menu opens the File menu (it is drawn into the screenshot), --page
// chooses the page of the gradient page control.

#include "base/ui/Application.h"
#include "base/ui/Fonts.h"
#include "base/ui/Tag.h"
#include "controls/WgGlyphs.h"
#include "controls/WgMenuBarDraw.h"
#include "controls/ui/PlusPageControl.h"
#include "controls/ui/WgMenuBar.h"
#include "controls/ui/WgPgCtl.h"
#include "controls/ui/WindowPalette.h"

#include <QCursor>
#include <QHBoxLayout>
#include <QLabel>
#include <QPainter>
#include <QPlainTextEdit>
#include <QVBoxLayout>

#include <cstdio>

namespace {

TFont Tahoma(int Height, TFontStyles Style = 0, TColor Color = clWindowText) {
    TFont font;
    font.Name = u"Tahoma";
    font.Height = Height;
    font.Style = Style;
    font.Color = Color;
    return font;
}

TWgPanel* Band(QWidget* Parent, int Top, int Height, const WideString& Caption) {
    auto* band = new TWgPanel(Parent);
    band->setGeometry(0, Top, 177, Height);
    band->SetCaption(Caption);
    band->SetAlignment(taLeftJustify);
    band->SetBevelOuter(bvSpace);
    band->SetBevelSpaceColor(0x000000);
    band->SetFont(Tahoma(-11, fsBold));
    return band;
}

void SideLabel(QWidget* Parent, int Top, const char* Text) {
    auto* label = new QLabel(QString::fromUtf8(Text), Parent);
    label->setGeometry(32, Top, 145, 16);
    label->setStyleSheet("color: black");
}

TWgToolbar* Toolbar(QWidget* Parent, const TWgImageList* Images, std::initializer_list<int> Glyphs,
                    QLabel* Status) {
    auto* bar = new TWgToolbar(Parent);
    bar->SetBackgroundType(bgtVertGradient);
    bar->SetImages(Images);
    bar->SetUseImageList(true);
    bar->SetTransparentButtons(true);
    bar->SetShowBorder(false);
    SetTag(bar, DisableTag);
    for (int glyph : Glyphs) {
        auto* button = new TWgToolButton(bar);
        button->SetImageIndex(glyph);
        button->SetHint(u"Glyph " + IntToWide(glyph));
        button->OnClick = [Status, glyph](QObject*) {
            Status->setText(QStringLiteral("Toolbar glyph %1").arg(glyph));
        };
    }
    return bar;
}

} // namespace

int main(int argc, char** argv) {
    TApplication app(argc, argv);
    LoadBundledFonts();
    QString screenshot;
    bool openMenu = false;
    int plusPage = 0;
    const QStringList args = app.arguments();
    for (int i = 1; i < args.size(); ++i) {
        if (args[i] == "--screenshot" && i + 1 < args.size())
            screenshot = args[++i];
        else if (args[i] == "--menu")
            openMenu = true;
        else if (args[i] == "--page" && i + 1 < args.size())
            plusPage = args[++i].toInt();
    }

    const TWgImageList glyphs = MainMenuGlyphs();
    TWgMainMenu menu;
    menu.OwnerDraw = true;
    menu.DrawStyle = tdsOfficeXP;
    menu.Images = &glyphs;
    menu.ItemSpace = 6;
    menu.ImageMargin = 6;
    menu.SystemFont = false;
    menu.Font = Tahoma(-11);

    QWidget form;
    form.setWindowTitle("KV Lexsmith");
    form.resize(688, 517);
    auto* status = new QLabel("*New.syx");

    auto drawTop = [](TWgMenuItem* Sender, TCanvas& Canvas, TRect R, bool Selected) {
        DrawTopMenuItemCaption(Canvas, R, Selected, Sender->Caption());
    };
    TWgMenuItem* file = menu.Items().Add(u"File");
    file->OnDrawItem = drawTop;
    auto command = [status](const char* Text) {
        return [status, Text](TWgMenuItem*) { status->setText(QString::fromUtf8(Text)); };
    };
    file->Add(u"New", 0, ShortCut('N', scCtrl))->OnClick = command("New");
    file->Add(u"Open...", 1, ShortCut('O', scCtrl))->OnClick = command("Open");
    file->Add(u"Save", 2, ShortCut('S', scCtrl))->OnClick = command("Save");
    file->Add(u"Save As...", 3)->OnClick = command("Save As");
    file->Add(u"-");
    file->Add(u"Exit", 4)->OnClick = [&form](TWgMenuItem*) { form.close(); };
    TWgMenuItem* help = menu.Items().Add(u"Help");
    help->OnDrawItem = drawTop;
    help->Add(u"Content...", 5, ShortCut(VK_F1, 0))->OnClick = command("Help");
    help->Add(u"About...", 6)->OnClick = command("About");

    auto* layout = new QVBoxLayout(&form);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(0);
    auto* menuBar = new TWgMenuBar(&form);
    menuBar->SetMenu(&menu);
    SetTag(menuBar, DisableTag);
    layout->addWidget(menuBar);

    auto* body = new QHBoxLayout;
    body->setSpacing(0);
    layout->addLayout(body, 1);

    auto* side = new TWgPanel(&form);
    side->setFixedWidth(177);
    side->SetColor(0xFFFFFF);
    side->SetBevelOuter(bvNone);
    body->addWidget(side);
    TPaletteTargets targets;
    targets.Form = &form;
    targets.MenuBar = menuBar;
    targets.panHead = Band(side, 0, 25, u"Sections");
    targets.panHead->SetAlignment(taCenter);
    targets.panHead->SetFont(Tahoma(-11, fsBold, 0xFFFFFF));
    targets.panSections[0] = Band(side, 24, 17, u" Options");
    SideLabel(side, 49, "Options");
    targets.panSections[1] = Band(side, 72, 17, u" Keywords");
    SideLabel(side, 99, "Keywords");
    SideLabel(side, 123, "Tags");
    targets.panSections[2] = Band(side, 147, 17, u" Auto completion");
    SideLabel(side, 172, "User menu (Ctrl + Space)");
    SideLabel(side, 196, "Class completion");
    SideLabel(side, 220, "Tag completion");
    targets.panSections[3] = Band(side, 246, 17, u" Hints");
    SideLabel(side, 271, "Hints");
    targets.panSections[4] = Band(side, 296, 17, u" Sample and info");
    SideLabel(side, 322, "Syntax sample");
    SideLabel(side, 346, "Author information");

    auto* right = new QVBoxLayout;
    right->setSpacing(0);
    body->addLayout(right, 1);
    auto* header = new TWgPanel(&form);
    header->setFixedHeight(25);
    header->SetCaption(u"Options");
    header->SetAlignment(taLeftJustify);
    header->SetBevelOuter(bvNone);
    header->SetFont(Tahoma(-15, fsBold, 0xFFFFFF));
    targets.WgPanel1 = header;
    right->addWidget(header);

    auto* pages = new TWgPageControl(&form);
    pages->SetFlat(true);
    pages->SetShowBorder(false);
    pages->SetShowTabs(false);
    pages->SetVerticalSideCaptions(false);
    pages->SetTag(DisableTag);
    targets.PageControl = pages;
    right->addWidget(pages, 1);
    auto* options = new TWgTabSheet;
    options->SetPageControl(pages);
    auto* codeMenu = new TWgTabSheet;
    codeMenu->SetPageControl(pages);

    auto* plus = new TPlusPageControl(options);
    plus->SetTabBackGroundColor(0xFFFFFF);
    plus->SetTabMargin({0, 0, 0});
    plus->SetTabOverlap(0);
    plus->SetLowerActive(0);
    plus->SetFont(Tahoma(-11));
    plus->SetActiveFont(Tahoma(-11));
    plus->SetTag(DisableTag);
    targets.PlusPageControl = plus;
    auto* optionsLayout = new QVBoxLayout(options);
    optionsLayout->setContentsMargins(0, 0, 0, 0);
    optionsLayout->addWidget(plus);
    for (const WideString& caption : {WideString(u"Syntax "), WideString(u"Block && folding ")}) {
        auto* sheet = new TPlusTabSheet;
        sheet->SetCaption(caption);
        sheet->SetColor(0xFFFFFF);
        sheet->SetPageControl(plus);
    }
    auto* sheetLayout = new QVBoxLayout(plus->Pages(1));
    sheetLayout->setContentsMargins(0, 0, 0, 0);
    sheetLayout->setSpacing(0);
    TWgToolbar* bar = Toolbar(plus->Pages(1), &glyphs, {7, 9, 11, 10}, status);
    targets.Toolbars[0] = bar;
    sheetLayout->addWidget(bar);
    auto* memo = new QPlainTextEdit("Block rows stand here.");
    sheetLayout->addWidget(memo, 1);
    auto* syntaxLayout = new QVBoxLayout(plus->Pages(0));
    TWgToolbar* bar2 = Toolbar(plus->Pages(0), &glyphs, {7, 8, 11, 10}, status);
    targets.Toolbars[1] = bar2;
    syntaxLayout->setContentsMargins(0, 0, 0, 0);
    syntaxLayout->addWidget(bar2);
    syntaxLayout->addWidget(new QPlainTextEdit("Options rows stand here."), 1);

    auto* bottom = new QHBoxLayout;
    bottom->addWidget(status);
    layout->addLayout(bottom);

    ApplyPlainPalette(PlainWindowPalette(), targets);
    pages->SetActivePage(0);
    plus->SetActivePageIndex(plusPage);

    QCursor::setPos(3000, 3000); // away from the bar, so nothing is hot
    form.show();
    if (screenshot.isEmpty()) return app.exec();

    app.processEvents();
    QImage image = form.grab().toImage();
    if (openMenu) {
        menuBar->setFocus();
        form.activateWindow();
        QApplication::setActiveWindow(&form);
        // Alt+F as the user would press it.
        QKeyEvent altDown(QEvent::KeyPress, Qt::Key_Alt, Qt::AltModifier);
        QApplication::sendEvent(&form, &altDown);
        QKeyEvent fDown(QEvent::KeyPress, Qt::Key_F, Qt::AltModifier, "f");
        QApplication::sendEvent(&form, &fDown);
        app.processEvents();
        if (TWgPopupMenu* popup = menuBar->OpenPopup()) {
            QKeyEvent down(QEvent::KeyPress, Qt::Key_Down, Qt::NoModifier);
            QApplication::sendEvent(popup, &down);
            app.processEvents();
            image = form.grab().toImage();
            QPainter painter(&image);
            painter.drawPixmap(form.mapFromGlobal(popup->geometry().topLeft()), popup->grab());
        } else {
            std::fprintf(stderr, "the File menu did not open\n");
        }
    }
    if (!image.save(screenshot)) {
        std::fprintf(stderr, "cannot write %s\n", screenshot.toLocal8Bit().constData());
        return 1;
    }
    return 0;
}
