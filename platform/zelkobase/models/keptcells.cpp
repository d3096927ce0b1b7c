#include "keptcells_p.h"

#include <QString>

#include <algorithm>

namespace ZelkoCommon {
namespace {

constexpr int fewQuestions = 256; // more than one row needs in the longest list
constexpr int stepsAhead = 16;    // a text comes from memory in the time that so many take

using Numbers = std::vector<quint64>;
using Others = std::vector<QVariant>;

bool isNumber(const QVariant& cell)
{
    return cell.metaType() == QMetaType::fromType<quint64>();
}

bool isText(const QVariant& cell)
{
    return cell.metaType() == QMetaType::fromType<QString>();
}

const QString& textOf(const QVariant& cell)
{
    return *static_cast<const QString*>(cell.constData());
}

// A text of its own: copies that are made one after the other lie so in memory too.
QVariant laidOut(QVariant&& cell)
{
    if (!isText(cell) || textOf(cell).isEmpty()) {
        return std::move(cell);
    }
    const QString& text = textOf(cell);
    return QString(text.constData(), text.size());
}

// A row without data has no number.
void turnIntoOthers(Numbers& numbers, Others& others)
{
    others.insert(others.end(), numbers.begin(), numbers.end());
    numbers = {};
}

void append(Numbers& numbers, Others& others, QVariant&& cell)
{
    if (others.empty() && isNumber(cell)) {
        numbers.push_back(cell.toULongLong());
        return;
    }
    turnIntoOthers(numbers, others);
    others.push_back(laidOut(std::move(cell)));
}

void replace(Numbers& numbers, Others& others, std::size_t place, const QVariant& cell)
{
    if (others.empty() && isNumber(cell)) {
        numbers[place] = cell.toULongLong();
        return;
    }
    turnIntoOthers(numbers, others);
    others[place] = cell;
}

void fetchText(const QVariant& cell)
{
    if (isText(cell)) {
        __builtin_prefetch(textOf(cell).constData());
    }
}

} // namespace

QVariant KeptCells::cellOfWalk(int row, int column) const
{
    const Others& others = at(column).others;
    const auto ahead = static_cast<std::size_t>(row) + stepsAhead;
    if (ahead < others.size()) {
        fetchText(others[ahead]);
    }
    return cell(row, column);
}

QVariant KeptCells::ask(int row, int column, int rows)
{
    Column& asked = at(column);
    if (++asked.questions > fewQuestions && asked.questions > rows / 8) {
        asked = {};
        asked.others.reserve(static_cast<std::size_t>(rows));
        readRows(column, 0, rows - 1);
    }
    return m_read(row, column);
}

void KeptCells::cellsChanged(int firstRow, int lastRow, int firstColumn, int lastColumn)
{
    for (int column = std::max(firstColumn, 0); column <= std::min(lastColumn, columnCount() - 1); ++column) {
        Column& changed = at(column);
        for (int row = firstRow; row <= lastRow && row < changed.count; ++row) {
            replace(changed.numbers, changed.others, static_cast<std::size_t>(row), m_read(row, column));
        }
        changed.questions = 0;
    }
}

void KeptCells::rowsInserted(int first, int last)
{
    for (int column = 0; column < columnCount(); ++column) {
        if (first > 0 && first == at(column).count) {
            readRows(column, first, last);
        } else {
            at(column) = {};
        }
    }
}

void KeptCells::forget()
{
    std::fill(m_columns.begin(), m_columns.end(), Column());
}

void KeptCells::readRows(int column, int first, int last)
{
    Column& read = at(column);
    for (int row = first; row <= last; ++row) {
        append(read.numbers, read.others, m_read(row, column));
    }
    read.count = last + 1;
}

} // namespace ZelkoCommon
