#include "skin/ui/manager.h"

#include "base/ui/Messages.h"
#include "base/ui/Tag.h"
#include "skin/manager.h"
#include "skin/ui/data.h"
#include "skin/ui/form.h"
#include "skin/ui/menu.h"

#include "controls/ui/WgMenuBar.h"

#include <QApplication>
#include <QEvent>
#include <QWidget>

#include <algorithm>

// Multiple-document windows, windows of other modules or threads, and
// windows with no widget behind them have no counterpart here: every window
// the filter sees is one of our widgets.

namespace {

QPointer<TSkinManage>& TheManager() {
    static QPointer<TSkinManage> manager;
    return manager;
}

// Windows that are no forms: menus, tool tips, splash screens, combo box
// lists and other frameless helpers.
bool IsForm(const QWidget* Window) {
    if (!Window->isWindow()) return false;
    const Qt::WindowType type = Window->windowType();
    if (type != Qt::Window && type != Qt::Dialog) return false;
    return !Window->windowFlags().testFlag(Qt::FramelessWindowHint) ||
           TSkinManage::IsSkinned(Window);
}

} // namespace

TSkinManage::TSkinManage() : QObject(qApp) {
    Timer.setInterval(100);
    Timer.setSingleShot(true);
    connect(&Timer, &QTimer::timeout, this, &TSkinManage::OnTimer);
    TWgMenuBar::OnMenuTracking = [](QWidget* Form, bool Opening) {
        if (TSkinManage::Exists()) TSkinManage::Instance().MainMenuTracking(Form, Opening);
    };
}

TSkinManage& TSkinManage::Instance() {
    QPointer<TSkinManage>& manager = TheManager();
    if (!manager) manager = new TSkinManage();
    return *manager;
}

bool TSkinManage::Exists() {
    return !TheManager().isNull();
}

void TSkinManage::SetHook() {
    if (FHooked) return;
    qApp->installEventFilter(this);
    FHooked = true;
}

void TSkinManage::Unhook() {
    if (!FHooked) return;
    qApp->removeEventFilter(this);
    FHooked = false;
}

void TSkinManage::AddData(TSkinData* Data) {
    if (std::find(DataList.begin(), DataList.end(), Data) != DataList.end()) return;
    DataList.push_back(Data);
    if (!MainData && Data->SkinFormtype == sfMainform) MainData = Data;
}

void TSkinManage::RemoveData(TSkinData* Data) {
    DataList.erase(std::remove(DataList.begin(), DataList.end(), Data), DataList.end());
    if (MainData == Data) {
        MainData = nullptr;
        for (TSkinData* d : DataList)
            if (d->SkinFormtype == sfMainform) {
                MainData = d;
                break;
            }
    }
    if (CurrentData == Data) CurrentData = nullptr;
    RemoveMenus(Data);
    // Form skins drawn from this data cannot outlive it.
    for (std::size_t i = FormList.size(); i-- > 0;)
        if (&FormList[i]->Skin() == Data) {
            if (!FormList[i]->Dead()) FormList[i]->Detach();
            RemoveForm(i);
        }
}

bool TSkinManage::IsSkinned(const QWidget* Window) {
    return Window && Window->property("SkinnedForm").toBool();
}

TVeneerForm* TSkinManage::FindForm(const QWidget* Window) const {
    for (const auto& form : FormList)
        if (!form->Dead() && form->Form() == Window) return form.get();
    return nullptr;
}

TDataList TSkinManage::Entries() const {
    // The core decides; a data's own form filter, when set, decides alone.
    TDataList list;
    list.reserve(DataList.size());
    for (TSkinData* data : DataList) {
        TDataEntry entry;
        entry.Data = data;
        entry.OwnerHandle = reinterpret_cast<std::uintptr_t>(data->OwnerForm());
        if (data->OnFormSkin)
            entry.OnFormSkin = [data](const AnsiString& Name, bool& DoSkin) {
                data->OnFormSkin(data, Name, DoSkin);
            };
        list.push_back(std::move(entry));
    }
    return list;
}

bool TSkinManage::AddForm(QWidget* Window) {
    if (!Window) return false;
    // Menus, tool tips and the like are never forms, not even in a sweep.
    if (Window->isWindow() && !IsForm(Window)) {
        FLastRefusal = 3;
        return false;
    }
    if (Active) Sweep();
    TWindowDesc desc;
    desc.Handle = reinterpret_cast<std::uintptr_t>(Window);
    desc.ClassName = TVeneerForm::ClassNameOf(Window);
    desc.AnswersProbe = IsSkinned(Window);
    desc.Listed = FindForm(Window) != nullptr;
    desc.HasForm = true;
    desc.FormTag = TagOf(Window);
    desc.IsChild = !Window->isWindow();
    if (QWidget* parent = Window->parentWidget())
        desc.ParentClass = parent->metaObject()->className();
    desc.Area = std::int64_t(Window->width()) * Window->height();
    const TDataList list = Entries();
    const TAddFormResult result = DecideAddForm(desc, {Active, Scanning}, list);
    FLastRefusal = result.FailedTest;
    if (!result.Accepted()) return false;
    auto* data = static_cast<TSkinData*>(const_cast<TSkinDataModel*>(result.Data->Data));

    auto form = std::make_unique<TVeneerForm>(*data);
    TVeneerForm* veneer = form.get();
    FormList.push_back(std::move(form));
    veneer->SetupWithForm(Window);
    PostPrivateMessage(Window, 13571, 0, 1000);
    return true;
}

bool TSkinManage::AddMenu(QWidget* Window) {
    if (!Active || !IsMenuWindow(Window) || FindMenu(Window)) return false;
    // A sub-menu looks like the menu it opens from, whatever opens next.
    for (QWidget* p = Window->parentWidget(); p; p = p->parentWidget())
        if (TVeneerPopMenu* parent = FindMenu(p)) {
            auto menu = std::make_unique<TVeneerPopMenu>(Window, parent->Data(), parent->Kind());
            menu->Update = MenuTracking;
            connect(Window, &QObject::destroyed, menu.get(),
                    [this, Window] { RemoveMenu(Window); });
            MenuList.push_back(std::move(menu));
            return true;
        }
    TWindowDesc desc;
    desc.Handle = reinterpret_cast<std::uintptr_t>(Window);
    desc.ClassName = Window->metaObject()->className();
    desc.AnswersProbe = IsSkinned(Window);
    desc.HasForm = true;
    desc.Area = std::int64_t(Window->width()) * Window->height();
    const int kind = MenuKind;
    const TDataList list = Entries();
    const TDataEntry* entry = DecideAddMenu(desc, {Active, Scanning}, kind, list);
    if (!entry) {
        // The kind was meant for this menu; the next one starts over.
        if (MenuList.empty()) MenuKind = 0;
        return false;
    }
    auto* data = static_cast<TSkinData*>(const_cast<TSkinDataModel*>(entry->Data));
    auto menu = std::make_unique<TVeneerPopMenu>(Window, *data, kind);
    menu->Update = MenuTracking;
    connect(Window, &QObject::destroyed, menu.get(), [this, Window] { RemoveMenu(Window); });
    MenuList.push_back(std::move(menu));
    return true;
}

void TSkinManage::RemoveMenu(QWidget* Window) {
    // Entries whose window is gone go too; they are never touched.
    DropMenus(
        [Window](const TVeneerPopMenu& Menu) { return Menu.Handle() == Window || !Menu.Handle(); });
}

void TSkinManage::RemoveMenus(const TSkinData* Data) {
    DropMenus([Data](const TVeneerPopMenu& Menu) { return !Data || &Menu.Data() == Data; });
}

void TSkinManage::DropMenus(const std::function<bool(const TVeneerPopMenu&)>& Which) {
    for (std::size_t i = MenuList.size(); i-- > 0;)
        if (Which(*MenuList[i])) {
            // Out of the list before it is destroyed: the list never holds a dying menu.
            std::unique_ptr<TVeneerPopMenu> menu = std::move(MenuList[i]);
            MenuList.erase(MenuList.begin() + std::ptrdiff_t(i));
        }
    if (MenuList.empty()) {
        MenuKind = 0;
        MenuTracking = false;
    }
}

TVeneerPopMenu* TSkinManage::FindMenu(const QWidget* Window) const {
    for (const auto& menu : MenuList)
        if (menu->Handle() == Window) return menu.get();
    return nullptr;
}

void TSkinManage::MainMenuTracking(QWidget* Form, bool Opening) {
    if (!Opening) {
        MenuTracking = false;
        if (MenuList.empty()) MenuKind = 0;
        return;
    }
    // The main menu of a form with a skinned frame; any other bar's menus
    // are plain pop-ups.
    const TVeneerForm* form = Form ? FindForm(Form->window()) : nullptr;
    const bool skinned = form && form->FormSkin;
    MenuKind = skinned ? 1 : 0;
    MenuTracking = skinned;
}

void TSkinManage::AddVisibleForm(QWidget* Form) {
    if (!Form || !Form->isVisible() || !Form->isWindow()) return;
    AddForm(Form);
}

void TSkinManage::Sweep() {
    for (std::size_t i = FormList.size(); i-- > 0;)
        if (FormList[i]->Dead()) RemoveForm(i);
}

void TSkinManage::RemoveForm(std::size_t Index) {
    // Taken out of the list first: the form skin's destructor may run code
    // that looks at the list.
    std::unique_ptr<TVeneerForm> form = std::move(FormList[Index]);
    FormList.erase(FormList.begin() + std::ptrdiff_t(Index));
    form.reset();
}

void TSkinManage::Post(int NewAction, int Delay) {
    Action = NewAction;
    Timer.setInterval(Delay);
    if (State != 0) {
        Timer.start();
        return;
    }
    // No form has come up yet: the first one will find the switch set.
    if (NewAction == saApply) Active = true;
    if (NewAction == saRemove) Active = false;
}

void TSkinManage::OnTimer() {
    Timer.stop();
    TSkinData* data = CurrentData;
    if (!data) return;
    const int action = Action;
    Action = saNone;
    switch (action) {
    case saApply:
        Apply();
        break;
    case saRemove:
        Remove();
        break;
    case saRefresh:
        RefreshForms();
        break;
    case saFreeDead:
        Sweep();
        break;
    case saReattach:
        Reattach();
        return;
    default:
        break;
    }
    if (CurrentData) CurrentData->DoSkinChanged();
    CurrentData = nullptr;
}

void TSkinManage::Apply() {
    TSkinData* data = CurrentData;
    Active = true;
    Scanning = true;
    Sweep();
    if (data->SkinFormtype == sfOnlyThisForm) {
        AddVisibleForm(data->OwnerForm());
    } else {
        const QWidgetList windows = QApplication::topLevelWidgets();
        for (auto it = windows.rbegin(); it != windows.rend(); ++it)
            AddVisibleForm(*it);
    }
    Scanning = false;
}

void TSkinManage::Remove() {
    TSkinData* data = CurrentData;
    Active = false;
    Sweep();
    RemoveMenus(data->SkinFormtype == sfOnlyThisForm ? data : nullptr);
    for (std::size_t i = 0; i < FormList.size();) {
        TVeneerForm* form = FormList[i].get();
        if (data->SkinFormtype == sfOnlyThisForm && &form->Skin() != data) {
            ++i;
            continue;
        }
        QWidget* window = form->Form();
        form->Detach();
        if (window) window->update();
        RemoveForm(i);
        if (data->SkinFormtype == sfOnlyThisForm) break;
    }
}

void TSkinManage::RefreshForms() {
    TSkinData* data = CurrentData;
    Sweep();
    for (auto& form : FormList)
        if (&form->Skin() == data) form->RebuildButtons();
    for (auto& form : FormList)
        if (&form->Skin() == data) form->Refresh();
}

void TSkinManage::Reattach() {
    QWidget* window = FormHandle;
    TVeneerForm* form = FindForm(window);
    if (!form) return;
    form->Detach();
    form->SkinState = ssDead;
    Sweep();
    AddForm(window);
}

bool TSkinManage::eventFilter(QObject* Watched, QEvent* Event) {
    // Cheap first: only three event types of windows matter.
    const QEvent::Type type = Event->type();
    if (type != QEvent::Show && type != QEvent::WindowActivate && type != QEvent::Hide)
        return false;
    if (!Watched->isWidgetType()) return false;
    auto* widget = static_cast<QWidget*>(Watched);
    if (!widget->isWindow()) return false;
    // Menu windows are reused: skinned each time they open, let go when they close.
    if (IsMenuWindow(widget)) {
        if (type == QEvent::Show && Active) AddMenu(widget);
        if (type == QEvent::Hide && !MenuList.empty()) RemoveMenu(widget);
        return false;
    }
    if (type == QEvent::Hide) return false;
    if (type == QEvent::WindowActivate && State == 0) State = 1;
    // A window is attached before it first maps, so that it never shows
    // its native frame; activation catches windows that were up already.
    if (Active) AddForm(widget);
    return false;
}
