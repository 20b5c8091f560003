#pragma once

// A desktop made of words: files, folders and virtual items that a test puts there, seen through the same
// seams as the shell's. Also a clock that stands still until it is set. Safe to use from several threads.

#include <cstdint>
#include <functional>
#include <map>
#include <mutex>
#include <optional>
#include <string>
#include <vector>

#include "model/file_probe.h"
#include "model/shell_namespace.h"
#include "platform/clock.h"

namespace varnelo {

inline constexpr std::uint64_t kTicksPerSecond = 10000000;

// 2024-06-01 12:00 UTC, the noon of every test.
inline constexpr std::int64_t kNoon = 1717243200;

constexpr std::uint64_t fileTimeOf(std::int64_t unixSeconds) {
    return static_cast<std::uint64_t>(unixSeconds + 11644473600) * kTicksPerSecond;
}

class ScriptedClock final : public Clock {
public:
    std::int64_t now = kNoon;

    double steadySeconds() const override { return static_cast<double>(now); }
    std::int64_t unixSeconds() const override { return now; }
    std::uint64_t fileTime() const override { return fileTimeOf(now); }
};

struct ScriptedFile {
    bool isDirectory = false;
    bool readable = true;  // false: there, but another process keeps it to itself
    bool downloaded = false;
    std::uint64_t sizeBytes = 1000;
    FileTimes times{fileTimeOf(kNoon), fileTimeOf(kNoon), fileTimeOf(kNoon)};
    std::string content;
    std::wstring linkTarget;
};

class ScriptedShell final : public ShellNamespace, public FileProbe {
public:
    static inline const std::wstring kDesktop = L"X:\\desk";
    static inline const std::wstring kPublicDesktop = L"X:\\public";

    // The list that the shell would give. `spelling` makes another list of the same item: other bytes, equal
    // to the shell.
    static ItemIdList list(const std::wstring& path, std::uint8_t spelling = 0);
    static ItemIdList virtualList(const std::wstring& name);
    static ItemIdList root();

    // Names are inside the desktop folder unless they hold a separator or a drive.
    static std::wstring pathOf(const std::wstring& name);

    void put(const std::wstring& name, ScriptedFile file = {});
    void remove(const std::wstring& name);
    void rename(const std::wstring& from, const std::wstring& to);
    ScriptedFile& file(const std::wstring& name);
    bool has(const std::wstring& name) const;
    void putVirtual(const std::wstring& name);
    void removeVirtual(const std::wstring& name);

    // What goes wrong.
    bool enumerates = true;
    bool parses = true;

    // Called before the shell looks for a name, which the watcher's additions begin with.
    std::function<void()> beforeParse;

    // Called after the facts of a file were read, before they are answered.
    std::function<void()> afterFacts;

    // How often a file was asked for its stream.
    int zoneQuestions() const;

    bool enumerateDesktop(ItemIdList& rootList, std::vector<ItemIdList>& children) const override;
    std::optional<std::wstring> displayName(const ItemIdList& item) const override;
    std::optional<std::wstring> fileSystemPath(const ItemIdList& item) const override;
    bool equal(const ItemIdList& a, const ItemIdList& b) const override;
    bool isImmediateParent(const ItemIdList& parent, const ItemIdList& child) const override;
    std::optional<ItemIdList> parseDesktopName(const std::wstring& name) const override;
    std::optional<std::wstring> linkTarget(const std::wstring& linkPath) const override;

    std::optional<std::uint32_t> attributes(const std::wstring& path) const override;
    std::optional<Facts> facts(const std::wstring& path) const override;
    std::optional<FileTimes> fileTimes(const std::wstring& path) const override;
    bool hasZoneIdentifier(const std::wstring& path) const override;
    std::vector<std::uint8_t> beginning(const std::wstring& path, std::size_t limitBytes) const override;

private:
    struct Entry {
        std::wstring path;
        ScriptedFile file;
    };
    const Entry* find(const std::wstring& path) const;

    mutable std::mutex mutex;
    std::map<std::wstring, Entry> files;  // by lowered path
    std::vector<std::wstring> virtualItems;
    mutable int zones = 0;
};

}  // namespace varnelo
