#include "index/file_change.h"

#include <utility>

#include "index/usn_record.h"

namespace varnelo {
namespace {

constexpr std::uint32_t kContentReasons =
    usn::kBasicInfoChange | usn::kDataOverwrite | usn::kDataExtend | usn::kDataTruncation;

class ChangeApplication {
public:
    ChangeApplication(NTFSIndex& changedIndex, const PendingChange& pending, std::uint8_t volumeIndex,
                      std::vector<FileChange>& results)
        : index(changedIndex), change(pending), volume(volumeIndex), applied(results) {}

    void run() {
        const auto known = index.recordByKey(recordKey(volume, change.frn));
        if (change.has(usn::kFileDelete)) {
            if (known) remove(*known);
        } else if (change.has(usn::kFileCreate)) {
            if (!known) create();
        } else if (!known) {
            if (change.has(usn::kClose)) create();
        } else if (change.has(usn::kRenameNewName)) {
            rename(*known);
        } else if (change.has(kContentReasons)) {
            update(*known);
        }
    }

private:
    void create() {
        index.currentVolume = volume;
        emit(FileChange::kCreated, index.createRecord(facts(), change.name), {});
    }

    void remove(std::uint32_t record) {
        std::wstring path = index.fullPath(index.records()[record]);
        index.removeRecord(record);
        emit(FileChange::kDeleted, record, std::move(path));
    }

    void rename(std::uint32_t record) {
        std::wstring path = index.fullPath(index.records()[record]);
        index.renameRecord(record, facts(), change.name);
        emit(FileChange::kRenamed, record, std::move(path));
    }

    void update(std::uint32_t record) {
        index.updateRecord(record, change.parentFrn, change.size, change.modified, change.attributes);
        emit(FileChange::kModified, record, {});
    }

    FileFacts facts() const {
        const bool directory = (change.fileAttributes & kDirectoryAttribute) != 0;
        return {change.frn,  change.parentFrn, directory ? FileRecord::kDirectory : 0,
                change.size, change.modified,  change.attributes};
    }

    void emit(FileChange::Type type, std::uint32_t record, std::wstring path) {
        applied.push_back({type, change.frn, change.parentFrn, change.name, std::move(path), record, volume});
    }

    NTFSIndex& index;
    const PendingChange& change;
    const std::uint8_t volume;
    std::vector<FileChange>& applied;
};

}  // namespace

void applyChange(NTFSIndex& index, const PendingChange& change, std::uint8_t volume,
                 std::vector<FileChange>& applied) {
    ChangeApplication(index, change, volume, applied).run();
}

}  // namespace varnelo
