#include "document/SyntaxDocument.h"

const std::array<const char16_t*, 6> DefaultHeaderLines = {
    u"<b>Syntax:</b> ",           u"<b>Author:</b> ", u"<b>Version:</b> ", u"<b>Date:</b> ", u"",
    u"<b>Recommended colors:</b>"};

void TSyntaxDocument::Reset() {
    Header = std::make_unique<TWgWideStringList>();
    Options = std::make_unique<TWgWideStringList>();
    for (int i = 0; i < SyntaxOptionCount; ++i)
        Options->Add(WideString());
    Blocks = std::make_unique<TWgWideStringList>();
    Folds = std::make_unique<TWgWideStringList>();
    AutoHint = std::make_unique<TWgWideStringList>();
    Sample = std::make_unique<TWgWideStringList>();
    Keywords = std::make_unique<TMenuList>();
    Tags = std::make_unique<TMenuList>();
    AutoComplete = std::make_unique<TMenuList>();
    TagComplete = std::make_unique<TMenuList>();
    UserMenu = std::make_unique<TMenuList>();
}

void TSyntaxDocument::Load(const AnsiString& FileName, TTextEncoding* DetectedEncoding) {
    TKVSyntax().LoadSyntaxFile(*Header, *Options, *Blocks, *Folds, *AutoHint, *Sample, *Keywords,
                               *Tags, *AutoComplete, *TagComplete, *UserMenu, FileName,
                               DetectedEncoding);
}

void TSyntaxDocument::Save(const AnsiString& FileName) const {
    TKVSyntax().SaveSyntaxFile(*Header, *Options, *Blocks, *Folds, *AutoHint, *Sample, *Keywords,
                               *Tags, *AutoComplete, *TagComplete, *UserMenu, FileName);
}

AnsiString TSyntaxDocument::SaveText() const {
    return TKVSyntax().SaveSyntaxText(*Header, *Options, *Blocks, *Folds, *AutoHint, *Sample,
                                      *Keywords, *Tags, *AutoComplete, *TagComplete, *UserMenu);
}

void TSyntaxDocument::Open(const AnsiString& FileName, TTextEncoding* DetectedEncoding) {
    Reset();
    Load(FileName, DetectedEncoding);
    if (Header->Count() < 1)
        for (const char16_t* line : DefaultHeaderLines)
            Header->Add(line);
}

void TSyntaxDocument::SaveWideLines(TWgWideStringList& Lines) const {
    TKVSyntax().SaveSyntaxWideLines(*Header, *Options, *Blocks, *Folds, *AutoHint, *Sample,
                                    *Keywords, *Tags, *AutoComplete, *TagComplete, *UserMenu,
                                    Lines);
}

void TSyntaxDocument::LoadLines(const TLineSource& Lines, TSyntaxWalkObserver* Observer) {
    TKVSyntax().LoadSyntaxLines(Lines, *Header, *Options, *Blocks, *Folds, *AutoHint, *Sample,
                                *Keywords, *Tags, *AutoComplete, *TagComplete, *UserMenu,
                                Observer);
}
