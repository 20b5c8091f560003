#include "support/project_files.h"

#include <fstream>
#include <iterator>

namespace varnelo::test {

std::string projectPath(const std::string& relativePath) {
    std::string path = std::string(VARNELO_SOURCE_DIR) + "/" + relativePath;
#ifdef _WIN32
    path = "Z:" + path;
#endif
    return path;
}

std::vector<std::uint8_t> projectFile(const std::string& relativePath) {
    std::ifstream in(projectPath(relativePath), std::ios::binary);
    return {std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>()};
}

}  // namespace varnelo::test
