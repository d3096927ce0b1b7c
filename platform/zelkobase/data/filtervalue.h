#pragma once

#include <zelkobase/data/zelkobasedata_export.h>

#include <QDateTime>
#include <QString>

namespace ZELKO_XML {

/// The limit of a number filter as a text. A `double` keeps six significant digits, so 1234567 comes back as 1234570; a
/// `QTime` is HH:mm:ss.zzz, or empty if it is not valid; a `QDateTime` counts milliseconds since the epoch, and is 0 if
/// it is not valid.
ZELKOBASEDATA_EXPORT QString filterValueText(double value);
ZELKOBASEDATA_EXPORT QString filterValueText(int value);
ZELKOBASEDATA_EXPORT QString filterValueText(const QTime& value);
ZELKOBASEDATA_EXPORT QString filterValueText(const QDateTime& value);

/// The reverse. False if the text is none that filterValueText() gives for a value of that type, or one beyond the
/// range of the type; `value` is then what Qt makes of it: for numbers and moments what 0 stands for or the infinite,
/// an invalid time otherwise. An empty text is an invalid time.
ZELKOBASEDATA_EXPORT bool parseFilterValue(const QString& text, double& value);
ZELKOBASEDATA_EXPORT bool parseFilterValue(const QString& text, int& value);
ZELKOBASEDATA_EXPORT bool parseFilterValue(const QString& text, QTime& value);
ZELKOBASEDATA_EXPORT bool parseFilterValue(const QString& text, QDateTime& value);

} // namespace ZELKO_XML
