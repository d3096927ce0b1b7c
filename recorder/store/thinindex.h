#pragma once

#include <zelkobase/data/indexentry.h>

#include <QVector>

namespace ZelkoRecorder {

/// Leaves out every other entry, but never the first, the last, or one from which on the tuning is another. True if any
/// entry went.
bool thinIndex(QVector<ZELKO_XML::IndexEntry>& index);

/// Takes out every second entry, whatever it says, but neither the first nor the last.
void halveIndex(QVector<ZELKO_XML::IndexEntry>& index);

} // namespace ZelkoRecorder
