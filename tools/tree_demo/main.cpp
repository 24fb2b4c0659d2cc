// The options table on its own: 30 rows, "Option" and "Value", a text box
// for text values and a Yes/No combo box for the yes/no rows.

#include "base/ui/Application.h"
#include "tree/WgTreeItem.h"
#include "tree/WgTreeItems.h"
#include "tree/ui/WgTree.h"

#include <QComboBox>
#include <QPixmap>
#include <QStringList>
#include <QTimer>
#include <QVBoxLayout>
#include <QWidget>

#include <cstdio>

int main(int argc, char** argv) {
    TApplication app(argc, argv);
    QString shot;
    const QStringList args = QCoreApplication::arguments();
    const int at = args.indexOf(QStringLiteral("--screenshot"));
    if (at >= 0 && at + 1 < args.size()) shot = args[at + 1];

    QWidget form;
    form.setWindowTitle(QStringLiteral("Options"));
    auto* layout = new QVBoxLayout(&form);
    layout->setContentsMargins(4, 4, 4, 4);
    auto* tree = new TWgTree(&form);
    tree->setObjectName(QStringLiteral("WgTree1"));
    layout->addWidget(tree);

    const QString forms = QStringLiteral(LEXSMITH_RESOURCES "/forms/");
    if (!tree->LoadSectionsFile(forms + "WgTree1.HeaderSections.Data") ||
        !tree->LoadItemsFile(forms + "WgTree1.Items.Data")) {
        std::fprintf(stderr, "tree_demo: cannot read the form data in %s\n", qPrintable(forms));
        return 1;
    }
    TCustomWgTree& t = tree->Tree();
    tree->SetShowColumns(true);
    t.QuickEditMode = true;
    t.FullRowSelect = false;
    t.ShowLeafButton = false;
    t.SetItemIndent(8);
    tree->SetTreeFont("Tahoma", 11);
    tree->SetLineHeight(15);
    tree->SetHeaderHeight(17);
    tree->SetFlat(true);
    t.BkColor = clWhite;
    t.TextColor = clBtnText;
    t.LinesColor = clBtnShadow;
    t.DisplayChanged();

    // A few values, as an opened file would give them.
    const struct {
        int Row;
        const char16_t* Text;
    } values[] = {{0, u"//"}, {8, u"Yes"}, {11, u"+-*/=<>"}};
    for (const auto& v : values)
        if (TWgTreeItem* item = t.Items().Item(v.Row)) {
            item->ColumnText().Clear();
            item->ColumnText().Add(v.Text);
        }

    TWgTreeInplaceEdit edit(&form);
    edit.SetTree(tree);
    edit.OnAfterOperation = [](TWgTreeInplaceEditor&, bool& Accepted, bool&) { Accepted = true; };
    TWgTreeInplaceComboBox combo(&form);
    combo.SetTree(tree);
    combo.DefaultValueAsText = u"No";
    combo.InitiallyDropped = false;
    combo.Editor()->addItems({QStringLiteral("Yes"), QStringLiteral("No")});
    combo.OnAfterOperation = [](TWgTreeInplaceEditor&, bool& Accepted, bool&) { Accepted = true; };
    tree->OnTryEdit = [](TWgTree&, TWgTreeItem* Item, int SectionIndex, TWgFieldType& CellType,
                         bool&) {
        if (SectionIndex == 1 && Item->Tag() == 8)
            CellType = sftEnum;
        else if (SectionIndex == 1 && Item->Tag() == 1)
            CellType = sftText;
    };

    form.resize(300, 420);
    form.show();
    if (!shot.isEmpty()) {
        // Open an editor so that the picture shows one in place.
        QTimer::singleShot(0, &form, [&] {
            tree->EditItem(t.Items().Item(13), 1);
            QTimer::singleShot(0, &form, [&] {
                const bool saved = form.grab().save(shot, "PNG");
                if (!saved) std::fprintf(stderr, "tree_demo: cannot write %s\n", qPrintable(shot));
                app.exit(saved ? 0 : 1);
            });
        });
    }
    return app.exec();
}
