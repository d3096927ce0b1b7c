#include <zelkoguibase/filter/selectablemetaenummodel.h>

#include <QMetaEnum>

namespace ZelkoGUI::Filter {
namespace {

QList<QPair<int, QString>> keysOf(const QMetaEnum& metaEnum)
{
    QList<QPair<int, QString>> keys;
    for (int index = 0; index < metaEnum.keyCount(); ++index) {
        keys.append({index, QString::fromUtf8(metaEnum.key(index))});
    }
    return keys;
}

} // namespace

SelectableMetaEnumModel::SelectableMetaEnumModel(const QMetaEnum& metaEnum, QObject* parent)
    : SelectableEnumModel<int>(keysOf(metaEnum), parent)
{}

SelectableMetaEnumModel::~SelectableMetaEnumModel() = default;

} // namespace ZelkoGUI::Filter
