#pragma once

#include <string>
#include <vector>

#include "host/index/index_world.h"
#include "index/file_change_monitor.h"
#include "index/usn_record.h"
#include "support/scripted_volumes.h"

namespace varnelo {

// An index of volumes whose journals a test writes, and a monitor that follows them, a round at a time.
struct MonitorWorld : IndexWorld {
    MonitorWorld() {
        volumes[L'C'];
        onVolume(L'C');
    }

    test::ScriptedVolume& c() { return volumes[L'C']; }
    // A record of the journal of C.
    void happens(std::uint64_t frn, const std::wstring& name, std::uint32_t reason,
                 std::uint64_t parentFrn = kRootFrn, std::uint32_t attributes = test::kArchive) {
        c().happen({frn, parentFrn, name, attributes, reason});
    }
    void closes(std::uint64_t frn, const std::wstring& name, std::uint32_t reason,
                std::uint64_t parentFrn = kRootFrn, std::uint32_t attributes = test::kArchive) {
        happens(frn, name, reason | usn::kClose, parentFrn, attributes);
    }
    void recordIs(std::uint64_t frn, const test::MftRecordBytes& record) {
        c().fileRecords[frn] = record.ended();
    }
    bool follow() {
        return monitor.findJournals([this](const FileChange& change) { changes.push_back(change); });
    }
    // What one round tells.
    std::vector<FileChange> round() {
        changes.clear();
        monitor.runRound();
        return changes;
    }

    test::ScriptedVolumes volumes;
    std::vector<FileChange> changes;
    FileChangeMonitor monitor{index, volumes, [](std::chrono::milliseconds) {}};
};

}  // namespace varnelo
