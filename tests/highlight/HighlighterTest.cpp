// The highlighter on small definitions, read by the document's own reader,
// and short texts: every stretch with its class, offset and text.

#include "highlight/Highlighter.h"

#include "base/Strings.h"
#include "document/SyntaxDocument.h"
#include "highlight/HighlightTheme.h"
#include "wide/Utf.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace {

using Stretches = std::vector<std::string>;

// A definition from the lines of a .syx text ("\n" between lines).
TSyntaxDocument Definition(std::u16string_view Text) {
    TSyntaxDocument doc;
    TWgWideStringList lines;
    std::size_t start = 0;
    for (std::size_t i = 0; i <= Text.size(); ++i)
        if (i == Text.size() || Text[i] == u'\n') {
            lines.Add(WideString(Text.substr(start, i - start)));
            start = i + 1;
        }
    TKVSyntax().LoadSyntaxLines(TStringListLines(lines), *doc.Header, *doc.Options, *doc.Blocks,
                                *doc.Folds, *doc.AutoHint, *doc.Sample, *doc.Keywords, *doc.Tags,
                                *doc.AutoComplete, *doc.TagComplete, *doc.UserMenu);
    return doc;
}

// "class@offset:text" of each stretch.
Stretches Describe(std::u16string_view Text, const std::vector<THighlightSpan>& Spans) {
    Stretches out;
    for (const THighlightSpan& s : Spans)
        out.push_back(HighlightClassName(s) + "@" + std::to_string(s.Offset) + ":" +
                      EncodeUtf8Lenient(Text.substr(s.Offset, s.Length)));
    return out;
}

Stretches Highlighted(const TSyntaxDocument& Doc, std::u16string_view Text) {
    return Describe(Text, THighlightRules(Doc).Highlight(Text));
}

struct TCase {
    const char16_t* Text;
    Stretches Expected;
};

void Check(const TSyntaxDocument& Doc, const std::vector<TCase>& Cases) {
    for (const TCase& c : Cases)
        EXPECT_EQ(Highlighted(Doc, c.Text), c.Expected) << EncodeUtf8Lenient(c.Text);
}

const char16_t* const LuaLike = uR"syx([Options]
LineCommentA = "--"
LineCommentB = "//"
CommentStartA = "--[["
CommentEndA = "]]"
CommentStartB = "(*"
CommentEndB = "*)"
String = "\""
Char = "'"
Escape = "\\"
StringOnLine = "Yes"
Symbols = "+-*/=(),;.<>"
Numbers = "0123456789."
HexIdentifier = "0x"
CaseSensitive = "Yes"
[End]
[Keywords]
>Reserved
local
function
end
[End]
[Keywords]
>Library
print
end
[End]
)syx";

TEST(HighlighterTest, CommentsOfBothKindsAndTheLongestMarker) {
    const TSyntaxDocument doc = Definition(LuaLike);
    Check(doc, {
                   {u"x -- note\ny", {"comment@2:-- note"}},
                   {u"a // b", {"comment@2:// b"}},
                   // "--[[" is longer than "--": a block comment, across lines.
                   {u"--[[ one\ntwo ]] x", {"comment@0:--[[ one\ntwo ]]"}},
                   {u"(* b *)(*c*)", {"comment@0:(* b *)", "comment@7:(*c*)"}},
                   // Never closed: to the end of the text.
                   {u"(* open\nstill", {"comment@0:(* open\nstill"}},
                   {u"--\r\nend", {"comment@0:--", "keyword-1@4:end"}},
               });
    // A and B are told apart by the group.
    const auto spans = THighlightRules(doc).Highlight(u"-- a\n// b\n--[[c]]\n(*d*)");
    ASSERT_EQ(spans.size(), 4u);
    EXPECT_EQ(spans[0].Group, 1);
    EXPECT_EQ(spans[1].Group, 2);
    EXPECT_EQ(spans[2].Group, 1);
    EXPECT_EQ(spans[3].Group, 2);
}

TEST(HighlighterTest, StringsAndCharsWithEscapesAndLineEnds) {
    const TSyntaxDocument onLine = Definition(LuaLike);
    Check(onLine, {
                      {uR"(s = "a\"b" x)", {"symbol@2:=", R"(string@4:"a\"b")"}},
                      {uR"('c' '\'')", {"char@0:'c'", R"(char@4:'\'')"}},
                      // Unclosed: the line end stops it, the escape does not carry it over.
                      {u"\"open\\\nend", {"string@0:\"open\\", "keyword-1@7:end"}},
                      {u"\"--x\"--y", {"string@0:\"--x\"", "comment@5:--y"}},
                      {uR"("\\" end)", {R"(string@0:"\\")", "keyword-1@5:end"}},
                  });
    // Without StringOnLine a literal runs across lines; the quote as its own
    // escape doubles; a character in String and Char opens a string.
    const TSyntaxDocument sql = Definition(uR"syx([Options]
String = "'"
Char = "'#"
Escape = "'"
[End]
)syx");
    Check(sql, {
                   {u"'it''s' x", {"string@0:'it''s'"}},
                   {u"'a\nb' c", {"string@0:'a\nb'"}},
                   {u"'never", {"string@0:'never"}},
                   {u"#a# b", {"char@0:#a#"}},
               });
}

TEST(HighlighterTest, BlockRecords) {
    const TSyntaxDocument doc = Definition(uR"syx([Options]
Symbols = "[]<>"
BlockName = "Long"
BlockAsString = "Yes"
BlockStart = "[["
BlockEnd = "]]"
BlockName = "Directive"
BlockOnLine = "Yes"
BlockStart = "<%"
BlockEnd = "%>"
BlockName = "Pragma"
BlockStart = "#pragma"
BlockName = "Empty"
BlockEnd = "never"
[End]
)syx");
    Check(doc, {
                   {u"a [[x\ny]] b", {"string@2:[[x\ny]]"}},
                   {u"<% a %> <", {"block@0:<% a %>", "symbol@8:<"}},
                   // On-line without an end on the line: the line end.
                   {u"<% a\n%>", {"block@0:<% a", "symbol@6:>"}},
                   // No end marker: the line end, whatever BlockOnLine says.
                   {u"#pragma once\nx", {"block@0:#pragma once"}},
                   {u"[[ open", {"string@0:[[ open"}},
               });
    const auto spans = THighlightRules(doc).Highlight(u"[[a]] <%b%> #pragma");
    ASSERT_EQ(spans.size(), 3u);
    EXPECT_EQ(spans[0].Group, 1);
    EXPECT_EQ(spans[1].Group, 2);
    EXPECT_EQ(spans[2].Group, 3);
}

TEST(HighlighterTest, NumbersWordsAndSymbols) {
    const TSyntaxDocument doc = Definition(LuaLike);
    Check(doc, {
                   {u"x1 = 12.5", {"symbol@3:=", "number@5:12.5"}},
                   {u".5+0x1Fg", {"number@0:.5", "symbol@2:+", "number@3:0x1F"}},
                   {u"0X2a 0x", {"number@0:0X2a", "number@5:0"}},
                   // A number ends where the word begins; the word is looked up.
                   {u"10end", {"number@0:10", "keyword-1@2:end"}},
                   {u"a..b", {"symbol@1:.."}},
                   {u"f(a, b);", {"symbol@1:(", "symbol@3:,", "symbol@6:);"}},
               });
    // Without Numbers and HexIdentifier digits are plain words.
    EXPECT_EQ(Highlighted(Definition(u"[Options]\nSymbols = \"+\"\n[End]\n"), u"1+0x2"),
              Stretches{"symbol@1:+"});
}

TEST(HighlighterTest, KeywordGroupsAndCase) {
    const TSyntaxDocument sensitive = Definition(LuaLike);
    // "end" is in both groups: the first keeps it. Case counts.
    Check(sensitive, {
                         {u"local function print end End",
                          {"keyword-1@0:local", "keyword-1@6:function", "keyword-2@15:print",
                           "keyword-1@21:end"}},
                         {u"printer _print print_", {}},
                     });
    const TSyntaxDocument insensitive = Definition(uR"syx([Options]
LineCommentA = "REM"
Symbols = "#"
[End]
[Keywords]
>Words
Select
#include
ÄRGER
[End]
)syx");
    Check(insensitive, {
                           {u"SELECT select sElEcT",
                            {"keyword-1@0:SELECT", "keyword-1@7:select", "keyword-1@14:sElEcT"}},
                           {u"ärger", {"keyword-1@0:ärger"}},
                           // "#" is a symbol, so it never joins a word.
                           {u"#include", {"symbol@0:#"}},
                           // A marker of letters matches whole words only, in any case.
                           {u"remark rem x\nREM y", {"comment@7:rem x", "comment@13:REM y"}},
                       });
    const TSyntaxDocument extra = Definition(u"[Keywords]\n#include\n$x\n[End]\n");
    Check(extra, {
                     {u"#include <a> $x $y", {"keyword-1@0:#include", "keyword-1@13:$x"}},
                 });
}

TEST(HighlighterTest, TagsAndRegionsWithoutTags) {
    const TSyntaxDocument doc = Definition(uR"syx([Options]
Symbols = "<>/="
String = "\""
NoTagsStart = "<![CDATA["
NoTagsEnd = "]]>"
[End]
[Tags]
>Structure
html
xsl:template
[End]
[Tags]
>Text
P
[End]
)syx");
    Check(doc, {
                   {u"<HTML><p>x</p>",
                    {"symbol@0:<", "tag-1@1:HTML", "symbol@5:><", "tag-2@7:p", "symbol@8:>",
                     "symbol@10:</", "tag-2@12:p", "symbol@13:>"}},
                   {u"<xsl:template a=\"1\">",
                    {"symbol@0:<", "tag-1@1:xsl:template", "symbol@15:=", "string@16:\"1\"",
                     "symbol@19:>"}},
                   // Unknown names and names away from "<" are no tags.
                   {u"<div> html", {"symbol@0:<", "symbol@4:>"}},
                   {u"<![CDATA[<p>]]><p>",
                    {"symbol@0:<", "symbol@9:<", "symbol@11:>", "symbol@14:><", "tag-2@16:p",
                     "symbol@17:>"}},
               });
    const TSyntaxDocument exact = Definition(u"[Options]\nTagsCaseSensitive = \"Yes\"\n[End]\n"
                                             u"[Tags]\np\n[End]\n");
    Check(exact, {{u"<p><P>", {"tag-1@1:p"}}});
}

TEST(HighlighterTest, UrlsAtTopLevelAndInsideOtherStretches) {
    const TSyntaxDocument doc = Definition(uR"syx([Options]
LineCommentA = "#"
String = "\""
Symbols = ".:/"
HighlightUrl = "y"
[End]
)syx");
    Check(doc,
          {
              {u"see https://a.org/x?y=1.", {"url@4:https://a.org/x?y=1", "symbol@23:."}},
              {u"# at WWW.a.org, or", {"comment@0:# at ", "url@5:WWW.a.org", "comment@14:, or"}},
              {u"\"mailto:me@a.org\"", {"string@0:\"", "url@1:mailto:me@a.org", "string@16:\""}},
              // A scheme alone, or inside a word, is no URL.
              {u"http:// xhttp://a", {"symbol@4:://", "symbol@13:://"}},
          });
    // Off unless HighlightUrl says yes.
    EXPECT_EQ(
        Highlighted(Definition(u"[Options]\nHighlightUrl = \"No\"\n[End]\n"), u"http://a.org"),
        Stretches{});
}

TEST(HighlighterTest, OddTextNeitherHangsNorStraysOutside) {
    const TSyntaxDocument doc = Definition(LuaLike);
    const std::u16string texts[] = {u"",
                                    u"\"",
                                    u"\\",
                                    u"--[[",
                                    u"0x",
                                    u".",
                                    u"'\\",
                                    std::u16string(u"a\0b\"\0\"", 7),
                                    u"\xD800\xDC00 \xDFFF end"};
    for (const std::u16string& text : texts) {
        const auto spans = THighlightRules(doc).Highlight(text);
        std::size_t last = 0;
        for (const THighlightSpan& s : spans) {
            EXPECT_GE(s.Offset, last);
            EXPECT_GT(s.Length, 0u);
            EXPECT_LE(s.End(), text.size());
            last = s.End();
        }
    }
    // An empty definition colours nothing.
    EXPECT_EQ(Highlighted(TSyntaxDocument(), u"local x = \"1\" -- 2"), Stretches{});
}

TEST(HighlighterTest, RulesAreBuiltAgainOnlyWhenTheDefinitionChanges) {
    TSyntaxDocument doc = Definition(LuaLike);
    THighlighter highlighter;
    std::vector<THighlightSpan> spans;
    highlighter.Highlight(doc, u"local x", spans);
    highlighter.Highlight(doc, u"print y", spans);
    EXPECT_EQ(highlighter.Builds(), 1);
    // Options the highlighter does not read, the sample and the menus'
    // names change nothing.
    doc.Options->Put(20, u"begin");
    doc.Sample->Add(u"more");
    doc.Keywords->SetMenuName(0, u"Renamed");
    highlighter.Highlight(doc, u"x", spans);
    EXPECT_EQ(highlighter.Builds(), 1);

    struct TEdit {
        const char* Name;
        void (*Apply)(TSyntaxDocument&);
    };
    const TEdit edits[] = {
        {"keyword added",
         [](TSyntaxDocument& D) { D.Keywords->AddMenuItem(1, u"x", KindNone, {}); }},
        {"keyword renamed", [](TSyntaxDocument& D) { D.Keywords->SetItemName(1, 0, u"y"); }},
        {"group added", [](TSyntaxDocument& D) { D.Keywords->AddMenu(u"Empty"); }},
        {"tag group added", [](TSyntaxDocument& D) { D.Tags->AddMenu(u"T"); }},
        {"option changed", [](TSyntaxDocument& D) { D.Options->Put(13, u"No"); }},
        {"block added",
         [](TSyntaxDocument& D) {
             for (const char16_t* v : {u"B", u"No", u"No", u"<", u">"})
                 D.Blocks->Add(v);
         }},
        {"block changed", [](TSyntaxDocument& D) { D.Blocks->Put(4, u"}"); }},
    };
    int builds = 1;
    for (const TEdit& edit : edits) {
        edit.Apply(doc);
        highlighter.Highlight(doc, u"x", spans);
        EXPECT_EQ(highlighter.Builds(), ++builds) << edit.Name;
    }
    // The new rules are in force: "x" is now a keyword of group 2.
    EXPECT_EQ(Describe(u"x", spans), Stretches{"keyword-2@0:x"});
}

TEST(HighlighterTest, SpansCutAtLineEndsAndClassNames) {
    const std::u16string text = u"ab\r\ncd\n\nef";
    const std::vector<THighlightSpan> spans = {{0, 10, hkComment, 1}, {10, 0, hkUrl, 0}};
    const std::vector<THighlightSpan> expected = {
        {0, 2, hkComment, 1}, {4, 2, hkComment, 1}, {8, 2, hkComment, 1}};
    EXPECT_EQ(SplitAtLineEnds(text, spans), expected);
    EXPECT_EQ(HighlightClassName({0, 1, hkKeyword, 12}), "keyword-12");
    EXPECT_EQ(HighlightClassName({0, 1, hkTag, 3}), "tag-3");

    TWgWideStringList lines;
    EXPECT_EQ(JoinLines(lines), u"");
    for (const char16_t* line : {u"a", u"", u"b"})
        lines.Add(line);
    EXPECT_EQ(JoinLines(lines), u"a\n\nb");
}

TEST(HighlighterTest, ThemeColoursAndTheSkinsCustomColours) {
    EXPECT_EQ(CssColor(0x153AC0), "#C03A15"); // 0x00BBGGRR
    EXPECT_EQ(DefaultHighlightStyle(hkKeyword, 1), DefaultHighlightStyle(hkKeyword, 5));
    EXPECT_NE(DefaultHighlightStyle(hkKeyword, 1), DefaultHighlightStyle(hkKeyword, 2));
    EXPECT_TRUE(DefaultHighlightStyle(hkComment, 1).Italic);
    EXPECT_TRUE(DefaultHighlightStyle(hkUrl, 0).Underline);

    std::array<TColor, 10> custom{};
    for (std::size_t i = 0; i < custom.size(); ++i)
        custom[i] = TColor(0x100 * (i + 1));
    const struct {
        THighlightKind Kind;
        int Group;
        TColor Color;
    } table[] = {{hkKeyword, 1, custom[0]}, {hkKeyword, 2, custom[4]}, {hkKeyword, 3, custom[5]},
                 {hkKeyword, 4, custom[0]}, {hkTag, 1, custom[5]},     {hkTag, 2, custom[0]},
                 {hkComment, 2, custom[6]}, {hkUrl, 0, custom[0]}};
    for (const auto& row : table)
        EXPECT_EQ(SkinHighlightStyle(row.Kind, row.Group, custom).Color, row.Color)
            << row.Kind << " " << row.Group;
    // Kinds the skin does not colour, and the faces, stay as the default theme.
    EXPECT_EQ(SkinHighlightStyle(hkString, 0, custom), DefaultHighlightStyle(hkString, 0));
    EXPECT_TRUE(SkinHighlightStyle(hkKeyword, 2, custom).Bold);
}

} // namespace
