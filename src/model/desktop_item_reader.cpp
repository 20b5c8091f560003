#include "model/desktop_item_reader.h"

#include <utility>

#include "model/tokenizer.h"
#include "model/url_file.h"
#include "platform/text.h"

namespace varnelo {
namespace {

// Behind the last dot of the whole text. A target in a folder with a dot, and without one of its own, gives
// the rest of that folder's name and more; such an item is in no extension's group, which is what it should
// be.
std::optional<std::wstring> loweredBehindLastDot(std::wstring_view text) {
    const auto dot = text.rfind(L'.');
    if (dot == text.npos) return std::nullopt;
    return lowered(text.substr(dot + 1));
}

bool liesIn(std::wstring_view folder, const std::wstring& knownFolder) {
    return !knownFolder.empty() && equalIgnoringCase(folder, knownFolder);
}

}  // namespace

std::optional<std::wstring_view> folderOf(std::wstring_view path) {
    const auto separator = path.find_last_of(L"\\/");
    if (separator == path.npos) return std::nullopt;
    return path.substr(0, separator);
}

DesktopItemReader::DesktopItemReader(const ShellNamespace& shellNamespace, const FileProbe& fileProbe,
                                     Folders knownFolders)
    : shell(shellNamespace), probe(fileProbe), folders(std::move(knownFolders)) {}

bool DesktopItemReader::fillFromPath(const std::wstring& path, DesktopFileInfo& info) const {
    info.fullPath = path;
    info.fileName = leafOf(path);
    info.parentFolder = folderOf(path).value_or(path);
    if (auto extension = loweredBehindLastDot(info.fileName)) info.extension = std::move(*extension);

    const std::wstring effectivePath = info.extension == L"lnk" ? resolveLink(path, info) : path;
    if (info.extension == L"url") {
        // Of the file at `path` also where a link pointed at the shortcut: then nothing is found in it.
        if (auto target = urlFileTarget(probe.beginning(path, kUrlFileLimitBytes))) {
            info.targetPath = std::move(*target);
        }
    }

    const auto attributes = probe.attributes(effectivePath);
    if (!attributes) return false;
    info.isDirectory = (*attributes & FileProbe::kDirectoryAttribute) != 0;
    const auto facts = probe.facts(effectivePath);
    if (!facts) return false;
    info.setTimes(facts->times);
    info.timestamp = unixFromFileTime(facts->times.lastWrite);
    info.fileSize = info.isDirectory ? 0 : facts->sizeBytes;
    info.tokens = tokenizeName(info.fileName, CamelCase::Split, LetterCase::Lower);
    return true;
}

// The path that stands for the link from here on: its target, or the link itself when it has none.
std::wstring DesktopItemReader::resolveLink(const std::wstring& path, DesktopFileInfo& info) const {
    info.targetPath = shell.linkTarget(path).value_or(std::wstring());
    if (info.targetPath.empty()) return path;
    if (auto extension = loweredBehindLastDot(info.targetPath)) info.extension = std::move(*extension);
    if (const auto folder = folderOf(info.targetPath)) info.parentFolder = *folder;
    return info.targetPath;
}

std::unique_ptr<DesktopFileInfo> DesktopItemReader::read(const ItemIdList& item,
                                                         const ItemIdList& desktopRoot) const {
    auto info = std::make_unique<DesktopFileInfo>();
    info->pidl = item;
    if (const auto path = shell.fileSystemPath(item)) {
        const auto folder = folderOf(*path);
        if (!folder) return nullptr;
        if (!liesIn(*folder, folders.desktop) && !liesIn(*folder, folders.publicDesktop)) return nullptr;
        if (!fillFromPath(*path, *info)) return nullptr;
        info->isSpecial = liesIn(*path, folders.profile);
        return info;
    }
    if (!desktopRoot.empty() && !shell.isImmediateParent(desktopRoot, item)) return nullptr;
    auto name = shell.displayName(item);
    if (!name) return nullptr;
    info->fileName = *name;
    info->fullPath = std::move(*name);
    info->isSpecial = true;
    return info;
}

std::unique_ptr<DesktopFileInfo> DesktopItemReader::read(const std::wstring& path) const {
    auto info = std::make_unique<DesktopFileInfo>();
    if (!fillFromPath(path, *info)) return nullptr;
    return info;
}

}  // namespace varnelo
