#include "base/Fuzz.h"

#include "base/Exceptions.h"
#include "tree/WgHeaderModel.h"
#include "tree/WgTreeItems.h"
#include "tree/WgTreeModel.h"

#include <stdexcept>
#include <string>
#include <vector>

namespace {

// Loads Saved, which this program wrote, and saves it again: a stream of
// ours that does not read back, or reads back to other bytes, is a bug of
// the writer or of the reader.
template <typename TLoadSave>
void CheckReadsBack(const char* What, const TMemoryStream& Saved, TLoadSave&& LoadSave) {
    TMemoryStream back(Saved.Data()), twice;
    try {
        LoadSave(back, twice);
    } catch (const Exception& e) {
        throw std::logic_error(std::string(What) +
                               ": the saved form does not read back: " + e.what());
    }
    if (twice.Data() != Saved.Data())
        throw std::logic_error(std::string(What) + ": the saved form reads back to other bytes");
}

} // namespace

namespace {

// Loads the bytes; what loaded must save and read back the same. 0 when the
// reader refused the bytes with one of our errors.
template <typename TLoadSave>
int LoadSaveReadsBack(const std::uint8_t* Data, std::size_t Size, const char* What,
                      TLoadSave LoadSave) {
    TMemoryStream in(std::vector<std::uint8_t>(Data, Data + Size)), saved;
    try {
        LoadSave(in, saved);
    } catch (const Exception&) {
        return 0;
    }
    CheckReadsBack(What, saved, LoadSave);
    return 1;
}

} // namespace

int FuzzTreeItems(const std::uint8_t* Data, std::size_t Size) {
    return LoadSaveReadsBack(Data, Size, "item stream", [](TStream& In, TStream& Out) {
        TWgTreeModel tree;
        tree.Items().LoadFromStream(In);
        tree.Items().SaveToStream(Out);
    });
}

int FuzzHeaderSections(const std::uint8_t* Data, std::size_t Size) {
    return LoadSaveReadsBack(Data, Size, "section stream", [](TStream& In, TStream& Out) {
        TWgHeaderModel header;
        header.Sections().LoadFromStream(In);
        header.Sections().SaveToStream(Out);
    });
}
