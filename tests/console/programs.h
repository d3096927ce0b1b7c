#pragma once

#include <QDir>

/// Path of a program that was built with the tests.
inline QString programPath(const char* name)
{
    return QDir(QStringLiteral(ZELKO_PROGRAMS)).filePath(QLatin1String(name));
}
