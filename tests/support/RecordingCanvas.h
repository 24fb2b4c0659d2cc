#pragma once
// A canvas for tests: measures with the fixed metrics of FixedFontMetrics
// and records every painting call, with the state it used, as one line of
// text, so that a test can assert the operations and their order.

#include "base/Canvas.h"

#include <string>
#include <vector>

class TRecordingCanvas : public TFixedMetricsCanvas {
public:
    std::vector<std::string> Ops;

    void FillRect(const TRect& R) override;
    void FrameRect(const TRect& R) override;
    void DrawEdge(const TRect& R, unsigned Edge, unsigned Flags) override;
    void Ellipse(const TRect& R) override;
    void LineTo(int X, int Y) override;
    void TextOut(int X, int Y, WideView Text) override;
    int DrawText(WideView Text, TRect& R, unsigned Flags) override;
    void Draw(int X, int Y, const TMemoryBitmap& Bitmap, TColor TransparentColor) override;
    void StretchDraw(const TRect& R, const TMemoryBitmap& Bitmap, TColor TransparentColor) override;
    void DrawFrameControl(const TRect& R, unsigned Kind, unsigned State) override;
    void DrawFocusRect(const TRect& R) override;
    void BeginBuffer(const TRect& R) override;
    void EndBuffer() override;

    // Only the operations whose text begins with Prefix.
    std::vector<std::string> OpsStartingWith(const std::string& Prefix) const;

    static std::string Rect(const TRect& R);
    static std::string Color(TColor C);
    static std::string Font(const TFont& F);
};
