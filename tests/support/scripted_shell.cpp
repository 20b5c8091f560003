#include "support/scripted_shell.h"

#include <algorithm>
#include <stdexcept>

#include "platform/binary_stream.h"
#include "platform/text.h"

namespace varnelo {
namespace {

constexpr std::uint8_t kFileItem = 1;
constexpr std::uint8_t kVirtualItem = 2;

// One item: its size, its kind, its spelling, the text.
ItemIdList listOf(std::uint8_t kind, std::uint8_t spelling, const std::wstring& text) {
    BinaryWriter out;
    out.u16(static_cast<std::uint16_t>(4 + 2 * text.size()));
    out.u8(kind);
    out.u8(spelling);
    out.units(text);
    out.u16(0);
    return ItemIdList::fromBytes(out.bytes()).value();
}

struct Item {
    std::uint8_t kind = 0;
    std::wstring text;

    bool operator==(const Item&) const = default;
};

Item itemOf(const ItemIdList& list) {
    BinaryReader in(list.bytes());
    const std::uint16_t size = in.u16();
    if (size < 4) return {};
    Item item;
    item.kind = in.u8();
    in.u8();
    item.text = in.units((size - 4) / 2);
    return item;
}

std::wstring folderPart(const std::wstring& path) {
    const auto separator = path.find_last_of(L"\\/");
    return separator == std::wstring::npos ? std::wstring() : path.substr(0, separator);
}

}  // namespace

ItemIdList ScriptedShell::list(const std::wstring& path, std::uint8_t spelling) {
    return listOf(kFileItem, spelling, pathOf(path));
}

ItemIdList ScriptedShell::virtualList(const std::wstring& name) { return listOf(kVirtualItem, 0, name); }

ItemIdList ScriptedShell::root() {
    const std::uint8_t terminator[2] = {0, 0};
    return ItemIdList::fromBytes(terminator).value();
}

std::wstring ScriptedShell::pathOf(const std::wstring& name) {
    return name.find_first_of(L"\\:") == std::wstring::npos ? kDesktop + L"\\" + name : name;
}

void ScriptedShell::put(const std::wstring& name, ScriptedFile file) {
    const std::lock_guard lock(mutex);
    files[lowered(pathOf(name))] = {pathOf(name), std::move(file)};
}

void ScriptedShell::remove(const std::wstring& name) {
    const std::lock_guard lock(mutex);
    if (files.erase(lowered(pathOf(name))) == 0) throw std::logic_error("no such file to remove");
}

void ScriptedShell::rename(const std::wstring& from, const std::wstring& to) {
    const std::lock_guard lock(mutex);
    auto node = files.extract(lowered(pathOf(from)));
    if (node.empty()) throw std::logic_error("no such file to rename");
    files[lowered(pathOf(to))] = {pathOf(to), node.mapped().file};
}

ScriptedFile& ScriptedShell::file(const std::wstring& name) {
    const std::lock_guard lock(mutex);
    return files.at(lowered(pathOf(name))).file;
}

bool ScriptedShell::has(const std::wstring& name) const {
    const std::lock_guard lock(mutex);
    return files.contains(lowered(pathOf(name)));
}

void ScriptedShell::putVirtual(const std::wstring& name) {
    const std::lock_guard lock(mutex);
    virtualItems.push_back(name);
}

void ScriptedShell::removeVirtual(const std::wstring& name) {
    const std::lock_guard lock(mutex);
    std::erase(virtualItems, name);
}

int ScriptedShell::zoneQuestions() const {
    const std::lock_guard lock(mutex);
    return zones;
}

const ScriptedShell::Entry* ScriptedShell::find(const std::wstring& path) const {
    const auto found = files.find(lowered(path));
    return found == files.end() ? nullptr : &found->second;
}

bool ScriptedShell::enumerateDesktop(ItemIdList& rootList, std::vector<ItemIdList>& children) const {
    const std::lock_guard lock(mutex);
    if (!enumerates) return false;
    rootList = root();
    for (const std::wstring& name : virtualItems) children.push_back(virtualList(name));
    for (const auto& [key, entry] : files) {
        const std::wstring folder = folderPart(entry.path);
        if (folder == kDesktop || folder == kPublicDesktop) children.push_back(list(entry.path));
    }
    return true;
}

std::optional<std::wstring> ScriptedShell::displayName(const ItemIdList& item) const {
    const Item named = itemOf(item);
    const std::lock_guard lock(mutex);
    if (named.kind == kFileItem) return std::wstring(leafOf(named.text));
    if (std::find(virtualItems.begin(), virtualItems.end(), named.text) == virtualItems.end()) return {};
    return named.text;
}

std::optional<std::wstring> ScriptedShell::fileSystemPath(const ItemIdList& item) const {
    const Item named = itemOf(item);
    if (named.kind != kFileItem) return std::nullopt;
    return named.text;
}

bool ScriptedShell::equal(const ItemIdList& a, const ItemIdList& b) const {
    return !a.empty() && !b.empty() && itemOf(a) == itemOf(b);
}

bool ScriptedShell::isImmediateParent(const ItemIdList& parent, const ItemIdList& child) const {
    return parent == root() && itemOf(child).text.find(L'/') == std::wstring::npos;
}

std::optional<ItemIdList> ScriptedShell::parseDesktopName(const std::wstring& name) const {
    if (beforeParse) beforeParse();
    const std::lock_guard lock(mutex);
    if (!parses) return std::nullopt;
    for (const std::wstring& folder : {kDesktop, kPublicDesktop}) {
        if (const Entry* entry = find(folder + L"\\" + name)) return list(entry->path);
    }
    return std::nullopt;
}

std::optional<std::wstring> ScriptedShell::linkTarget(const std::wstring& linkPath) const {
    const std::lock_guard lock(mutex);
    const Entry* entry = find(linkPath);
    if (!entry || entry->file.linkTarget.empty()) return std::nullopt;
    return entry->file.linkTarget;
}

std::optional<std::uint32_t> ScriptedShell::attributes(const std::wstring& path) const {
    const std::lock_guard lock(mutex);
    const Entry* entry = find(path);
    if (!entry) return std::nullopt;
    return entry->file.isDirectory ? kDirectoryAttribute : 0u;
}

std::optional<FileProbe::Facts> ScriptedShell::facts(const std::wstring& path) const {
    std::optional<Facts> answer;
    {
        const std::lock_guard lock(mutex);
        const Entry* entry = find(path);
        if (!entry || !entry->file.readable) return std::nullopt;
        answer = Facts{entry->file.times, entry->file.sizeBytes};
    }
    if (afterFacts) afterFacts();
    return answer;
}

std::optional<FileTimes> ScriptedShell::fileTimes(const std::wstring& path) const {
    const std::lock_guard lock(mutex);
    const Entry* entry = find(path);
    if (!entry || !entry->file.readable || entry->file.isDirectory) return std::nullopt;
    return entry->file.times;
}

bool ScriptedShell::hasZoneIdentifier(const std::wstring& path) const {
    const std::lock_guard lock(mutex);
    ++zones;
    const Entry* entry = find(path);
    return entry && entry->file.downloaded;
}

std::vector<std::uint8_t> ScriptedShell::beginning(const std::wstring& path, std::size_t limitBytes) const {
    const std::lock_guard lock(mutex);
    const Entry* entry = find(path);
    if (!entry || !entry->file.readable) return {};
    const std::string text = entry->file.content.substr(0, limitBytes);
    return {text.begin(), text.end()};
}

}  // namespace varnelo
