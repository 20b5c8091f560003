#pragma once

#include <map>
#include <memory>
#include <mutex>
#include <string>
#include <utility>

#include "index/volume_source.h"
#include "support/ntfs_image.h"
#include "support/scripted_journal.h"

namespace varnelo::test {

// A drive that is an NTFS image: answers as the platform would for a volume with these bytes.
struct ImageDrive {
    std::shared_ptr<const NtfsImage> image;
    // Null for a volume without one.
    std::shared_ptr<ScriptedJournal> journal = std::make_shared<ScriptedJournal>();
    NtfsImage::FixUps fixUps = NtfsImage::FixUps::Undone;
    // Whether an enumeration tells of files without a name, as some of NTFS's own are.
    bool tellsNameless = true;
    // Whether it tells of a file once for each of its names.
    bool tellsEveryName = false;
    bool fixed = true;
};

class NtfsImageVolume : public Volume {
public:
    explicit NtfsImageVolume(ImageDrive served) : drive(std::move(served)) {}

    Answer volumeData(std::span<std::uint8_t> answer) override;
    Answer journalData(std::span<std::uint8_t> answer) override;
    // One record a file, in the order of the table, as many as fit; refuses what does not hold the next one.
    // Names that are there for DOS alone do not count.
    Answer enumerate(std::span<const std::uint8_t> request, std::span<std::uint8_t> answer) override;
    // Further records of a file are answered like others, whose numbers are taken too.
    Answer fileRecord(std::uint64_t frn, std::span<std::uint8_t> answer) override;
    Answer readJournal(std::span<const std::uint8_t> request, std::span<std::uint8_t> answer) override;

private:
    // What an enumeration tells of the file; empty when nothing.
    Bytes usnRecordsOf(std::uint64_t number, std::uint64_t lowUsn, std::uint64_t highUsn);

    ImageDrive drive;
};

// A machine whose drives are images.
class NtfsImageSource : public VolumeSource {
public:
    explicit NtfsImageSource(std::map<wchar_t, ImageDrive> letters) : served(std::move(letters)) {}
    // The image as the drive C:.
    explicit NtfsImageSource(const std::shared_ptr<const NtfsImage>& image)
        : served{{L'C', ImageDrive{image}}} {}

    std::uint32_t drives() override;
    bool fixedDrive(wchar_t letter) override;
    // The letter counts in either case.
    std::unique_ptr<Volume> open(const std::wstring& name) override;
    // By any name of the file but that for DOS. Unlike the platform's, the case of letters counts.
    std::optional<std::uint64_t> fileSize(const std::wstring& path) override;

    ScriptedJournal& journal(wchar_t letter = L'C') { return *served.at(letter).journal; }

private:
    using Paths = std::map<std::wstring, std::uint64_t>;
    // Of all files of the drive, below its letter.
    const Paths& pathsOf(wchar_t letter);

    std::map<wchar_t, ImageDrive> served;
    std::mutex mutex;
    std::map<wchar_t, Paths> knownPaths;  // guarded by `mutex`; an entry stays as it is
};

}  // namespace varnelo::test
