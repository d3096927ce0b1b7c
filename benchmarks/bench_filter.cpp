// One cell of a record list against a string condition with a fixed text, beside the same cell against QRegExp: what is
// searched for stands in some cells, in none and in all, with and without regard to case.
#include <zelkoguibase/filter/stringfiltercondition.h>

#include <benchmark/benchmark.h>

#include <vector>

using ZelkoGUI::Filter::StringFilterCondition;

namespace {

constexpr int cellCount = 10'000;

const std::vector<QVariant>& cells()
{
    static const std::vector<QVariant> all = [] {
        std::vector<QVariant> made;
        for (int i = 0; i < cellCount; ++i) {
            made.emplace_back(QStringLiteral("Record %1 of the north mast at %2 MHz").arg(i).arg(20 + i % 3000));
        }
        return made;
    }();
    return all;
}

struct Search
{
    const char* name;
    const char* wanted;
    Qt::CaseSensitivity cs;
};

constexpr Search searches[] = {
    {"one_character", "7", Qt::CaseInsensitive},       {"two_characters", "42", Qt::CaseInsensitive},
    {"a_word", "mast", Qt::CaseInsensitive},           {"nothing_there", "harbour", Qt::CaseInsensitive},
    {"exactly_one_character", "7", Qt::CaseSensitive}, {"exactly_a_word", "mast", Qt::CaseSensitive},
};

template <typename Passes>
void countPassing(benchmark::State& state, Passes passes)
{
    for (auto _ : state) {
        int passing = 0;
        for (const QVariant& cell : cells()) {
            passing += passes(cell) ? 1 : 0;
        }
        benchmark::DoNotOptimize(passing);
    }
    state.SetItemsProcessed(state.iterations() * cellCount);
}

void ours(benchmark::State& state, const Search& search)
{
    StringFilterCondition condition(0, Qt::UserRole + 1, nullptr);
    condition.setRegExp(QString::fromLatin1(search.wanted), search.cs, QRegExp::FixedString);
    condition.setEnabled(true);
    const ZelkoGUI::Filter::AbstractFilterCondition& asked = condition;
    countPassing(state, [&asked](const QVariant& cell) { return asked.passes(cell); });
}

void qregexp(benchmark::State& state, const Search& search)
{
    const QRegExp expression(QString::fromLatin1(search.wanted), search.cs, QRegExp::FixedString);
    countPassing(state, [&expression](const QVariant& cell) { return expression.containedIn(cell.toString()); });
}

} // namespace

int main(int argc, char** argv)
{
    for (const Search& search : searches) {
        const std::string claim = std::string("cell/") + search.name;
        benchmark::RegisterBenchmark((claim + "/ours").c_str(), ours, search);
        benchmark::RegisterBenchmark((claim + "/qregexp").c_str(), qregexp, search);
    }
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    return 0;
}
