#include "headerlook_p.h"

#include <QAbstractItemModel>
#include <QIcon>
#include <QPixmap>

#include <array>

namespace ZelkoGUI {

namespace {

// Pictures cannot be compared; those that are the same one have the same key.
QVariant comparable(const QVariant& value)
{
    switch (value.typeId()) {
    case QMetaType::QIcon:
        return value.value<QIcon>().cacheKey();
    case QMetaType::QPixmap:
        return value.value<QPixmap>().cacheKey();
    default:
        return value;
    }
}

QVariantList look(const QAbstractItemModel& model, int section)
{
    constexpr std::array roles{Qt::DisplayRole,    Qt::DecorationRole, Qt::FontRole,    Qt::TextAlignmentRole,
                               Qt::ForegroundRole, Qt::BackgroundRole, Qt::SizeHintRole};
    QVariantList result;
    result.reserve(roles.size());
    for (const int role : roles) {
        result.append(comparable(model.headerData(section, Qt::Horizontal, role)));
    }
    return result;
}

} // namespace

QList<int> HeaderLook::changes(const QAbstractItemModel& model)
{
    QList<int> result;
    m_looks.resize(model.columnCount());
    for (int section = 0; section < m_looks.size(); ++section) {
        QVariantList now = look(model, section);
        if (m_looks[section] != now) {
            m_looks[section] = std::move(now);
            result.append(section);
        }
    }
    return result;
}

} // namespace ZelkoGUI
