#pragma once

#include <zelkoguibase/valueitemmap/changelog.h>

#include <QStringList>

/// Reads a change log to its end as texts: "1 A" for type and key, "behind" where changes were lost.
template <typename Key>
QStringList readChanges(const ChangeLogTemplate<char, Key>& log, std::uint64_t& cursor)
{
    QStringList texts;
    char type = 0;
    Key key{};
    while (const signed char result = log.ReadNext(cursor, type, key)) {
        texts.append(result < 0 ? QStringLiteral("behind") : QStringLiteral("%1 %2").arg(int{type}).arg(key));
    }
    return texts;
}
