// Any bytes as the answer to a request for a file record.

#include "hostile_volumes.h"
#include "index/mft_record.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace varnelo;
    const auto answer = fileRecordAnswer({data, size});
    fuzz::require(answer.has_value() == (size >= 12), "twelve bytes stand before a record");
    if (!answer) return 0;
    fuzz::require(!hasFileSignature(answer->record) || answer->record.size() >= 4,
                  "a signature has four bytes");
    const MftRecordFacts written = readMftRecord(answer->record, RecordTime::LastWrite);
    const MftRecordFacts changed = readMftRecord(answer->record, RecordTime::RecordChange);
    fuzz::require(written.size == changed.size && written.attributes == changed.attributes,
                  "only the time depends on which time is asked for");
    fuzz::require(written.hasData || written.size == 0, "without data there is no size");
    fuzz::require(written.attributes || written.modified == 0,
                  "without standard information there is no time");
    return 0;
}
