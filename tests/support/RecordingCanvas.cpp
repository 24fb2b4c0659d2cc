#include "RecordingCanvas.h"

#include <cstdio>

namespace {
std::string Utf8(WideView Text) {
    std::string out;
    for (char16_t c : Text)
        out += c < 128 ? char(c) : '?';
    return out;
}
} // namespace

std::string TRecordingCanvas::Rect(const TRect& R) {
    return "(" + std::to_string(R.Left) + "," + std::to_string(R.Top) + "," +
           std::to_string(R.Right) + "," + std::to_string(R.Bottom) + ")";
}

std::string TRecordingCanvas::Color(TColor C) {
    if (C == clNone) return "none";
    char buf[16];
    std::snprintf(buf, sizeof buf, "%06X", unsigned(C));
    return buf;
}

std::string TRecordingCanvas::Font(const TFont& F) {
    std::string style;
    if (F.Style & fsBold) style += "b";
    if (F.Style & fsItalic) style += "i";
    if (F.Style & fsUnderline) style += "u";
    if (F.Style & fsStrikeOut) style += "s";
    return Utf8(F.Name) + "/" + std::to_string(F.Height) + (style.empty() ? "" : "/" + style) +
           " " + Color(F.Color);
}

void TRecordingCanvas::FillRect(const TRect& R) {
    Ops.push_back("FillRect" + Rect(R) + " " + Color(FBrushColor));
}
void TRecordingCanvas::FrameRect(const TRect& R) {
    Ops.push_back("FrameRect" + Rect(R) + " " + Color(FPenColor));
}
void TRecordingCanvas::DrawEdge(const TRect& R, unsigned Edge, unsigned Flags) {
    Ops.push_back("DrawEdge" + Rect(R) + " " + std::to_string(Edge) + " " + std::to_string(Flags));
}
void TRecordingCanvas::Ellipse(const TRect& R) {
    Ops.push_back("Ellipse" + Rect(R) + " " + Color(FBrushColor));
}
void TRecordingCanvas::LineTo(int X, int Y) {
    Ops.push_back("Line(" + std::to_string(FPenPos.X) + "," + std::to_string(FPenPos.Y) + "," +
                  std::to_string(X) + "," + std::to_string(Y) + ") " + Color(FPenColor) +
                  (FPenStyle == psDot ? " dot" : ""));
    MoveTo(X, Y);
}
void TRecordingCanvas::TextOut(int X, int Y, WideView Text) {
    Ops.push_back("TextOut(" + std::to_string(X) + "," + std::to_string(Y) + ",\"" + Utf8(Text) +
                  "\") " + Font(FFont) + " bg=" + Color(FTextBgColor) +
                  (FTextAlign == taBaseline ? " baseline" : ""));
}
int TRecordingCanvas::DrawText(WideView Text, TRect& R, unsigned Flags) {
    if (!(Flags & DT_CALCRECT))
        Ops.push_back("DrawText" + Rect(R) + ",\"" + Utf8(Text) + "\"," + std::to_string(Flags) +
                      " " + Font(FFont));
    return TFixedMetricsCanvas::DrawText(Text, R, Flags);
}
void TRecordingCanvas::Draw(int X, int Y, const TMemoryBitmap& Bitmap, TColor TransparentColor) {
    Ops.push_back("Draw(" + std::to_string(X) + "," + std::to_string(Y) + ") " +
                  std::to_string(Bitmap.Width()) + "x" + std::to_string(Bitmap.Height()) +
                  " key=" + Color(TransparentColor));
}
void TRecordingCanvas::StretchDraw(const TRect& R, const TMemoryBitmap& Bitmap,
                                   TColor TransparentColor) {
    Ops.push_back("StretchDraw" + Rect(R) + " " + std::to_string(Bitmap.Width()) + "x" +
                  std::to_string(Bitmap.Height()) + " key=" + Color(TransparentColor));
}
void TRecordingCanvas::DrawFrameControl(const TRect& R, unsigned Kind, unsigned State) {
    Ops.push_back("FrameControl" + Rect(R) + " " + std::to_string(Kind) + " " +
                  std::to_string(State));
}
void TRecordingCanvas::DrawFocusRect(const TRect& R) {
    Ops.push_back("FocusRect" + Rect(R));
}
void TRecordingCanvas::BeginBuffer(const TRect& R) {
    Ops.push_back("BeginBuffer" + Rect(R));
}
void TRecordingCanvas::EndBuffer() {
    Ops.push_back("EndBuffer");
}

std::vector<std::string> TRecordingCanvas::OpsStartingWith(const std::string& Prefix) const {
    std::vector<std::string> out;
    for (const std::string& op : Ops)
        if (op.compare(0, Prefix.size(), Prefix) == 0) out.push_back(op);
    return out;
}
