#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace varnelo::test {

// Where a file of the source tree lies, "resources/lang/english.txt". Under Wine the tree is found on the
// drive Z:.
std::string projectPath(const std::string& relativePath);
// Its bytes; empty when it cannot be read.
std::vector<std::uint8_t> projectFile(const std::string& relativePath);

}  // namespace varnelo::test
