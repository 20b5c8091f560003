#pragma once

// A grid without a device: its services are plain values that a test sets, its icons are never loaded unless
// a test delivers them, and its items are words.

#include <cstdint>
#include <deque>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "app/language_table.h"
#include "app/settings.h"
#include "views/icon_grid_manager.h"

namespace varnelo {

class SetClock final : public Clock {
public:
    double steady = 1000;
    std::int64_t unixTime = 1700000000;

    double steadySeconds() const override { return steady; }
    std::int64_t unixSeconds() const override { return unixTime; }
    std::uint64_t fileTime() const override {
        return static_cast<std::uint64_t>(unixTime + 11644473600) * 10000000;
    }
};

// An id list of one item that is its name.
inline ItemIdList idOf(const std::wstring& name) {
    const std::size_t size = 2 + 2 * name.size();
    std::vector<std::uint8_t> bytes{static_cast<std::uint8_t>(size & 0xFF),
                                    static_cast<std::uint8_t>(size >> 8)};
    for (const wchar_t unit : name) {
        bytes.push_back(static_cast<std::uint8_t>(unit & 0xFF));
        bytes.push_back(static_cast<std::uint8_t>(unit >> 8));
    }
    bytes.insert(bytes.end(), {0, 0});
    return *ItemIdList::fromBytes(bytes);
}

inline std::wstring nameOf(const ItemIdList& id) {
    std::wstring name;
    const auto bytes = id.bytes();
    for (std::size_t i = 2; i + 3 < bytes.size(); i += 2) {
        name.push_back(static_cast<wchar_t>(bytes[i] | bytes[i + 1] << 8));
    }
    return name;
}

// Two names are the same item here also when they differ in case only.
class WordShell final : public ShellNamespace {
public:
    bool enumerateDesktop(ItemIdList&, std::vector<ItemIdList>&) const override { return false; }
    std::optional<std::wstring> displayName(const ItemIdList& item) const override { return nameOf(item); }
    std::optional<std::wstring> fileSystemPath(const ItemIdList& item) const override {
        return L"C:\\" + nameOf(item);
    }
    bool equal(const ItemIdList& a, const ItemIdList& b) const override;
    bool isImmediateParent(const ItemIdList&, const ItemIdList&) const override { return false; }
    std::optional<ItemIdList> parseDesktopName(const std::wstring&) const override { return std::nullopt; }
    std::optional<std::wstring> linkTarget(const std::wstring&) const override { return std::nullopt; }
};

// Writes down what was asked of it, as words.
class RecordedActions final : public FileActions {
public:
    std::vector<std::wstring> done;
    std::function<void()> meanwhile;  // what happens while a menu is open

    void launch(const FileEntry& entry) override { record(L"launch " + nameOf(entry.pidl)); }
    void showItemMenu(const FileEntry& entry) override { record(L"item menu " + nameOf(entry.pidl)); }
    void showShellMenu(const std::vector<ItemIdList>& items) override {
        record(L"shell menu" + words(items));
    }
    void copyItems(const std::vector<ItemIdList>& items, bool cut) override {
        record((cut ? L"cut" : L"copy") + words(items));
    }
    void pasteInto(const ItemIdList& folder) override { record(L"paste into " + nameOf(folder)); }
    void recycle(const std::vector<FileEntry>& entries) override;

private:
    void record(std::wstring what);
    static std::wstring words(const std::vector<ItemIdList>& items);
};

class WordGrid final : public IconGridManager {
public:
    using IconGridManager::IconGridManager;

    std::vector<int> asked;  // indexes given to loadIcon, in order
    int shellMenus = 0;

    void loadIcon(int index) override { asked.push_back(index); }
    bool forwardShellMenu() override {
        ++shellMenus;
        return true;
    }
};

// A texture that is only a place in memory, to be told from others.
std::shared_ptr<IconTexture> someTexture();

// All that a grid needs, and the items that it shows.
struct GridWorld {
    FrameInput input;
    SetClock clock;
    WordShell shell;
    Settings settings;
    LanguageTable language;
    RecordedActions actions;
    std::deque<DesktopFileInfo> infos;
    WordGrid grid{{input, clock, shell, settings, language, &actions}, TabKind::Desktop};

    FileEntry item(const std::wstring& name, std::optional<GroupKey> group = std::nullopt,
                   std::int64_t timestamp = 0);
};

inline GroupKey cluster(const std::wstring& name) { return {GroupCategory::Files, name}; }
inline GroupKey special(SpecialGroup group) { return {GroupCategory::Special, group}; }

}  // namespace varnelo
