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

int FuzzTreeItems(const std::uint8_t* Data, std::size_t Size) {
    auto loadSave = [](TStream& In, TStream& Out) {
        TWgTreeModel tree;
        tree.Items().LoadFromStream(In);
        tree.Items().SaveToStream(Out);
    };
    TMemoryStream in(std::vector<std::uint8_t>(Data, Data + Size)), saved;
    try {
        loadSave(in, saved);
    } catch (const Exception&) {
        return 0;
    }
    CheckReadsBack("item stream", saved, loadSave);
    return 1;
}

int FuzzHeaderSections(const std::uint8_t* Data, std::size_t Size) {
    auto loadSave = [](TStream& In, TStream& Out) {
        TWgHeaderModel header;
        header.Sections().LoadFromStream(In);
        header.Sections().SaveToStream(Out);
    };
    TMemoryStream in(std::vector<std::uint8_t>(Data, Data + Size)), saved;
    try {
        loadSave(in, saved);
    } catch (const Exception&) {
        return 0;
    }
    CheckReadsBack("section stream", saved, loadSave);
    return 1;
}
