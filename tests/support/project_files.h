#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace varnelo::test {

// The bytes of a file of the source tree, "resources/lang/english.txt"; empty when it cannot be read. Under
// Wine the tree is found on the drive Z:.
std::vector<std::uint8_t> projectFile(const std::string& relativePath);

}  // namespace varnelo::test
