#pragma once
// TWgCellStyle: the look of one cell of an item, and TWgCellControl, a small
// clickable element that a style may carry inside its cell.

#include "base/Types.h"
#include "tree/WgTypes.h"

#include <cstdint>
#include <functional>
#include <memory>

class TWgTreeItem;
class TWgCellStyle;

// Mouse buttons and shift state as the cell control's events pass them.
enum TWgMouseButton : std::uint8_t { mbLeft = 0, mbRight = 1, mbMiddle = 2 };
using TWgShiftState = std::uint8_t; // 1 Shift, 2 Alt, 4 Ctrl, 8 second press of a double click

class TWgCellControl {
public:
    using TNotifyEvent = std::function<void(TWgCellControl& Sender)>;
    using TMouseEvent = std::function<void(TWgCellControl& Sender, TWgMouseButton Button,
                                           TWgShiftState Shift, int X, int Y)>;
    using TMouseMoveEvent =
        std::function<void(TWgCellControl& Sender, TWgShiftState Shift, int X, int Y)>;

    explicit TWgCellControl(TWgCellStyle* Owner = nullptr) : FOwner(Owner) {}
    virtual ~TWgCellControl() = default;

    TWgCellStyle* Owner() const { return FOwner; }
    void* PopupMenu = nullptr;
    WideString Caption;
    bool Visible = true;
    bool Enabled = true;

    TNotifyEvent OnClick;
    TMouseEvent OnMouseDown;
    TMouseEvent OnMouseUp;
    TNotifyEvent OnDblClick;
    TMouseMoveEvent OnMouseMove;

private:
    TWgCellStyle* FOwner;
};

class TWgCellStyle {
public:
    // Single line, vertically centred, no prefix characters, ellipsis at the end.
    static constexpr std::uint32_t DefaultTextFlags = 0x8824;

    explicit TWgCellStyle(TWgTreeItem* Owner = nullptr) : FOwner(Owner) {}
    virtual ~TWgCellStyle();
    TWgCellStyle(const TWgCellStyle&) = delete;
    TWgCellStyle& operator=(const TWgCellStyle&) = delete;

    // Copies every value field; the owner and the cell control stay.
    void Assign(const TWgCellStyle& Source);

    TWgTreeItem* Owner() const { return FOwner; }
    std::int32_t Tag() const { return FTag; }
    void SetTag(std::int32_t Value) { FTag = Value; }
    TColor CellBkColor() const { return FCellBkColor; }
    void SetCellBkColor(TColor Value);
    TColor TextBkColor() const { return FTextBkColor; }
    void SetTextBkColor(TColor Value);
    TColor TextColor() const { return FTextColor; }
    void SetTextColor(TColor Value);
    std::uint32_t TextFlags() const { return FTextFlags; }
    void SetTextFlags(std::uint32_t Value);
    // An opaque picture reference; the stream stores it as a number and a
    // reloaded value must not be dereferenced until the application sets it.
    std::uintptr_t Picture() const { return FPicture; }
    void SetPicture(std::uintptr_t Value);
    TWgFieldType CellType() const { return FCellType; }
    void SetCellType(TWgFieldType Value);
    TWgSectionStyle Style() const { return FStyle; }
    void SetStyle(TWgSectionStyle Value);
    bool OwnerProps() const { return FOwnerProps; }
    void SetOwnerProps(bool Value);
    std::int32_t FontSize() const { return FFontSize; }
    void SetFontSize(std::int32_t Value);
    std::uint8_t FontStyles() const { return FFontStyles; }
    void SetFontStyles(std::uint8_t Value);
    const AnsiString& FontName() const { return FFontName; }
    void SetFontName(const AnsiString& Value);
    bool UseBkColor() const { return FUseBkColor; }
    void SetUseBkColor(bool Value);
    TWgCellControl* Control() const { return FControl.get(); }
    void SetControl(std::unique_ptr<TWgCellControl> Value) { FControl = std::move(Value); }

private:
    enum TChangeKind { ckPlain, ckTextOrFont, ckPicture, ckFontMetrics };
    void Changed(TChangeKind Kind);

    std::int32_t FTag = 0;
    TWgTreeItem* FOwner;
    TColor FCellBkColor = 0;
    TColor FTextBkColor = 0;
    TColor FTextColor = 0;
    std::uint32_t FTextFlags = DefaultTextFlags;
    std::uintptr_t FPicture = 0;
    TWgFieldType FCellType = sftText;
    TWgSectionStyle FStyle = elhsText;
    bool FOwnerProps = false;
    bool FUseBkColor = false;
    std::int32_t FFontSize = 0;
    std::uint8_t FFontStyles = 0;
    AnsiString FFontName;
    std::unique_ptr<TWgCellControl> FControl;
};
