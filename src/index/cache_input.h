#pragma once

#include <algorithm>
#include <array>
#include <cstdint>
#include <cstring>
#include <functional>
#include <span>

namespace varnelo {

// Numbers and blocks of a file, one behind the other. What the first read that finds too few bytes did get is
// still delivered, as the low bytes of a number; all later reads give nothing.
class CacheInput {
public:
    using ReadBytes = std::function<std::size_t(std::uint8_t* to, std::size_t count)>;

    // `source` stays alive.
    explicit CacheInput(const ReadBytes& source) : readMore(&source) {}
    // A file in memory.
    explicit CacheInput(std::span<std::uint8_t> whole) : memory(whole) {}

    bool good() const { return ok; }
    std::uint64_t position() const { return consumed; }
    std::uint32_t u32() { return number<std::uint32_t>(); }
    std::uint64_t u64() { return number<std::uint64_t>(); }

    // Answers the bytes read.
    std::size_t read(void* to, std::size_t count) {
        if (readMore == nullptr) {
            const std::span<std::uint8_t> found = pass(count);
            if (!found.empty()) std::memcpy(to, found.data(), found.size());
            return found.size();
        }
        if (!ok) return 0;
        auto* bytes = static_cast<std::uint8_t*>(to);
        std::size_t done = take(bytes, count);
        if (count - done >= buffer.size()) {
            done += (*readMore)(bytes + done, count - done);
        } else if (done < count) {
            begin = 0;
            end = (*readMore)(buffer.data(), buffer.size());
            done += take(bytes + done, count - done);
        }
        ok = done == count;
        consumed += done;
        return done;
    }

    // In memory: the next bytes where they lie.
    std::span<std::uint8_t> pass(std::uint64_t count) {
        if (!ok) return {};
        const std::size_t there = std::min<std::uint64_t>(count, memory.size() - consumed);
        const std::span<std::uint8_t> found = memory.subspan(consumed, there);
        ok = there == count;
        consumed += there;
        return found;
    }

private:
    template <class Unsigned>
    Unsigned number() {
        Unsigned value = 0;
        read(&value, sizeof value);
        return value;
    }
    std::size_t take(std::uint8_t* to, std::size_t count) {
        const std::size_t taken = std::min(count, end - begin);
        if (taken != 0) std::memcpy(to, buffer.data() + begin, taken);
        begin += taken;
        return taken;
    }

    const ReadBytes* readMore = nullptr;
    std::span<std::uint8_t> memory;
    std::array<std::uint8_t, 4096> buffer;
    std::size_t begin = 0;  // what is left in the buffer
    std::size_t end = 0;
    std::uint64_t consumed = 0;
    bool ok = true;
};

}  // namespace varnelo
