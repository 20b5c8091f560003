// Answers over a million real file names, beside those of plain loops over the names themselves.

#include <benchmark/benchmark.h>

#include <cstdio>
#include <cstdlib>
#include <random>

#include "file_names.h"
#include "host/index/plain_search.h"

namespace varnelo {
namespace {

using namespace bench;

using Text = std::wstring;

// Queries that real names suggest, the same in every run.
class Queries {
public:
    std::vector<Text> all() {
        std::vector<Text> queries;
        for (std::size_t i = 0; i < 60; ++i) {
            queries.push_back(piece(1 + i % 3));
            queries.push_back(piece(4 + i % 9));
        }
        for (std::size_t i = 0; i < 40; ++i) {
            queries.push_back(L"*" + extension());
            for (std::size_t more = i % 3; more != 0; --more) queries.back() += L";*" + extension();
            queries.push_back(pattern());
            if (i % 4 == 3) queries.back() += L";" + pattern();
        }
        return queries;
    }

private:
    std::size_t below(std::size_t end) { return random() % end; }
    // Without the signs that have a meaning in a query, or in the sequence of units of the host's wchar_t.
    static bool isPlain(const Text& text) {
        return text.find_first_of(L"*?;|, ") == Text::npos &&
               std::all_of(text.begin(), text.end(), [](wchar_t unit) { return unit < 0x10000; });
    }
    Text name(std::size_t atLeast) {
        for (;;) {
            const Text& one = fileNames()[below(fileNames().size())];
            if (one.size() >= atLeast && isPlain(one)) return one;
        }
    }
    Text piece(std::size_t size) {
        const Text one = name(size);
        return one.substr(below(one.size() - size + 1), size);
    }
    Text extension() {
        for (;;) {
            const Text one = name(3);
            const std::size_t dot = one.rfind(L'.');
            if (dot != Text::npos && dot + 1 < one.size()) return one.substr(dot);
        }
    }
    // A name of which stretches became stars or question marks; never one for its extension alone.
    Text pattern() {
        Text one = name(6);
        for (std::size_t changes = 1 + below(4); changes != 0; --changes) {
            const std::size_t at = below(one.size());
            if (below(3) == 0) {
                one[at] = L'?';
            } else {
                one.replace(at, below(8), L"*");
            }
        }
        if (below(3) == 0) one = L"*" + one.substr(below(one.size())) + L"*";
        return one.starts_with(L"*.") || one.find_first_of(L"*?") == Text::npos ? one + L"*" : one;
    }

    std::mt19937 random{20};
};

std::size_t countDifferent() {
    std::vector<Text> names;
    for (const Text& name : fileNames()) names.push_back(lowered(name));
    std::size_t different = 0;
    for (const Text& query : Queries().all()) {
        const std::vector<Text> patterns = plain::patternsOf(query);
        std::vector<std::uint32_t> expected;
        for (std::uint32_t i = 0; i < names.size(); ++i) {
            expected.insert(expected.end(), static_cast<std::size_t>(plain::hits(query, patterns, names[i])),
                            i);
        }
        const std::vector<std::uint32_t> found = fullIndex().searchNames(query);
        if (std::getenv("VARNELO_BENCH_QUERIES") != nullptr) {
            std::fprintf(stderr, "%-40s %9zu hits\n", utf8FromWide(query).c_str(), found.size());
        }
        if (found == expected) continue;
        ++different;
        std::fprintf(stderr, "%s: %zu hits, a plain loop finds %zu\n", utf8FromWide(query).c_str(),
                     found.size(), expected.size());
    }
    return different;
}

void searchEqualsPlainLoop(benchmark::State& state) {
    if (namesMissing(state)) return;
    // Once, however often a figure is asked for: the loops take a while.
    static const std::size_t different = countDifferent();
    if (different != 0) std::exit(EXIT_FAILURE);
    for (auto _ : state) state.SetIterationTime(0);
    state.counters["different"] = static_cast<double>(different);
    state.counters["different_bar"] = 0;
}
BENCHMARK(searchEqualsPlainLoop)->Iterations(1)->UseManualTime()->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace varnelo
