#pragma once

#include <QString>

namespace ZelkoRecorder {

/// `text` as one line that XML can carry: control characters and characters that XML forbids become blanks, runs of
/// blanks one blank, ends are trimmed, and what is longer than `maximumLength` UTF-16 units is cut off. May become
/// empty.
QString cleanText(QString text, qsizetype maximumLength = 1000);

} // namespace ZelkoRecorder
