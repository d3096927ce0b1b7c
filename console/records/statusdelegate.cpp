#include <console/records/statusdelegate.h>

#include <console/widgets/glyph.h>

#include <zelkobase/models/abstractrecordlistmodel.h>

namespace ZelkoConsole {
namespace {

using ZelkoCommon::AbstractRecordListModel;
using Status = ZELKO_XML::ZELKO_RecordData::RecordStatus;

Glyph glyphOf(Status status)
{
    switch (status) {
    case Status::Recording:
    case Status::LoopRecording:
        return Glyph::Recording;
    case Status::Finished:
        return Glyph::Good;
    case Status::Damaged:
        return Glyph::Bad;
    case Status::Prepared:
    case Status::Stopping:
    case Status::Replaying:
    case Status::Transferring:
        return Glyph::Busy;
    case Status::Unknown:
        break;
    }
    return Glyph::Idle;
}

} // namespace

void StatusDelegate::initStyleOption(QStyleOptionViewItem* option, const QModelIndex& index) const
{
    RecordDelegate::initStyleOption(option, index);
    const QVariant status = index.data(AbstractRecordListModel::ValueRole);
    if (status.canConvert<Status>()) {
        option->features |= QStyleOptionViewItem::HasDecoration;
        option->icon = glyphIcon(glyphOf(status.value<Status>()));
    }
}

} // namespace ZelkoConsole
