// Upper-casing by the same case pairs that lower-casing uses.

#include "base/Strings.h"

#include <gtest/gtest.h>

TEST(UpperCase, InvertsTheLowerCasePairs) {
    const std::pair<WideChar, WideChar> cases[] = {
        {u'a', u'A'},     {u'z', u'Z'},     {u'@', u'@'},     {0x00E9, 0x00C9},
        {0x00FF, 0x0178}, {0x00DF, 0x00DF}, {0x00F7, 0x00F7}, {0x0142, 0x0141},
        {0x01C6, 0x01C4}, {0x0451, 0x0401}, {0x044F, 0x042F}, {0x03C3, 0x03A3},
        {0x03C2, 0x03C2}, {0x0561, 0x0531}, {0xFF41, 0xFF21}, {0x0041, 0x0041},
    };
    for (auto [lower, upper] : cases)
        EXPECT_EQ(int(UpperChar(lower)), int(upper)) << std::hex << int(lower);
    // Every character that lower-casing changes comes back under upper-casing.
    for (int c = 0; c <= 0xFFFF; ++c) {
        const WideChar lower = LowerChar(WideChar(c));
        if (lower != c) {
            ASSERT_EQ(int(UpperChar(lower)), c) << std::hex << c;
        }
    }
    EXPECT_EQ(WideUpperCase(u"\u0451\u043B\u043A\u0430 \u0142\u00F3d\u017A"),
              u"\u0401\u041B\u041A\u0410 \u0141\u00D3D\u0179");
}
