#pragma once

namespace ZelkoGUI::Filter {

/// How number conditions compare.
struct NumberComparison
{
    /// The comparison that a cell passes, the cell on the left. The numbers are those of filter files.
    enum Comparator : int { Equal = 0, Less = 1, Greater = 2, LessOrEqual = 3, GreaterOrEqual = 4, NotEqual = 5 };

    /// False for a number that is no comparator. A NaN differs from everything, and nothing else holds for it.
    template <typename T>
    static bool holds(const T& cell, Comparator comparator, const T& limit)
    {
        switch (comparator) {
        case Equal:
            return cell == limit;
        case Less:
            return cell < limit;
        case Greater:
            return cell > limit;
        case LessOrEqual:
            return cell <= limit;
        case GreaterOrEqual:
            return cell >= limit;
        case NotEqual:
            return cell != limit;
        }
        return false;
    }
};

} // namespace ZelkoGUI::Filter
