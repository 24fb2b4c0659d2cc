// The header's settings in the store, its width measure, the change events
// and the end of loading.

#include "controls/WgIni.h"
#include "tree/WgHeaderModel.h"

#include <gtest/gtest.h>

namespace {

struct THeader {
    TWgHeaderModel H;
    TWgHeaderSection *S0, *S1, *S2;
    THeader() {
        S0 = H.Sections().AddSection();
        S1 = H.Sections().AddSection();
        S2 = H.Sections().AddSection();
        S0->SetWidth(100);
        S1->SetWidth(50);
        S2->SetWidth(80);
    }
    std::vector<int> Order() const {
        std::vector<int> order;
        for (int i = 0; i < H.Sections().Count(); ++i)
            order.push_back(H.Sections().GetSectionByPos(i)->SectionIndex());
        return order;
    }
};

} // namespace

TEST(HeaderStorage, SaveAndRestoreTheLayoutThroughTheStore) {
    TWgIniFile ini;
    THeader saved;
    saved.H.Storage = &ini;
    saved.H.StoragePath = "\\Tree";
    saved.H.Sections().MoveSection(saved.S2, 0);
    saved.S1->SetWidth(77);
    saved.S0->SetVisible(false);
    saved.S0->Alignment = hsaRight;
    ASSERT_TRUE(saved.H.Save());
    EXPECT_EQ(ini.ReadInteger("\\TreeWgHeader\\Section0", "Section", -1), 2);
    EXPECT_EQ(ini.ReadInteger("\\TreeWgHeader\\Section2", "Width", -1), 77);

    // The same text read by another header with the columns in their first places.
    TWgIniFile reread;
    reread.LoadFromText(ini.SaveToText());
    THeader restored;
    restored.H.Storage = &reread;
    restored.H.StoragePath = "\\Tree";
    std::vector<TSectionChangeMode> changes;
    restored.H.OnSectionChange = [&](TWgHeaderModel&, TWgHeaderSection*, TSectionChangeMode C) {
        changes.push_back(C);
    };
    ASSERT_TRUE(restored.H.Restore());
    EXPECT_EQ(restored.Order(), saved.Order());
    EXPECT_EQ(restored.S1->Width(), 77);
    EXPECT_FALSE(restored.S0->OwnVisible());
    EXPECT_EQ(restored.S0->Alignment, hsaRight);
    EXPECT_NE(std::find(changes.begin(), changes.end(), scmAlign), changes.end());

    // Hostile records: unknown columns, widths out of limits and alignments
    // out of range change nothing; a header without a store does nothing.
    TWgIniFile hostile;
    hostile.WriteInteger("\\TreeWgHeader\\Section0", "Section", 99);
    hostile.WriteInteger("\\TreeWgHeader\\Section1", "Section", 1);
    hostile.WriteInteger("\\TreeWgHeader\\Section1", "Width", -5);
    hostile.WriteInteger("\\TreeWgHeader\\Section1", "Align", 7);
    THeader plain;
    plain.H.StoragePath = "\\Tree";
    EXPECT_FALSE(plain.H.Restore());
    plain.H.Storage = &hostile;
    EXPECT_TRUE(plain.H.Restore());
    EXPECT_EQ(plain.Order(), (std::vector<int>{0, 1, 2}));
    EXPECT_EQ(plain.S1->Width(), 50);
    EXPECT_EQ(plain.S1->Alignment, hsaLeft);
}

TEST(HeaderStorage, MeasureSectionWidthCountsWhatThePainterPutsBesideTheCaption) {
    THeader t;
    t.H.MeasureTextWidth = [](const WideString& Text) { return int(Text.size()) * 7; };
    t.H.ImageWidth = 16;
    t.S0->SetText(u"Value");
    EXPECT_EQ(t.H.MeasureSectionWidth(t.S0), 35 + 8);
    t.S0->SetSortModeRaw(hsmAscend);
    EXPECT_EQ(t.H.MeasureSectionWidth(t.S0), 35 + 8 + 12);
    t.S0->FilterEnabled = true; // beside a sort mark the filter takes no room of its own
    EXPECT_EQ(t.H.MeasureSectionWidth(t.S0), 35 + 8 + 12);
    t.S0->SetSortModeRaw(hsmNone);
    t.S0->Expandable = true;
    t.S0->SetImageIndex(0);
    EXPECT_EQ(t.H.MeasureSectionWidth(t.S0), 35 + 8 + 6 + 12 + 20);
    t.S0->Style = elhsPictureOnly;
    EXPECT_EQ(t.H.MeasureSectionWidth(t.S0), 8 + 6 + 12 + 20);
}

TEST(HeaderStorage, ChangesAreReportedAndLoadingResolvesPopupsAndHeight) {
    THeader t;
    std::vector<std::pair<int, TSectionChangeMode>> changes;
    t.H.OnSectionChange = [&](TWgHeaderModel&, TWgHeaderSection* S, TSectionChangeMode C) {
        changes.push_back({S->SectionIndex(), C});
    };
    t.S1->SetText(u"Value");
    t.S1->SetText(u"Value"); // no change, no report
    t.S2->SetVisible(false);
    t.S2->SetParentSection(t.S0);
    t.S0->SetWidth(90);
    t.S1->SetStyle(elhsOwnerDraw);
    t.S1->SetStyle(elhsOwnerDraw);
    t.S0->SetAlignment(hsaCenter);
    t.S2->SetFieldType(sftNumber);
    t.S2->SetFieldType(sftNumber);
    EXPECT_EQ(changes, (std::vector<std::pair<int, TSectionChangeMode>>{{1, scmText},
                                                                         {2, scmVisible},
                                                                         {2, scmParent},
                                                                         {0, scmWidth},
                                                                         {1, scmStyle},
                                                                         {0, scmAlign},
                                                                         {2, scmFieldType}}));
    EXPECT_EQ(t.S1->Style, elhsOwnerDraw);
    EXPECT_EQ(t.S0->Alignment, hsaCenter);
    EXPECT_EQ(t.S2->FieldType, sftNumber);

    t.S1->SetPopupName("ValueMenu");
    int menu = 0;
    t.H.FindPopupMenu = [&](const AnsiString& Name) -> void* {
        return Name == "ValueMenu" ? &menu : nullptr;
    };
    t.H.Flat = true;
    t.H.SetHeight(40);
    t.H.Loaded();
    EXPECT_EQ(t.S1->PopupMenu(), &menu);
    EXPECT_EQ(t.S0->PopupMenu(), nullptr);
    EXPECT_EQ(t.H.Height(), 17);
    EXPECT_EQ(TWgHeaderModel::InitialHeight(-11), 19);
}
