#pragma once

#include <console/records/recorddelegate.h>

namespace ZelkoConsole {

/// Puts a sign before the status of a record: one sees at a glance which ones are being recorded and which are damaged.
class StatusDelegate : public RecordDelegate
{
    Q_OBJECT

public:
    using RecordDelegate::RecordDelegate;

protected:
    void initStyleOption(QStyleOptionViewItem* option, const QModelIndex& index) const override;
};

} // namespace ZelkoConsole
