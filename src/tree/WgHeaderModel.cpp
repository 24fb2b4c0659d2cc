#include "tree/WgHeaderModel.h"

#include "controls/WgIni.h"
#include "tree/WgTreeErrors.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <string>

namespace {
constexpr int DividerHalfWidth = 5;
constexpr int DragThreshold = 5;
constexpr int MinHeaderHeight = 17;
// Vertical band of the expand and lookup buttons, and of the filter button.
constexpr int ButtonTop = 3, ButtonBottom = 12;
constexpr int FilterTop = 12, FilterBottom = 16;
} // namespace

TColor DragShadeColor(TColor RGB, int Limit) {
    int v = int((RGB >> 8) & 0xFF);
    v -= v / 4;
    v = std::min(v, Limit);
    return TColor(v | (v << 8) | (v << 16));
}

TWgHeaderModel::TWgHeaderModel() : FSections(std::make_unique<TWgHeaderSections>(this)) {}
TWgHeaderModel::~TWgHeaderModel() = default;

// ---- notifications from the sections

void TWgHeaderModel::Repaint(TWgHeaderSection* Section) {
    if (FHost) FHost->InvalidateSection(Section);
}

void TWgHeaderModel::SectionChanged(TWgHeaderSection* Section, TSectionChangeMode Change) {
    if (OnSectionChange) OnSectionChange(*this, Section, Change);
}

void TWgHeaderModel::SectionWidthChanged(TWgHeaderSection* Section) {
    if (FStickySections && !FSizingHeader) RecalcStickyShares();
    SectionChanged(Section, scmWidth);
    InvalidateRight(Section->Position());
}

void TWgHeaderModel::SectionCreated(TWgHeaderSection* Section) {
    if (FUpdateCount > 0) {
        FPendingCreate = true;
        return;
    }
    if (OnSectionCreate) OnSectionCreate(*this, Section);
}

void TWgHeaderModel::SectionDeleted(TWgHeaderSection* Section) {
    if (FLockedSection == Section) FLockedSection = nullptr;
    if (FHotSection == Section) FHotSection = nullptr;
    if (FPressSection == Section) FPressSection = nullptr;
    if (FUpdateCount > 0) {
        FPendingDelete = true;
        return;
    }
    if (OnSectionDelete) OnSectionDelete(*this, Section);
}

void TWgHeaderModel::EndUpdate() {
    if (FUpdateCount > 0 && --FUpdateCount == 0) {
        // Pending notifications were held as flags and name no section. The
        // flags go first, so that a handler that takes the lock again does
        // not fire them a second time.
        const bool created = FPendingCreate, deleted = FPendingDelete;
        FPendingCreate = FPendingDelete = false;
        if (created && OnSectionCreate) OnSectionCreate(*this, nullptr);
        if (deleted && OnSectionDelete) OnSectionDelete(*this, nullptr);
        Repaint(nullptr);
    }
}

void TWgHeaderModel::InvalidateRight(int Position) {
    if (Position < 0 || Position >= FSections->Count())
        throw EWgHeaderError(WgTreeMessages::SIndexOutOfBounds);
    if (FHost) FHost->InvalidateRight(Position);
}

void TWgHeaderModel::SortModeChanged(TWgHeaderSection* Section) {
    if (Section->ShowSortMark) Repaint(nullptr);
}

// ---- geometry

int TWgHeaderModel::ScreenLeft(const TWgHeaderSection* Section) const {
    return Section->Left() - (Section == FLockedSection ? 0 : FLeftPos);
}

int TWgHeaderModel::SectionsWidth() const {
    const TWgHeaderSections& s = *FSections;
    for (int i = s.Count() - 1; i >= 0; --i) {
        const TWgHeaderSection* section = s.GetSectionByPos(i);
        if (section->Visible() && (section != FLockedSection || s.Count() == 1))
            return section->Right();
    }
    return 0;
}

TRect TWgHeaderModel::GetSectionRect(int Index) const {
    const TWgHeaderSection* section = FSections->GetSection(Index);
    if (!section) return TRect{};
    return TRect{section->Left(), 0, section->Right(), FHeight};
}

TWgHeaderSection* TWgHeaderModel::GetSectionAt(int X, int Y) const {
    if (Y < 0 || Y > FHeight) return nullptr;
    if (FLockedSection && FLockedSection->Visible() && X >= 0 && X < FLockedSection->Width())
        return FLockedSection;
    const int x = X + FLeftPos;
    int sum = 0;
    for (int i = 0; i < FSections->Count(); ++i) {
        TWgHeaderSection* section = FSections->GetSectionByPos(i);
        if (!section->Visible()) continue;
        sum += section->Width();
        if (sum > x) return section;
    }
    return nullptr;
}

bool TWgHeaderModel::GetResizableSectionAt(int X, TWgHeaderSection*& Section) const {
    bool zone = false;
    TWgHeaderSection* s = GetSectionAt(X, 0);
    if (s) {
        Section = s;
        if (s->Width() < 15) return false;
        const int left = ScreenLeft(s);
        if (X >= left + DividerHalfWidth) {
            zone = X >= left + s->Width() - DividerHalfWidth;
        } else if (TWgHeaderSection* prev = FSections->GetPrevVisibleSection(s)) {
            Section = prev;
            zone = true;
        }
    } else {
        s = FSections->LastVisibleSection();
        Section = s;
        if (s && X < ScreenLeft(s) + s->Width() + DividerHalfWidth) zone = true;
    }
    return zone && Section && Section->Resizable;
}

TWgHeaderSection* TWgHeaderModel::GetSectionAtEx(int X, int Y, TWgHeaderPart& Part) const {
    TWgHeaderSection* section = nullptr;
    if (GetResizableSectionAt(X, section)) {
        Part = hpDivider;
        return section;
    }
    section = GetSectionAt(X, Y);
    Part = hpBody;
    if (!section) return nullptr;
    const int e = ScreenLeft(section) + section->Width() - 4;
    const bool buttonBand = Y >= ButtonTop && Y <= ButtonBottom;
    if (section->Expandable && section->Width() > 14 && X >= e - 7 && X <= e && buttonBand)
        Part = hpExpand;
    else if (section->LookupEnabled() && section->Width() > 14 && X >= e - 7 && X <= e &&
             buttonBand)
        Part = hpLookup;
    else if (section->FilterEnabled && section->Width() > 9) {
        const int f = (section->Expandable || section->LookupEnabled()) ? e - 8 : e;
        if (X >= f - 6 && X <= f && Y >= FilterTop && Y <= FilterBottom) Part = hpFilter;
    }
    return section;
}

int TWgHeaderModel::CalcHeaderHeight() const {
    int height = MinHeaderHeight;
    for (int i = 0; i < FSections->Count(); ++i) {
        const TWgHeaderSection* section = FSections->GetSectionByPos(i);
        if (section->Visible() && section->Style == elhsText && MeasureText)
            height =
                std::max(height, MeasureText(section->Text(), section->Width(), WrapCaptions) + 4);
    }
    if (ImageHeight > 0) height = std::max(height, ImageHeight + 4);
    if (!Flat) height += 2;
    return height;
}

int TWgHeaderModel::MeasureSectionWidth(const TWgHeaderSection* Section) const {
    if (!Section) return 0;
    // Edges and the caption's margins, then what the painter puts beside it.
    int width = 2 + 6;
    if (MeasureTextWidth && Section->Style != elhsPictureOnly && Section->Style != elhsImageIndex)
        width += MeasureTextWidth(Section->Text());
    if (Section->ImageIndex() >= 0 && ImageWidth > 0) width += ImageWidth + 4;
    if (Section->Expandable || Section->LookupEnabled()) width += 4 + 8;
    const bool sortMark = Section->SortMode() != hsmNone && Section->ShowSortMark;
    if (sortMark) width += 9 + 3;
    if (Section->FilterEnabled && !sortMark) width += 6;
    return width;
}

int TWgHeaderModel::InitialHeight(int FontHeight) {
    // Room for the caption with a line of air above and below it.
    const int h = std::abs(FontHeight);
    return h + 6 + h / 4;
}

void TWgHeaderModel::Loaded() {
    for (int i = 0; i < FSections->Count(); ++i) {
        TWgHeaderSection* s = FSections->GetSectionByPos(i);
        if (!s->PopupName().empty() && FindPopupMenu)
            s->SetPopupMenu(FindPopupMenu(s->PopupName()));
    }
    if (FStickySections) RecalcStickyShares();
    UpdateHeight();
    Repaint(nullptr);
}

namespace {
AnsiString SectionKey(const AnsiString& Base, char Delimiter, int Position) {
    // A flat store has no delimiter of its own; its keys take the usual one.
    return Base + (Delimiter ? Delimiter : '\\') + "Section" + std::to_string(Position);
}
} // namespace

bool TWgHeaderModel::Save() const {
    if (!Storage) return false;
    const AnsiString base = StoragePath + "WgHeader";
    bool written = true;
    for (int i = 0; i < FSections->Count(); ++i) {
        const TWgHeaderSection* s = FSections->GetSectionByPos(i);
        const AnsiString key = SectionKey(base, Storage->Delimiter(), i);
        written = Storage->WriteInteger(key, "Section", s->SectionIndex()) && written;
        written = Storage->WriteInteger(key, "Width", s->Width()) && written;
        written = Storage->WriteBool(key, "Visible", s->OwnVisible()) && written;
        written = Storage->WriteBool(key, "Expanded", s->Expanded()) && written;
        written = Storage->WriteInteger(key, "Align", int(s->Alignment)) && written;
    }
    return written;
}

bool TWgHeaderModel::Restore() {
    if (!Storage) return false;
    const AnsiString base = StoragePath + "WgHeader";
    // One record per position the header has; a record that names no
    // column of this header, or gives values out of range, changes nothing.
    const int count = FSections->Count();
    BeginUpdate();
    for (int i = 0; i < count; ++i) {
        const AnsiString key = SectionKey(base, Storage->Delimiter(), i);
        if (!Storage->KeyExists(key)) continue;
        TWgHeaderSection* s =
            FSections->FindSectionByIndex(Storage->ReadInteger(key, "Section", -1));
        if (!s) continue;
        FSections->MoveSection(s, i);
        s->SetWidth(Storage->ReadInteger(key, "Width", s->Width()));
        s->SetVisible(Storage->ReadBool(key, "Visible", s->OwnVisible()));
        s->SetExpanded(Storage->ReadBool(key, "Expanded", s->Expanded()));
        const int align = Storage->ReadInteger(key, "Align", int(s->Alignment));
        if (align >= hsaLeft && align <= hsaRight) s->SetAlignment(TWgSAlignment(align));
    }
    EndUpdate();
    return true;
}

void TWgHeaderModel::UpdateHeight() {
    if (!LockHeight) FHeight = CalcHeaderHeight();
}

// ---- sticky sections

void TWgHeaderModel::SetStickySections(bool Value) {
    if (Value == FStickySections) return;
    FStickySections = Value;
    if (Value) RecalcStickyShares();
}

void TWgHeaderModel::RecalcStickyShares() {
    int fixed = 0;
    for (int i = 0; i < FSections->Count(); ++i) {
        const TWgHeaderSection* s = FSections->GetSectionByPos(i);
        if (s->Visible() && !s->Resizable) fixed += s->Width();
    }
    int available = FWidth - fixed;
    if (available == 0) available = 1;
    for (int i = 0; i < FSections->Count(); ++i) {
        TWgHeaderSection* s = FSections->GetSectionByPos(i);
        s->StickyShare =
            (s->Visible() && s->Resizable) ? float(s->Width()) / float(available) : 0.0f;
    }
}

void TWgHeaderModel::Resize(int NewWidth) {
    const int old = FWidth;
    FWidth = NewWidth;
    if (!FStickySections) return;
    FSizingHeader = true;
    if (NewWidth > old) {
        int room = NewWidth - old;
        for (int i = 0; i < FSections->Count() && room > 0; ++i) {
            TWgHeaderSection* s = FSections->GetSectionByPos(i);
            if (s->SavedWidth < 0 || !s->Visible()) continue;
            const int add = std::min(s->SavedWidth - s->Width(), room);
            s->SetStoredWidth(s->Width() + add);
            room -= add;
            if (s->Width() >= s->SavedWidth) s->SavedWidth = -1;
        }
    }
    int fixed = 0;
    for (int i = 0; i < FSections->Count(); ++i) {
        const TWgHeaderSection* s = FSections->GetSectionByPos(i);
        if (s->Visible() && !s->Resizable) fixed += s->Width();
    }
    const int available = NewWidth - fixed;
    for (int i = 0; i < FSections->Count(); ++i) {
        TWgHeaderSection* s = FSections->GetSectionByPos(i);
        if (s->Visible() && s->Resizable)
            s->SetStoredWidth(int(std::lround(double(available) * s->StickyShare)));
    }
    AdjustStickySize(nullptr);
    FSizingHeader = false;
    Repaint(nullptr);
}

void TWgHeaderModel::AdjustStickySize(TWgHeaderSection* Section) {
    auto sum = [&] {
        int total = 0;
        for (int i = 0; i < FSections->Count(); ++i)
            if (const TWgHeaderSection* s = FSections->GetSectionByPos(i); s->Visible())
                total += s->Width();
        return total;
    };
    const int client = FWidth;
    // Cuts the last fitting section down towards the client width.
    auto squeeze = [&](bool Others, bool KeepSaved) {
        while (sum() >= client) {
            TWgHeaderSection* victim = nullptr;
            for (int i = FSections->Count() - 1; i >= 0 && !victim; --i) {
                TWgHeaderSection* s = FSections->GetSectionByPos(i);
                if (!s->Visible() || s->Width() < 1) continue;
                const bool plain = s->Resizable && s != Section;
                if (plain != Others) victim = s;
            }
            if (!victim) return;
            if (KeepSaved && victim->SavedWidth < 0) victim->SavedWidth = victim->Width();
            victim->SetStoredWidth(std::max(0, victim->Width() - (sum() - client) - 1));
        }
    };
    squeeze(false, false);
    squeeze(true, true);
    for (int i = 0; i < FSections->Count() && sum() < client - 1; ++i) {
        TWgHeaderSection* s = FSections->GetSectionByPos(i);
        if (!s->Visible() || s->SavedWidth < 0) continue;
        const int add = std::min(s->SavedWidth - s->Width(), client - 1 - sum());
        s->SetStoredWidth(s->Width() + add);
        if (s->Width() >= s->SavedWidth) s->SavedWidth = -1;
    }
    const int rest = client - 1 - sum();
    if (rest > 0)
        for (int i = FSections->Count() - 1; i >= 0; --i) {
            TWgHeaderSection* s = FSections->GetSectionByPos(i);
            if (s->Visible() && s->Resizable && s != Section) {
                s->SetStoredWidth(s->Width() + rest);
                break;
            }
        }
}

void TWgHeaderModel::SectionVisibilityChanged(TWgHeaderSection* Section, int OldWidth) {
    if (FStickySections && FWidth > 0) {
        // The sections after it (or before it, when it is the last) take up
        // or give back its width in proportion.
        const int position = Section->Position();
        bool after = false;
        for (int i = position + 1; i < FSections->Count(); ++i)
            after = after || FSections->GetSectionByPos(i)->Visible();
        std::vector<TWgHeaderSection*> group;
        int oldAvailable = 0;
        for (int i = 0; i < FSections->Count(); ++i) {
            TWgHeaderSection* s = FSections->GetSectionByPos(i);
            if (s == Section || !s->Visible() || !s->Resizable ||
                (after ? i < position : i > position))
                continue;
            group.push_back(s);
            oldAvailable += s->Width();
        }
        const int newAvailable = oldAvailable + (Section->OwnVisible() ? -OldWidth : OldWidth);
        if (oldAvailable > 0 && newAvailable > 0) {
            FSizingHeader = true;
            for (TWgHeaderSection* s : group)
                s->SetStoredWidth(
                    int(std::lround(double(s->Width()) * newAvailable / oldAvailable)));
            AdjustStickySize(Section);
            FSizingHeader = false;
        }
    }
    if (OnSectionShowHide) OnSectionShowHide(*this, Section);
    Repaint(nullptr);
}

// ---- mouse

void TWgHeaderModel::CloseLookup(bool Accepted) {
    TWgHeaderSection* section = FLookupSection;
    if (!section) return;
    FLookupSection = nullptr;
    const WideString text = FHost ? FHost->CloseLookup() : WideString();
    if (OnHeaderLookupDone) OnHeaderLookupDone(*this, section, text, Accepted);
}

void TWgHeaderModel::MouseDown(int X, int Y) {
    if (FDesigning) return;
    if (FLookupSection) {
        CloseLookup(true);
        return;
    }
    TWgHeaderSection* section = nullptr;
    if (GetResizableSectionAt(X, section)) {
        FResizeSection = section;
        FHotSection = nullptr;
        if (FHost) FHost->SetCapture(true);
        FDragX = ScreenLeft(section) + section->Width();
        FDragOffset = X - FDragX;
        if (!ResizeOnDrag && FHost) FHost->DrawResizeLine(FDragX);
        if (OnSectionResizing) OnSectionResizing(*this, section, trsBegin, section->Width());
        return;
    }
    FPressPoint = {X, Y};
    FPressed = true;
    section = GetSectionAt(X, Y);
    FPressSection = section;
    if (!section) return;
    const int e = ScreenLeft(section) + section->Width() - 4;
    const bool buttonBand = Y >= ButtonTop && Y <= ButtonBottom;
    bool used = false;
    if (section->Expandable && section->Width() > 14 && X >= e - 7 && X <= e && buttonBand) {
        section->SetExpanded(!section->Expanded());
        const auto& event = section->Expanded() ? OnSectionExpand : OnSectionCollapse;
        if (event) event(*this, section);
        used = true;
    } else if (section->LookupEnabled() && section != FLockedSection && X >= e - 7 && X <= e &&
               buttonBand) {
        FLookupSection = section;
        if (FHost) FHost->OpenLookup(section);
        used = true;
    } else if (section->FilterEnabled && section->Width() > 9) {
        const int f = (section->Expandable || section->LookupEnabled()) ? e - 8 : e;
        if (X >= f - 6 && X <= f && Y >= FilterTop && Y <= FilterBottom) {
            if (OnFilterCall) OnFilterCall(*this, section);
            used = true;
        }
    }
    if (!used && section->AllowClick)
        Repaint(section);
    else
        FPressSection = nullptr;
}

void TWgHeaderModel::MouseMove(int X, int Y, bool LeftButtonDown) {
    if (TWgHeaderSection* s = FResizeSection) {
        const bool locked = s == FLockedSection;
        const int offset = locked ? 0 : -FLeftPos;
        if (s->Left() > X - offset - FDragOffset) return;
        if (FStickySections) {
            int right = 0;
            for (int i = s->Position() + 1; i < FSections->Count(); ++i)
                if (const TWgHeaderSection* r = FSections->GetSectionByPos(i);
                    r->Visible() && r->Resizable)
                    right += r->Width();
            if (X >= FWidth - right) return;
        }
        const int width = X - s->Left() - FDragOffset + (locked ? 0 : FLeftPos);
        if (width < s->MinWidth() || width > s->MaxWidth()) return;
        if (!ResizeOnDrag) {
            if (FHost) FHost->DrawResizeLine(FDragX);
            FDragX = X - FDragOffset;
            if (FHost) FHost->DrawResizeLine(FDragX);
        } else {
            s->SetWidth(width);
            FDragX = X - FDragOffset;
            if (FHost) {
                FHost->InvalidateRight(s->Position());
                FHost->UpdateNow();
            }
        }
        if (OnSectionResizing) OnSectionResizing(*this, s, trsMove, width);
        return;
    }
    if (TWgHeaderSection* s = FDragSection) {
        if (FHost) FHost->MoveDragImage(X - FDragGrab);
        if (MoveOnDrag) {
            TWgHeaderSection* target = GetSectionAt(X, 0);
            const int x = X + FLeftPos;
            if (target != s) {
                const int from = s->Position();
                if (!target) {
                    if (x >= FSections->LastVisibleSection()->Right())
                        FSections->MoveSection(s, FSections->Count() - 1);
                } else if (target->Position() > from && x > target->Right() - s->Width()) {
                    FSections->MoveSection(s, target->Position());
                } else if (target->Position() < from && x < target->Left() + s->Width()) {
                    FSections->MoveSection(s, target->Position());
                }
            }
        }
        return;
    }
    if (LeftButtonDown && FPressed && AllowDrag && FPressSection &&
        FPressSection != FLockedSection) {
        const double dx = X - FPressPoint.X, dy = Y - FPressPoint.Y;
        if (std::sqrt(dx * dx + dy * dy) >= double(DragThreshold)) {
            TWgHeaderSection* s = FPressSection;
            FPressed = false;
            FPressSection = nullptr;
            Repaint(s);
            FDragSection = s;
            FDragGrab = FPressPoint.X - ScreenLeft(s);
            if (FHost) {
                FHost->BeginDragImage(s);
                FHost->SetCapture(true);
                FHost->MoveDragImage(X - FDragGrab);
            }
            return;
        }
    }
    if (Tracking && !LeftButtonDown) {
        TWgHeaderSection* hot = GetSectionAt(X, Y);
        if (hot != FHotSection) {
            TWgHeaderSection* old = FHotSection;
            FHotSection = hot;
            if (old) Repaint(old);
            if (hot) Repaint(hot);
        }
    }
}

void TWgHeaderModel::FinishResize() {
    TWgHeaderSection* s = FResizeSection;
    if (FHost) FHost->SetCapture(false);
    int width = s->Width();
    if (!ResizeOnDrag) {
        if (FHost) FHost->DrawResizeLine(FDragX);
        width = FDragX - s->Left() + (s == FLockedSection ? 0 : FLeftPos);
        s->SetWidth(width);
    }
    if (OnSectionResizing) OnSectionResizing(*this, s, trsEnd, width);
    if (OnSectionResize) OnSectionResize(*this, s);
    FResizeSection = nullptr;
    Repaint(nullptr);
}

void TWgHeaderModel::Drop(int X, int Y) {
    TWgHeaderSection* s = FDragSection;
    FDragSection = nullptr;
    TWgHeaderSection* target = GetSectionAt(X, Y);
    if (!target) target = GetSectionAt(X, 0);
    if (FHost) {
        FHost->EndDragImage();
        FHost->SetCapture(false);
    }
    FSections->MoveSection(s, target ? target->Position() : FSections->Count() - 1);
    Repaint(nullptr);
}

void TWgHeaderModel::MouseUp(int X, int Y) {
    if (FResizeSection) {
        FinishResize();
        return;
    }
    if (FDragSection) {
        Drop(X, Y);
        return;
    }
    const bool wasPressed = FPressed;
    FPressed = false;
    TWgHeaderSection* s = FPressSection;
    FPressSection = nullptr;
    if (!s || !wasPressed) return;
    Repaint(s);
    if (GetSectionAt(FPressPoint.X, FPressPoint.Y) == GetSectionAt(X, Y) && OnSectionClick)
        OnSectionClick(*this, s);
}

void TWgHeaderModel::CancelMode() {
    if (FResizeSection || FDragSection) MouseUp(0, -1);
}
