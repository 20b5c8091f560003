#pragma once

// The growing families of one clustering pass. Items are known by their place in the list of entries and by
// their identity: the first place of the same object, should the list hold it twice.

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <vector>

namespace varnelo {

// A family is known by the number it was given first; when two become one the lower number stays, so the
// order of the numbers is at any time the order of the families. Every call takes a standing family, as
// `familyOf` returns it, and costs the same whatever its size.
class ClusterFamilies {
public:
    using Number = std::uint32_t;
    static constexpr Number kNone = std::numeric_limits<Number>::max();

    explicit ClusterFamilies(std::size_t items) : next(items, kNone), familyOfIdentity(items, kNone) {}

    // kNone for an item in no family.
    Number familyOf(Number identity) {
        const Number family = familyOfIdentity[identity];
        return family == kNone ? kNone : rootOf(family);
    }

    Number create() {
        families.push_back({static_cast<Number>(families.size()), kNone, kNone, 0});
        return families.back().parent;
    }

    // The item is in no family yet.
    void add(Number family, Number place, Number identity) {
        Family& target = families[family];
        if (target.head == kNone)
            target.head = place;
        else
            next[target.tail] = place;
        target.tail = place;
        ++target.size;
        familyOfIdentity[identity] = family;
    }

    // The members of the later family go behind those of the earlier one.
    void merge(Number one, Number other) {
        Family& stays = families[std::min(one, other)];
        Family& goes = families[std::max(one, other)];
        next[stays.tail] = goes.head;
        stays.tail = goes.tail;
        stays.size += goes.size;
        goes.parent = stays.parent;
    }

    // Places of the members in the order in which they joined; empty for a family that went into another.
    std::vector<std::vector<Number>> members() const {
        std::vector<std::vector<Number>> result(families.size());
        for (Number family = 0; family < families.size(); ++family) {
            if (families[family].parent != family) continue;
            result[family].reserve(families[family].size);
            for (Number place = families[family].head; place != kNone; place = next[place])
                result[family].push_back(place);
        }
        return result;
    }

private:
    struct Family {
        Number parent;  // itself while it stands
        Number head;
        Number tail;
        Number size;
    };

    Number rootOf(Number family) {
        while (families[family].parent != family) {
            families[family].parent = families[families[family].parent].parent;
            family = families[family].parent;
        }
        return family;
    }

    std::vector<Family> families;
    std::vector<Number> next;  // by place: the member that joined behind it
    std::vector<Number> familyOfIdentity;
};

}  // namespace varnelo
