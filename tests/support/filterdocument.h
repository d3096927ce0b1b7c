#pragma once

#include <QByteArray>

/// Filter files as somebody else has written them, right and wrong.
namespace filterdocument {

/// A document that holds those entries, as somebody else has written it.
inline QByteArray documentWith(const QByteArray& entries)
{
    return "<FilterConditionList><ID>ExtendedRecordListFilter</ID>" + entries + "</FilterConditionList>";
}

inline QByteArray entry(const QByteArray& name, int column, const QByteArray& filter)
{
    return "<FilterCondition><Name>" + name + "</Name><Column>" + QByteArray::number(column) +
           "</Column><Role>33</Role><Enabled>true</Enabled>" + filter + "</FilterCondition>";
}

inline QByteArray limit(const QByteArray& type, const QByteArray& value,
                        const QByteArray& comparator = "GreaterOrEqual")
{
    return "<NumberFilter><Type>" + type + "</Type><Comparator>" + comparator + "</Comparator><FilterValue>" + value +
           "</FilterValue></NumberFilter>";
}

inline QByteArray sizeLimit(const QByteArray& type, const QByteArray& value)
{
    return documentWith(entry("SizeLowerLimit", 1, limit(type, value)));
}

/// A filter that would change something, which stands before what is wrong with a file.
inline const QByteArray goodEntry =
    entry("NameFilter", 0, "<StringFilter><Pattern>x</Pattern><CaseSensitive>true</CaseSensitive></StringFilter>");

} // namespace filterdocument
