#include "StreamTestUtil.h"

#include "tree/WgHeaderModel.h"
#include "tree/WgTreeErrors.h"

#include <gtest/gtest.h>

namespace {

class TRecordingHost : public TWgHeaderHost {
public:
    std::vector<std::string> Log;
    void SetCapture(bool On) override { Log.push_back(On ? "capture" : "release"); }
    void DrawResizeLine(int X) override { Log.push_back("line " + std::to_string(X)); }
    void BeginDragImage(TWgHeaderSection* S) override {
        Log.push_back("drag-begin " + std::to_string(S->SectionIndex()));
    }
    void MoveDragImage(int X) override { Log.push_back("drag " + std::to_string(X)); }
    void EndDragImage() override { Log.push_back("drag-end"); }
    void InvalidateSection(TWgHeaderSection*) override {}
    void InvalidateRight(int) override {}
    void UpdateNow() override {}
    void OpenLookup(TWgHeaderSection* S) override {
        Log.push_back("lookup " + std::to_string(S->SectionIndex()));
    }
    WideString CloseLookup() override { return u"typed"; }
};

// Sections 0, 1, 2 of widths 100, 50, 80, header 17 high.
struct THeader {
    TWgHeaderModel H;
    TRecordingHost Host;
    TWgHeaderSection *S0, *S1, *S2;
    THeader() {
        S0 = H.Sections().AddSection();
        S1 = H.Sections().AddSection();
        S2 = H.Sections().AddSection();
        S0->SetWidth(100);
        S1->SetWidth(50);
        S2->SetWidth(80);
        H.SetHost(&Host);
    }
};

} // namespace

TEST(Header, SectionNumbersAndTags) {
    THeader t;
    EXPECT_EQ(t.S2->SectionIndex(), 2);
    t.H.Sections().DeleteSection(t.S1);
    TWgHeaderSection* s = t.H.Sections().InsertSection(0);
    EXPECT_EQ(s->SectionIndex(), 1); // the smallest free number
    EXPECT_EQ(s->Width(), 120);      // the header's default width
    EXPECT_EQ(t.H.Sections().GetSection(1), s);
    EXPECT_EQ(t.H.Sections().GetSectionByPos(0), s);
    EXPECT_NE(s->SectionTag(), t.S0->SectionTag());
    EXPECT_NE(s->SectionTag(), t.S2->SectionTag());
    try {
        t.H.Sections().DeleteSection(nullptr);
        FAIL();
    } catch (const EWgHeaderError& e) {
        EXPECT_STREQ(e.what(), "Invalid section");
    }
    try {
        t.H.InvalidateRight(3);
        FAIL();
    } catch (const EWgHeaderError& e) {
        EXPECT_STREQ(e.what(), "Index out of bounds");
    }
}

TEST(Header, GeometryVisibilityAndWidthLimits) {
    THeader t;
    EXPECT_EQ(t.S1->Left(), 100);
    EXPECT_EQ(t.S2->Right(), 230);
    EXPECT_EQ(t.H.SectionsWidth(), 230);
    t.S1->Expandable = true;
    t.S2->SetParentSection(t.S1);
    t.S1->SetParentSection(t.S2); // a cycle: ignored
    EXPECT_EQ(t.S1->ParentSection(), nullptr);
    EXPECT_FALSE(t.S2->Visible()); // parent collapsed
    EXPECT_TRUE(t.S2->OwnVisible());
    EXPECT_EQ(t.S2->Left(), 150);
    EXPECT_EQ(t.S2->Right(), 150);
    EXPECT_EQ(t.H.SectionsWidth(), 150);
    t.S1->SetExpanded(true);
    EXPECT_TRUE(t.S2->Visible());

    t.S0->SetMinWidth(80);
    t.S0->SetWidth(131);
    t.S0->SetWidth(70);
    EXPECT_EQ(t.S0->Width(), 131); // ignored, not clamped
    t.S0->SetWidth(80);
    EXPECT_EQ(t.S0->Width(), 80);
    t.S0->SetMinWidth(90); // pushes
    EXPECT_EQ(t.S0->Width(), 90);
    t.S0->SetMaxWidth(85);
    EXPECT_EQ(t.S0->Width(), 85);
}

TEST(Header, HitTesting) {
    THeader t;
    t.S1->SetWidth(12); // too narrow for a zone of its own
    t.H.SetLeftPos(10);
    struct {
        int X;
        bool Zone;
        TWgHeaderSection* Section;
    } cases[] = {
        {50, false, t.S0},  {86, true, t.S0},  {91, false, t.S1},
        {100, false, t.S1}, {104, true, t.S1}, {110, false, t.S2},
        {180, true, t.S2},  {185, true, t.S2}, {190, false, t.S2},
    };
    for (auto c : cases) {
        TWgHeaderSection* s = nullptr;
        EXPECT_EQ(t.H.GetResizableSectionAt(c.X, s), c.Zone) << c.X;
        EXPECT_EQ(s, c.Section) << c.X;
    }
    EXPECT_EQ(t.H.GetSectionAt(95, 5), t.S1);
    EXPECT_EQ(t.H.GetSectionAt(95, 18), nullptr);
    t.H.SetLockedSection(t.S2);
    EXPECT_EQ(t.H.GetSectionAt(5, 5), t.S2);

    THeader u;
    u.S0->Expandable = true;
    u.S1->FilterEnabled = true;
    TWgHeaderPart part;
    EXPECT_EQ(u.H.GetSectionAtEx(92, 5, part), u.S0);
    EXPECT_EQ(part, hpExpand);
    EXPECT_EQ(u.H.GetSectionAtEx(60, 5, part), u.S0);
    EXPECT_EQ(part, hpBody);
    EXPECT_EQ(u.H.GetSectionAtEx(99, 5, part), u.S0);
    EXPECT_EQ(part, hpDivider);
    EXPECT_EQ(u.H.GetSectionAtEx(143, 14, part), u.S1);
    EXPECT_EQ(part, hpFilter);
}

TEST(Header, SortMarksAndAutoSize) {
    THeader t;
    std::vector<int> fitted;
    t.H.OnSectionAutoSize = [&](TWgHeaderModel&, TWgHeaderSection* s) {
        fitted.push_back(s->SectionIndex());
    };
    t.S2->SetAutoSize(true);
    t.S0->SetSortMode(hsmAscend);
    t.S2->SetSortMode(hsmDescend);
    EXPECT_EQ(t.S0->SortMode(), hsmNone);
    t.H.MultiSort = true;
    t.S0->SetSortMode(hsmAscend);
    EXPECT_EQ(t.S2->SortMode(), hsmDescend);
    t.S2->SetText(u"new");
    EXPECT_EQ(fitted, (std::vector<int>{2, 2, 2}));
}

TEST(Header, SectionsOrderText) {
    THeader t;
    EXPECT_EQ(t.H.Sections().SectionsOrder(), u"i0:w100:vt,i1:w50:vt,i2:w80:vt,");
    t.H.Sections().SetSectionsOrder(u"i2:w60:vf,i9:w1:vt,i0:w101:vt,");
    EXPECT_EQ(t.H.Sections().SectionsOrder(), u"i2:w60:vf,i0:w101:vt,i1:w50:vt,");
    t.H.SetLoading(true);
    t.H.Sections().SetSectionsOrder(u"i1:w70:vt,");
    EXPECT_EQ(t.S1->Width(), 50);
}

TEST(Header, HeightRule) {
    THeader t;
    t.H.MeasureText = [](const WideString& Text, int, bool) { return int(Text.size()) * 3; };
    EXPECT_EQ(t.H.CalcHeaderHeight(), 19); // 17, and 2 more unless flat
    t.H.Flat = true;
    t.S1->SetText(u"abcdefg");
    EXPECT_EQ(t.H.CalcHeaderHeight(), 25);
    t.S1->Style = elhsOwnerDraw;
    t.H.ImageHeight = 16;
    EXPECT_EQ(t.H.CalcHeaderHeight(), 20);
    t.H.LockHeight = true;
    t.H.UpdateHeight();
    EXPECT_EQ(t.H.Height(), 17);
}

TEST(Header, StickySectionsFillTheClientWidth) {
    THeader t;
    t.H.Resize(230);
    t.S1->Resizable = false;
    t.H.SetStickySections(true);
    EXPECT_FLOAT_EQ(t.S0->StickyShare, 100.0f / 180.0f);
    EXPECT_EQ(t.S1->StickyShare, 0.0f);
    auto sum = [&] { return t.S0->Width() + t.S1->Width() + t.S2->Width(); };
    for (int width : {500, 301, 231, 120, 60, 400}) {
        t.H.Resize(width);
        EXPECT_EQ(sum(), width - 1) << width;
    }
    EXPECT_EQ(t.S1->Width(), 50);
}

TEST(Header, ClickNeedsPressAndReleaseInOneSection) {
    THeader t;
    std::vector<int> clicks;
    t.H.OnSectionClick = [&](TWgHeaderModel&, TWgHeaderSection* s) {
        clicks.push_back(s->SectionIndex());
    };
    t.H.MouseDown(40, 5);
    EXPECT_EQ(t.H.PressedSection(), t.S0);
    t.H.MouseUp(42, 6);
    t.H.MouseDown(40, 5);
    t.H.MouseUp(120, 6);
    t.S1->AllowClick = false;
    t.H.MouseDown(120, 5);
    t.H.MouseUp(120, 5);
    EXPECT_EQ(clicks, (std::vector<int>{0}));
}

TEST(Header, ResizingDrawsTheLineAndAppliesOnRelease) {
    THeader t;
    std::vector<std::string> states;
    t.H.OnSectionResizing = [&](TWgHeaderModel&, TWgHeaderSection*, TWgHResizingStates s, int w) {
        states.push_back(std::to_string(int(s)) + ":" + std::to_string(w));
    };
    t.S0->SetMinWidth(60);
    t.H.MouseDown(98, 5); // 2 pixels left of the divider
    EXPECT_TRUE(t.H.Resizing());
    t.H.MouseMove(128, 5, true);
    t.H.MouseMove(40, 5, true); // below MinWidth: no move
    t.H.MouseUp(128, 5);
    EXPECT_EQ(t.S0->Width(), 130);
    EXPECT_EQ(t.Host.Log, (std::vector<std::string>{"capture", "line 100", "line 100", "line 130",
                                                    "release", "line 130"}));
    EXPECT_EQ(states, (std::vector<std::string>{"0:100", "1:130", "2:130"}));

    t.H.ResizeOnDrag = true;
    t.H.MouseDown(129, 5);
    t.H.MouseMove(140, 5, true);
    EXPECT_EQ(t.S0->Width(), 141);
    t.H.CancelMode(); // ends as a release
    EXPECT_FALSE(t.H.Resizing());
}

TEST(Header, DraggingMovesTheSection) {
    THeader t;
    std::vector<std::string> moves;
    t.H.OnSectionMove = [&](TWgHeaderModel&, TWgHeaderSection* s, int from, int to) {
        moves.push_back(std::to_string(s->SectionIndex()) + ":" + std::to_string(from) + ">" +
                        std::to_string(to));
    };
    t.H.MouseDown(20, 5);
    t.H.MouseMove(23, 8, true); // under 5 pixels: no drag
    EXPECT_FALSE(t.H.Dragging());
    t.H.MouseMove(24, 8, true);
    EXPECT_TRUE(t.H.Dragging());
    t.H.MouseMove(200, 8, true);
    t.H.MouseUp(200, 8);
    EXPECT_EQ(t.H.Sections().SectionsOrder(), u"i1:w50:vt,i2:w80:vt,i0:w100:vt,");
    EXPECT_EQ(moves, (std::vector<std::string>{"0:0>2"}));
    EXPECT_EQ(t.Host.Log, (std::vector<std::string>{"drag-begin 0", "capture", "drag 4", "drag 180",
                                                    "drag-end", "release"}));
}

TEST(Header, ExpandAndLookupButtonsUseThePress) {
    THeader t;
    t.S0->Expandable = true;
    t.S1->SetLookupEnabled(true);
    int expanded = 0;
    t.H.OnSectionExpand = [&](TWgHeaderModel&, TWgHeaderSection*) { ++expanded; };
    WideString done;
    t.H.OnHeaderLookupDone = [&](TWgHeaderModel&, TWgHeaderSection*, const WideString& text,
                                 bool accepted) { done = accepted ? text : u"cancelled"; };
    t.H.MouseDown(92, 5);
    EXPECT_TRUE(t.S0->Expanded());
    EXPECT_EQ(expanded, 1);
    EXPECT_EQ(t.H.PressedSection(), nullptr);
    t.H.MouseUp(92, 5);
    t.H.MouseDown(143, 5);
    EXPECT_EQ(t.H.LookupSection(), t.S1);
    t.H.MouseDown(10, 5); // a press elsewhere closes it, accepting
    EXPECT_EQ(done, u"typed");
    EXPECT_EQ(t.H.PressedSection(), nullptr);
}

TEST(HeaderStream, RoundTripAndParentsByPosition) {
    THeader t;
    t.S0->Expandable = true;
    t.S2->SetParentSection(t.S0);
    t.S0->SetParentSection(nullptr);
    t.S1->SetParentSection(t.S2);
    t.S1->SetHint(u"h\u0416");
    t.S1->SetPopupName("PopupMenu1");
    t.S1->SetFieldName("field");
    t.S2->SetText(u"caf\u00e9 \u4e2d");
    t.S2->Tag = -9;
    TMemoryStream out;
    t.H.Sections().SaveToStream(out);

    TWgHeaderModel copy;
    TMemoryStream in(out.Data());
    copy.Sections().LoadFromStream(in);
    ASSERT_EQ(copy.Sections().Count(), 3);
    TWgHeaderSection* c1 = copy.Sections().GetSectionByPos(1);
    TWgHeaderSection* c2 = copy.Sections().GetSectionByPos(2);
    EXPECT_EQ(c1->ParentSection(), c2); // the parent comes after its child
    EXPECT_EQ(c2->ParentSection(), copy.Sections().GetSectionByPos(0));
    EXPECT_EQ(c1->Hint(), u"h\u0416");
    EXPECT_EQ(c1->PopupName(), "PopupMenu1");
    EXPECT_EQ(c1->FieldName(), "field");
    EXPECT_EQ(c2->Text(), u"caf\u00e9 ?"); // captions are stored narrow
    EXPECT_EQ(c2->Tag, -9);
    EXPECT_EQ(c2->SectionTag(), t.S2->SectionTag());
    TMemoryStream again;
    copy.Sections().SaveToStream(again);
    EXPECT_EQ(again.Data(), out.Data());
}

TEST(HeaderStream, OlderVersionsAndUnknownOnes) {
    TBytes v4;
    v4.I32(-4).I32(1);
    v4.Record(36, {{0, 1, 1},
                   {2, 1, 1},
                   {4, 77, 4},
                   {12, 500, 4},
                   {16, 2, 1},
                   {20, 5, 4},
                   {24, 8, 1},
                   {25, 1, 1},
                   {28, -1, 4}});
    v4.AnsiZ("Four").AnsiZ("");
    TWgHeaderModel h;
    TMemoryStream s4 = v4.Stream();
    h.Sections().LoadFromStream(s4);
    EXPECT_EQ(s4.Position(), s4.Size());
    ASSERT_EQ(h.Sections().Count(), 1);
    TWgHeaderSection* s = h.Sections().GetSectionByPos(0);
    EXPECT_EQ(s->Text(), u"Four");
    EXPECT_EQ(s->Width(), 77);
    EXPECT_EQ(s->MaxWidth(), 500);
    EXPECT_EQ(s->SortMode(), hsmDescend);
    EXPECT_EQ(s->SectionIndex(), 5);
    EXPECT_EQ(s->FieldType, sftEnum);
    EXPECT_TRUE(s->Editable);
    EXPECT_FALSE(s->ClickSelect);

    TBytes v9;
    v9.I32(-9).I32(1);
    v9.Record(64, {{8, -1, 4},
                   {14, 1, 1},
                   {20, 90, 4},
                   {28, 10000, 4},
                   {36, 3, 4},
                   {40, 1, 1},
                   {44, -1, 4},
                   {50, 1, 1},
                   {61, 1, 1},
                   {63, 1, 1}});
    v9.AnsiZ("Nine").AnsiZ("f").Ansi("pop").Ansi("hint");
    TMemoryStream s9 = v9.Stream();
    h.Sections().LoadFromStream(s9);
    EXPECT_EQ(s9.Position(), s9.Size());
    s = h.Sections().GetSectionByPos(0);
    EXPECT_EQ(s->SectionIndex(), 3);
    EXPECT_TRUE(s->AutoSize());
    EXPECT_EQ(s->Hint(), u"hint");
    EXPECT_EQ(s->PopupName(), "pop");

    TBytes v10;
    v10.I32(-10).I32(1).Record(68, {{14, 1, 1}, {20, 40, 4}, {28, 10000, 4}, {40, 6, 4}});
    v10.AnsiZ("Ten").AnsiZ("").Ansi("").Ansi("x");
    TMemoryStream s10 = v10.Stream();
    h.Sections().LoadFromStream(s10);
    EXPECT_EQ(s10.Position(), s10.Size());
    EXPECT_EQ(h.Sections().GetSection(6)->Width(), 40);

    for (std::int32_t version : {-7, -3, 0, 5}) {
        TMemoryStream other = TBytes().I32(version).I32(1).Record(140, {}).Stream();
        h.Sections().LoadFromStream(other);
        EXPECT_EQ(h.Sections().Count(), 0) << version;
        EXPECT_EQ(other.Position(), 4) << version;
    }
}

TEST(HeaderStream, TruncatedAndBadBlobs) {
    THeader t;
    TMemoryStream out;
    t.H.Sections().SaveToStream(out);
    for (std::size_t n = 0; n < out.Data().size(); ++n) {
        TWgHeaderModel h;
        TMemoryStream in(
            std::vector<std::uint8_t>(out.Data().begin(), out.Data().begin() + std::ptrdiff_t(n)));
        EXPECT_THROW(h.Sections().LoadFromStream(in), EReadError) << n;
    }
    TWgHeaderModel h;
    TMemoryStream negative = TBytes().I32(-12).I32(-1).Stream();
    EXPECT_THROW(h.Sections().LoadFromStream(negative), EReadError);
}

TEST(HeaderStream, ParentCyclesInTheDataAreCut) {
    // Three sections whose parents run 0 -> 1 -> 2 -> 0.
    TBytes b;
    b.I32(-12).I32(3);
    for (int i = 0; i < 3; ++i) {
        b.Record(
            140,
            {{8, (i + 1) % 3, 4}, {13, 1, 1}, {14, 1, 1}, {20, 10, 4}, {28, 100, 4}, {40, i, 4}});
        b.AnsiZ("").AnsiZ("").Ansi("").Wide(u"");
    }
    TWgHeaderModel h;
    TMemoryStream s = b.Stream();
    h.Sections().LoadFromStream(s);
    ASSERT_EQ(h.Sections().Count(), 3);
    auto* s0 = h.Sections().GetSectionByPos(0);
    auto* s1 = h.Sections().GetSectionByPos(1);
    auto* s2 = h.Sections().GetSectionByPos(2);
    EXPECT_EQ(s0->ParentSection(), s1);
    EXPECT_EQ(s1->ParentSection(), s2);
    EXPECT_EQ(s2->ParentSection(), nullptr); // the link that closed the cycle
    EXPECT_TRUE(s0->Visible());
    EXPECT_EQ(h.SectionsWidth(), 30);
}
