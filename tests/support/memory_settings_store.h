#pragma once

#include <algorithm>
#include <map>
#include <string>
#include <utility>
#include <vector>

#include "app/settings.h"

namespace varnelo::test {

// A registry key of its own for one test, and a record of what was written to it.
class MemorySettingsStore final : public SettingsStore {
public:
    struct Value {
        Kind kind;
        std::vector<std::uint8_t> bytes;
        friend bool operator==(const Value&, const Value&) = default;
    };

    std::optional<std::size_t> read(const char* name, std::span<std::uint8_t> buffer) override {
        reads.emplace_back(name);
        const auto found = values.find(name);
        if (found == values.end() || found->second.bytes.size() > buffer.size()) return std::nullopt;
        std::copy(found->second.bytes.begin(), found->second.bytes.end(), buffer.begin());
        return found->second.bytes.size();
    }
    void write(const char* name, Kind kind, std::span<const std::uint8_t> bytes) override {
        writes.emplace_back(name);
        values[name] = {kind, {bytes.begin(), bytes.end()}};
    }

    std::map<std::string, Value> values;
    std::vector<std::string> reads;   // names, in order
    std::vector<std::string> writes;  // names, in order
};

}  // namespace varnelo::test
