#pragma once
// Helpers of the view tests: a host that records what the view asks of its
// window, and a tree built from an indented outline.

#include "support/RecordingCanvas.h"
#include "tree/WgTree.h"
#include "tree/WgTreeItem.h"
#include "tree/WgTreeItems.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <map>
#include <string>
#include <vector>

class TRecordingHost : public TWgTreeViewHost {
public:
    std::vector<TRect> Invalidated;
    std::map<TWgViewTimer, int> Timers; // running timers and their intervals
    std::vector<TRect> Frames;
    int ScrollChanges = 0;

    void InvalidateRect(const TRect& R) override { Invalidated.push_back(R); }
    void StartTimer(TWgViewTimer Timer, int Interval) override { Timers[Timer] = Interval; }
    void StopTimer(TWgViewTimer Timer) override { Timers.erase(Timer); }
    void DrawFocusFrame(const TRect& R) override { Frames.push_back(R); }
    void ScrollBarsChanged() override { ++ScrollChanges; }
    std::vector<std::string> Hints;
    void ShowLineHint(const TRect& R, const WideString& Text) override {
        Hints.push_back(TRecordingCanvas::Rect(R) + " " + AsciiFromWide(Text));
    }
    void HideLineHint() override { Hints.push_back("hide"); }
    bool Running(TWgViewTimer Timer) const { return Timers.count(Timer) > 0; }
};

// A tree with a host and a client area; rows come from lines whose
// leading spaces (two per level) give the level.
struct TViewFixture {
    TCustomWgTree Tree;
    TRecordingHost Host;

    explicit TViewFixture(int Width = 200, int Height = 100) {
        Tree.View().SetHost(&Host);
        Tree.View().Resize(Width, Height);
    }
    TWgTreeView& View() { return Tree.View(); }

    void Build(const std::vector<std::string>& Lines) {
        TWgTreeLock lock(Tree);
        std::vector<TWgTreeItem*> parents{nullptr};
        for (const std::string& line : Lines) {
            const std::size_t spaces = std::min(line.find_first_not_of(' '), line.size());
            const std::size_t level = spaces / 2;
            parents.resize(level + 1);
            WideString text(line.begin() + std::ptrdiff_t(spaces), line.end());
            TWgTreeItem* item = Tree.Items().AddChild(parents[level], text);
            parents.push_back(item);
        }
    }
    void ExpandAll() {
        TWgTreeLock lock(Tree);
        for (int i = 0; i < Tree.Items().Count(); ++i)
            Tree.Items().Item(i)->Expand(false);
    }
    TWgTreeItem* Item(const std::string& Text) {
        for (int i = 0; i < Tree.Items().Count(); ++i) {
            TWgTreeItem* item = Tree.Items().Item(i);
            if (item->Text() == WideString(Text.begin(), Text.end())) return item;
        }
        ADD_FAILURE() << "no item " << Text;
        return nullptr;
    }
    // Paints the whole client area, so that text rectangles are known.
    std::vector<std::string> Paint() {
        TRecordingCanvas canvas;
        View().Paint(canvas, Rect(0, 0, View().ClientWidthPx(), View().ClientHeightPx()));
        return canvas.Ops;
    }
    std::string Selection() {
        std::string s;
        for (int i = 0; i < Tree.Items().Count(); ++i) {
            TWgTreeItem* item = Tree.Items().Item(i);
            if (!item->Selected()) continue;
            if (!s.empty()) s += ' ';
            for (char16_t c : item->Text())
                s += char(c);
        }
        return s;
    }
    std::string Focused() {
        TWgTreeItem* item = Tree.FocusedItem();
        std::string s = item ? "" : "none";
        if (item)
            for (char16_t c : item->Text())
                s += char(c);
        return s;
    }
    std::string Order() {
        std::string s;
        for (int i = 0; i < Tree.Items().Count(); ++i) {
            if (i) s += ' ';
            for (char16_t c : Tree.Items().Item(i)->Text())
                s += char(c);
        }
        return s;
    }
};
