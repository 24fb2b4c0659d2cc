// The .syx writer: fixed capitalisation, fixed layout, one quoting rule a
// section. It is deliberately plainer than the reader, and the two do not
// mirror each other everywhere; those differences are part of the format.

#include "base/SafeFileStream.h"
#include "document/KVSyntax.h"

#include "base/Strings.h"
#include "wide/CodePage.h"

#include <algorithm>
#include <cstring>
#include <initializer_list>
#include <vector>

namespace {

const WideString BannerLine = u"{*************************************************************}";
constexpr std::size_t BannerWidth = 63;

const char16_t* const BlockKeys[5] = {u"BlockName", u"BlockOnLine", u"BlockAsString", u"BlockStart",
                                      u"BlockEnd"};
const char16_t* const FoldKeys[5] = {u"Fold_Id", u"Fold_Begin", u"Fold_End", u"Fold_Section",
                                     u"Fold_NoParentOfId"};

WideString FullEscape(const WideString& S) {
    WideString r = ReplaceAll(S, u"\\", u"\\\\");
    r = ReplaceAll(r, u"\"", u"\\\"");
    return ReplaceAll(r, u"'", u"\\'");
}

WideString QuoteEscape(WideView S) {
    return ReplaceAll(S, u"\"", u"\\\"");
}

// Collects lines ended by CR LF, converted to the system code page as they
// come, in chunks of about a megabyte, so that a large text never exists in
// wide form and never sits in a buffer twice its size. Plain ASCII is copied
// straight into the chunk when the code page keeps it as it is.
class TLineSink {
public:
    TLineSink() : FCodePage(SystemCodePage()), FAscii(FCodePage.AsciiIdentity()) { NewChunk(0); }
    void Line(WideView Text) {
        Put(Text);
        EndLine();
    }
    void Line(WideView First, WideView Second) {
        // The common line of a save, an indented keyword: one check of room.
        const std::size_t n = First.size() + Second.size();
        if (FAscii && IsAscii(First) && IsAscii(Second)) {
            char* out = Room(n + 2);
            Narrow(First, out);
            Narrow(Second, out + First.size());
            out[n] = '\r';
            out[n + 1] = '\n';
            FPos += n + 2;
            return;
        }
        Put(First);
        Put(Second);
        EndLine();
    }
    // One line made of Parts in order.
    void Parts(std::initializer_list<WideView> Parts) {
        for (WideView part : Parts)
            Put(part);
        EndLine();
    }
    void Blank() { EndLine(); }
    // The chunks in order, each holding exactly its bytes.
    std::vector<AnsiString>& Finish() {
        CloseChunk();
        return FChunks;
    }

private:
    static constexpr std::size_t ChunkSize = 1 << 20;

    // Room for Bytes more bytes in the current chunk.
    char* Room(std::size_t Bytes) {
        if (std::size_t(FEnd - FPos) < Bytes) NewChunk(Bytes);
        return FPos;
    }
    void CloseChunk() {
        if (!FChunks.empty()) FChunks.back().resize(std::size_t(FPos - FChunks.back().data()));
    }
    void NewChunk(std::size_t AtLeast) {
        CloseChunk();
        AnsiString& chunk = FChunks.emplace_back(std::max(ChunkSize, AtLeast), '\0');
        FPos = chunk.data();
        FEnd = FPos + chunk.size();
    }
    // Two plain loops that the compiler can widen: is it all ASCII, then the copy.
    static bool IsAscii(WideView Text) {
        WideChar all = 0;
        for (WideChar c : Text)
            all |= c;
        return all < 0x80;
    }
    static void Narrow(WideView Text, char* Out) {
        for (std::size_t i = 0; i < Text.size(); ++i)
            Out[i] = char(Text[i]);
    }
    void Put(WideView Text) {
        if (FAscii && IsAscii(Text)) {
            Narrow(Text, Room(Text.size()));
            FPos += Text.size();
            return;
        }
        PutEncoded(Text);
    }
    void PutEncoded(WideView Text) {
        FScratch.clear();
        FCodePage.EncodeAppend(Text, FScratch);
        std::memcpy(Room(FScratch.size()), FScratch.data(), FScratch.size());
        FPos += FScratch.size();
    }
    void EndLine() {
        char* out = Room(2);
        out[0] = '\r';
        out[1] = '\n';
        FPos += 2;
    }

    const TCodePage& FCodePage;
    const bool FAscii;
    std::vector<AnsiString> FChunks; // the last one is being written, up to FPos
    char* FPos = nullptr;
    char* FEnd = nullptr;
    AnsiString FScratch; // what the code page made of a text that is not plain ASCII
};

// Collects the same lines in wide form, for the checks that need to know
// what a save would write before the code page has its say.
class TWideLineSink {
public:
    explicit TWideLineSink(TWgWideStringList& Lines) : FLines(Lines) {}
    void Line(WideView Text) { FLines.Add(WideString(Text)); }
    void Line(WideView First, WideView Second) {
        WideString line;
        line.reserve(First.size() + Second.size());
        line.append(First).append(Second);
        FLines.Add(line);
    }
    void Parts(std::initializer_list<WideView> Parts) {
        WideString line;
        for (WideView part : Parts)
            line.append(part);
        FLines.Add(line);
    }
    void Blank() { FLines.Add(WideString()); }

private:
    TWgWideStringList& FLines;
};

template <typename Sink> class TSyntaxWriter {
public:
    explicit TSyntaxWriter(Sink& Out) : FOut(Out) {}

    void Banner(const TWgWideStringList& Header) {
        FOut.Line(BannerLine);
        for (int i = 0; i < Header.Count(); ++i) {
            const WideString& entry = Header.Ref(i);
            const std::size_t used = entry.size() + 3;
            WideString line = u"{ " + entry;
            // The closing brace stands at column 63; a longer entry pushes it out.
            if (used <= BannerWidth) line.append(BannerWidth - used, u' ');
            line += u'}';
            FOut.Line(line);
        }
        FOut.Line(BannerLine);
    }

    void Options(const TWgWideStringList& Options) {
        for (int i = 0; i < Options.Count() && i < SyntaxOptionCount; ++i) {
            const WideString& value = Options.Ref(i);
            if (!value.empty())
                Assignment(WideFromAscii(SyntaxOptionKeys[std::size_t(i)]), FullEscape(value));
        }
    }

    void Tuples(const TWgWideStringList& List, const char16_t* const Keys[5]) {
        for (int i = 0; i < List.Count(); ++i) {
            const int m = i % 5;
            const WideString& value = List.Ref(i);
            if (m != 0 && value.empty()) continue;
            if (m == 0) FOut.Blank();
            Assignment(Keys[m], FullEscape(value));
        }
    }

    void Groups(const TMenuList& Menus, const char16_t* Marker) {
        for (int i = 0; i < Menus.MenuCount(); ++i) {
            const WideString name = Menus.MenuName(i);
            FOut.Blank();
            FOut.Line(Marker);
            FOut.Line(u">" + name);
            FOut.Blank();
            // Duplicate names are walked with the count of the first of that name.
            const int count = Menus.MenuItemCount(name);
            const TWgWideStringList& items = *Menus.Menu(i)->Items;
            for (int j = 0; j < count; ++j) {
                // As GetItemNameKind: past the end the name is empty and the kind stays.
                if (j < items.Count()) {
                    FKind = int(items.ObjectAt(j));
                    FOut.Line(u"  ", TMenuList::ItemLeftView(items.Ref(j)));
                } else {
                    FOut.Line(u"  ", WideView());
                }
            }
            FOut.Blank();
            FOut.Line(u"[End]");
            FOut.Blank();
        }
    }

    void Hints(const TWgWideStringList& AutoHint) {
        if (AutoHint.Count() == 0) return;
        FOut.Blank();
        FOut.Line(u"[AutoHint]");
        FOut.Blank();
        for (int i = 0; i < AutoHint.Count(); ++i)
            FOut.Line(u"  \"" + QuoteEscape(AutoHint.Ref(i)) + u"\"");
        EndSection();
    }

    void UserMenu(const TMenuList& Menus) {
        if (Menus.MenuCount() < 1) return;
        FOut.Blank();
        FOut.Line(u"[UserMenu]");
        // The count always comes from the menu named "0".
        const int count = Menus.MenuItemCount(u"0");
        for (int i = 0; i < Menus.MenuCount(); ++i)
            for (int j = 0; j < count; ++j)
                Entry(Menus, i, j, u"  ", true);
        EndSection();
    }

    void Completion(const TMenuList& Menus, const char16_t* Marker) {
        if (Menus.MenuCount() < 1) return;
        FOut.Blank();
        FOut.Line(Marker);
        for (int i = 0; i < Menus.MenuCount(); ++i) {
            const WideString name = QuoteEscape(Menus.MenuName(i));
            FOut.Blank();
            FOut.Line(u"  \"" + name + u"\"");
            // Looked up by the escaped name: a title with a quote finds no menu.
            const int count = Menus.MenuItemCount(name);
            for (int j = 0; j < count; ++j)
                Entry(Menus, i, j, u"    ", false);
        }
        EndSection();
    }

    void SampleText(const TWgWideStringList& Sample) {
        if (Sample.Count() == 0) return;
        FOut.Blank();
        FOut.Line(u"[BeginSample]");
        for (int i = 0; i < Sample.Count(); ++i)
            FOut.Line(Sample.Ref(i));
        FOut.Line(u"[EndSample]");
    }

    void Raw(WideView Line) { FOut.Line(Line); }
    void Blank() { FOut.Blank(); }

private:
    void Assignment(const WideString& Key, const WideString& Value) {
        FOut.Line(u"  " + Key + u" = \"" + Value + u"\"");
    }

    void EndSection() {
        FOut.Blank();
        FOut.Line(u"[End]");
        FOut.Blank();
    }

    void Entry(const TMenuList& Menus, int I, int J, const char16_t* Prefix, bool LineBreaks) {
        // As GetItemNameKind and GetItemText: past the end the name and the
        // text are empty and the kind stays as it was.
        WideView name, text;
        const TAListItem* menu = Menus.Menu(I);
        if (menu && J >= 0 && J < menu->Items->Count()) {
            const WideString& item = menu->Items->Ref(J);
            name = TMenuList::ItemLeftView(item);
            text = TMenuList::ItemRightView(item);
            FKind = int(menu->Items->ObjectAt(J));
        }
        // Copies only where something is escaped or replaced.
        WideString escapedName, escapedText;
        if (name.find(u'"') != WideView::npos) {
            escapedName = QuoteEscape(name);
            name = escapedName;
        }
        if (text.find(u'"') != WideView::npos) {
            escapedText = QuoteEscape(text);
            text = escapedText;
        }
        if (LineBreaks && text.find(u"\r\n") != WideView::npos) {
            escapedText = ReplaceAll(text, u"\r\n", u"#12");
            text = escapedText;
        }
        const WideChar letter = KindIndexToLetter(FKind);
        const WideView letterView(&letter, 1);
        if (!text.empty() && text != name)
            FOut.Parts({Prefix, u"->\"", name, u"\" | \"", text, u"\" + ", letterView});
        else
            FOut.Parts({Prefix, u"->\"", name, u"\" + ", letterView});
    }

    Sink& FOut;
    // One kind for the whole save: an item index out of range leaves it as
    // it was, so such a line takes the previous letter.
    int FKind = KindNone;
};

} // namespace

namespace {

template <typename Sink>
void BuildSyntaxText(Sink& sink, const TWgWideStringList& Header,
                     const TWgWideStringList& Options, const TWgWideStringList& Blocks,
                     const TWgWideStringList& Folds, const TWgWideStringList& AutoHint,
                     const TWgWideStringList& Sample, const TMenuList& Keywords,
                     const TMenuList& Tags, const TMenuList& AutoComplete,
                     const TMenuList& TagComplete, const TMenuList& UserMenu) {
    TSyntaxWriter<Sink> w(sink);
    w.Banner(Header);
    w.Blank();
    w.Blank();
    w.Raw(u"[Options]");
    w.Blank();
    w.Options(Options);
    w.Blank();
    w.Tuples(Blocks, BlockKeys);
    w.Tuples(Folds, FoldKeys);
    w.Blank();
    w.Raw(u"[End]");
    w.Blank();
    w.Groups(Tags, u"[Tags]");
    w.Groups(Keywords, u"[Keywords]");
    w.Hints(AutoHint);
    w.UserMenu(UserMenu);
    w.Completion(AutoComplete, u"[AutoComplete]");
    w.Completion(TagComplete, u"[TagComplete]");
    w.SampleText(Sample);
}

} // namespace

AnsiString TKVSyntax::SaveSyntaxText(const TWgWideStringList& Header,
                                     const TWgWideStringList& Options,
                                     const TWgWideStringList& Blocks,
                                     const TWgWideStringList& Folds,
                                     const TWgWideStringList& AutoHint,
                                     const TWgWideStringList& Sample, const TMenuList& Keywords,
                                     const TMenuList& Tags, const TMenuList& AutoComplete,
                                     const TMenuList& TagComplete, const TMenuList& UserMenu) {
    TLineSink sink;
    BuildSyntaxText(sink, Header, Options, Blocks, Folds, AutoHint, Sample, Keywords, Tags,
                    AutoComplete, TagComplete, UserMenu);
    std::vector<AnsiString>& chunks = sink.Finish();
    if (chunks.size() == 1) {
        chunks.front().shrink_to_fit(); // a small text keeps no megabyte behind it
        return std::move(chunks.front());
    }
    std::size_t size = 0;
    for (const auto& chunk : chunks)
        size += chunk.size();
    AnsiString text;
    text.reserve(size);
    for (auto& chunk : chunks) {
        text += chunk;
        AnsiString().swap(chunk);
    }
    return text;
}

void TKVSyntax::SaveSyntaxFile(const TWgWideStringList& Header, const TWgWideStringList& Options,
                               const TWgWideStringList& Blocks, const TWgWideStringList& Folds,
                               const TWgWideStringList& AutoHint, const TWgWideStringList& Sample,
                               const TMenuList& Keywords, const TMenuList& Tags,
                               const TMenuList& AutoComplete, const TMenuList& TagComplete,
                               const TMenuList& UserMenu, const AnsiString& FileName) {
    // Built in memory first: a file that cannot be created stays as it was,
    // and one that cannot be written whole too.
    TLineSink sink;
    BuildSyntaxText(sink, Header, Options, Blocks, Folds, AutoHint, Sample, Keywords, Tags,
                    AutoComplete, TagComplete, UserMenu);
    SaveFileSafely(FileName, [&](TStream& Stream) {
        for (const auto& chunk : sink.Finish())
            Stream.WriteBuffer(chunk.data(), std::int64_t(chunk.size()));
    });
}

void TKVSyntax::SaveSyntaxWideLines(const TWgWideStringList& Header,
                                   const TWgWideStringList& Options,
                                   const TWgWideStringList& Blocks,
                                   const TWgWideStringList& Folds,
                                   const TWgWideStringList& AutoHint,
                                   const TWgWideStringList& Sample, const TMenuList& Keywords,
                                   const TMenuList& Tags, const TMenuList& AutoComplete,
                                   const TMenuList& TagComplete, const TMenuList& UserMenu,
                                   TWgWideStringList& Lines) {
    Lines.Clear();
    TWideLineSink sink(Lines);
    BuildSyntaxText(sink, Header, Options, Blocks, Folds, AutoHint, Sample, Keywords, Tags,
                    AutoComplete, TagComplete, UserMenu);
}
