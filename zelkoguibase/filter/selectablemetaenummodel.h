#pragma once

#include <zelkoguibase/filter/selectableenummodel.h>

class QMetaEnum;

namespace ZelkoGUI::Filter {

/// The keys of an enumeration that the meta object system knows, for applications that filter by one of their own. A
/// value is the index of its key, not the number that the key stands for.
class ZELKOGUIBASE_EXPORT SelectableMetaEnumModel : public SelectableEnumModel<int>
{
    Q_OBJECT

public:
    SelectableMetaEnumModel(const QMetaEnum& metaEnum, QObject* parent);
    ~SelectableMetaEnumModel() override;
};

} // namespace ZelkoGUI::Filter
