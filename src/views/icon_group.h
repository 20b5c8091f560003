#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "model/group_key.h"

namespace varnelo {

// A header and the cells below it.
struct IconGroup {
    std::optional<GroupKey> id;
    std::wstring name;                // shown; the word of the language table
    std::vector<std::int32_t> cells;  // indexes into the cell vector, in display order
    bool collapsed = true;
    bool expandedByTypeAhead = false;
    float y = 0;       // content y of the header
    float height = 0;  // animated height of the area of the cells
    float targetHeight = 0;
};

}  // namespace varnelo
