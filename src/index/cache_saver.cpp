#include "index/cache_format.h"
#include "index/ntfs_index.h"
#include "platform/known_folders.h"
#include "platform/plain_file.h"

namespace varnelo {

namespace {

// Gathers small pieces, so that the system is asked for large writes alone.
class CacheOutput {
public:
    explicit CacheOutput(PlainFile& target) : file(target) { buffer.reserve(kBufferBytes); }

    void bytes(std::span<const std::uint8_t> piece) {
        if (buffer.size() + piece.size() > kBufferBytes) drain();
        if (piece.size() >= kBufferBytes) {
            ok = ok && file.write(piece);
        } else {
            buffer.insert(buffer.end(), piece.begin(), piece.end());
        }
    }
    template <class T>
    void block(const T* values, std::size_t count) {
        bytes({reinterpret_cast<const std::uint8_t*>(values), count * sizeof(T)});
    }
    void u32(std::uint32_t value) { block(&value, 1); }
    void u64(std::uint64_t value) { block(&value, 1); }
    // Whether all of it has reached the disk.
    bool finish() {
        drain();
        return ok && file.flush();
    }

private:
    static constexpr std::size_t kBufferBytes = std::size_t{1} << 18;

    void drain() {
        ok = ok && file.write(buffer);
        buffer.clear();
    }

    PlainFile& file;
    std::vector<std::uint8_t> buffer;
    bool ok = true;
};

void writeExtensions(CacheOutput& out, const ExtensionTable& extensions) {
    out.u64(extensions.size());
    for (std::size_t id = 0; id < extensions.size(); ++id) {
        const std::wstring text = extensions.text(id);
        const std::vector<std::uint16_t> units(text.begin(), text.end());
        out.u64(units.size());
        out.block(units.data(), units.size());
    }
}

void writeMap(CacheOutput& out, const PostingMap& map) {
    out.u64(map.size());
    map.writeTo([&](std::span<const std::uint8_t> bytes) { out.bytes(bytes); });
}

bool writeIndex(PlainFile& file, const NTFSIndex& index) {
    CacheOutput out(file);
    out.u32(cache::kMagic);
    out.u32(cache::kVersion);
    out.u64(index.volumes.size());
    out.block(index.volumes.data(), index.volumes.size());
    out.u64(index.records().size());
    out.block(index.records().data(), index.records().size());
    out.u64(index.names().size());
    out.block(index.names().data(), index.names().size());
    writeExtensions(out, index.extensions());
    writeMap(out, index.unigrams());
    writeMap(out, index.bigrams());
    writeMap(out, index.trigrams());
    return out.finish();
}

}  // namespace

bool NTFSIndex::saveCache(std::wstring_view folderName, std::wstring_view fileName) const {
    if (shownFile.isOpen()) return false;
    const std::wstring path = machineDataPath(folderName, fileName);
    const std::wstring aside = path + L".tmp";
    PlainFile file;
    if (file.create(aside.c_str()) != PlainFile::Opened::Yes) return false;
    const bool written = writeIndex(file, *this);
    file.close();
    if (!written) {
        removeFile(aside.c_str());
        return false;
    }
    if (moveFileOver(aside.c_str(), path.c_str())) return true;
    // Whether the copy worked is not asked.
    copyFileOver(aside.c_str(), path.c_str());
    return removeFile(aside.c_str());
}

}  // namespace varnelo
