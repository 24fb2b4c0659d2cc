#include "base/WgList.h"

#include <gtest/gtest.h>

TEST(WgList, MoveRangeAndSearches) {
    int v[6] = {0, 1, 2, 3, 4, 5};
    TWgList<int> list;
    for (auto& x : v)
        list.Add(&x);
    auto values = [&] {
        std::vector<int> r;
        for (int* p : list.Items())
            r.push_back(*p);
        return r;
    };
    list.MoveRange(1, 2, 5); // [1, 2] before the old index 5
    EXPECT_EQ(values(), (std::vector<int>{0, 3, 4, 1, 2, 5}));
    list.MoveRange(3, 3, 0);
    EXPECT_EQ(values(), (std::vector<int>{1, 2, 5, 0, 3, 4}));
    list.MoveRange(0, 2, 1); // a target inside the range moves nothing
    EXPECT_EQ(values(), (std::vector<int>{1, 2, 5, 0, 3, 4}));
    EXPECT_THROW(list.MoveRange(5, 2, 0), EListError);

    list.Add(&v[1]);
    EXPECT_EQ(list.IndexOf(&v[1]), 0);
    EXPECT_EQ(list.IndexOfFrom(&v[1], 1), 6);
    EXPECT_EQ(list.IndexOfBack(&v[1]), 6);
    EXPECT_EQ(list.IndexOf(nullptr), -1);
}

TEST(WgList, DroppedElementsAreReported) {
    int a = 1, b = 2, c = 3;
    TWgList<int> list;
    std::vector<int> dropped;
    list.OnDelete = [&](TWgList<int>&, int* p) { dropped.push_back(*p); };
    list.Add(&a);
    list.Add(&b);
    list.Insert(0, &c);
    list.Delete(1);
    list.Clear();
    EXPECT_EQ(dropped, (std::vector<int>{1, 3, 2}));
    EXPECT_EQ(list.Last(), nullptr);
    try {
        list.Delete(0);
        FAIL();
    } catch (const EListError& e) {
        EXPECT_STREQ(e.what(), "List index out of bounds (0)");
    }
}
