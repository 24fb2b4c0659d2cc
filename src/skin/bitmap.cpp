#include "skin/bitmap.h"

#include <algorithm>
#include <bit>
#include <cstring>

namespace {

std::uint32_t U16(const std::uint8_t* p) {
    return std::uint32_t(p[0]) | (std::uint32_t(p[1]) << 8);
}
std::uint32_t U32(const std::uint8_t* p) {
    return std::uint32_t(p[0]) | (std::uint32_t(p[1]) << 8) | (std::uint32_t(p[2]) << 16) |
           (std::uint32_t(p[3]) << 24);
}

enum : std::uint32_t {
    BI_RGB = 0,
    BI_RLE8 = 1,
    BI_RLE4 = 2,
    BI_BITFIELDS = 3,
    BI_ALPHABITFIELDS = 6
};

// One colour channel of a bit-field pixel, scaled to eight bits.
struct TChannel {
    std::uint32_t Mask = 0;
    int Shift = 0;
    int Bits = 0;
    explicit TChannel(std::uint32_t M = 0) : Mask(M) {
        if (M) {
            Shift = std::countr_zero(M);
            Bits = std::bit_width(M >> Shift);
        }
    }
    std::uint32_t Get(std::uint32_t Px) const {
        if (!Mask) return 0;
        std::uint32_t v = (Px & Mask) >> Shift;
        if (Bits >= 8) return (v >> (Bits - 8)) & 0xFF;
        std::uint32_t max = (1u << Bits) - 1;
        return (std::min(v, max) * 255 + max / 2) / max;
    }
};

struct TBmpInfo {
    std::int64_t Width = 0, Height = 0;
    bool TopDown = false;
    int Bits = 0;
    std::uint32_t Compression = BI_RGB;
    std::vector<TPixel> Palette;
    TChannel Red, Green, Blue;
    std::size_t DataOffset = 0;
};

TPixel PaletteColor(const TBmpInfo& Info, unsigned Index) {
    return Index < Info.Palette.size() ? Info.Palette[Index] : 0xFF000000u;
}

bool ReadHeader(const std::uint8_t* D, std::size_t Size, TBmpInfo& Info) {
    if (Size < 26 || D[0] != 'B' || D[1] != 'M') return false;
    std::uint32_t offBits = U32(D + 10);
    std::uint32_t headerSize = U32(D + 14);
    std::size_t at = 14;
    bool core = headerSize == 12;
    if (core) {
        Info.Width = U16(D + 18);
        Info.Height = U16(D + 20);
        Info.Bits = int(U16(D + 24));
    } else {
        static const std::uint32_t known[] = {40, 52, 56, 64, 108, 124};
        if (std::find(std::begin(known), std::end(known), headerSize) == std::end(known) ||
            Size < 14 + std::size_t(headerSize))
            return false;
        Info.Width = std::int32_t(U32(D + 18));
        Info.Height = std::int32_t(U32(D + 22));
        Info.Bits = int(U16(D + 28));
        Info.Compression = U32(D + 30);
    }
    at += headerSize;
    if (Info.Height < 0) {
        Info.TopDown = true;
        Info.Height = -Info.Height;
    }
    if (Info.Width <= 0 || Info.Height <= 0 || Info.Width > BmpMaxSide ||
        Info.Height > BmpMaxSide || Info.Width * Info.Height > BmpMaxPixels)
        return false;

    switch (Info.Compression) {
    case BI_RGB:
        if (Info.Bits != 1 && Info.Bits != 4 && Info.Bits != 8 && Info.Bits != 16 &&
            Info.Bits != 24 && Info.Bits != 32)
            return false;
        break;
    case BI_RLE8:
        if (Info.Bits != 8 || Info.TopDown) return false;
        break;
    case BI_RLE4:
        if (Info.Bits != 4 || Info.TopDown) return false;
        break;
    case BI_BITFIELDS:
    case BI_ALPHABITFIELDS:
        if (Info.Bits != 16 && Info.Bits != 32) return false;
        break;
    default:
        return false;
    }

    if (Info.Compression == BI_BITFIELDS || Info.Compression == BI_ALPHABITFIELDS) {
        // The masks sit in the larger headers, or just after the basic one.
        std::size_t masksAt = 14 + 40;
        if (headerSize == 40) {
            std::size_t count = Info.Compression == BI_ALPHABITFIELDS ? 16 : 12;
            if (Size < at + count) return false;
            at += count;
        }
        Info.Red = TChannel(U32(D + masksAt));
        Info.Green = TChannel(U32(D + masksAt + 4));
        Info.Blue = TChannel(U32(D + masksAt + 8));
    } else if (Info.Bits == 16) {
        Info.Red = TChannel(0x7C00);
        Info.Green = TChannel(0x03E0);
        Info.Blue = TChannel(0x001F);
    } else if (Info.Bits == 32) {
        Info.Red = TChannel(0xFF0000);
        Info.Green = TChannel(0xFF00);
        Info.Blue = TChannel(0xFF);
    }

    if (Info.Bits <= 8) {
        std::size_t count = std::size_t(1) << Info.Bits;
        std::uint32_t used = core ? 0 : U32(D + 46);
        if (used != 0 && used < count) count = used;
        std::size_t entry = core ? 3 : 4;
        if (at + count * entry > Size) return false;
        Info.Palette.resize(count);
        for (std::size_t i = 0; i < count; ++i) {
            const std::uint8_t* e = D + at + i * entry;
            Info.Palette[i] = 0xFF000000u | (TPixel(e[2]) << 16) | (TPixel(e[1]) << 8) | e[0];
        }
        at += count * entry;
    }
    // The file header's offset is trusted when it points past the headers.
    Info.DataOffset = offBits >= 14 + headerSize && offBits < Size ? offBits : at;
    return Info.DataOffset <= Size;
}

std::int64_t Stride(const TBmpInfo& Info) {
    return ((Info.Width * Info.Bits + 31) / 32) * 4;
}

// Whether the file holds every row: checked before the image is made, so
// that a header alone cannot make us allocate for pixels that are not there.
bool HoldsUncompressedRows(std::size_t Size, const TBmpInfo& Info) {
    const std::int64_t lastRow = (Info.Width * Info.Bits + 7) / 8; // its padding may be missing
    return std::int64_t(Info.DataOffset) + Stride(Info) * (Info.Height - 1) + lastRow <=
           std::int64_t(Size);
}

void ReadUncompressed(const std::uint8_t* D, const TBmpInfo& Info, TMemoryBitmap& Bmp) {
    const std::int64_t w = Info.Width, h = Info.Height;
    const std::int64_t stride = Stride(Info);
    for (std::int64_t row = 0; row < h; ++row) {
        const std::uint8_t* src = D + Info.DataOffset + std::size_t(row * stride);
        int y = int(Info.TopDown ? row : h - 1 - row);
        TPixel* dst = Bmp.ScanLine(y);
        for (std::int64_t x = 0; x < w; ++x) {
            TPixel p;
            switch (Info.Bits) {
            case 1:
                p = PaletteColor(Info, (src[x >> 3] >> (7 - (x & 7))) & 1);
                break;
            case 4:
                p = PaletteColor(Info, (src[x >> 1] >> ((x & 1) ? 0 : 4)) & 0xF);
                break;
            case 8:
                p = PaletteColor(Info, src[x]);
                break;
            case 24: {
                const std::uint8_t* s = src + 3 * x;
                p = 0xFF000000u | (TPixel(s[2]) << 16) | (TPixel(s[1]) << 8) | s[0];
                break;
            }
            default: {
                std::uint32_t v = Info.Bits == 16 ? U16(src + 2 * x) : U32(src + 4 * x);
                p = 0xFF000000u | (Info.Red.Get(v) << 16) | (Info.Green.Get(v) << 8) |
                    Info.Blue.Get(v);
            }
            }
            dst[x] = p;
        }
    }
}

// Run-length data is forgiving: pixels outside the image are dropped, and a
// stream that ends early leaves the rest of the image black.
void ReadRle(const std::uint8_t* D, std::size_t Size, const TBmpInfo& Info, TMemoryBitmap& Bmp) {
    const bool four = Info.Compression == BI_RLE4;
    const std::int64_t w = Info.Width, h = Info.Height;
    std::int64_t x = 0, y = 0;
    auto put = [&](unsigned index) {
        if (x < w && y < h) Bmp.SetPixel(int(x), int(h - 1 - y), PaletteColor(Info, index));
        ++x;
    };
    std::size_t p = Info.DataOffset;
    while (p + 1 < Size && y < h) {
        unsigned a = D[p], b = D[p + 1];
        p += 2;
        if (a > 0) {
            for (unsigned k = 0; k < a; ++k)
                put(four ? ((k & 1) ? b & 0xF : b >> 4) : b);
            continue;
        }
        if (b == 0) {
            x = 0;
            ++y;
        } else if (b == 1) {
            break;
        } else if (b == 2) {
            if (p + 1 >= Size) break;
            x += D[p];
            y += D[p + 1];
            p += 2;
        } else {
            std::size_t bytes = four ? (b + 1) / 2 : b;
            for (unsigned k = 0; k < b; ++k) {
                std::size_t at = p + (four ? k / 2 : k);
                if (at >= Size) break;
                put(four ? ((k & 1) ? D[at] & 0xF : D[at] >> 4) : D[at]);
            }
            p += (bytes + 1) & ~std::size_t(1); // absolute runs end on a word boundary
        }
    }
}

} // namespace

bool LoadBMP(const std::uint8_t* Data, std::size_t Size, TMemoryBitmap& Target) {
    Target = TMemoryBitmap();
    TBmpInfo info;
    if (!Data || !ReadHeader(Data, Size, info)) return false;
    const bool rle = info.Compression == BI_RLE8 || info.Compression == BI_RLE4;
    if (!rle && !HoldsUncompressedRows(Size, info)) return false;
    TMemoryBitmap bmp(int(info.Width), int(info.Height), 0xFF000000u);
    if (bmp.Empty()) return false;
    if (rle)
        ReadRle(Data, Size, info, bmp);
    else
        ReadUncompressed(Data, info, bmp);
    Target = std::move(bmp);
    return true;
}

std::vector<std::uint8_t> SaveBMP24(const TMemoryBitmap& Bitmap) {
    std::vector<std::uint8_t> out;
    if (Bitmap.Empty()) return out;
    const int w = Bitmap.Width(), h = Bitmap.Height();
    const std::size_t stride = (std::size_t(w) * 3 + 3) & ~std::size_t(3);
    const std::size_t image = stride * std::size_t(h);
    out.assign(54 + image, 0);
    auto put16 = [&](std::size_t at, std::uint32_t v) {
        out[at] = std::uint8_t(v);
        out[at + 1] = std::uint8_t(v >> 8);
    };
    auto put32 = [&](std::size_t at, std::uint32_t v) {
        put16(at, v & 0xFFFF);
        put16(at + 2, v >> 16);
    };
    out[0] = 'B';
    out[1] = 'M';
    put32(2, std::uint32_t(out.size()));
    put32(10, 54);
    put32(14, 40);
    put32(18, std::uint32_t(w));
    put32(22, std::uint32_t(h));
    put16(26, 1);
    put16(28, 24);
    put32(34, std::uint32_t(image));
    for (int y = 0; y < h; ++y) {
        std::uint8_t* row = out.data() + 54 + std::size_t(h - 1 - y) * stride;
        const TPixel* src = Bitmap.ScanLine(y);
        for (int x = 0; x < w; ++x) {
            row[3 * x] = std::uint8_t(src[x]);
            row[3 * x + 1] = std::uint8_t(src[x] >> 8);
            row[3 * x + 2] = std::uint8_t(src[x] >> 16);
        }
    }
    return out;
}

void StretchCopy(TMemoryBitmap& Dst, const TRect& DstRect, const TMemoryBitmap& Src,
                 const TRect& SrcRect, bool Transparent, const TRect* Clip) {
    const std::int64_t dw = DstRect.Width(), dh = DstRect.Height();
    const std::int64_t sw = SrcRect.Width(), sh = SrcRect.Height();
    if (dw <= 0 || dh <= 0 || sw <= 0 || sh <= 0 || Dst.Empty() || Src.Empty()) return;
    TRect area;
    if (!IntersectRect(area, DstRect, Rect(0, 0, Dst.Width(), Dst.Height()))) return;
    if (Clip && !IntersectRect(area, area, *Clip)) return;
    for (int y = area.Top; y < area.Bottom; ++y) {
        std::int64_t sy = SrcRect.Top + (std::int64_t(y - DstRect.Top) * sh) / dh;
        if (sy < 0 || sy >= Src.Height()) continue;
        const TPixel* srow = Src.ScanLine(int(sy));
        TPixel* drow = Dst.ScanLine(y);
        for (int x = area.Left; x < area.Right; ++x) {
            std::int64_t sx = SrcRect.Left + (std::int64_t(x - DstRect.Left) * sw) / dw;
            if (sx < 0 || sx >= Src.Width()) continue;
            TPixel p = srow[sx];
            if (Transparent && IsMagenta(p)) continue;
            drow[x] = p;
        }
    }
}

void CopyBitmap(TMemoryBitmap& Dst, int X, int Y, const TMemoryBitmap& Src, bool Transparent) {
    StretchCopy(Dst, Bounds(X, Y, Src.Width(), Src.Height()), Src,
                Rect(0, 0, Src.Width(), Src.Height()), Transparent);
}

TMemoryBitmap CropBitmap(const TMemoryBitmap& Bitmap, const TRect& Src) {
    TRect r;
    if (!IntersectRect(r, Src, Rect(0, 0, Bitmap.Width(), Bitmap.Height()))) return {};
    TMemoryBitmap out(r.Width(), r.Height());
    StretchCopy(out, Rect(0, 0, r.Width(), r.Height()), Bitmap, r);
    return out;
}

void FillBitmapRect(TMemoryBitmap& Bitmap, const TRect& R, TPixel P) {
    TRect r;
    if (!IntersectRect(r, R, Rect(0, 0, Bitmap.Width(), Bitmap.Height()))) return;
    for (int y = r.Top; y < r.Bottom; ++y)
        std::fill(Bitmap.ScanLine(y) + r.Left, Bitmap.ScanLine(y) + r.Right, P);
}

void MirrorHorz(TMemoryBitmap& Bitmap) {
    for (int y = 0; y < Bitmap.Height(); ++y)
        std::reverse(Bitmap.ScanLine(y), Bitmap.ScanLine(y) + Bitmap.Width());
}

void MirrorVert(TMemoryBitmap& Bitmap) {
    for (int top = 0, bottom = Bitmap.Height() - 1; top < bottom; ++top, --bottom)
        std::swap_ranges(Bitmap.ScanLine(top), Bitmap.ScanLine(top) + Bitmap.Width(),
                         Bitmap.ScanLine(bottom));
}

void Rotate90(TMemoryBitmap& Bitmap) {
    if (Bitmap.Empty()) return;
    const int w = Bitmap.Width(), h = Bitmap.Height();
    TMemoryBitmap out(h, w);
    for (int y = 0; y < w; ++y)
        for (int x = 0; x < h; ++x)
            out.SetPixel(x, y, Bitmap.Pixel(w - 1 - y, x));
    Bitmap = std::move(out);
}

void Rotate270(TMemoryBitmap& Bitmap) {
    if (Bitmap.Empty()) return;
    const int w = Bitmap.Width(), h = Bitmap.Height();
    TMemoryBitmap out(h, w);
    for (int y = 0; y < w; ++y)
        for (int x = 0; x < h; ++x)
            out.SetPixel(x, y, Bitmap.Pixel(y, h - 1 - x));
    Bitmap = std::move(out);
}

void Grayscale(TMemoryBitmap& Bitmap) {
    for (int y = 0; y < Bitmap.Height(); ++y) {
        TPixel* row = Bitmap.ScanLine(y);
        for (int x = 0; x < Bitmap.Width(); ++x) {
            TPixel p = row[x];
            TPixel g = (((p >> 16) & 0xFF) + ((p >> 8) & 0xFF) + (p & 0xFF)) / 3;
            row[x] = 0xFF000000u | (g << 16) | (g << 8) | g;
        }
    }
}

void ReplaceMagenta(TMemoryBitmap& Bitmap, TColor Colour) {
    const TPixel to = ColorToPixel(Colour & 0xFFFFFF);
    for (int y = 0; y < Bitmap.Height(); ++y) {
        TPixel* row = Bitmap.ScanLine(y);
        for (int x = 0; x < Bitmap.Width(); ++x)
            if (IsMagenta(row[x])) row[x] = to;
    }
}
