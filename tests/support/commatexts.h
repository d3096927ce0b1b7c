#pragma once

#include <QStringList>

/// "one, two" as a list of two; an empty text is an empty list.
inline QStringList texts(const char* commaSeparated)
{
    return QString::fromLatin1(commaSeparated).split(QStringLiteral(", "), Qt::SkipEmptyParts);
}
