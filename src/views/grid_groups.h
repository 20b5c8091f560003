#pragma once

#include <string>

#include "app/language_table.h"
#include "views/grid_state.h"

// Which cell belongs to which group. Indexes of cells in the groups stay right through every change.

namespace varnelo {

constexpr int kNoGroup = -1;

// Builds all groups from the cells in their order. A cell whose entry has no group joins none.
void buildGroups(GridState& grid, const LanguageTable& language);
// Puts the cell at the end of its entry's group, which is made, collapsed, if there is none with that key.
void joinGroup(GridState& grid, int cell, const LanguageTable& language);
// Takes the cell out of its group; a group left without cells goes away.
void leaveGroup(GridState& grid, int cell);
// Erases the cell from the pane and its group; later cells move up.
void eraseCell(GridState& grid, int cell);

int groupOfCell(const GridState& grid, int cell);

std::wstring groupName(const GroupKey& key, const LanguageTable& language);
// Makes `text` that of a header: an arrow before the name when the group has more cells than one row can
// show. The text's memory is used again, since every frame asks for every header.
void writeGroupHeader(const IconGroup& group, int columns, std::wstring& text);

// A click on a header: this group opens or closes, all others close.
void toggleGroup(GridState& grid, int group);

}  // namespace varnelo
