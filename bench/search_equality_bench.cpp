// Answers over a million real file names, beside those of plain loops over the names themselves.

#include <benchmark/benchmark.h>

#include <cstdio>
#include <cstdlib>
#include <random>

#include "file_names.h"

namespace varnelo {
namespace {

using namespace bench;

using Text = std::wstring;

Text lower(Text text) {
    for (wchar_t& unit : text) {
        if (unit >= L'A' && unit <= L'Z') unit = static_cast<wchar_t>(unit + (L'a' - L'A'));
    }
    return text;
}

bool matches(const Text& pattern, const Text& name) {
    std::size_t i = 0;
    std::size_t j = 0;
    std::size_t star = Text::npos;
    std::size_t behind = 0;
    while (j < name.size()) {
        if (i < pattern.size() && pattern[i] == L'*') {
            star = i++;
            behind = j;
        } else if (i < pattern.size() && (pattern[i] == L'?' || pattern[i] == name[j])) {
            ++i;
            ++j;
        } else if (star != Text::npos) {
            i = star + 1;
            j = ++behind;
        } else {
            return false;
        }
    }
    while (i < pattern.size() && pattern[i] == L'*') ++i;
    return i == pattern.size();
}

// One way to ask, and how often a name that it finds stands in the answer.
struct Question {
    enum class Kind { kText, kExtensions, kPatterns };
    Kind kind;
    std::vector<Text> pieces;  // the text, the extensions with their dots, or the patterns

    Text query() const {
        Text joined;
        for (const Text& piece : pieces) {
            if (!joined.empty()) joined += L';';
            joined += kind == Kind::kExtensions ? L"*" + piece : piece;
        }
        return joined;
    }
    int hits(const Text& name) const {
        int count = 0;
        if (kind == Kind::kText) {
            const Text text = lower(pieces[0]);
            if (name.find(text) == Text::npos) return 0;
            const Text first = text.substr(0, 3);
            for (std::size_t at = name.find(first); at != Text::npos; at = name.find(first, at + 1)) ++count;
            return count;
        }
        const std::size_t dot = name.rfind(L'.');
        for (const Text& piece : pieces) {
            const Text wanted = lower(piece);
            const bool found = kind == Kind::kPatterns ? matches(wanted, name)
                                                       : dot != Text::npos && dot != 0 &&
                                                             name.compare(dot, Text::npos, wanted) == 0;
            if (found) return 1;
        }
        return 0;
    }
};

// Questions that real names suggest, the same in every run.
class Questions {
public:
    std::vector<Question> all() {
        std::vector<Question> questions;
        for (std::size_t i = 0; i < 60; ++i) {
            questions.push_back({Question::Kind::kText, {piece(1 + i % 3)}});
            questions.push_back({Question::Kind::kText, {piece(4 + i % 9)}});
        }
        for (std::size_t i = 0; i < 40; ++i) {
            std::vector<Text> extensions(1 + i % 3);
            for (Text& one : extensions) one = extension();
            questions.push_back({Question::Kind::kExtensions, extensions});
            std::vector<Text> patterns(i % 4 == 3 ? 2 : 1);
            for (Text& one : patterns) one = pattern();
            questions.push_back({Question::Kind::kPatterns, patterns});
        }
        return questions;
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
    for (const Text& name : fileNames()) names.push_back(lower(name));
    std::size_t different = 0;
    for (const Question& question : Questions().all()) {
        std::vector<std::uint32_t> expected;
        for (std::uint32_t i = 0; i < names.size(); ++i) {
            expected.insert(expected.end(), static_cast<std::size_t>(question.hits(names[i])), i);
        }
        const std::vector<std::uint32_t> found = fullIndex().searchNames(question.query());
        if (std::getenv("VARNELO_BENCH_QUERIES") != nullptr) {
            std::fprintf(stderr, "%-40s %9zu hits\n", utf8FromWide(question.query()).c_str(), found.size());
        }
        if (found == expected) continue;
        ++different;
        std::fprintf(stderr, "%s: %zu hits, a plain loop finds %zu\n", utf8FromWide(question.query()).c_str(),
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
