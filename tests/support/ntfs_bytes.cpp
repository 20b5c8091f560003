#include "support/ntfs_bytes.h"

#include "platform/binary_stream.h"

namespace varnelo::test {
namespace {

void append(Bytes& to, const Bytes& from) { to.insert(to.end(), from.begin(), from.end()); }

void align(Bytes& bytes) { bytes.resize((bytes.size() + 7) / 8 * 8); }

}  // namespace

Bytes usnRecord(const UsnFields& fields) {
    BinaryWriter out;
    out.u32(0);  // the length, below
    out.u16(2);
    out.u16(0);
    out.u64(fields.frn);
    out.u64(fields.parentFrn);
    out.u64(fields.usn);
    out.u64(0);  // time stamp
    out.u32(fields.reason);
    out.u32(0);  // source
    out.u32(0);  // security id
    out.u32(fields.attributes);
    out.u16(static_cast<std::uint16_t>(fields.name.size() * 2));
    out.u16(60);
    out.units(fields.name);
    Bytes record = out.take();
    align(record);
    put(record, 0, static_cast<std::uint32_t>(record.size()));
    return record;
}

Bytes usnRecordOfVersion(std::uint16_t major, std::uint32_t length) {
    Bytes record(length, 0x41);
    put(record, 0, length);
    put(record, 4, major);
    return record;
}

Bytes usnAnswer(std::uint64_t next, const std::vector<Bytes>& records) {
    Bytes answer;
    put(answer, 0, next);
    for (const Bytes& record : records) append(answer, record);
    return answer;
}

MftRecordBytes::MftRecordBytes() : bytes(56, 0) {
    put(bytes, 0, std::uint32_t{0x454C4946});
    put(bytes, 20, std::uint16_t{56});
    put(bytes, 22, std::uint16_t{1});  // in use
}

// `head` is what stands in the attribute from byte 16 on, in front of its name and value.
void MftRecordBytes::add(std::uint32_t type, bool resident, const std::wstring& name, Bytes head,
                         const Bytes& value) {
    Bytes attribute(16, 0);
    put(attribute, 0, type);
    attribute[8] = resident ? 0 : 1;
    attribute[9] = static_cast<std::uint8_t>(name.size());
    put(attribute, 10, static_cast<std::uint16_t>(16 + head.size()));
    append(attribute, head);
    BinaryWriter units;
    units.units(name);
    append(attribute, units.bytes());
    align(attribute);
    if (resident) put(attribute, 20, static_cast<std::uint16_t>(attribute.size()));
    append(attribute, value);
    align(attribute);
    put(attribute, 4, static_cast<std::uint32_t>(attribute.size()));
    append(bytes, attribute);
}

MftRecordBytes& MftRecordBytes::standardInformation(std::uint64_t modified, std::uint64_t changed,
                                                    std::uint32_t attributes) {
    Bytes value(48, 0);
    put(value, 0, std::uint64_t{0x1111});  // creation
    put(value, 8, modified);
    put(value, 16, changed);
    put(value, 24, std::uint64_t{0x4444});  // access
    put(value, 32, attributes);
    Bytes head(8, 0);
    put(head, 0, std::uint32_t{48});
    add(0x10, true, L"", head, value);
    return *this;
}

MftRecordBytes& MftRecordBytes::attributeList(bool resident) {
    add(0x20, resident, L"", Bytes(resident ? 8 : 48, 0), Bytes(8, 0xEE));
    return *this;
}

MftRecordBytes& MftRecordBytes::residentData(std::uint32_t size, const std::wstring& name) {
    Bytes head(8, 0);
    put(head, 0, size);
    add(0x80, true, name, head, Bytes(size < 400 ? size : 0, 0xDD));
    return *this;
}

MftRecordBytes& MftRecordBytes::nonResidentData(std::uint64_t realSize, std::uint64_t firstCluster,
                                                const std::wstring& name) {
    Bytes head(48, 0);
    put(head, 0, firstCluster);
    put(head, 24, (realSize + 4095) / 4096 * 4096);  // allocated
    put(head, 32, realSize);
    put(head, 40, realSize / 2);  // initialised
    add(0x80, false, name, head, Bytes(8, 0));
    return *this;
}

MftRecordBytes& MftRecordBytes::attribute(std::uint32_t type, std::uint32_t length, std::size_t size) {
    Bytes attribute(size, 0);
    put(attribute, 0, type);
    put(attribute, 4, length);
    append(bytes, attribute);
    return *this;
}

Bytes MftRecordBytes::ended(std::size_t size) const {
    Bytes record = bytes;
    put(record, record.size(), std::uint32_t{0xFFFFFFFF});
    if (record.size() < size) record.resize(size, 0);
    return record;
}

Bytes fileRecordOutput(std::uint64_t frn, const Bytes& record) {
    BinaryWriter out;
    out.u64(frn);
    out.u32(static_cast<std::uint32_t>(record.size()));
    out.bytes(record);
    return out.take();
}

Bytes volumeDataBytes(std::uint32_t recordSize, std::uint64_t validDataSize) {
    Bytes data(96, 0);
    put(data, 40, std::uint32_t{512});
    put(data, 44, std::uint32_t{4096});
    put(data, 48, recordSize);
    put(data, 56, validDataSize);
    return data;
}

Bytes journalDataBytes(std::uint64_t id, std::uint64_t firstUsn, std::uint64_t nextUsn) {
    Bytes data(56, 0);
    put(data, 0, id);
    put(data, 8, firstUsn);
    put(data, 16, nextUsn);
    put(data, 24, firstUsn / 2);  // the lowest valid one, which nobody wants
    return data;
}

}  // namespace varnelo::test
