#pragma once

#include <valuecore/tree.h>
#include <valuecore/valuenumeric.h>

#include <QString>

#include <cstddef>
#include <memory>
#include <vector>

/// Numbers below one node of a tree, which change in turn: the content of each is how many changes there have been
/// altogether, so that whoever reads one knows how many he should have heard of.
class CountedValues
{
public:
    using Number = ValueNumeric<double>;

    static constexpr int Count = 1'000;

    /// What the benchmarks claim about holds for so many changes in a second.
    static constexpr int ChangesPerSecond = 10'000;

    explicit CountedValues(Tree& tree)
    {
        for (int i = 0; i < Count; ++i) {
            m_values.push_back(tree.Emplace(QStringLiteral("/ZELKO/Bench"), std::make_unique<Number>(name(i))));
        }
    }

    /// Path of a value, from 0 on, below `root`, which is empty at the end that owns the values.
    static QString path(int i, const QString& root = {}) { return root + QStringLiteral("/ZELKO/Bench/") + name(i); }

    void changeNext()
    {
        const std::size_t i = m_changes++ % m_values.size();
        m_values[i]->SetValue(static_cast<double>(m_changes), nullptr);
    }

private:
    static QString name(int i) { return QStringLiteral("Value%1").arg(i); }

    std::vector<Number*> m_values;
    std::size_t m_changes = 0;
};
