#pragma once

// The NTFS volumes of the machine as bytes, in the layouts that Windows publishes for its control codes. The
// real source is in volume_source_win.h; tests serve the bytes of an NTFS image, or scripted ones.
//
// Every answer is untrusted: no length or offset in it may lead beyond the count of bytes that came back.

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <span>
#include <string>

namespace varnelo {

// One opened volume; closed by its destruction. Used by one thread at a time. Each call answers how many
// bytes it wrote to the front of `answer`, or nothing when the platform refused it. `answer` is aligned to
// eight bytes.
class Volume {
public:
    using Answer = std::optional<std::size_t>;

    virtual ~Volume() = default;

    // NTFS_VOLUME_DATA_BUFFER, 96 bytes.
    virtual Answer volumeData(std::span<std::uint8_t> answer) = 0;
    // USN_JOURNAL_DATA, 56 to 80 bytes after the version. Fails on a volume without a journal.
    virtual Answer journalData(std::span<std::uint8_t> answer) = 0;
    // The next u64 to begin with and then USN_RECORDs, for a request of MFT_ENUM_DATA in its 24-byte form.
    // Fails at the end of the table.
    virtual Answer enumerate(std::span<const std::uint8_t> request, std::span<std::uint8_t> answer) = 0;
    // NTFS_FILE_RECORD_OUTPUT_BUFFER with the record of this number, fix-ups undone, or with the nearest used
    // one below it.
    virtual Answer fileRecord(std::uint64_t frn, std::span<std::uint8_t> answer) = 0;
    // The next USN and then USN_RECORDs, for a request of READ_USN_JOURNAL_DATA_V0, 40 bytes.
    virtual Answer readJournal(std::span<const std::uint8_t> request, std::span<std::uint8_t> answer) = 0;
};

// An implementation keeps no state that one call could see of another, so one object serves all threads.
class VolumeSource {
public:
    virtual ~VolumeSource() = default;

    // Bit n is set when drive n, counted from A, exists.
    virtual std::uint32_t drives() = 0;
    // Whether the drive of this letter is a fixed one: neither removable, network, optical nor a RAM drive.
    virtual bool fixedDrive(wchar_t letter) = 0;
    // `name` is a drive such as "C:". Null when it cannot be opened, as without administrator rights.
    virtual std::unique_ptr<Volume> open(const std::wstring& name) = 0;
    // The size in bytes of the file at this path, as the file system tells it.
    virtual std::optional<std::uint64_t> fileSize(const std::wstring& path) = 0;
};

}  // namespace varnelo
