#include "views/launch_command.h"

#include "platform/text.h"

namespace varnelo {
namespace {

bool isLetter(wchar_t unit) { return lowerUnit(unit) >= L'a' && lowerUnit(unit) <= L'z'; }

bool isDrivePath(std::wstring_view name) {
    return name.size() >= 3 && isLetter(name[0]) && name[1] == L':' && name[2] == L'\\';
}

// \\server\share, but not the prefixes \\?\ and \\.\ of paths that are taken literally.
bool isNetworkPath(std::wstring_view name) {
    return name.size() >= 3 && name.substr(0, 2) == L"\\\\" && name[2] != L'.' && name[2] != L'\\';
}

bool isControl(wchar_t unit) { return unit < 0x20 || unit == 0x7F; }

// Names of files hold none of "<>|*?/ and no further colon; a folder of another kind may. A percent sign is
// expanded inside of quotes too, and an exclamation mark where delayed expansion is switched on, which also
// makes a caret special. An ampersand is literal inside of quotes only while nothing takes the quotes off.
constexpr std::wstring_view kNeverSafe = L"\"<>|*?/:%!^&";

// "start" runs a batch file by a second command processor with the switch /K, which may take the quotes off:
// then each of these ends the name or changes it.
constexpr std::wstring_view kNotInBatchFiles = L"()[]{}@'`,;=+~\u00A0\u3000";

bool isBatchFile(std::wstring_view name) {
    const std::wstring extension = lowered(extensionOf(name));
    return extension == L".bat" || extension == L".cmd";
}

// The system drops dots and blanks at the end of a name, and so would find another file.
bool hasPartThatIsShortened(std::wstring_view name) {
    for (std::size_t i = 0; i < name.size(); ++i) {
        const bool endOfPart = i + 1 == name.size() || name[i + 1] == L'\\';
        if (endOfPart && (name[i] == L'.' || name[i] == L' ')) return true;
    }
    return false;
}

}  // namespace

std::wstring launchCommand(std::wstring_view name) {
    return L"/c start \"\" \"" + std::wstring(name) + L"\"";
}

bool isSafeToLaunchByName(std::wstring_view name) {
    if (!isDrivePath(name) && !isNetworkPath(name)) return false;
    // One that fills the buffer may have been cut off.
    if (name.size() + 1 >= kLaunchNameUnits) return false;
    // In front of the closing quote a backslash may be read as an escape of it.
    if (name.back() == L'\\') return false;
    const std::wstring_view behindDrive = name.substr(2);
    if (behindDrive.find_first_of(kNeverSafe) != std::wstring_view::npos) return false;
    for (const wchar_t unit : name) {
        if (isControl(unit)) return false;
    }
    if (hasPartThatIsShortened(name)) return false;
    return !isBatchFile(name) || name.find_first_of(kNotInBatchFiles) == std::wstring_view::npos;
}

std::vector<std::wstring> programsTriedFor(std::wstring_view name, std::wstring_view pathExtensions) {
    std::vector<std::wstring> programs;
    while (!pathExtensions.empty()) {
        const std::size_t end = pathExtensions.find(L';');
        const std::wstring_view extension = trimmed(pathExtensions.substr(0, end));
        if (!extension.empty()) programs.push_back(std::wstring(name) + std::wstring(extension));
        pathExtensions.remove_prefix(end == std::wstring_view::npos ? pathExtensions.size() : end + 1);
    }
    return programs;
}

}  // namespace varnelo
