#include "platform/mapped_file.h"

#include "platform/handles_win.h"

namespace varnelo {

bool MappedFile::open(const wchar_t* path) {
    FileHandle opened(CreateFileW(path, GENERIC_READ, FILE_SHARE_READ | FILE_SHARE_DELETE, nullptr,
                                  OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr));
    LARGE_INTEGER length{};
    if (!opened || !GetFileSizeEx(opened.get(), &length) || length.QuadPart <= 0) return false;
    const SectionHandle section(
        CreateFileMappingW(opened.get(), nullptr, PAGE_WRITECOPY, length.HighPart, length.LowPart, nullptr));
    if (!section) return false;
    void* mapped = MapViewOfFile(section.get(), FILE_MAP_COPY, 0, 0, 0);
    if (mapped == nullptr) return false;
    view = static_cast<std::uint8_t*>(mapped);
    size = static_cast<std::size_t>(length.QuadPart);
    file = reinterpret_cast<std::intptr_t>(opened.release());
    // In large pieces, where a fault would fetch a few pages. A hint: what comes of it does not matter.
    WIN32_MEMORY_RANGE_ENTRY whole{view, size};
    PrefetchVirtualMemory(GetCurrentProcess(), 1, &whole, 0);
    return true;
}

// Unlocking what is not locked takes it out of the working set, and fails.
void MappedFile::trim() {
    if (isOpen()) VirtualUnlock(view, size);
}

void MappedFile::close() {
    if (!isOpen()) return;
    UnmapViewOfFile(view);
    FileHandle(reinterpret_cast<HANDLE>(file)).reset();
    view = nullptr;
    size = 0;
    file = -1;
}

}  // namespace varnelo
