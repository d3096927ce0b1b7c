#include "sortkeys_p.h"

namespace ZelkoCommon {
namespace {

constexpr int fewQuestions = 256; // more than one row needs in the longest list

} // namespace

QVariant SortKeys::ask(int row, int column, int rows)
{
    if (column != m_column) {
        forget();
        m_column = column;
    }
    if (++m_questions > fewQuestions && m_questions > rows / 8) {
        forget();
        appendRows(0, rows - 1);
    }
    return m_read(row, column);
}

void SortKeys::cellsChanged(int firstRow, int lastRow, int firstColumn, int lastColumn)
{
    const bool isTouched = m_column >= firstColumn && m_column <= lastColumn;
    for (int row = firstRow; isTouched && row <= lastRow && row < m_count; ++row) {
        replace(row, m_read(row, m_column));
    }
    m_questions = 0;
}

void SortKeys::rowsInserted(int first, int last)
{
    if (first > 0 && first == m_count) {
        appendRows(first, last);
    } else {
        forget();
    }
}

void SortKeys::forget()
{
    m_numbers = {};
    m_others = {};
    m_count = 0;
    m_questions = 0;
}

bool SortKeys::isForNumbers(const QVariant& key) const
{
    return m_others.empty() && key.metaType() == QMetaType::fromType<quint64>();
}

void SortKeys::append(const QVariant& key)
{
    if (isForNumbers(key)) {
        m_numbers.push_back(key.toULongLong());
    } else {
        turnNumbersIntoOthers();
        m_others.push_back(key);
    }
    ++m_count;
}

void SortKeys::appendRows(int first, int last)
{
    for (int row = first; row <= last; ++row) {
        append(m_read(row, m_column));
    }
}

void SortKeys::replace(int row, const QVariant& key)
{
    const auto place = static_cast<std::size_t>(row);
    if (isForNumbers(key)) {
        m_numbers[place] = key.toULongLong();
    } else {
        turnNumbersIntoOthers();
        m_others[place] = key;
    }
}

// A row without data has no number.
void SortKeys::turnNumbersIntoOthers()
{
    m_others.insert(m_others.end(), m_numbers.begin(), m_numbers.end());
    m_numbers = {};
}

} // namespace ZelkoCommon
