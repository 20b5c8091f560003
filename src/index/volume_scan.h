#pragma once

#include <functional>
#include <string>

#include "index/ntfs_index.h"
#include "index/volume_source.h"

namespace varnelo {

// Filling an index from the volumes themselves: a first pass over the table of a volume for the names, a
// second one, a call a file, for sizes and times. Needs administrator rights. It runs for minutes, on one
// thread, and takes no lock: nobody else may use the index meanwhile. Whoever has an index that others use
// fills another one and swaps the two.

// Asked between two calls to a volume; true ends the scan as failed.
using StopRequested = std::function<bool()>;

// True only if there are drives and every fixed one was scanned. One that fails, as every fixed volume
// without NTFS does, does not keep the others from being scanned, and what was added stays.
bool scanAllVolumes(NTFSIndex& index, VolumeSource& source, const StopRequested& stopRequested = {});

// `volume` is a drive such as "C:". A file of several names is entered once, under the name that comes first.
bool scanVolume(NTFSIndex& index, VolumeSource& source, const std::wstring& volume,
                const StopRequested& stopRequested = {});

// Takes NTFS's own files out of what is searched, over all volumes: names that begin with a dollar sign in
// the folders that every volume has from its beginning, and such names below these. They stay known by their
// keys.
void pruneMetadata(NTFSIndex& index);

}  // namespace varnelo
