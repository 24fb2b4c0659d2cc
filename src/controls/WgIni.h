#pragma once
// A small hierarchical store of typed values: a tree of keys and values in
// memory, persisted as a text file, as a binary file, or (on platforms with
// a registry) mapped onto a registry subtree. Keys are paths split by a
// delimiter, as in a file system.

#include "base/Exceptions.h"
#include "base/Streams.h"
#include "base/Types.h"
#include "base/WgList.h"

#include <cstdint>
#include <functional>
#include <memory>
#include <unordered_map>
#include <vector>

class EWgIniError : public Exception {
public:
    using Exception::Exception;
};

enum TWgIniValueType : std::uint8_t {
    ivtNone = 0,
    ivtBoolean = 1,
    ivtInteger = 2,
    ivtString = 3,
    ivtMultiString = 4,
    ivtBinary = 5,
    ivtFloat = 6,
};

enum TRegRootType : std::uint8_t {
    rrtClassesRoot = 0,
    rrtCurrentUser = 1,
    rrtLocalMachine = 2,
    rrtUsers = 3,
    rrtCurrentConfig = 4,
};

using TWgByteArray = std::vector<std::uint8_t>;
using TWgAnsiStrings = std::vector<AnsiString>;

class TWgIniEntry {
public:
    TWgIniEntry();
    ~TWgIniEntry();
    TWgIniEntry(const TWgIniEntry&) = delete;
    TWgIniEntry& operator=(const TWgIniEntry&) = delete;

    TWgList<TWgIniEntry> Children; // owned
    bool IsKey = false;

    TWgIniEntry* Parent() const { return FParent; }
    // Moves the entry from its old parent's children to the end of the new one's.
    void SetParent(TWgIniEntry* Value);

    std::uint8_t ValueType() const { return FValueType; }
    // Releases what the value owned; the new type starts from an empty value.
    void SetValueType(std::uint8_t Value);

    const AnsiString& ValueName() const { return FValueName; }
    void SetValueName(const AnsiString& Value);
    std::uint32_t NameHash() const { return FNameHash; }

    bool BoolValue = false;
    std::int32_t IntValue() const { return FInt; }
    const AnsiString& StringValue() const { return FString; }
    const TWgAnsiStrings& MultiStringValue() const { return FStrings; }
    const TWgByteArray& BinaryValue() const { return FBytes; }
    std::int32_t BinarySize() const { return std::int32_t(FBytes.size()); }
    double FloatValue() const { return FFloat; }

    void SetBool(bool Value);
    void SetInteger(std::int32_t Value);
    void SetString(const AnsiString& Value);
    void SetMultiString(const TWgAnsiStrings& Value);
    void AddString(const AnsiString& Value); // a multi-string element
    void SetBinary(const TWgByteArray& Value);
    void SetFloat(double Value);

    // A child of that name, ignoring case and surrounding space; keys are
    // preferred to values of the same name.
    TWgIniEntry* FindChild(const AnsiString& Name) const;
    TWgIniEntry* FindValue(const AnsiString& Name) const;
    TWgIniEntry* AddChild(const AnsiString& Name, bool Key);

    static std::uint32_t HashName(const AnsiString& Name);

    // Keys nest at most this deep; deeper paths fail to open, so that no
    // file can make the recursive writers and destructors overflow the stack.
    static constexpr int MaxDepth = 256;
    int Depth() const;

private:
    // Index of children by name hash, built once a key has more than a few
    // children and kept up by AddChild and deletion. A count that does not
    // match the list (children added to the list directly) rebuilds it.
    void EnsureIndex() const;
    template <typename TMatch> TWgIniEntry* Find(const AnsiString& Name, TMatch&& Match) const;
    mutable std::unordered_multimap<std::uint32_t, TWgIniEntry*> FIndex;
    mutable int FIndexedCount = -1;

    TWgIniEntry* FParent = nullptr;
    std::uint8_t FValueType = ivtNone;
    std::int32_t FInt = 0;
    AnsiString FString;
    TWgAnsiStrings FStrings;
    TWgByteArray FBytes;
    double FFloat = 0;
    AnsiString FValueName;
    std::uint32_t FNameHash = 0;
};

class TWgIniFile {
public:
    using TNotifyEvent = std::function<void(TWgIniFile& Sender)>;

    TWgIniFile();
    ~TWgIniFile();
    TWgIniFile(const TWgIniFile&) = delete;
    TWgIniFile& operator=(const TWgIniFile&) = delete;

    // Properties.
    bool BinaryMode() const { return FBinaryMode; }
    void SetBinaryMode(bool Value) { FBinaryMode = Value; }
    const AnsiString& Comment() const { return FComment; }
    void SetComment(const AnsiString& Value) { FComment = Value; }
    char Delimiter() const { return FDelimiter; }
    void SetDelimiter(char Value);
    char DivChar() const { return FDivChar; }
    void SetDivChar(char Value) { FDivChar = Value; }
    bool LazyWrite() const { return FLazyWrite; }
    void SetLazyWrite(bool Value) { FLazyWrite = Value; }
    const AnsiString& Path() const { return FPath; }
    void SetPath(const AnsiString& Value) { FPath = Value; }
    bool Simple() const { return FSimple; }
    // Flattens or rebuilds the tree by a round trip through a temporary file.
    void SetSimple(bool Value);
    TRegRootType RegRoot() const { return FRegRoot; }
    void SetRegRoot(TRegRootType Value) { FRegRoot = Value; }
    bool UseRegistry() const { return FUseRegistry; }
    void SetUseRegistry(bool Value);
    const AnsiString& WarningMessage() const { return FWarningMessage; }
    void SetWarningMessage(const AnsiString& Value) { FWarningMessage = Value; }
    bool TrimSpaces() const { return FTrimSpaces; }
    void SetTrimSpaces(bool Value) { FTrimSpaces = Value; }

    TNotifyEvent OnBeforeLoad, OnAfterLoad, OnBeforeSave, OnAfterSave;

    TWgIniEntry* Root() const { return FRoot.get(); }
    TWgIniEntry* CurrentKey() const { return FCurrentKey; }
    const AnsiString& CurrentPath() const { return FCurrentPath; }
    bool Modified() const { return FModified; }

    bool OpenKey(const AnsiString& Key, bool CanCreate);

    // Typed values by key path and name; the current key does not move.
    bool ReadBool(const AnsiString& Key, const AnsiString& Name, bool Default);
    bool WriteBool(const AnsiString& Key, const AnsiString& Name, bool Value);
    std::int32_t ReadInteger(const AnsiString& Key, const AnsiString& Name, std::int32_t Default);
    bool WriteInteger(const AnsiString& Key, const AnsiString& Name, std::int32_t Value);
    AnsiString ReadString(const AnsiString& Key, const AnsiString& Name, const AnsiString& Default);
    bool WriteString(const AnsiString& Key, const AnsiString& Name, const AnsiString& Value);
    TWgAnsiStrings ReadMultiString(const AnsiString& Key, const AnsiString& Name,
                                   const TWgAnsiStrings& Default);
    bool WriteMultiString(const AnsiString& Key, const AnsiString& Name,
                          const TWgAnsiStrings& Value);
    TWgByteArray ReadBinary(const AnsiString& Key, const AnsiString& Name,
                            const TWgByteArray& Default);
    bool WriteBinary(const AnsiString& Key, const AnsiString& Name, const TWgByteArray& Value);
    double ReadFloat(const AnsiString& Key, const AnsiString& Name, double Default);
    bool WriteFloat(const AnsiString& Key, const AnsiString& Name, double Value);

    bool KeyExists(const AnsiString& Key);
    bool ValueExists(const AnsiString& Key, const AnsiString& Name);
    bool DeleteKey(const AnsiString& Key);
    bool DeleteValue(const AnsiString& Key, const AnsiString& Name);
    bool RenameKey(const AnsiString& Key, const AnsiString& NewName);
    bool EnumSubKeys(const AnsiString& Key, TWgAnsiStrings& Names);
    bool EnumValues(const AnsiString& Key, TWgAnsiStrings& Names);

    // Direct access to entries of the tree.
    TWgIniEntry* CreateValue(const AnsiString& Name); // in the current key
    TWgIniEntry* GetValueEntry(const AnsiString& Key, const AnsiString& Name);
    bool SetValueType(const AnsiString& Key, const AnsiString& Name, std::uint8_t Type);

    bool Load();
    bool Save();
    void Clear();

    // The two persisted forms on their own, for files and tests alike.
    AnsiString SaveToText() const;
    void LoadFromText(const AnsiString& Text);
    void SaveToBinary(TStream& Stream) const;
    void LoadFromBinary(TStream& Stream);

private:
    // KeepValues: a value of a component's name stays and a key is made
    // beside it; otherwise the value becomes the key. The loaders keep
    // values: a store may hold a value and a key of one name, and the value
    // is saved first.
    bool OpenKey(const AnsiString& Key, bool CanCreate, bool KeepValues);
    bool OpenFileKey(const AnsiString& Key, bool CanCreate, bool KeepValues);
    bool OpenSimpleKey(const AnsiString& Key, bool CanCreate, bool KeepValues);
    // Opens Key, runs Work on the key (or null), and reopens the remembered path.
    template <typename TWork> auto AtKey(const AnsiString& Key, bool CanCreate, TWork&& Work);
    TWgIniEntry* ValueForWrite(const AnsiString& Key, const AnsiString& Name);
    bool Changed();
    // The shared write path: find or make the value, let Set store into it,
    // and report the change.
    template <typename TSet>
    bool WriteValue(const AnsiString& Key, const AnsiString& Name, TSet Set) {
        TWgIniEntry* v = ValueForWrite(Key, Name);
        if (!v) return false;
        Set(*v);
        return Changed();
    }
    void ResetCurrent();
    void CheckNoRegistry(const char* Message) const;
    void WriteKeyText(AnsiString& Out, const TWgIniEntry& Key, const AnsiString& KeyPath) const;
    void WriteKeyBinary(TStream& Stream, const TWgIniEntry& Key, const AnsiString& KeyPath) const;
    void SetTextValue(TWgIniEntry& Entry, const AnsiString& Text);

    bool FBinaryMode = false;
    AnsiString FComment = ";";
    char FDelimiter = '\\';
    char FDivChar = '=';
    bool FLazyWrite = true;
    AnsiString FPath;
    bool FSimple = false;
    TRegRootType FRegRoot = rrtCurrentUser;
    bool FUseRegistry = false;
    AnsiString FWarningMessage = "Automatically generated file. DO NOT MODIFY!!!";
    bool FTrimSpaces = false;

    std::unique_ptr<TWgIniEntry> FRoot;
    TWgIniEntry* FCurrentKey;
    AnsiString FCurrentPath;
    bool FModified = false;
};
