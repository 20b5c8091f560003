#include "app/crash_report.h"

#include <array>
#include <cstdint>
#include <cwchar>

#include "platform/clock.h"
#include "platform/plain_file.h"

namespace varnelo {

namespace {

#ifdef _WIN32
constexpr wchar_t kSeparator = L'\\';
#else
constexpr wchar_t kSeparator = L'/';
#endif

// UTF-16 little-endian text on its way to a file, collected in a block small enough for any stack.
class Utf16File {
public:
    explicit Utf16File(PlainFile& target) : file(target) {}

    void put(std::wstring_view text) {
        for (const wchar_t unit : text) {
            if (used == block.size()) flush();
            block[used++] = static_cast<std::uint8_t>(unit);
            block[used++] = static_cast<std::uint8_t>(unit >> 8);
        }
    }
    bool flush() {
        ok = file.write({block.data(), used}) && ok;
        used = 0;
        return ok;
    }

private:
    PlainFile& file;
    std::array<std::uint8_t, 1024> block;
    std::size_t used = 0;
    bool ok = true;
};

}  // namespace

std::wstring crashReportFolder(std::wstring_view roamingFolder, std::wstring_view programName) {
    if (roamingFolder.empty()) return kNoReportFolder;
    return std::wstring(roamingFolder) + kSeparator + std::wstring(programName);
}

ReportResult writeCrashReport(const wchar_t* folder, std::wstring_view reason, const LogLines& lines,
                              const LogLines::Node* last) {
    if (std::wcscmp(folder, kNoReportFolder) != 0) makeFolder(folder);

    const LocalTime now = localTime();
    std::array<wchar_t, 1024> path;
    if (std::swprintf(path.data(), path.size(), L"%ls%lccrash_%04d%02d%02d_%02d%02d%02d.log", folder,
                      static_cast<wint_t>(kSeparator), now.year, now.month, now.day, now.hour, now.minute,
                      now.second) < 0) {
        return ReportResult::Failed;
    }
    PlainFile file;
    switch (file.create(path.data())) {
        case PlainFile::Opened::Yes:
            break;
        case PlainFile::Opened::InUse:
            return ReportResult::InUse;
        case PlainFile::Opened::No:
            return ReportResult::Failed;
    }

    Utf16File out(file);
    out.put(L"\xFEFF");
    out.put(L"=== CRASH LOG ===\r\nReason: ");
    out.put(reason);
    out.put(L"\r\n=================\r\n\r\n");
    for (const LogLines::Node* node = lines.first(); node; node = LogLines::after(node)) {
        out.put(node->text);
        out.put(L"\r\n");
        if (node == last) break;
    }
    return out.flush() ? ReportResult::Written : ReportResult::Failed;
}

}  // namespace varnelo
