#include "model/folder_changes.h"

#include "platform/binary_stream.h"

namespace varnelo {

std::vector<FolderChange> decodeFolderChanges(std::span<const std::uint8_t> bytes) {
    std::vector<FolderChange> changes;
    for (;;) {
        BinaryReader in(bytes);
        const std::uint32_t nextEntryOffset = in.u32();
        const std::uint32_t action = in.u32();
        const std::uint32_t nameBytes = in.u32();
        std::wstring name = in.units(nameBytes / 2);
        if (!in.good()) return changes;

        const bool known = action >= static_cast<std::uint32_t>(FolderChange::Kind::Added) &&
                           action <= static_cast<std::uint32_t>(FolderChange::Kind::RenamedNewName);
        if (known && !name.empty()) {
            changes.push_back({static_cast<FolderChange::Kind>(action), std::move(name)});
        }
        // Each step goes forward, so a chain of any bytes comes to an end.
        if (nextEntryOffset == 0 || nextEntryOffset > bytes.size()) return changes;
        bytes = bytes.subspan(nextEntryOffset);
    }
}

}  // namespace varnelo
