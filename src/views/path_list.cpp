#include "views/path_list.h"

namespace varnelo {
namespace {

bool isWhole(std::wstring_view path) {
    const bool onDrive = path.size() >= 3 && path.substr(1, 2) == L":\\";
    return onDrive || (path.size() >= 3 && path.substr(0, 2) == L"\\\\");
}

}  // namespace

void PathList::add(std::wstring_view path) {
    constexpr std::wstring_view kNotOfOneFile(L"*?\0", 3);
    if (!isWhole(path) || path.find_first_of(kNotOfOneFile) != std::wstring_view::npos) return;
    paths.append(path);
    paths.push_back(L'\0');
}

}  // namespace varnelo
