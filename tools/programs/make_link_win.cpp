// make_link LINK TARGET: makes a shortcut through the shell's own link object. Both are Windows paths.
// The pair may be repeated: make_link LINK1 TARGET1 LINK2 TARGET2 ...
#include <windows.h>

#include <objbase.h>
#include <shlobj.h>

#include <cstdio>

#include "platform/com_ref.h"

namespace {

HRESULT makeLink(const wchar_t* linkPath, const wchar_t* target) {
    varnelo::ComRef<IShellLinkW> link;
    HRESULT result = CoCreateInstance(CLSID_ShellLink, nullptr, CLSCTX_INPROC_SERVER, IID_IShellLinkW,
                                      reinterpret_cast<void**>(link.put()));
    if (FAILED(result)) return result;
    result = link->SetPath(target);
    if (FAILED(result)) return result;
    // Wine does not look for the icon at the target by itself, as Windows does.
    if (GetFileAttributesW(target) & FILE_ATTRIBUTE_DIRECTORY)
        link->SetIconLocation(L"shell32.dll", -4);
    else
        link->SetIconLocation(target, 0);
    varnelo::ComRef<IPersistFile> file;
    result = link->QueryInterface(IID_IPersistFile, reinterpret_cast<void**>(file.put()));
    if (FAILED(result)) return result;
    return file->Save(linkPath, TRUE);
}

}  // namespace

int wmain(int count, wchar_t** arguments) {
    if (count < 3 || count % 2 == 0) {
        std::fputs("usage: make_link LINK TARGET [LINK TARGET]...\n", stderr);
        return 2;
    }
    CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED);
    int failed = 0;
    for (int i = 1; i + 1 < count; i += 2) {
        const HRESULT result = makeLink(arguments[i], arguments[i + 1]);
        if (SUCCEEDED(result)) continue;
        std::fprintf(stderr, "make_link: %ls: 0x%08lX\n", arguments[i], static_cast<unsigned long>(result));
        ++failed;
    }
    CoUninitialize();
    return failed == 0 ? 0 : 1;
}
