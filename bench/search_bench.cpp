// Searching a million real file names, beside a vectorised pass over all of them and beside plocate.

#include <benchmark/benchmark.h>
#include <emmintrin.h>
#include <spawn.h>
#include <sys/wait.h>

#include <cstdio>
#include <filesystem>
#include <functional>
#include <stdexcept>

#include "file_names.h"
#include "index/grams.h"
#include "platform/text.h"
#include "support/temp_folder.h"

extern char** environ;

namespace varnelo {
namespace {

using namespace bench;

double searchMilliseconds(const std::wstring& query) {
    NTFSIndex& index = fullIndex();
    return medianMilliseconds([&] { benchmark::DoNotOptimize(index.searchNames(query)); });
}

// The yardstick: the whole pool from one end to the other, eight units at a time, for the first two units of
// a text and no more. Letters are folded, as every search must.
double scanMilliseconds() {
    const NamePool& names = fullIndex().names();
    const __m128i first = _mm_set1_epi16('z');
    const __m128i second = _mm_set1_epi16('q');
    const auto lowered = [](const std::uint16_t* from) {
        const __m128i units = _mm_loadu_si128(reinterpret_cast<const __m128i*>(from));
        const __m128i place = _mm_sub_epi16(units, _mm_set1_epi16('A'));
        const __m128i capital =
            _mm_cmpeq_epi16(_mm_subs_epu16(place, _mm_set1_epi16('Z' - 'A')), _mm_setzero_si128());
        return _mm_add_epi16(units, _mm_and_si128(capital, _mm_set1_epi16('a' - 'A')));
    };
    return medianMilliseconds([&] {
        std::size_t hits = 0;
        for (std::size_t at = 0; at + 9 < names.size(); at += 8) {
            const __m128i both = _mm_and_si128(_mm_cmpeq_epi16(lowered(names.data() + at), first),
                                               _mm_cmpeq_epi16(lowered(names.data() + at + 1), second));
            hits += _mm_movemask_epi8(both) != 0 ? 1 : 0;
        }
        benchmark::DoNotOptimize(hits);
    });
}

// The slowest of the queries. With `perHits`, times are those for so many hits.
void searchAll(benchmark::State& state, const std::vector<std::wstring>& queries, double bar,
               double perHits) {
    if (namesMissing(state)) return;
    fullIndex();
    const TouchedMemory touched;
    const double scan = scanMilliseconds();
    double worst = 0;
    double worstToScan = 0;
    for (auto _ : state) {
        for (const std::wstring& query : queries) {
            const double once = searchMilliseconds(query);
            const auto hits = static_cast<double>(fullIndex().searchNames(query).size());
            const double counted = perHits == 0 ? once : once * perHits / std::max(hits, perHits);
            if (std::getenv("VARNELO_BENCH_QUERIES") != nullptr) {
                std::fprintf(stderr, "%-24s %9.4f ms %9.0f hits\n", utf8FromWide(query).c_str(), once, hits);
            }
            worst = std::max(worst, counted);
            worstToScan = std::max(worstToScan, once / scan);
        }
        state.SetIterationTime((perHits == 0 ? perMillion(worst) : worst) / 1000);
    }
    state.counters["bar"] = bar;
    state.counters["toScan"] = worstToScan;
    state.counters["toScan_bar"] = 1;
    state.counters["scan"] = scan;
}

const std::vector<std::wstring> kShort = {L"q",  L"z",  L"_",  L"x",  L"th", L"er",
                                          L".h", L"te", L"li", L"re", L"Q",  L"5"};
const std::vector<std::wstring> kThree = {L"con", L"lib", L"ing", L".js", L"xyz",
                                          L"est", L"tml", L"ser", L"dat"};
const std::vector<std::wstring> kLong = {L"readme", L"config", L"index",  L"changelog", L"license",
                                         L"test",   L"util",   L"image",  L"font",      L"python",
                                         L"kernel", L"driver", L"module", L"setup",     L"main",
                                         L"icon",   L"theme",  L"locale", L"copyright", L"makefile"};
const std::vector<std::wstring> kExtensions = {L"*.png", L"*.h", L"*.html;*.htm", L"*.c,*.cpp,*.cc",
                                               L"*.nothing"};
const std::vector<std::wstring> kPatterns = {L"*config*", L"lib*.so*",   L"*a*e*i*", L"????",
                                             L"*.p?g",    L"?eadme*",    L"a*",      L"*",
                                             L"*-*-*",    L"read*;*.md", L"*e",      L"???????????"};

BENCHMARK_CAPTURE(searchAll, oneAndTwoPer180000, kShort, 0.5, 180000.0)
    ->Iterations(1)
    ->UseManualTime()
    ->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(searchAll, threePer20000, kThree, 0.1, 20000.0)
    ->Iterations(1)
    ->UseManualTime()
    ->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(searchAll, fourAndMore, kLong, 0.2, 0.0)
    ->Iterations(1)
    ->UseManualTime()
    ->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(searchAll, extensions, kExtensions, 2.0, 0.0)
    ->Iterations(1)
    ->UseManualTime()
    ->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(searchAll, otherPatterns, kPatterns, 15.0, 0.0)
    ->Iterations(1)
    ->UseManualTime()
    ->Unit(benchmark::kMillisecond);

// plocate over a database of the same names.
class Plocate {
public:
    Plocate() {
        run({"plocate-build", "-p", kNamesFile.c_str(), database.c_str()});
        if (!std::filesystem::exists(database)) throw std::runtime_error("plocate-build made no database");
    }
    // Without the start of a process, which a query for nothing much shows.
    double searchMilliseconds(const std::string& query) const {
        return std::max(0.0, timeOf({"plocate", "-d", database.c_str(), "-i", "-c", query.c_str()}) -
                                 startMilliseconds());
    }

private:
    static void run(std::vector<const char*> arguments) {
        arguments.push_back(nullptr);
        posix_spawn_file_actions_t actions;
        posix_spawn_file_actions_init(&actions);
        posix_spawn_file_actions_addopen(&actions, 1, "/dev/null", 1, 0);
        pid_t child = 0;
        const int error = posix_spawnp(&child, arguments[0], &actions, nullptr,
                                       const_cast<char* const*>(arguments.data()), environ);
        posix_spawn_file_actions_destroy(&actions);
        if (error != 0) throw std::runtime_error("plocate is not there");
        int status = 0;
        ::waitpid(child, &status, 0);
    }
    static double timeOf(const std::vector<const char*>& arguments) {
        return medianMilliseconds([&] { run(arguments); });
    }
    static double startMilliseconds() {
        static const double start = timeOf({"plocate", "--version"});
        return start;
    }

    test::TempFolder folder;
    std::string database = utf8FromWide(folder.file(L"names.db"));
};

void searchBesidePlocate(benchmark::State& state) {
    if (namesMissing(state)) return;
    const Plocate plocate;
    double worst = 0;
    for (auto _ : state) {
        double slowest = 0;
        for (const std::wstring& query : kLong) {
            const double own = searchMilliseconds(query);
            const double theirs = plocate.searchMilliseconds(utf8FromWide(query));
            if (std::getenv("VARNELO_BENCH_QUERIES") != nullptr) {
                std::fprintf(stderr, "%-24s %9.4f ms, plocate %9.4f ms\n", utf8FromWide(query).c_str(), own,
                             theirs);
            }
            worst = std::max(worst, own / std::max(theirs, 0.001));
            slowest = std::max(slowest, own);
        }
        state.SetIterationTime(slowest / 1000);
    }
    state.counters["worstToPlocate"] = worst;
    state.counters["worstToPlocate_bar"] = 0.2;
}
BENCHMARK(searchBesidePlocate)->Iterations(1)->UseManualTime()->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace varnelo
