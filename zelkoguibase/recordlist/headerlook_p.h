#pragma once

#include <QList>
#include <QVariant>

class QAbstractItemModel;

namespace ZelkoGUI {

/// How the sections of a horizontal header look, so that a header which is announced anew with each change of the rows
/// is painted anew for those alone that look different.
class HeaderLook
{
public:
    /// The sections that look different from the last time that they were looked at.
    QList<int> changes(const QAbstractItemModel& model);

    /// Takes any section for different.
    void forget() { m_looks.clear(); }

private:
    QList<QVariantList> m_looks; // of each section what it shows, by role
};

} // namespace ZelkoGUI
