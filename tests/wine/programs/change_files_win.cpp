// The other process that changes files while a test watches:
//   change_files create PATH | write PATH | rename OLD NEW | delete PATH | folder PATH | many FOLDER PREFIX
//   COUNT
// Exit code 0 when all was done.

#include <windows.h>

#include <shellapi.h>

#include <string>

namespace {

bool writeAll(const std::wstring& path, DWORD disposition) {
    const HANDLE file =
        CreateFileW(path.c_str(), FILE_APPEND_DATA, FILE_SHARE_READ, nullptr, disposition, 0, nullptr);
    if (file == INVALID_HANDLE_VALUE) return false;
    DWORD written = 0;
    const bool good = WriteFile(file, "change", 6, &written, nullptr) != FALSE;
    CloseHandle(file);
    return good;
}

bool change(int argc, wchar_t** argv) {
    const std::wstring verb = argc > 2 ? argv[1] : L"";
    if (verb == L"create") return writeAll(argv[2], CREATE_NEW);
    if (verb == L"write") return writeAll(argv[2], OPEN_EXISTING);
    if (verb == L"delete") return DeleteFileW(argv[2]) != FALSE;
    if (verb == L"folder") return CreateDirectoryW(argv[2], nullptr) != FALSE;
    if (verb == L"rename" && argc == 4)
        return MoveFileExW(argv[2], argv[3], MOVEFILE_REPLACE_EXISTING) != FALSE;
    if (verb == L"many" && argc == 5) {
        const int count = std::stoi(argv[4]);
        for (int i = 0; i < count; ++i) {
            const std::wstring name = std::wstring(argv[3]) + std::to_wstring(i) + L".txt";
            if (!writeAll(std::wstring(argv[2]) + L"\\" + name, CREATE_NEW)) return false;
        }
        return true;
    }
    return false;
}

}  // namespace

// Names can hold any character, so the arguments are those of the wide command line.
int main() {
    int argc = 0;
    wchar_t** const argv = CommandLineToArgvW(GetCommandLineW(), &argc);
    return argv && change(argc, argv) ? 0 : 1;
}
