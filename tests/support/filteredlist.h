#pragma once

#include "numbertable.h"
#include "scriptedcondition.h"

#include <zelkoguibase/filter/multifiltersortproxymodel.h>

#include <QAbstractItemModelTester>
#include <QIcon>

inline constexpr int manyRows = 1600; // so many that a change may go all over the list

/// Numbers 0, 10, 20 ... in the first column, the same from the end in the second, 0 to 7 by turns in the third.
inline QList<NumberTable::Row> numbers(int count)
{
    QList<NumberTable::Row> rows;
    for (int i = 0; i < count; ++i) {
        rows.append({10 * i, 10 * (count - 1 - i), i % 8});
    }
    return rows;
}

inline bool isOdd(int value)
{
    return value % 2 != 0;
}

inline auto below(int limit)
{
    return [limit](int value) { return value < limit; };
}

inline auto equals(int number)
{
    return [number](int value) { return value == number; };
}

inline bool anything(int)
{
    return true;
}

inline bool nothing(int)
{
    return false;
}

inline QList<int> column(const QAbstractItemModel& model, int number)
{
    QList<int> values;
    for (int row = 0; row < model.rowCount(); ++row) {
        values.append(model.index(row, number).data().toInt());
    }
    return values;
}

inline QList<int> markedColumns(const QAbstractItemModel& model)
{
    QList<int> sections;
    for (int section = 0; section < model.columnCount(); ++section) {
        if (model.headerData(section, Qt::Horizontal, Qt::DecorationRole).canConvert<QIcon>()) {
            sections.append(section);
        }
    }
    return sections;
}

/// A list as it is used: sorted by role 32, following its source.
class FilteredList
{
public:
    explicit FilteredList(int rows)
        : table(numbers(rows))
    {
        proxy.setSourceModel(&table);
        proxy.setSortRole(Qt::UserRole);
        proxy.setDynamicSortFilter(true);
    }

    ScriptedCondition* add(int number, ScriptedCondition::Test test)
    {
        auto* condition = new ScriptedCondition(number, std::move(test));
        proxy.addFilter(condition);
        return condition;
    }

    NumberTable table;
    ZelkoGUI::Filter::MultiFilterSortProxyModel proxy{nullptr};
    QAbstractItemModelTester tester{&proxy, QAbstractItemModelTester::FailureReportingMode::QtTest};
};

inline QStringList layoutChange()
{
    return {QStringLiteral("begin layout"), QStringLiteral("header changed"), QStringLiteral("end layout")};
}

inline QStringList removal(int first, int last)
{
    const QString rows = QStringLiteral("%1-%2").arg(first).arg(last);
    return {QStringLiteral("begin remove ") + rows, QStringLiteral("header changed"),
            QStringLiteral("end remove ") + rows};
}

inline QStringList insertion(int first, int last)
{
    const QString rows = QStringLiteral("%1-%2").arg(first).arg(last);
    return {QStringLiteral("begin insert ") + rows, QStringLiteral("header changed"),
            QStringLiteral("end insert ") + rows};
}

inline const QStringList header{QStringLiteral("header changed")};
