// Any bytes as what a volume answers to a scan: it ends, and what it leaves can be searched.

#include "hostile_volumes.h"
#include "index/volume_scan.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace varnelo;
    fuzz::HostileVolumes volumes(data, size);
    NTFSIndex index;
    scanAllVolumes(index, volumes);
    fuzz::use(index);
    return 0;
}
