#pragma once

#include <QModelIndexList>
#include <QString>

namespace ZelkoConsole {

/// What is selected, in one line: the number of records with their size and duration together. Empty for no rows. The
/// indexes are of a record list or of a proxy over one, one per row.
QString selectionSummary(const QModelIndexList& rows);

} // namespace ZelkoConsole
