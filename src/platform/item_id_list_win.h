#pragma once

#include <windows.h>

#include <shlobj.h>

#include "platform/handles_win.h"
#include "platform/item_id_list.h"

namespace varnelo {

// An item id list as the shell hands it out; freed with the task allocator.
using ShellIdList = CoTaskMemory<ITEMIDLIST>;

// A copy of a list that the shell made, which is therefore well-formed. Null gives an empty list.
ItemIdList itemIdListFrom(const ITEMIDLIST* list);

// The list as the shell wants it, valid until `list` changes or ends; null for an empty list.
const ITEMIDLIST* shellIdList(const ItemIdList& list);

}  // namespace varnelo
