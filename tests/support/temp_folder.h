#pragma once

#include <string>

namespace varnelo::test {

// A new folder for one test, gone with everything in it at the end.
class TempFolder {
public:
    TempFolder();
    TempFolder(const TempFolder&) = delete;
    TempFolder& operator=(const TempFolder&) = delete;
    ~TempFolder();

    const std::wstring& path() const { return folder; }
    // The path of a file of that name in the folder.
    std::wstring file(const std::wstring& name) const;

private:
    std::wstring folder;
};

}  // namespace varnelo::test
