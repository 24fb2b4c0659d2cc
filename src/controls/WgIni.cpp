#include "controls/WgIni.h"
#include "base/SafeFileStream.h"

#include <algorithm>
#include <atomic>
#include <charconv>
#include <cmath>
#include <cstdio>
#include <cstring>
#include <filesystem>
#include <random>

namespace {

const char* const SNoRegistry = "Registry is not available on this platform.";
const char* const SDelimiterRegistry = "Changing delimiter is not available when using registry.";
const char* const SCreateValueRegistry = "CreateValue method is not available when using registry.";
const char* const SGetValueEntryRegistry =
    "GetValueEntry method is not available when using registry.";
const char* const SSetValueTypeRegistry =
    "SetValueType method is not available when using registry.";
const char* const SRenameRegistry = "Key can not be renamed when using registry.";
const char* const SBadLength = "Invalid string length in binary ini data.";
const char* const SBadMarker = "Invalid entry marker in binary ini data.";

char UpperAscii(char C) {
    return C >= 'a' && C <= 'z' ? char(C - 32) : C;
}

AnsiString TrimAnsi(const AnsiString& S) {
    std::size_t b = 0, e = S.size();
    while (b < e && static_cast<unsigned char>(S[b]) < 33)
        ++b;
    while (e > b && static_cast<unsigned char>(S[e - 1]) < 33)
        --e;
    return S.substr(b, e - b);
}

bool SameName(const AnsiString& A, const AnsiString& B) {
    AnsiString a = TrimAnsi(A), b = TrimAnsi(B);
    if (a.size() != b.size()) return false;
    for (std::size_t i = 0; i < a.size(); ++i)
        if (UpperAscii(a[i]) != UpperAscii(b[i])) return false;
    return true;
}

bool StartsWith(const AnsiString& S, const AnsiString& Prefix) {
    return !Prefix.empty() && S.compare(0, Prefix.size(), Prefix) == 0;
}

AnsiString FloatToText(double Value) {
    char buf[64];
    auto result = std::to_chars(buf, buf + sizeof buf, Value);
    return AnsiString(buf, result.ptr);
}

// Integer text as the run-time converts it: an optional sign, then decimal
// digits, or hexadecimal after "$" or "0x"; 32 bits, hexadecimal wrapping.
bool TextToInt(const AnsiString& S, std::int32_t& Value) {
    std::size_t i = 0;
    bool negative = false;
    if (i < S.size() && (S[i] == '-' || S[i] == '+')) negative = S[i++] == '-';
    int base = 10;
    if (i < S.size() && S[i] == '$') {
        base = 16;
        ++i;
    } else if (i + 1 < S.size() && S[i] == '0' && (S[i + 1] == 'x' || S[i + 1] == 'X')) {
        base = 16;
        i += 2;
    }
    if (i >= S.size()) return false;
    std::uint64_t v = 0;
    for (; i < S.size(); ++i) {
        char c = S[i];
        int d = c >= '0' && c <= '9'   ? c - '0'
                : c >= 'a' && c <= 'f' ? c - 'a' + 10
                : c >= 'A' && c <= 'F' ? c - 'A' + 10
                                       : 99;
        if (d >= base) return false;
        v = v * unsigned(base) + unsigned(d);
        if (v > (base == 16 ? 0xFFFFFFFFull : 0x80000000ull)) return false;
    }
    if (base == 10 && !negative && v > 0x7FFFFFFFull) return false;
    std::int64_t signedValue =
        base == 16 ? std::int64_t(std::int32_t(std::uint32_t(v))) : std::int64_t(v);
    Value = std::int32_t(negative ? -signedValue : signedValue);
    return true;
}

bool TextToFloat(const AnsiString& S, double& Value) {
    if (S.empty()) return false;
    auto result = std::from_chars(S.data(), S.data() + S.size(), Value);
    return result.ec == std::errc() && result.ptr == S.data() + S.size() && std::isfinite(Value);
}

int HexValue(char C) {
    if (C >= '0' && C <= '9') return C - '0';
    if (C >= 'a' && C <= 'f') return C - 'a' + 10;
    if (C >= 'A' && C <= 'F') return C - 'A' + 10;
    return -1;
}

// "454C size b1 b2 ...": bytes are taken as far as they are there, so a
// size larger than the line costs nothing.
TWgByteArray DecodeBinaryText(const AnsiString& Text) {
    std::vector<AnsiString> tokens;
    std::size_t i = 4;
    while (i < Text.size()) {
        while (i < Text.size() && Text[i] == ' ')
            ++i;
        std::size_t start = i;
        while (i < Text.size() && Text[i] != ' ')
            ++i;
        if (i > start) tokens.push_back(Text.substr(start, i - start));
    }
    TWgByteArray bytes;
    if (tokens.empty()) return bytes;
    std::uint64_t size = 0;
    for (char c : tokens[0]) {
        int d = HexValue(c);
        if (d < 0 || size > 0xFFFFFFFull) {
            size = 0;
            break;
        }
        size = size * 16 + unsigned(d);
    }
    for (std::size_t t = 1; t < tokens.size() && bytes.size() < size; ++t) {
        const AnsiString& token = tokens[t];
        if (token.size() != 2 || HexValue(token[0]) < 0 || HexValue(token[1]) < 0) break;
        bytes.push_back(std::uint8_t(HexValue(token[0]) * 16 + HexValue(token[1])));
    }
    return bytes;
}

void WriteString32(TStream& Stream, const AnsiString& S) {
    Stream.WriteInt32(std::int32_t(S.size()));
    Stream.WriteBuffer(S.data(), std::int64_t(S.size()));
}

std::int64_t Remaining(TStream& Stream) {
    return Stream.Size() - Stream.Position();
}

AnsiString ReadString32(TStream& Stream) {
    std::int32_t length = Stream.ReadInt32();
    if (length < 0) throw EWgIniError(SBadLength);
    if (length > Remaining(Stream)) throw EReadError(RtlMessages::SReadError);
    AnsiString s(std::size_t(length), '\0');
    Stream.ReadBuffer(s.data(), length);
    return s;
}

void AppendInt32(TWgByteArray& Out, std::uint32_t V) {
    for (int i = 0; i < 4; ++i)
        Out.push_back(std::uint8_t(V >> (8 * i)));
}

void AppendString32(TWgByteArray& Out, const AnsiString& S) {
    AppendInt32(Out, std::uint32_t(S.size()));
    Out.insert(Out.end(), S.begin(), S.end());
}

} // namespace

// ---------------------------------------------------------------- entries

TWgIniEntry::TWgIniEntry() {
    Children.OnDelete = [this](TWgList<TWgIniEntry>&, TWgIniEntry* Child) {
        if (FIndexedCount >= 0) {
            auto range = FIndex.equal_range(Child->FNameHash);
            for (auto it = range.first; it != range.second; ++it)
                if (it->second == Child) {
                    FIndex.erase(it);
                    --FIndexedCount;
                    break;
                }
        }
        delete Child;
    };
}

TWgIniEntry::~TWgIniEntry() {
    FIndexedCount = -1;
    Children.Clear();
}

int TWgIniEntry::Depth() const {
    int depth = 0;
    for (const TWgIniEntry* e = FParent; e; e = e->FParent)
        ++depth;
    return depth;
}

void TWgIniEntry::EnsureIndex() const {
    if (Children.Count() <= 8) {
        if (FIndexedCount >= 0) {
            FIndex.clear();
            FIndexedCount = -1;
        }
        return;
    }
    if (FIndexedCount == Children.Count()) return;
    FIndex.clear();
    for (TWgIniEntry* child : Children.Items())
        FIndex.emplace(child->FNameHash, child);
    FIndexedCount = Children.Count();
}

void TWgIniEntry::SetParent(TWgIniEntry* Value) {
    if (FParent == Value) return;
    if (FParent) {
        int index = FParent->Children.IndexOf(this);
        if (index >= 0) {
            // Leaving the list must not release the entry.
            auto onDelete = std::move(FParent->Children.OnDelete);
            FParent->Children.Delete(index);
            FParent->Children.OnDelete = std::move(onDelete);
        }
    }
    FParent = Value;
    if (FParent) FParent->Children.Add(this);
}

void TWgIniEntry::SetValueType(std::uint8_t Value) {
    FInt = 0;
    FString.clear();
    FStrings.clear();
    FBytes.clear();
    FFloat = 0;
    BoolValue = false;
    FValueType = Value;
}

std::uint32_t TWgIniEntry::HashName(const AnsiString& Name) {
    std::uint32_t hash = 2166136261u;
    for (char c : TrimAnsi(Name)) {
        hash ^= static_cast<unsigned char>(UpperAscii(c));
        hash *= 16777619u;
    }
    return hash;
}

void TWgIniEntry::SetValueName(const AnsiString& Value) {
    FValueName = Value;
    FNameHash = HashName(Value);
    if (FParent) {
        FParent->FIndex.clear();
        FParent->FIndexedCount = -1;
    }
}

void TWgIniEntry::SetBool(bool Value) {
    SetValueType(ivtBoolean);
    BoolValue = Value;
}
void TWgIniEntry::SetInteger(std::int32_t Value) {
    SetValueType(ivtInteger);
    FInt = Value;
}
void TWgIniEntry::SetString(const AnsiString& Value) {
    SetValueType(ivtString);
    FString = Value;
}
void TWgIniEntry::SetMultiString(const TWgAnsiStrings& Value) {
    SetValueType(ivtMultiString);
    FStrings = Value;
}
void TWgIniEntry::AddString(const AnsiString& Value) {
    if (FValueType != ivtMultiString) SetValueType(ivtMultiString);
    FStrings.push_back(Value);
}
void TWgIniEntry::SetBinary(const TWgByteArray& Value) {
    SetValueType(ivtBinary);
    FBytes = Value;
}
void TWgIniEntry::SetFloat(double Value) {
    SetValueType(ivtFloat);
    FFloat = Value;
}

template <typename TMatch>
TWgIniEntry* TWgIniEntry::Find(const AnsiString& Name, TMatch&& Match) const {
    std::uint32_t hash = HashName(Name);
    EnsureIndex();
    if (FIndexedCount < 0) {
        for (TWgIniEntry* child : Children.Items())
            if (child->FNameHash == hash && SameName(child->FValueName, Name) && Match(child))
                return child;
        return nullptr;
    }
    // Among equal names the earliest in the list wins, as in the scan above.
    TWgIniEntry* best = nullptr;
    auto range = FIndex.equal_range(hash);
    for (auto it = range.first; it != range.second; ++it) {
        TWgIniEntry* child = it->second;
        if (!SameName(child->FValueName, Name) || !Match(child)) continue;
        if (best && Children.IndexOf(child) > Children.IndexOf(best)) continue;
        best = child;
    }
    return best;
}

TWgIniEntry* TWgIniEntry::FindChild(const AnsiString& Name) const {
    TWgIniEntry* key = Find(Name, [](TWgIniEntry* E) { return E->IsKey; });
    return key ? key : Find(Name, [](TWgIniEntry*) { return true; });
}

TWgIniEntry* TWgIniEntry::FindValue(const AnsiString& Name) const {
    return Find(Name, [](TWgIniEntry* E) { return !E->IsKey; });
}

TWgIniEntry* TWgIniEntry::AddChild(const AnsiString& Name, bool Key) {
    auto child = std::make_unique<TWgIniEntry>();
    child->IsKey = Key;
    child->SetValueName(Name);
    child->FParent = this;
    bool indexed = FIndexedCount >= 0 && FIndexedCount == Children.Count();
    Children.Add(child.get());
    if (indexed) {
        FIndex.emplace(child->FNameHash, child.get());
        ++FIndexedCount;
    }
    return child.release();
}

// ---------------------------------------------------------------- the store

TWgIniFile::TWgIniFile() : FRoot(std::make_unique<TWgIniEntry>()) {
    FRoot->IsKey = true;
    ResetCurrent();
}

TWgIniFile::~TWgIniFile() {
    if (FLazyWrite && FModified) {
        try {
            Save();
        } catch (...) {
            // A destructor cannot report; the file keeps its old contents.
        }
    }
}

void TWgIniFile::ResetCurrent() {
    FCurrentKey = FRoot.get();
    FCurrentPath = AnsiString(1, FDelimiter);
}

void TWgIniFile::CheckNoRegistry(const char* Message) const {
    if (FUseRegistry) throw EWgIniError(Message);
}

void TWgIniFile::SetDelimiter(char Value) {
    CheckNoRegistry(SDelimiterRegistry);
    if (FDelimiter == Value) return;
    // The current path is spelt with the delimiter; keep it readable.
    std::replace(FCurrentPath.begin(), FCurrentPath.end(), FDelimiter, Value);
    FDelimiter = Value;
}

void TWgIniFile::SetUseRegistry(bool Value) {
    // The registry mapping needs a registry; this build has none, so the
    // tree and file modes are the only ones.
    if (Value) throw EWgIniError(SNoRegistry);
    FUseRegistry = false;
}

bool TWgIniFile::OpenKey(const AnsiString& Key, bool CanCreate) {
    return OpenKey(Key, CanCreate, false);
}

bool TWgIniFile::OpenKey(const AnsiString& Key, bool CanCreate, bool KeepValues) {
    if (Key.empty() || SameName(Key, FCurrentPath)) return true;
    return FSimple ? OpenSimpleKey(Key, CanCreate, KeepValues)
                   : OpenFileKey(Key, CanCreate, KeepValues);
}

bool TWgIniFile::OpenFileKey(const AnsiString& Key, bool CanCreate, bool KeepValues) {
    const AnsiString delimiter(1, FDelimiter);
    AnsiString key = Key;
    TWgIniEntry* node;
    AnsiString path;
    if (key[0] == FDelimiter) {
        node = FRoot.get();
        path = delimiter;
        key.erase(0, 1);
    } else {
        node = FCurrentKey;
        path = FCurrentPath;
        if (path != delimiter) path += delimiter;
    }
    if (!key.empty() && key.back() == FDelimiter) key.pop_back();

    auto finish = [&](bool Result) {
        if (path.size() > 1 && path.back() == FDelimiter) path.pop_back();
        FCurrentKey = node;
        FCurrentPath = path;
        return Result;
    };
    if (key.empty()) return finish(true);
    int depth = node->Depth();
    std::size_t start = 0;
    for (;;) {
        std::size_t end = key.find(FDelimiter, start);
        AnsiString component = key.substr(start, end == AnsiString::npos ? end : end - start);
        // Names are compared without their blanks, so a component of blanks
        // names nothing: it could only find a nameless value, and a key made
        // of it would be saved as its parent.
        if (TrimAnsi(component).empty()) return finish(false);
        TWgIniEntry* child = node->FindChild(component);
        if (!child || (!child->IsKey && KeepValues)) {
            if (!CanCreate || depth + 1 > TWgIniEntry::MaxDepth) return finish(false);
            child = node->AddChild(component, true);
            FModified = true;
        } else if (!child->IsKey) {
            if (!CanCreate) return finish(false);
            child->SetValueType(ivtNone);
            child->IsKey = true;
            FModified = true;
        }
        node = child;
        ++depth;
        path += child->ValueName();
        path += delimiter;
        if (end == AnsiString::npos) break;
        start = end + 1;
    }
    return finish(true);
}

bool TWgIniFile::OpenSimpleKey(const AnsiString& Key, bool CanCreate, bool KeepValues) {
    AnsiString name = Key;
    if (!name.empty() && name[0] == FDelimiter) name.erase(0, 1);
    if (TrimAnsi(name).empty()) {
        ResetCurrent();
        return true;
    }
    TWgIniEntry* child = FRoot->FindChild(name);
    if (!child || !child->IsKey) {
        if (!CanCreate) return false;
        if (!child || KeepValues) child = FRoot->AddChild(name, true);
        child->SetValueType(ivtNone);
        child->IsKey = true;
        FModified = true;
    }
    FCurrentKey = child;
    FCurrentPath = AnsiString(1, FDelimiter) + child->ValueName();
    return true;
}

template <typename TWork>
auto TWgIniFile::AtKey(const AnsiString& Key, bool CanCreate, TWork&& Work) {
    AnsiString saved = FCurrentPath;
    TWgIniEntry* key = OpenKey(Key, CanCreate) ? FCurrentKey : nullptr;
    auto result = Work(key);
    OpenKey(saved, false);
    return result;
}

bool TWgIniFile::Changed() {
    FModified = true;
    if (!FLazyWrite) Save();
    return true;
}

TWgIniEntry* TWgIniFile::ValueForWrite(const AnsiString& Key, const AnsiString& Name) {
    return AtKey(Key, true, [&](TWgIniEntry* K) -> TWgIniEntry* {
        if (!K) return nullptr;
        TWgIniEntry* value = K->FindValue(Name);
        return value ? value : K->AddChild(Name, false);
    });
}

TWgIniEntry* TWgIniFile::GetValueEntry(const AnsiString& Key, const AnsiString& Name) {
    CheckNoRegistry(SGetValueEntryRegistry);
    return AtKey(Key, false, [&](TWgIniEntry* K) { return K ? K->FindValue(Name) : nullptr; });
}

TWgIniEntry* TWgIniFile::CreateValue(const AnsiString& Name) {
    CheckNoRegistry(SCreateValueRegistry);
    TWgIniEntry* value = FCurrentKey->FindValue(Name);
    if (!value) {
        value = FCurrentKey->AddChild(Name, false);
        FModified = true;
    }
    return value;
}

bool TWgIniFile::SetValueType(const AnsiString& Key, const AnsiString& Name, std::uint8_t Type) {
    CheckNoRegistry(SSetValueTypeRegistry);
    TWgIniEntry* value = GetValueEntry(Key, Name);
    if (!value || Type > ivtFloat) return false;
    value->SetValueType(Type);
    return Changed();
}

bool TWgIniFile::ReadBool(const AnsiString& Key, const AnsiString& Name, bool Default) {
    TWgIniEntry* v = GetValueEntry(Key, Name);
    if (v && v->ValueType() == ivtBoolean) return v->BoolValue;
    // A simple file keeps booleans as 0 and 1, which load as integers.
    if (v && FSimple && v->ValueType() == ivtInteger) return v->IntValue() != 0;
    return Default;
}
bool TWgIniFile::WriteBool(const AnsiString& Key, const AnsiString& Name, bool Value) {
    return WriteValue(Key, Name, [&](TWgIniEntry& V) { V.SetBool(Value); });
}
std::int32_t TWgIniFile::ReadInteger(const AnsiString& Key, const AnsiString& Name,
                                     std::int32_t Default) {
    TWgIniEntry* v = GetValueEntry(Key, Name);
    return v && v->ValueType() == ivtInteger ? v->IntValue() : Default;
}
bool TWgIniFile::WriteInteger(const AnsiString& Key, const AnsiString& Name, std::int32_t Value) {
    return WriteValue(Key, Name, [&](TWgIniEntry& V) { V.SetInteger(Value); });
}
AnsiString TWgIniFile::ReadString(const AnsiString& Key, const AnsiString& Name,
                                  const AnsiString& Default) {
    TWgIniEntry* v = GetValueEntry(Key, Name);
    return v && v->ValueType() == ivtString ? v->StringValue() : Default;
}
bool TWgIniFile::WriteString(const AnsiString& Key, const AnsiString& Name,
                             const AnsiString& Value) {
    return WriteValue(Key, Name, [&](TWgIniEntry& V) { V.SetString(Value); });
}
TWgAnsiStrings TWgIniFile::ReadMultiString(const AnsiString& Key, const AnsiString& Name,
                                           const TWgAnsiStrings& Default) {
    TWgIniEntry* v = GetValueEntry(Key, Name);
    return v && v->ValueType() == ivtMultiString ? v->MultiStringValue() : Default;
}
bool TWgIniFile::WriteMultiString(const AnsiString& Key, const AnsiString& Name,
                                  const TWgAnsiStrings& Value) {
    return WriteValue(Key, Name, [&](TWgIniEntry& V) { V.SetMultiString(Value); });
}
TWgByteArray TWgIniFile::ReadBinary(const AnsiString& Key, const AnsiString& Name,
                                    const TWgByteArray& Default) {
    TWgIniEntry* v = GetValueEntry(Key, Name);
    return v && v->ValueType() == ivtBinary ? v->BinaryValue() : Default;
}
bool TWgIniFile::WriteBinary(const AnsiString& Key, const AnsiString& Name,
                             const TWgByteArray& Value) {
    if (FSimple) return false; // a plain ini file has no place for bytes
    return WriteValue(Key, Name, [&](TWgIniEntry& V) { V.SetBinary(Value); });
}
double TWgIniFile::ReadFloat(const AnsiString& Key, const AnsiString& Name, double Default) {
    TWgIniEntry* v = GetValueEntry(Key, Name);
    return v && v->ValueType() == ivtFloat ? v->FloatValue() : Default;
}
bool TWgIniFile::WriteFloat(const AnsiString& Key, const AnsiString& Name, double Value) {
    return WriteValue(Key, Name, [&](TWgIniEntry& V) { V.SetFloat(Value); });
}

bool TWgIniFile::KeyExists(const AnsiString& Key) {
    return AtKey(Key, false, [](TWgIniEntry* K) { return K != nullptr; });
}

bool TWgIniFile::ValueExists(const AnsiString& Key, const AnsiString& Name) {
    return GetValueEntry(Key, Name) != nullptr;
}

bool TWgIniFile::DeleteKey(const AnsiString& Key) {
    AnsiString saved = FCurrentPath;
    if (!OpenKey(Key, false) || FCurrentKey == FRoot.get()) {
        OpenKey(saved, false);
        return false;
    }
    TWgIniEntry* parent = FCurrentKey->Parent();
    parent->Children.Delete(parent->Children.IndexOf(FCurrentKey));
    // The remembered key may have gone with it; reopen it from the root.
    ResetCurrent();
    OpenKey(saved, false);
    return Changed();
}

bool TWgIniFile::DeleteValue(const AnsiString& Key, const AnsiString& Name) {
    TWgIniEntry* value = GetValueEntry(Key, Name);
    if (!value) return false;
    value->Parent()->Children.Delete(value->Parent()->Children.IndexOf(value));
    return Changed();
}

bool TWgIniFile::RenameKey(const AnsiString& Key, const AnsiString& NewName) {
    CheckNoRegistry(SRenameRegistry);
    if (NewName.empty() || NewName.find(FDelimiter) != AnsiString::npos) return false;
    AnsiString saved = FCurrentPath;
    bool done = OpenKey(Key, false) && FCurrentKey != FRoot.get();
    if (done) FCurrentKey->SetValueName(NewName);
    ResetCurrent();
    OpenKey(saved, false);
    return done ? Changed() : false;
}

bool TWgIniFile::EnumSubKeys(const AnsiString& Key, TWgAnsiStrings& Names) {
    Names.clear();
    return AtKey(Key, false, [&](TWgIniEntry* K) {
        if (!K) return false;
        for (TWgIniEntry* child : K->Children.Items())
            if (child->IsKey) Names.push_back(child->ValueName());
        return true;
    });
}

bool TWgIniFile::EnumValues(const AnsiString& Key, TWgAnsiStrings& Names) {
    Names.clear();
    return AtKey(Key, false, [&](TWgIniEntry* K) {
        if (!K) return false;
        for (TWgIniEntry* child : K->Children.Items())
            if (!child->IsKey) Names.push_back(child->ValueName());
        return true;
    });
}

void TWgIniFile::Clear() {
    FRoot->Children.Clear();
    ResetCurrent();
    FModified = true;
}

// ---------------------------------------------------------------- text form

void TWgIniFile::WriteKeyText(AnsiString& Out, const TWgIniEntry& Key,
                              const AnsiString& KeyPath) const {
    if (&Key != FRoot.get()) Out += "\r\n[" + KeyPath + "]\r\n";
    const AnsiString div(1, FDivChar);
    for (TWgIniEntry* v : Key.Children.Items()) {
        if (v->IsKey) continue;
        const AnsiString& name = v->ValueName();
        AnsiString prefix = name.empty() || name[0] == '#' ? AnsiString() : name + div;
        switch (v->ValueType()) {
        case ivtBoolean:
            Out +=
                prefix + (FSimple ? (v->BoolValue ? "1" : "0") : (v->BoolValue ? "true" : "false"));
            break;
        case ivtInteger:
            Out += prefix + std::to_string(v->IntValue());
            break;
        case ivtString:
            Out += prefix + v->StringValue();
            break;
        case ivtMultiString: {
            const TWgAnsiStrings& list = v->MultiStringValue();
            for (std::size_t i = 0; i < list.size(); ++i) {
                if (i > 0) Out += "\r\n";
                Out += name + "[" + std::to_string(i) + "]" + div + list[i];
            }
            if (list.empty()) continue; // an empty list has no line at all
            break;
        }
        case ivtBinary: {
            char buf[16];
            std::snprintf(buf, sizeof buf, "%X ", unsigned(v->BinarySize()));
            AnsiString line = prefix + "454C " + buf;
            for (std::uint8_t b : v->BinaryValue()) {
                std::snprintf(buf, sizeof buf, "%02X ", unsigned(b));
                line += buf;
            }
            Out += line;
            break;
        }
        case ivtFloat:
            Out += prefix + FloatToText(v->FloatValue());
            break;
        default:
            Out += prefix;
            break;
        }
        Out += "\r\n";
    }
    for (TWgIniEntry* k : Key.Children.Items())
        if (k->IsKey)
            WriteKeyText(Out, *k,
                         KeyPath.empty() ? k->ValueName() : KeyPath + FDelimiter + k->ValueName());
}

AnsiString TWgIniFile::SaveToText() const {
    AnsiString out;
    if (!FWarningMessage.empty()) out += FComment + FWarningMessage + "\r\n";
    WriteKeyText(out, *FRoot, AnsiString());
    return out;
}

void TWgIniFile::SetTextValue(TWgIniEntry& Entry, const AnsiString& Text) {
    std::int32_t number;
    double real;
    AnsiString upper = Text;
    for (char& c : upper)
        c = UpperAscii(c);
    if (upper == "TRUE" || upper == "FALSE")
        Entry.SetBool(upper == "TRUE");
    else if (TextToInt(Text, number) &&
             (std::to_string(number) == Text || Text.compare(0, 2, "0x") == 0 || Text[0] == '$'))
        Entry.SetInteger(number);
    else if (TextToFloat(Text, real) && FloatToText(real) == Text)
        Entry.SetFloat(real);
    else if (Text.compare(0, 4, "454C") == 0)
        Entry.SetBinary(DecodeBinaryText(Text));
    else
        Entry.SetString(Text);
}

void TWgIniFile::LoadFromText(const AnsiString& Text) {
    FRoot->Children.Clear();
    ResetCurrent();
    bool skipping = false;
    int bareLines = 0;
    std::size_t start = 0;
    while (start < Text.size()) {
        std::size_t end = Text.find('\n', start);
        if (end == AnsiString::npos) end = Text.size();
        AnsiString line = Text.substr(start, end - start);
        start = end + 1;
        if (!line.empty() && line.back() == '\r') line.pop_back();
        if (FTrimSpaces) line = TrimAnsi(line);
        if (line.empty() || StartsWith(line, FComment)) continue;

        if (line[0] == '[') {
            std::size_t comment = line.find(';');
            if (comment != AnsiString::npos) line.resize(comment);
            std::size_t close = line.rfind(']');
            AnsiString path = close != AnsiString::npos && close > 0
                                  ? line.substr(1, close - 1)
                                  : AnsiString(1, FDelimiter) + line.substr(1);
            if (path.empty() || path[0] != FDelimiter) path.insert(path.begin(), FDelimiter);
            skipping = !OpenKey(path, true, true);
            continue;
        }
        if (skipping) continue;

        bool quoted = false;
        std::size_t nameEnd = AnsiString::npos, valueEnd = line.size();
        for (std::size_t i = 0; i < line.size(); ++i) {
            if (line[i] == '"') {
                quoted = !quoted;
            } else if (!quoted) {
                if (line.compare(i, FComment.size(), FComment) == 0 && !FComment.empty()) {
                    valueEnd = i;
                    break;
                }
                if (line[i] == FDivChar && nameEnd == AnsiString::npos) nameEnd = i;
            }
        }
        AnsiString name, value;
        if (nameEnd == AnsiString::npos || nameEnd > valueEnd) {
            value = line.substr(0, valueEnd);
        } else {
            name = TrimAnsi(line.substr(0, nameEnd));
            value = line.substr(nameEnd + 1, valueEnd - nameEnd - 1);
        }
        if (name.empty()) {
            name = "#"; // appended in two steps: the one-step form trips a false warning
            name += std::to_string(++bareLines);
        }

        std::size_t open =
            name.size() > 2 && name.back() == ']' ? name.rfind('[') : AnsiString::npos;
        bool indexed = open != AnsiString::npos && open > 0 && open + 2 < name.size() &&
                       std::all_of(name.begin() + std::ptrdiff_t(open) + 1, name.end() - 1,
                                   [](char c) { return c >= '0' && c <= '9'; });
        if (indexed) {
            AnsiString base = name.substr(0, open);
            TWgIniEntry* list = FCurrentKey->FindValue(base);
            if (!list) list = FCurrentKey->AddChild(base, false);
            list->AddString(value);
            continue;
        }
        TWgIniEntry* entry = FCurrentKey->FindValue(name);
        if (!entry) entry = FCurrentKey->AddChild(name, false);
        SetTextValue(*entry, value);
    }
    ResetCurrent();
}

// ---------------------------------------------------------------- binary form

void TWgIniFile::WriteKeyBinary(TStream& Stream, const TWgIniEntry& Key,
                                const AnsiString& KeyPath) const {
    Stream.WriteByte(1);
    WriteString32(Stream, KeyPath);
    for (TWgIniEntry* v : Key.Children.Items()) {
        if (v->IsKey || v->ValueType() == ivtNone) continue;
        TWgByteArray payload;
        switch (v->ValueType()) {
        case ivtBoolean:
            payload.push_back(v->BoolValue ? 1 : 0);
            break;
        case ivtInteger:
            AppendInt32(payload, std::uint32_t(v->IntValue()));
            break;
        case ivtString:
            AppendString32(payload, v->StringValue());
            break;
        case ivtMultiString:
            for (const AnsiString& s : v->MultiStringValue())
                AppendString32(payload, s);
            break;
        case ivtBinary:
            AppendInt32(payload, std::uint32_t(v->BinarySize()));
            payload.insert(payload.end(), v->BinaryValue().begin(), v->BinaryValue().end());
            break;
        case ivtFloat: {
            std::uint64_t bits;
            double value = v->FloatValue();
            std::memcpy(&bits, &value, 8);
            AppendInt32(payload, std::uint32_t(bits));
            AppendInt32(payload, std::uint32_t(bits >> 32));
            break;
        }
        }
        Stream.WriteByte(0);
        WriteString32(Stream, v->ValueName());
        Stream.WriteByte(v->ValueType());
        Stream.WriteInt32(std::int32_t(payload.size()));
        Stream.WriteBuffer(payload.data(), std::int64_t(payload.size()));
    }
    for (TWgIniEntry* k : Key.Children.Items())
        if (k->IsKey)
            WriteKeyBinary(Stream, *k,
                           KeyPath.empty() ? k->ValueName()
                                           : KeyPath + FDelimiter + k->ValueName());
}

void TWgIniFile::SaveToBinary(TStream& Stream) const {
    WriteKeyBinary(Stream, *FRoot, {});
}

void TWgIniFile::LoadFromBinary(TStream& Stream) {
    FRoot->Children.Clear();
    ResetCurrent();
    try {
        bool skipping = false;
        while (Remaining(Stream) > 0) {
            std::uint8_t marker = Stream.ReadByte();
            if (marker == 1) {
                AnsiString path = ReadString32(Stream);
                if (path.empty() || path[0] != FDelimiter) path.insert(path.begin(), FDelimiter);
                ResetCurrent();
                skipping = !OpenKey(path, true, true);
                continue;
            }
            if (marker != 0) throw EWgIniError(SBadMarker);
            AnsiString name = ReadString32(Stream);
            std::uint8_t type = Stream.ReadByte();
            std::int32_t size = Stream.ReadInt32();
            if (size < 0) throw EWgIniError(SBadLength);
            if (size > Remaining(Stream)) throw EReadError(RtlMessages::SReadError);
            TWgByteArray bytes(std::size_t(size), 0);
            Stream.ReadBuffer(bytes.data(), size);
            // Values under a key that could not be opened, and types this
            // program does not know, are passed over by their size.
            if (skipping || type == ivtNone || type > ivtFloat) continue;
            TMemoryStream payload(std::move(bytes));
            TWgIniEntry* entry = FCurrentKey->FindValue(name);
            if (!entry) entry = FCurrentKey->AddChild(name, false);
            switch (type) {
            case ivtBoolean:
                entry->SetBool(payload.ReadByte() != 0);
                break;
            case ivtInteger:
                entry->SetInteger(payload.ReadInt32());
                break;
            case ivtString:
                entry->SetString(ReadString32(payload));
                break;
            case ivtMultiString:
                entry->SetMultiString({});
                while (Remaining(payload) > 0)
                    entry->AddString(ReadString32(payload));
                break;
            case ivtBinary: {
                AnsiString data = ReadString32(payload);
                entry->SetBinary(TWgByteArray(data.begin(), data.end()));
                break;
            }
            case ivtFloat: {
                std::uint64_t low = std::uint32_t(payload.ReadInt32());
                std::uint64_t high = std::uint32_t(payload.ReadInt32());
                std::uint64_t bits = low | (high << 32);
                double value;
                std::memcpy(&value, &bits, 8);
                entry->SetFloat(value);
                break;
            }
            }
        }
    } catch (...) {
        ResetCurrent();
        throw;
    }
    ResetCurrent();
}

// ---------------------------------------------------------------- files

bool TWgIniFile::Load() {
    if (OnBeforeLoad) OnBeforeLoad(*this);
    if (FUseRegistry || FPath.empty()) return false;
    std::error_code error;
    if (!std::filesystem::is_regular_file(FPath, error)) return false;
    std::vector<std::uint8_t> bytes;
    {
        std::FILE* file = std::fopen(FPath.c_str(), "rb");
        if (!file) return false;
        std::uint8_t buffer[65536];
        std::size_t n;
        while ((n = std::fread(buffer, 1, sizeof buffer, file)) > 0)
            bytes.insert(bytes.end(), buffer, buffer + n);
        std::fclose(file);
    }
    if (FBinaryMode) {
        TMemoryStream stream(std::move(bytes));
        LoadFromBinary(stream);
    } else {
        LoadFromText(AnsiString(bytes.begin(), bytes.end()));
    }
    FModified = false;
    if (OnAfterLoad) OnAfterLoad(*this);
    return true;
}

bool TWgIniFile::Save() {
    if (OnBeforeSave) OnBeforeSave(*this);
    bool written = false;
    if (!FUseRegistry && !FPath.empty()) {
        SaveFileSafely(FPath, [this](TStream& File) {
            if (FBinaryMode) {
                TMemoryStream buffer;
                SaveToBinary(buffer);
                File.WriteBuffer(buffer.Data().data(), std::int64_t(buffer.Data().size()));
            } else {
                AnsiString text = SaveToText();
                File.WriteBuffer(text.data(), std::int64_t(text.size()));
            }
        });
        written = true;
    }
    FModified = false;
    if (OnAfterSave) OnAfterSave(*this);
    return written;
}

void TWgIniFile::SetSimple(bool Value) {
    if (FSimple == Value) return;
    static std::atomic<unsigned> counter{0};
    std::random_device random;
    std::filesystem::path temp =
        std::filesystem::temp_directory_path() /
        ("lexsmith-ini-" + std::to_string(random()) + "-" + std::to_string(++counter) + ".tmp");
    AnsiString oldPath = FPath;
    bool oldBinary = FBinaryMode;
    char oldDelimiter = FDelimiter;
    FPath = temp.string();
    FBinaryMode = false;
    try {
        Save();
        FSimple = Value;
        // Going simple, nested section names must stay whole: no delimiter.
        if (Value) FDelimiter = '\0';
        Load();
    } catch (...) {
        FDelimiter = oldDelimiter;
        FPath = oldPath;
        FBinaryMode = oldBinary;
        std::error_code ignored;
        std::filesystem::remove(temp, ignored);
        ResetCurrent();
        throw;
    }
    FDelimiter = oldDelimiter;
    FPath = oldPath;
    FBinaryMode = oldBinary;
    std::error_code ignored;
    std::filesystem::remove(temp, ignored);
    ResetCurrent();
    FModified = true;
}
