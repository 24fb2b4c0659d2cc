#include "tree/WgCellStyle.h"

#include "tree/WgTreeItem.h"
#include "tree/WgTreeModel.h"

TWgCellStyle::~TWgCellStyle() = default;

void TWgCellStyle::Assign(const TWgCellStyle& Source) {
    if (&Source == this) return;
    FTag = Source.FTag;
    FCellBkColor = Source.FCellBkColor;
    FTextBkColor = Source.FTextBkColor;
    FTextColor = Source.FTextColor;
    FTextFlags = Source.FTextFlags;
    FPicture = Source.FPicture;
    FCellType = Source.FCellType;
    FStyle = Source.FStyle;
    FOwnerProps = Source.FOwnerProps;
    FFontSize = Source.FFontSize;
    FFontStyles = Source.FFontStyles;
    FFontName = Source.FFontName;
    FUseBkColor = Source.FUseBkColor;
}

void TWgCellStyle::Changed(TChangeKind Kind) {
    if (!FOwner || !FOwner->UseStyles()) return;
    // Text and font do not show in a cell that draws no text, and the
    // picture only shows in a picture-only cell.
    if ((Kind == ckTextOrFont || Kind == ckFontMetrics) && FStyle != elhsText) return;
    if (Kind == ckPicture && FStyle != elhsPictureOnly) return;
    FOwner->RepaintItem();
    if (Kind == ckFontMetrics) {
        TWgTreeModel* tree = FOwner->Owner();
        if (tree && tree->ShowColumns() && !tree->IsLocked() && tree->VirtualityLevel() == vlNone &&
            tree->View())
            tree->View()->AutoSizeAllSections();
    }
}

#define LEXSMITH_STYLE_SETTER(Name, Type, Field, Kind)                                             \
    void TWgCellStyle::Set##Name(Type Value) {                                                     \
        if (Field == Value) return;                                                                \
        Field = Value;                                                                             \
        Changed(Kind);                                                                             \
    }

LEXSMITH_STYLE_SETTER(CellBkColor, TColor, FCellBkColor, ckPlain)
LEXSMITH_STYLE_SETTER(TextBkColor, TColor, FTextBkColor, ckTextOrFont)
LEXSMITH_STYLE_SETTER(TextColor, TColor, FTextColor, ckTextOrFont)
LEXSMITH_STYLE_SETTER(TextFlags, std::uint32_t, FTextFlags, ckTextOrFont)
LEXSMITH_STYLE_SETTER(Picture, std::uintptr_t, FPicture, ckPicture)
LEXSMITH_STYLE_SETTER(CellType, TWgFieldType, FCellType, ckPlain)
LEXSMITH_STYLE_SETTER(Style, TWgSectionStyle, FStyle, ckPlain)
LEXSMITH_STYLE_SETTER(OwnerProps, bool, FOwnerProps, ckPlain)
LEXSMITH_STYLE_SETTER(FontSize, std::int32_t, FFontSize, ckFontMetrics)
LEXSMITH_STYLE_SETTER(FontStyles, std::uint8_t, FFontStyles, ckFontMetrics)
LEXSMITH_STYLE_SETTER(FontName, const AnsiString&, FFontName, ckTextOrFont)
LEXSMITH_STYLE_SETTER(UseBkColor, bool, FUseBkColor, ckPlain)

#undef LEXSMITH_STYLE_SETTER
