#include "support/temp_folder.h"

#include <atomic>
#include <filesystem>
#include <random>

namespace varnelo::test {

namespace fs = std::filesystem;

TempFolder::TempFolder() {
    static std::atomic<unsigned> serial{0};
    std::random_device random;
    fs::path path;
    do {
        path = fs::temp_directory_path() /
               ("varnelo_test_" + std::to_string(random()) + "_" + std::to_string(++serial));
    } while (!fs::create_directory(path));
    folder = path.wstring();
}

TempFolder::~TempFolder() {
    std::error_code ignored;
    fs::remove_all(folder, ignored);
}

std::wstring TempFolder::file(const std::wstring& name) const { return (fs::path(folder) / name).wstring(); }

}  // namespace varnelo::test
