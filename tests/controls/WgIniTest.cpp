#include "controls/WgIni.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <random>

namespace {

std::string TempFile(const char* Name) {
    return (std::filesystem::temp_directory_path() / (std::string("lexsmith-initest-") + Name))
        .string();
}

std::string ReadFile(const std::string& Path) {
    std::ifstream in(Path, std::ios::binary);
    return std::string((std::istreambuf_iterator<char>(in)), {});
}

// A store holding every value type, in a root value and two levels of keys.
void Fill(TWgIniFile& Ini) {
    Ini.WriteString("", "Title", "plain text");
    Ini.WriteBool("\\Window", "Visible", true);
    Ini.WriteInteger("\\Window", "Left", -120);
    Ini.WriteFloat("\\Window", "Scale", 1.25);
    Ini.WriteMultiString("\\Window\\Recent", "Files", {"a.syx", "b c.syx", ""});
    Ini.WriteBinary("\\Window\\Recent", "Blob", {0x00, 0xAB, 0x10});
    Ini.WriteBool("\\Tree", "Flat", false);
}

TEST(WgIni, OpenKeyPaths) {
    TWgIniFile ini;
    ASSERT_TRUE(ini.OpenKey("\\Alpha\\Beta", true));
    EXPECT_EQ(ini.CurrentPath(), "\\Alpha\\Beta");
    EXPECT_TRUE(ini.Modified());
    ini.WriteString("\\Alpha", "Value", "v");
    EXPECT_EQ(ini.CurrentPath(), "\\Alpha\\Beta") << "typed operations keep the current key";

    struct {
        const char* Start;
        const char* Key;
        bool CanCreate;
        bool Result;
        const char* Path;
    } cases[] = {
        {"\\", "\\Alpha\\Beta\\", false, true, "\\Alpha\\Beta"},
        {"\\", "\\ alpha \\BETA", false, true, "\\Alpha\\Beta"},
        {"\\Alpha", "Beta", false, true, "\\Alpha\\Beta"},
        {"\\Alpha", "Gamma", false, false, "\\Alpha"},
        {"\\", "\\Alpha\\\\Beta", true, false, "\\Alpha"},
        {"\\", "\\Alpha\\Gamma\\Delta", false, false, "\\Alpha"},
        {"\\Alpha", "", false, true, "\\Alpha"},
        {"\\Alpha", "\\", false, true, "\\"},
        {"\\", "\\Alpha\\Value", false, false, "\\Alpha"},
    };
    for (const auto& c : cases) {
        ASSERT_TRUE(ini.OpenKey(c.Start, false));
        EXPECT_EQ(ini.OpenKey(c.Key, c.CanCreate), c.Result) << c.Key;
        EXPECT_EQ(ini.CurrentPath(), c.Path) << c.Key;
    }
    // With CanCreate a value of that name becomes a key.
    EXPECT_TRUE(ini.OpenKey("\\Alpha\\Value", true));
    EXPECT_EQ(ini.ReadString("\\Alpha", "Value", "gone"), "gone");
}

TEST(WgIni, ReadsGiveDefaultsOnMissingOrOtherType) {
    TWgIniFile ini;
    Fill(ini);
    EXPECT_EQ(ini.ReadInteger("\\Window", "Left", 7), -120);
    EXPECT_EQ(ini.ReadInteger("\\Window", "Visible", 7), 7);
    EXPECT_EQ(ini.ReadInteger("\\Nowhere", "Left", 7), 7);
    EXPECT_EQ(ini.ReadString("", "title", "x"), "plain text");
    EXPECT_FALSE(ini.KeyExists("\\Nowhere"));
    EXPECT_EQ(ini.CurrentPath(), "\\");
    TWgAnsiStrings names;
    ASSERT_TRUE(ini.EnumSubKeys("\\", names));
    EXPECT_EQ(names, (TWgAnsiStrings{"Window", "Tree"}));
    ASSERT_TRUE(ini.EnumValues("\\Window", names));
    EXPECT_EQ(names, (TWgAnsiStrings{"Visible", "Left", "Scale"}));
    EXPECT_TRUE(ini.RenameKey("\\Tree", "Forest"));
    EXPECT_FALSE(ini.ReadBool("\\Forest", "Flat", true));
    EXPECT_TRUE(ini.DeleteKey("\\Window\\Recent"));
    EXPECT_FALSE(ini.ValueExists("\\Window\\Recent", "Blob"));
    EXPECT_TRUE(ini.DeleteValue("\\Window", "Left"));
    EXPECT_FALSE(ini.DeleteValue("\\Window", "Left"));
    EXPECT_FALSE(ini.DeleteKey("\\"));
}

TEST(WgIni, TextFormatBytes) {
    TWgIniFile ini;
    Fill(ini);
    ini.WriteString("\\Tree", "", "bare line");
    EXPECT_EQ(ini.SaveToText(), ";Automatically generated file. DO NOT MODIFY!!!\r\n"
                                "Title=plain text\r\n"
                                "\r\n[Window]\r\n"
                                "Visible=true\r\n"
                                "Left=-120\r\n"
                                "Scale=1.25\r\n"
                                "\r\n[Window\\Recent]\r\n"
                                "Files[0]=a.syx\r\n"
                                "Files[1]=b c.syx\r\n"
                                "Files[2]=\r\n"
                                "Blob=454C 3 00 AB 10 \r\n"
                                "\r\n[Tree]\r\n"
                                "Flat=false\r\n"
                                "bare line\r\n");
}

TEST(WgIni, TextRoundTripKeepsEveryType) {
    TWgIniFile ini;
    Fill(ini);
    TWgIniFile copy;
    copy.LoadFromText(ini.SaveToText());
    EXPECT_EQ(copy.SaveToText(), ini.SaveToText());
    EXPECT_EQ(copy.ReadFloat("\\Window", "Scale", 0), 1.25);
    EXPECT_EQ(copy.ReadMultiString("\\Window\\Recent", "Files", {}),
              (TWgAnsiStrings{"a.syx", "b c.syx", ""}));
    EXPECT_EQ(copy.ReadBinary("\\Window\\Recent", "Blob", {}), (TWgByteArray{0x00, 0xAB, 0x10}));
    EXPECT_TRUE(copy.ReadBool("\\Window", "Visible", false));
}

TEST(WgIni, TextLoadDetectsTypes) {
    struct {
        const char* Text;
        std::uint8_t Type;
    } cases[] = {
        {"1", ivtInteger},
        {"-5", ivtInteger},
        {"01", ivtString},
        {"+5", ivtString},
        {"0x10", ivtInteger},
        {"$ff", ivtInteger},
        {"TRUE", ivtBoolean},
        {"False", ivtBoolean},
        {"1.5", ivtFloat},
        {"1e5", ivtString},
        {"2147483648", ivtFloat},
        {"nan", ivtString},
        {"454C 2 01 AB ", ivtBinary},
        {"454C zz", ivtBinary},
        {"", ivtString},
        {"two words", ivtString},
    };
    for (const auto& c : cases) {
        TWgIniFile ini;
        ini.LoadFromText(std::string("v=") + c.Text);
        TWgIniEntry* v = ini.GetValueEntry("", "v");
        ASSERT_NE(v, nullptr) << c.Text;
        EXPECT_EQ(v->ValueType(), c.Type) << c.Text;
    }
    TWgIniFile ini;
    ini.LoadFromText("a=0x10\nb=$FFFFFFFF\nc=454C FFFFFFF 01\n");
    EXPECT_EQ(ini.ReadInteger("", "a", 0), 16);
    EXPECT_EQ(ini.ReadInteger("", "b", 0), -1);
    EXPECT_EQ(ini.ReadBinary("", "c", {}), (TWgByteArray{1})) << "bytes as far as they go";
}

TEST(WgIni, TextLoadLinesSectionsAndComments) {
    TWgIniFile ini;
    ini.LoadFromText("; comment\r\n"
                     "top=\"a;b\" ; tail\r\n"
                     "just a line\r\n"
                     "=also bare\r\n"
                     "[Sec ; note]\r\n"
                     "k=v=w\r\n"
                     "[Open\r\n"
                     "x=1\r\n"
                     "[Bad\\\\Path]\r\n"
                     "lost=1\r\n"
                     "[Sec\\Sub]\r\n"
                     "  spaced  =  2\r\n");
    EXPECT_EQ(ini.ReadString("", "top", ""), "\"a;b\" ");
    EXPECT_EQ(ini.ReadString("", "#1", ""), "just a line");
    EXPECT_EQ(ini.ReadString("", "#2", ""), "also bare");
    EXPECT_EQ(ini.ReadString("\\Sec", "k", ""), "v=w");
    EXPECT_EQ(ini.ReadInteger("\\Open", "x", 0), 1);
    EXPECT_FALSE(ini.ValueExists("\\Bad", "lost"));
    EXPECT_EQ(ini.ReadString("\\Sec\\Sub", "spaced", ""), "  2");
    // Bare lines come back as bare lines.
    EXPECT_NE(ini.SaveToText().find("\r\njust a line\r\nalso bare\r\n"), std::string::npos);

    TWgIniFile trimmed;
    trimmed.SetTrimSpaces(true);
    trimmed.LoadFromText("   ; indented comment\n  n = 3  \n");
    EXPECT_EQ(trimmed.ReadString("", "n", ""), " 3");
    EXPECT_FALSE(trimmed.ValueExists("", "#1"));
}

TEST(WgIni, BinaryFormatBytesAndRoundTrip) {
    TWgIniFile small;
    small.WriteInteger("\\K", "n", 258);
    TMemoryStream stream;
    small.SaveToBinary(stream);
    EXPECT_EQ(stream.Data(),
              (std::vector<std::uint8_t>{1, 0, 0, 0,   0, 1, 1, 0, 0, 0, 'K', 0, 1,
                                         0, 0, 0, 'n', 2, 4, 0, 0, 0, 2, 1,   0, 0}));
    TWgIniFile ini;
    Fill(ini);
    TMemoryStream full;
    ini.SaveToBinary(full);
    full.SetPosition(0);
    TWgIniFile copy;
    copy.LoadFromBinary(full);
    EXPECT_EQ(copy.SaveToText(), ini.SaveToText());

    // A truncated stream, a negative length and an unknown marker raise.
    auto load = [](std::vector<std::uint8_t> Bytes) {
        TMemoryStream s(std::move(Bytes));
        TWgIniFile target;
        target.LoadFromBinary(s);
        return target.SaveToText();
    };
    std::vector<std::uint8_t> cut(stream.Data().begin(), stream.Data().end() - 1);
    EXPECT_THROW(load(cut), EReadError);
    EXPECT_THROW(load({1, 0xFF, 0xFF, 0xFF, 0xFF}), EWgIniError);
    EXPECT_THROW(load({7}), EWgIniError);
    // Under a key that cannot be opened, values are passed over by size.
    std::vector<std::uint8_t> skipped = {1, 4, 0,   0, 0, 'a', '\\', '\\', 'b', 0, 1, 0,
                                         0, 0, 'v', 2, 4, 0,   0,    0,    1,   2, 3, 4};
    EXPECT_EQ(load(skipped), ";Automatically generated file. DO NOT MODIFY!!!\r\n\r\n[a]\r\n");
}

// Found by fuzzing: stores whose saved form read back as another store, so
// that every save changed them again. Loading must neither turn a value into
// a key of the same name nor make a key whose name is all blanks.
TEST(WgIni, BinaryFormOfEveryLoadedStoreReadsBackTheSame) {
    using Bytes = std::vector<std::uint8_t>;
    struct {
        const char* Name;
        Bytes File;
        const char* Key; // where a value named Value must survive
        const char* Value;
    } cases[] = {
        // A nameless integer in the root, then a key path of six zero bytes,
        // the delimiter and a name: the blanks matched the nameless value.
        {"blank component beside a nameless value",
         {0, 0, 0, 0, 0, 2, 4,    0,   0,   0,   0x80, 0x80, 0x80, 0, 1,    18,   0,    0,   0,
          0, 0, 0, 0, 0, 0, '\\', 'C', 'o', '(', 4,    0,    0,    0, 0xEC, 0xFF, 0xFF, 0xFF},
         "\\",
         ""},
        // Key "flag", then back to the root and a value "flag": saved with the
        // value first, the key then took the value's place.
        {"key and value of one name",
         {1, 4, 0, 0, 0,   'f', 'l', 'a', 'g', 1, 0, 0, 0, 0, 0,
          4, 0, 0, 0, 'f', 'l', 'a', 'g', 1,   1, 0, 0, 0, 0},
         "\\",
         "flag"},
        // A value "v", then a path of three control bytes, an empty component
        // and "x": the first key was made before the path failed, and its own
        // path could not open it again.
        {"key named by blanks",
         {0, 1, 0, 0, 0, 'v', 2, 4, 0, 0, 0, 1, 0, 0, 0, 1, 6, 0, 0, 0, 1, 2, 3, '\\', '\\', 'x'},
         "\\",
         "v"},
    };
    for (const auto& c : cases) {
        TMemoryStream in(c.File), saved, twice;
        TWgIniFile ini;
        ini.LoadFromBinary(in);
        EXPECT_TRUE(ini.ValueExists(c.Key, c.Value)) << c.Name;
        ini.SaveToBinary(saved);
        TMemoryStream back(saved.Data());
        TWgIniFile again;
        again.LoadFromBinary(back);
        again.SaveToBinary(twice);
        EXPECT_EQ(twice.Data(), saved.Data()) << c.Name;
        EXPECT_TRUE(again.ValueExists(c.Key, c.Value)) << c.Name;
    }
    // Opening a path through the interface still turns a value into a key,
    // but a component of blanks names nothing, not the nameless value.
    TWgIniFile ini;
    ini.WriteInteger("\\", "", 7);
    EXPECT_FALSE(ini.OpenKey("\\ \\Sub", true));
    EXPECT_EQ(ini.ReadInteger("\\", "", 0), 7);
}

TEST(WgIni, SimpleModeFlattensThroughTheFile) {
    TWgIniFile ini;
    ini.WriteBool("\\A\\B", "On", true);
    ini.WriteInteger("\\A", "N", 3);
    ini.SetSimple(true);
    EXPECT_EQ(ini.SaveToText(), ";Automatically generated file. DO NOT MODIFY!!!\r\n"
                                "\r\n[A]\r\nN=3\r\n"
                                "\r\n[A\\B]\r\nOn=1\r\n");
    EXPECT_TRUE(ini.ReadBool("A\\B", "On", false));
    EXPECT_FALSE(ini.WriteBinary("A", "Blob", {1}));
    ini.SetSimple(false);
    EXPECT_EQ(ini.ReadInteger("\\A\\B", "On", 0), 1) << "the boolean came back as 1";
    EXPECT_EQ(ini.ReadInteger("\\A", "N", 0), 3);
}

TEST(WgIni, FilesLazyWriteAndCallbacks) {
    std::string path = TempFile("lazy.ini");
    std::filesystem::remove(path);
    std::vector<std::string> calls;
    {
        TWgIniFile ini;
        ini.SetPath(path);
        ini.OnBeforeSave = [&](TWgIniFile&) { calls.push_back("before"); };
        ini.OnAfterSave = [&](TWgIniFile& Sender) {
            calls.push_back(Sender.Modified() ? "after modified" : "after");
        };
        Fill(ini);
        EXPECT_FALSE(std::filesystem::exists(path));
    }
    EXPECT_EQ(calls, (std::vector<std::string>{"before", "after"}));
    TWgIniFile loaded;
    loaded.SetPath(path);
    ASSERT_TRUE(loaded.Load());
    EXPECT_EQ(loaded.ReadInteger("\\Window", "Left", 0), -120);

    loaded.SetLazyWrite(false);
    loaded.SetBinaryMode(true);
    loaded.WriteInteger("\\Window", "Left", 5);
    std::string bytes = ReadFile(path);
    ASSERT_FALSE(bytes.empty());
    EXPECT_EQ(bytes[0], 1) << "saved at once, in binary";
    TWgIniFile missing;
    missing.SetPath(path + ".none");
    EXPECT_FALSE(missing.Load());
    missing.SetPath(std::filesystem::temp_directory_path().string());
    EXPECT_FALSE(missing.Load()) << "a folder is no store";
    EXPECT_FALSE(TWgIniFile().Save());
    std::filesystem::remove(path);
}

TEST(WgIni, ManyChildrenAndDeepPaths) {
    TWgIniFile ini;
    for (int i = 0; i < 50; ++i)
        ini.WriteInteger("\\K", "v" + std::to_string(i), i);
    EXPECT_EQ(ini.ReadInteger("\\K", " V42 ", 0), 42);
    EXPECT_TRUE(ini.DeleteValue("\\K", "v7"));
    EXPECT_FALSE(ini.ValueExists("\\K", "v7"));
    EXPECT_EQ(ini.ReadInteger("\\K", "v8", 0), 8);
    ini.GetValueEntry("\\K", "v9")->SetValueName("renamed");
    EXPECT_EQ(ini.ReadInteger("\\K", "renamed", 0), 9);
    EXPECT_FALSE(ini.ValueExists("\\K", "v9"));
    ini.WriteInteger("\\K", "v8", 80);
    EXPECT_EQ(ini.ReadInteger("\\K", "v8", 0), 80);

    // Keys nest at most MaxDepth deep, whatever a file asks for.
    std::string deep;
    for (int i = 0; i < 300; ++i)
        deep += "\\d";
    EXPECT_FALSE(ini.OpenKey(deep, true));
    EXPECT_EQ(std::count(ini.CurrentPath().begin(), ini.CurrentPath().end(), '\\'),
              TWgIniEntry::MaxDepth);
    TWgIniFile loaded;
    loaded.LoadFromText("[" + deep + "]\nx=1\n");
    EXPECT_FALSE(loaded.SaveToText().find("x=1") != std::string::npos);
}

TEST(WgIni, RegistryIsNotAvailableHere) {
    TWgIniFile ini;
    try {
        ini.SetUseRegistry(true);
        FAIL();
    } catch (const EWgIniError& e) {
        EXPECT_STREQ(e.what(), "Registry is not available on this platform.");
    }
    EXPECT_FALSE(ini.UseRegistry());
}

TEST(WgIni, MutatedFilesNeverFault) {
    TWgIniFile source;
    Fill(source);
    std::string text = source.SaveToText();
    TMemoryStream binary;
    source.SaveToBinary(binary);
    std::mt19937 random(5150);
    for (int round = 0; round < 2000; ++round) {
        std::string t = text;
        std::vector<std::uint8_t> b = binary.Data();
        for (int e = 0; e < 1 + int(random() % 6); ++e) {
            t[random() % t.size()] = char("[]=;\"\\\n#0x$454C"[random() % 15]);
            b[random() % b.size()] = std::uint8_t(random());
        }
        TWgIniFile ini;
        ini.LoadFromText(t.substr(0, random() % (t.size() + 1)));
        ini.SaveToText();
        TMemoryStream s(b);
        try {
            ini.LoadFromBinary(s);
        } catch (const Exception&) {
            // a clear error is a valid answer to a broken file
        }
        EXPECT_EQ(ini.CurrentKey(), ini.Root());
    }
}

} // namespace
