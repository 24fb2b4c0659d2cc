#include "skin/quickini.h"

#include <gtest/gtest.h>

namespace {
TQuickIni Load(const std::string& text) {
    TQuickIni ini;
    TMemoryStream s(std::vector<std::uint8_t>(text.begin(), text.end()));
    ini.LoadFromStream(&s);
    return ini;
}
} // namespace

TEST(QuickIni, LineEndsAndDroppedLines) {
    struct {
        const char* Name;
        std::string Text;
    } cases[] = {
        {"CR", "[A]\rk=1\r; note\r\r  \rz=2"},
        {"LF", "[A]\nk=1\n; note\n\n  \nz=2\n"},
        {"CR LF", "[A]\r\nk=1\r\n; note\r\n\r\n\t \r\nz=2\r\n"},
        {"LF CR is two line ends", "[A]\n\rk=1\n\r; note\n\rz=2"},
        {"zero byte ends the text", std::string("[A]\nk=1\nz=2\n\0[B]\nq=1", 20)},
    };
    for (auto& c : cases) {
        TQuickIni ini = Load(c.Text);
        EXPECT_EQ(ini.Lines, (std::vector<AnsiString>{"[A]", "k=1", "z=2"})) << c.Name;
        ASSERT_EQ(ini.Sections.size(), 1u) << c.Name;
        EXPECT_EQ(ini.Sections[0].second, 0) << c.Name;
    }
    TQuickIni none;
    none.LoadFromStream(nullptr);
    EXPECT_TRUE(none.Lines.empty());
}

TEST(QuickIni, ReadStringRules) {
    TQuickIni ini = Load("x=outside\n"
                         "[Buttons]\n"
                         "  image  =  Button.bmp  \n"
                         "Empty=\n"
                         "Empty=late\n"
                         "Dup=first\n"
                         "Dup=second\n"
                         "NoEquals\n"
                         "Eq=a=b ; not a comment\n"
                         "[Other]\n"
                         "Later=1\n"
                         "[BUTTONS]\n"
                         "Second=yes\n");
    struct {
        const char *Section, *Key, *Expected;
    } cases[] = {
        {"Buttons", "Image", "Button.bmp"}, // key lowered, blanks around "="
        {"BUTTONS", "IMAGE", "Button.bmp"}, // section found whatever its case
        {"bUtToNs", "image", "Button.bmp"},
        {"Buttons", "Empty", "def"}, // the first line decides, its value is empty
        {"Buttons", "Dup", "first"},
        {"Buttons", "NoEquals", "def"},
        {"Buttons", "Eq", "a=b ; not a comment"},
        {"Buttons", "Later", "def"},  // the next section ends the search
        {"Buttons", "Second", "def"}, // of two sections with one name the first is read
        {"Missing", "Image", "def"},
        {"Buttons", "x", "def"},
    };
    for (auto& c : cases)
        EXPECT_EQ(ini.ReadString(c.Section, c.Key, "def"), c.Expected) << c.Section << "." << c.Key;
    std::vector<AnsiString> sections{"stale"};
    ini.ReadSections(sections);
    EXPECT_EQ(sections, (std::vector<AnsiString>{"Buttons", "Other", "BUTTONS"}));
}

TEST(QuickIni, ReadIntegerForms) {
    struct {
        const char* Value;
        std::int32_t Expected;
    } cases[] = {
        {"0x10", 16},
        {"0X1f", 31},
        {"$10", 16},
        {"0x", -7},
        {"010", 10},
        {"-5", -5},
        {"+5", 5},
        {"12a", -7},
        {"abc", -7},
        {"", -7},
        {"2147483647", 2147483647},
        {"2147483648", -7},
        {"-2147483648", -2147483647 - 1},
        {"$FFFFFFFF", -1},
        {"$100000000", -7},
        {"-$10", -16},
        {"$", -7},
        {"- 5", -7},
    };
    for (auto& c : cases) {
        TQuickIni ini = Load(std::string("[S]\nk=") + c.Value + "\n");
        EXPECT_EQ(ini.ReadInteger("S", "k", -7), c.Expected) << c.Value;
    }
}
