// An index that was kept current by the journal answers like one that is filled from the final state.

#include <gtest/gtest.h>

#include <algorithm>
#include <map>
#include <random>
#include <set>
#include <tuple>

#include "host/index/monitor_world.h"
#include "index/volume_scan.h"

namespace varnelo {
namespace {

using test::MftRecordBytes;
using test::UsnFields;

// A volume with folders and files whose numbers are used anew. Each deed goes into its journal.
class LivingVolume {
public:
    static constexpr std::uint64_t kFirst = 24;

    LivingVolume(test::ScriptedVolume& scripted, unsigned seed) : volume(scripted), random(seed) {
        volume.recordOf = [this](std::uint64_t number) { return recordOf(number); };
    }

    void deed() {
        switch (below(16)) {
            case 0:
            case 1:
            case 2:
            case 3:
                return create();
            case 4:
            case 5:
            case 6:
                return remove();
            case 7:
            case 8:
            case 9:
                return write();
            case 10:
            case 11:
                return rename(false);
            case 12:
            case 13:
                return rename(true);
            case 14:
                return comeAndGo();
            default:
                return noise();
        }
    }

    // The table as a scan finds it.
    void fillTable() const {
        volume.files.clear();
        for (const auto& [number, file] : files) {
            volume.files.push_back({full(number), full(file.parent), file.name, attributesOf(file)});
        }
    }
    std::size_t size() const { return files.size(); }

    // What was done to files that stayed for a while; a deed may come to nothing.
    struct Done {
        std::size_t created = 0, reused = 0, removed = 0, written = 0, renamed = 0, moved = 0;
        std::size_t all() const { return created + removed + written + renamed + moved; }
    };
    const Done& done() const { return counted; }

private:
    struct File {
        std::uint64_t parent = kRootFrn;
        std::wstring name;
        bool folder = false;
        std::uint64_t size = 0;
        std::uint64_t modified = 0;
        std::size_t children = 0;
    };

    std::uint64_t below(std::uint64_t limit) { return random() % limit; }
    std::uint64_t full(std::uint64_t number) const {
        const auto generation = generations.find(number);
        return (generation == generations.end() ? 1 : generation->second) << 48 | number;
    }
    static std::uint32_t attributesOf(const File& file) {
        return file.folder ? test::kFolder : test::kArchive;
    }

    test::Bytes recordOf(std::uint64_t number) const {
        const auto found = files.find(number);
        if (found == files.end()) return {};
        const File& file = found->second;
        MftRecordBytes record;
        record.standardInformation(file.modified, file.modified, attributesOf(file));
        if (!file.folder) record.nonResidentData(file.size);
        return record.ended();
    }

    std::wstring newName() {
        static constexpr wchar_t kUnits[] = L"abcAB1.e$";
        std::wstring name;
        for (std::uint64_t left = 1 + below(9); left != 0; --left) name += kUnits[below(9)];
        // Names of the file system's own are taken out by a scan alone.
        return name[0] == L'$' ? L"x" + name : name;
    }
    std::uint64_t anyFile() {
        auto found = files.lower_bound(kFirst + below(highest - kFirst + 1));
        return found == files.end() ? files.begin()->first : found->first;
    }
    std::uint64_t anyFolder() {
        for (int tries = 0; tries < 20 && !files.empty(); ++tries) {
            const std::uint64_t number = anyFile();
            if (files[number].folder) return number;
        }
        return kRootFrn;
    }
    bool isBelow(std::uint64_t number, std::uint64_t ancestor) const {
        while (number != kRootFrn) {
            if (number == ancestor) return true;
            number = files.at(number).parent;
        }
        return false;
    }

    void tell(std::uint64_t number, const File& file, std::uint32_t reason) {
        volume.happen({full(number), full(file.parent), file.name, attributesOf(file), reason});
    }
    void adopt(std::uint64_t folder, int by) {
        if (folder != kRootFrn) files[folder].children += static_cast<std::size_t>(by);
    }

    void create() {
        std::uint64_t number = highest + 1;
        if (!unused.empty() && below(4) != 0) {
            auto chosen = unused.begin();
            std::advance(chosen, static_cast<std::ptrdiff_t>(below(std::min<std::size_t>(unused.size(), 8))));
            number = *chosen;
            unused.erase(chosen);
            ++generations.try_emplace(number, 1).first->second;
            ++counted.reused;
        }
        highest = std::max(highest, number);
        File file;
        file.parent = files.empty() ? kRootFrn : anyFolder();
        file.name = newName();
        file.folder = below(5) == 0;
        file.size = file.folder ? 0 : below(1'000'000'000'000);
        file.modified = ++clock;
        adopt(file.parent, 1);
        files[number] = file;
        ++counted.created;
        std::uint32_t reason = usn::kFileCreate;
        tell(number, file, reason);
        if (below(3) == 0) {
            // Written and given its final name before it is closed, as many programs do.
            reason |= usn::kDataExtend | usn::kRenameNewName;
            tell(number, file, reason);
        }
        tell(number, file, reason | usn::kClose);
    }

    void remove() {
        if (files.size() < 100) return;
        const std::uint64_t number = anyFile();
        if (files[number].children != 0) return;
        const File file = files[number];
        adopt(file.parent, -1);
        files.erase(number);
        tell(number, file, usn::kFileDelete | usn::kClose);
        unused.insert(number);
        ++counted.removed;
    }

    void write() {
        if (files.empty()) return;
        const std::uint64_t number = anyFile();
        File& file = files[number];
        if (!file.folder) file.size = below(1'000'000);
        file.modified = ++clock;
        static constexpr std::uint32_t kReasons[] = {usn::kDataExtend, usn::kDataOverwrite,
                                                     usn::kDataTruncation, usn::kBasicInfoChange};
        const std::uint32_t reason = kReasons[below(4)];
        tell(number, file, reason);
        tell(number, file, reason | usn::kClose);
        ++counted.written;
    }

    // Under another name in its folder, or in another folder as well.
    void rename(bool move) {
        if (files.empty()) return;
        const std::uint64_t number = anyFile();
        const std::uint64_t target = anyFolder();
        File& file = files[number];
        constexpr std::uint32_t kRenameOldName = 0x1000;
        tell(number, file, kRenameOldName);
        const bool moves = move && target != file.parent && !isBelow(target, number);
        ++(moves ? counted.moved : counted.renamed);
        if (moves) {
            adopt(file.parent, -1);
            file.parent = target;
            adopt(file.parent, 1);
        }
        if (!moves || below(2) == 0) file.name = newName();
        file.modified = ++clock;
        tell(number, file, usn::kRenameNewName);
        tell(number, file, usn::kRenameNewName | usn::kClose);
    }

    void comeAndGo() {
        File file;
        file.name = newName();
        tell(highest + 1, file, usn::kFileCreate);
        tell(highest + 1, file, usn::kFileCreate | usn::kDataExtend | usn::kFileDelete | usn::kClose);
        unused.insert(++highest);
    }

    void noise() {
        if (files.empty()) return;
        const std::uint64_t number = anyFile();
        if (below(2) == 0) {
            volume.happenRaw(test::usnRecordOfVersion(3, 88));
        } else {
            tell(number, files[number], usn::kClose);
        }
    }

    test::ScriptedVolume& volume;
    std::mt19937 random;
    std::map<std::uint64_t, File> files;
    std::set<std::uint64_t> unused;
    std::map<std::uint64_t, std::uint64_t> generations;
    std::uint64_t highest = kFirst;
    std::uint64_t clock = 1000;
    Done counted;
};

// A hit as everybody sees it, whatever its index.
using Hit =
    std::tuple<std::wstring, std::uint64_t, std::uint64_t, std::uint64_t, std::uint32_t, std::uint32_t>;

std::vector<Hit> answer(NTFSIndex& index, const std::wstring& query) {
    std::vector<Hit> hits;
    const auto ids = index.searchNames(query);
    for (const IndexRow& row : index.entriesForRange(ids, 0, ids.size())) {
        hits.emplace_back(row.path, row.record->frn, row.size, row.modified, row.attributes,
                          row.record->flags);
    }
    std::sort(hits.begin(), hits.end());
    return hits;
}

std::set<std::wstring> gramsOf(const NTFSIndex& index) {
    std::set<std::wstring> grams;
    for (std::uint32_t i = 0; i < index.records().size(); ++i) {
        const std::wstring name = index.nameOf(i);
        for (std::size_t at = 0; at < name.size(); ++at) {
            for (std::size_t length = 1; length <= 3 && at + length <= name.size(); ++length) {
                grams.insert(name.substr(at, length));
            }
        }
    }
    return grams;
}

TEST(MonitorPropertyTest, TheFollowedIndexAnswersLikeOneOfTheFinalState) {
    MonitorWorld world;
    LivingVolume living(world.c(), 20260711);
    std::mt19937 random(7);
    for (int i = 0; i < 1500; ++i) living.deed();
    living.fillTable();
    ASSERT_TRUE(scanAllVolumes(world.index, world.volumes));
    ASSERT_TRUE(world.follow());

    std::size_t told = 0;
    const LivingVolume::Done before = living.done();
    while (living.done().all() - before.all() < 10'000) {
        for (std::uint64_t left = 1 + random() % 400; left != 0; --left) living.deed();
        told += world.round().size();
        world.c().journal.clear();
    }
    EXPECT_GE(told, 10'000u);
    EXPECT_GT(living.size(), 500u);
    EXPECT_GT(living.done().created - before.created, 2000u);
    EXPECT_GT(living.done().reused - before.reused, 1000u);
    EXPECT_GT(living.done().removed - before.removed, 1000u);
    EXPECT_GT(living.done().written - before.written, 2000u);
    EXPECT_GT(living.done().renamed - before.renamed, 1000u);
    EXPECT_GT(living.done().moved - before.moved, 1000u);

    living.fillTable();
    NTFSIndex rebuilt;
    ASSERT_TRUE(scanAllVolumes(rebuilt, world.volumes));
    ASSERT_EQ(rebuilt.records().size(), living.size());
    EXPECT_EQ(answer(world.index, L"*"), answer(rebuilt, L"*"));

    // Paths and facts of all records are equal by now; so hits need only be told apart.
    const auto numbers = [](NTFSIndex& index, const std::wstring& query) {
        std::vector<std::uint64_t> frns;
        for (const std::uint32_t id : index.searchNames(query)) frns.push_back(index.records()[id].frn);
        std::sort(frns.begin(), frns.end());
        return frns;
    };
    std::set<std::wstring> queries = gramsOf(world.index);  // of names that are gone as well
    EXPECT_GT(queries.size(), 400u);
    queries.insert(
        {L"*.e", L"*.a;*.b1", L"a*", L"*b*1", L"???", L"x?a*", L"abca", L"a*;*e", L"none such", L""});
    std::size_t hits = 0;
    for (const std::wstring& query : queries) {
        const auto expected = numbers(rebuilt, query);
        ASSERT_EQ(numbers(world.index, query), expected) << "a query of " << query.size() << " units";
        hits += expected.size();
    }
    EXPECT_GT(hits, 10'000u);
}

}  // namespace
}  // namespace varnelo
