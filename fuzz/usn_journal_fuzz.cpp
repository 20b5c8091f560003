// Any bytes as what a volume answers to a monitor: each round ends, what is told fits the index, and the
// index can be searched.

#include "hostile_volumes.h"
#include "index/file_change_monitor.h"

namespace varnelo {
namespace {

void check(NTFSIndex& index, const FileChange& change) {
    fuzz::require(change.fileIndex < index.records().size(), "a change is of a record");
    fuzz::require(change.frn <= kFrnMask && change.parentFrn <= kFrnMask, "numbers come without sequences");
    const bool hasPath = change.type == FileChange::kDeleted || change.type == FileChange::kRenamed;
    fuzz::require(hasPath || change.path.empty(), "a path is told of what it was");
}

}  // namespace
}  // namespace varnelo

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace varnelo;
    fuzz::HostileVolumes volumes(data, size);
    NTFSIndex index;
    index.currentVolume = index.volumeIndexOf(L'C').value();
    for (std::uint64_t frn = 24; frn < 40; ++frn) {
        index.addRecord({frn, frn / 2, 0, 0, 0, 0}, L"abc.c");
    }
    FileChangeMonitor monitor(index, volumes, [](std::chrono::milliseconds) {});
    if (!monitor.findJournals([&index](const FileChange& change) { check(index, change); })) return 0;
    for (int round = 0; round < 4; ++round) monitor.runRound();
    fuzz::use(index);
    return 0;
}
