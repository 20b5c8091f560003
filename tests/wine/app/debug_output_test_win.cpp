#include <windows.h>

#include <gtest/gtest.h>

#include <thread>

#include "app/logger.h"
#include "platform/handles_win.h"

namespace varnelo {
namespace {

struct MappedViewTraits {
    using Raw = void*;
    static Raw invalid() { return nullptr; }
    static void close(Raw view) { UnmapViewOfFile(view); }
};

// Receives debug output the way a debug viewer does: the writer fills a section shared by name, one text at
// a time, and two events pass it to and fro.
class DebugViewer {
public:
    DebugViewer()
        : mapping(CreateFileMappingW(INVALID_HANDLE_VALUE, nullptr, PAGE_READWRITE, 0, kSectionBytes,
                                     L"DBWIN_BUFFER")),
          view(MapViewOfFile(mapping.get(), FILE_MAP_READ, 0, 0, 0)),
          free(CreateEventW(nullptr, FALSE, TRUE, L"DBWIN_BUFFER_READY")),
          filled(CreateEventW(nullptr, FALSE, FALSE, L"DBWIN_DATA_READY")) {}

    // The next text that this process writes, or "" when none comes.
    std::string next() {
        while (WaitForSingleObject(filled.get(), 10'000) == WAIT_OBJECT_0) {
            const auto* section = static_cast<const char*>(view.get());
            const DWORD process = *reinterpret_cast<const DWORD*>(section);
            std::string text = section + sizeof process;
            SetEvent(free.get());
            if (process == GetCurrentProcessId()) return text;
        }
        return {};
    }

private:
    static constexpr DWORD kSectionBytes = 4096;
    UniqueHandle<KernelHandleTraits> mapping;
    UniqueHandle<MappedViewTraits> view;
    EventHandle free;
    EventHandle filled;
};

TEST(DebugOutput, MirrorsEachLineWithALineFeed) {
    DebugViewer viewer;
    Logger logger;
    std::thread writer([&] {
        logger.write(LogLevel::Warn, L"first");
        logger.write(LogLevel::Info, L"second");
    });
    const std::string first = viewer.next();
    const std::string second = viewer.next();
    writer.join();
    const auto lines = logger.lines();
    EXPECT_EQ(first, std::string(lines[0].begin(), lines[0].end()) + "\n");
    EXPECT_EQ(second, std::string(lines[1].begin(), lines[1].end()) + "\n");
}

}  // namespace
}  // namespace varnelo
