#include "skin/ui/controlwalk.h"

#include "base/ui/Tag.h"
#include "skin/ui/control.h"
#include "skin/ui/data.h"
#include "skin/ui/form.h"
#include "skin/ui/scrollbar.h"

#include <QAbstractScrollArea>
#include <QAbstractSpinBox>
#include <QCheckBox>
#include <QComboBox>
#include <QDateTimeEdit>
#include <QFrame>
#include <QGroupBox>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QListView>
#include <QMenu>
#include <QMenuBar>
#include <QPlainTextEdit>
#include <QProgressBar>
#include <QPushButton>
#include <QRadioButton>
#include <QScrollArea>
#include <QScrollBar>
#include <QSlider>
#include <QStackedWidget>
#include <QStatusBar>
#include <QTabBar>
#include <QTabWidget>
#include <QTableView>
#include <QTextEdit>
#include <QTimeEdit>
#include <QToolBar>
#include <QToolButton>
#include <QTreeView>

#include <algorithm>
#include <cctype>
#include <cstring>
#include <unordered_map>

namespace {

bool IsOurClass(const char* Name) {
    return Name[0] == 'T' && std::isupper(static_cast<unsigned char>(Name[1]));
}

// A page of a tab widget sits in the tab widget's stack.
bool IsTabPage(const QWidget* W) {
    const QWidget* stack = W->parentWidget();
    return stack && qobject_cast<const QStackedWidget*>(stack) &&
           qobject_cast<const QTabWidget*>(stack->parentWidget());
}

// A control that paints a bar of its own children (our tree list).
bool HoldsScrollBars(const QWidget* W) {
    return !qobject_cast<const QAbstractScrollArea*>(W) &&
           !W->findChildren<QScrollBar*>(Qt::FindDirectChildrenOnly).isEmpty() &&
           IsOurClass(W->metaObject()->className());
}

// A control whose children are parts of it, not controls of the form.
bool IsCompound(const QWidget* W) {
    return qobject_cast<const QAbstractScrollArea*>(W) || qobject_cast<const QComboBox*>(W) ||
           qobject_cast<const QAbstractSpinBox*>(W) || qobject_cast<const QAbstractButton*>(W) ||
           qobject_cast<const QLineEdit*>(W) || qobject_cast<const QAbstractSlider*>(W) ||
           qobject_cast<const QProgressBar*>(W) || qobject_cast<const QLabel*>(W) ||
           qobject_cast<const QTabBar*>(W) || qobject_cast<const QMenuBar*>(W) ||
           qobject_cast<const QMenu*>(W) || HoldsScrollBars(W);
}

} // namespace

std::vector<AnsiString> FrameworkClasses(const QWidget* W) {
    std::vector<AnsiString> c;
    const char* own = W->metaObject()->className();
    if (IsOurClass(own)) c.emplace_back(own);
    auto add = [&](std::initializer_list<const char*> Names) {
        for (const char* n : Names)
            if (std::find(c.begin(), c.end(), n) == c.end()) c.emplace_back(n);
    };
    bool windowed = true;
    if (W->isWindow()) {
        add({"TForm", "TCustomForm", "TScrollingWinControl"});
    } else if (qobject_cast<const QPushButton*>(W)) {
        if (W->inherits("TUniBitBtn")) add({"TBitBtn"});
        add({"TButton", "TButtonControl"});
    } else if (qobject_cast<const QToolButton*>(W)) {
        add({qobject_cast<const QToolBar*>(W->parentWidget()) ? "TToolButton" : "TSpeedButton"});
        windowed = false;
    } else if (qobject_cast<const QCheckBox*>(W)) {
        add({"TCheckBox", "TCustomCheckBox", "TButtonControl"});
    } else if (qobject_cast<const QRadioButton*>(W)) {
        add({"TRadioButton", "TButtonControl"});
    } else if (qobject_cast<const QGroupBox*>(W)) {
        add({"TGroupBox", "TCustomGroupBox"});
    } else if (qobject_cast<const QDateTimeEdit*>(W)) {
        add({"TDateTimePicker"});
    } else if (qobject_cast<const QAbstractSpinBox*>(W)) {
        add({"TSpinEdit", "TCustomEdit"});
    } else if (qobject_cast<const QLineEdit*>(W)) {
        add({"TEdit", "TCustomEdit"});
    } else if (qobject_cast<const QPlainTextEdit*>(W) || qobject_cast<const QTextEdit*>(W)) {
        add({"TMemo", "TCustomMemo", "TCustomEdit"});
    } else if (qobject_cast<const QComboBox*>(W)) {
        add({"TComboBox", "TCustomComboBox"});
    } else if (qobject_cast<const QHeaderView*>(W)) {
        add({"THeaderControl"});
    } else if (qobject_cast<const QTreeView*>(W)) {
        add({"TTreeView", "TCustomTreeView"});
    } else if (qobject_cast<const QTableView*>(W)) {
        add({"TListView", "TCustomListView"});
    } else if (qobject_cast<const QListView*>(W)) {
        add({"TListBox", "TCustomListBox"});
    } else if (qobject_cast<const QScrollArea*>(W)) {
        add({"TScrollBox", "TScrollingWinControl"});
    } else if (qobject_cast<const QScrollBar*>(W)) {
        add({"TScrollBar"});
    } else if (qobject_cast<const QSlider*>(W)) {
        add({"TTrackBar"});
    } else if (qobject_cast<const QProgressBar*>(W)) {
        add({"TProgressBar"});
    } else if (qobject_cast<const QStatusBar*>(W)) {
        add({"TStatusBar", "TCustomStatusBar"});
    } else if (qobject_cast<const QTabWidget*>(W)) {
        add({"TPageControl", "TCustomTabControl"});
    } else if (qobject_cast<const QTabBar*>(W)) {
        add({"TTabControl", "TCustomTabControl"});
    } else if (qobject_cast<const QToolBar*>(W) || W->inherits("TWgToolbar")) {
        add({"TToolBar", "TToolWindow"});
    } else if (qobject_cast<const QLabel*>(W)) {
        add({"TLabel", "TGraphicControl"});
        windowed = false;
    } else if (IsTabPage(W)) {
        add({"TTabSheet"});
    } else if (auto* frame = qobject_cast<const QFrame*>(W);
               frame && (W->inherits("TWgPanel") || !std::strcmp(own, "QFrame")) &&
               frame->frameShape() != QFrame::HLine && frame->frameShape() != QFrame::VLine) {
        add({"TPanel", "TCustomPanel"});
    }
    if (windowed)
        add({"TWinControl", "TControl"});
    else
        add({"TControl"});
    return c;
}

std::vector<QWidget*> ControlChildren(const QWidget* W) {
    std::vector<QWidget*> out;
    if (auto* tabs = qobject_cast<const QTabWidget*>(W)) {
        for (int i = 0; i < tabs->count(); ++i)
            out.push_back(tabs->widget(i));
        return out;
    }
    if (auto* area = qobject_cast<const QScrollArea*>(W)) {
        if (area->widget()) out.push_back(area->widget());
        return out;
    }
    if (IsCompound(W)) return out;
    for (QObject* child : W->children()) {
        auto* w = qobject_cast<QWidget*>(child);
        if (!w || w->isWindow() || w->inherits("TVeneerFrame")) continue;
        // The stack of a tab widget's pages is part of it.
        if (qobject_cast<QStackedWidget*>(w) && qobject_cast<const QTabWidget*>(W)) continue;
        out.push_back(w);
    }
    return out;
}

std::unique_ptr<TWidgetDesc> DescribeControl(QWidget* W) {
    auto d = std::make_unique<TWidgetDesc>();
    d->Widget = W;
    d->Classes = FrameworkClasses(W);
    d->Tag = TagOf(W);
    d->Windowed =
        std::find(d->Classes.begin(), d->Classes.end(), "TGraphicControl") == d->Classes.end() &&
        !d->Is("TSpeedButton") && !d->Is("TToolButton");
    d->HasParent = W->parentWidget() != nullptr;
    d->ScrollStyle = qobject_cast<QAbstractScrollArea*>(W) || HoldsScrollBars(W);
    if (auto* edit = qobject_cast<QLineEdit*>(W)) d->FramedClient = edit->hasFrame();
    if (auto* spin = qobject_cast<QAbstractSpinBox*>(W)) d->FramedClient = spin->hasFrame();
    if (auto* frame = qobject_cast<QFrame*>(W)) d->FramedClient = frame->frameWidth() > 0;
    if (qobject_cast<QTabWidget*>(W)) d->Properties.emplace_back("Style", "tsTabs");
    if (auto* date = qobject_cast<QDateTimeEdit*>(W)) {
        d->Properties.emplace_back("DateMode", date->calendarPopup() ? "dmComboBox" : "dmUpDown");
        d->Properties.emplace_back("Kind", qobject_cast<QTimeEdit*>(W) ? "dtkTime" : "dtkDate");
    }
    if (auto* bar = qobject_cast<QScrollBar*>(W))
        d->Properties.emplace_back("Kind", bar->orientation() == Qt::Horizontal ? "sbHorizontal"
                                                                                : "sbVertical");
    for (QWidget* child : ControlChildren(W)) {
        d->Owned.push_back(DescribeControl(child));
        d->Children.push_back(d->Owned.back().get());
    }
    return d;
}

void FlattenDesc(TWidgetDesc& Root, std::vector<TWidgetDesc*>& Out) {
    Out.push_back(&Root);
    for (auto& child : Root.Owned)
        FlattenDesc(*child, Out);
}

// ---- the walk of a form

TSkinControl* TVeneerForm::FindControl(const QWidget* Control) const {
    for (const auto& skin : ControlList)
        if (skin->Control() == Control && skin->State == scsRunning) return skin.get();
    return nullptr;
}

void TVeneerForm::AttachControls() {
    if (Dead() || FSkin->Empty) return;
    std::unique_ptr<TWidgetDesc> root = DescribeControl(FForm);
    std::vector<TWidgetDesc*> all;
    FlattenDesc(*root, all);
    std::unordered_map<const TControlDesc*, TWidgetDesc*> byDesc;
    for (TWidgetDesc* d : all)
        byDesc[d] = d;

    TSkinContext context = SkinContextOf(*FSkin);
    context.FormSkin = FormSkin;
    if (FSkin->OnSkinControl)
        context.OnSkinControl = [&](const TControlDesc& Control, const AnsiString& Cls) {
            auto it = byDesc.find(&Control);
            return it != byDesc.end() && it->second->Widget
                       ? FSkin->OnSkinControl(it->second->Widget, Cls)
                       : nullptr;
        };

    // The form itself keeps the face colour its form skin gave it; the walk
    // covers what it holds.
    for (std::size_t i = 1; i < all.size(); ++i) {
        for (TWidgetDesc* d : all)
            d->Skinned = d->Widget && FindControl(d->Widget);
        for (const TSkinStep& step : DecideControlSkin(*all[i], context)) {
            auto it = byDesc.find(step.Control);
            QWidget* w = it != byDesc.end() ? it->second->Widget.data() : nullptr;
            if (!w) continue;
            switch (step.Kind) {
            case stCreate: {
                if (FindControl(w)) break;
                std::unique_ptr<TSkinControl> skin = TSkinControl::Create(step.Skin);
                if (!skin) break;
                skin->Member = step.SubKind;
                if (auto* bar = dynamic_cast<TSkinScrollbar*>(skin.get()))
                    bar->Single = step.Single;
                if (auto* bit = dynamic_cast<TSkinBitButton*>(skin.get()))
                    bit->PngGlyph = step.PngGlyph;
                TSkinControl* raw = skin.get();
                ControlList.push_back(std::move(skin));
                raw->InitSkin(this, FSkin, step.Flag == 1, w);
                break;
            }
            case stAddCustom: {
                if (!step.Custom || FindControl(w)) break;
                const bool listed =
                    std::any_of(ControlList.begin(), ControlList.end(),
                                [&](const auto& s) { return s.get() == step.Custom; });
                if (!listed) ControlList.emplace_back(step.Custom);
                step.Custom->InitSkin(this, FSkin, step.Custom->OwnColor, w);
                break;
            }
            case stSetTag:
                FControlUndo.push_back({w, "Tag", w->property("Tag")});
                SetTag(w, step.Tag);
                break;
            case stSetProperty: {
                // Only a property the control declares; no new ones.
                const QByteArray name = QByteArray::fromStdString(step.Name);
                if (w->metaObject()->indexOfProperty(name.constData()) < 0) break;
                FControlUndo.push_back({w, name, w->property(name.constData())});
                w->setProperty(name.constData(), QString::fromStdString(step.Value));
                break;
            }
            case stBandColours:
            case stMenuDraw:
            case stToolBarEvents:
                // Bands, tool-button menus and tool-bar draw events have no
                // counterpart among our widgets.
                break;
            }
        }
    }
}

void TVeneerForm::DetachControls() {
    // Last made, first undone.
    for (auto it = ControlList.rbegin(); it != ControlList.rend(); ++it)
        (*it)->Unsubclass();
    ControlList.clear();
    for (auto it = FControlUndo.rbegin(); it != FControlUndo.rend(); ++it)
        if (it->Object) it->Object->setProperty(it->Name.constData(), it->Value);
    FControlUndo.clear();
}

void TVeneerForm::RefreshControls() {
    for (const auto& skin : ControlList)
        if (skin->State == scsRunning) skin->SkinChange();
}
