#include <zelkoguibase/recordlist/datetimeeditdelegate.h>

#include <chartcontrols/vcreplaybar.h>
#include <observerbase/datetime.h>
#include <valuewidgetsbasic/vcdatetimeedit.h>

namespace ZelkoCommon {

namespace {

QDateTime toTheSecond(double microseconds)
{
    return QDateTime::fromSecsSinceEpoch(Vorn::DateTime::microsecToSec(microseconds));
}

} // namespace

DateTimeEditDelegate::DateTimeEditDelegate(VCReplayBar* replayBar, QObject* parent)
    : QItemDelegate(parent)
    , m_replayBar(replayBar)
{}

DateTimeEditDelegate::~DateTimeEditDelegate() = default;

QWidget* DateTimeEditDelegate::createEditor(QWidget* parent, const QStyleOptionViewItem&,
                                            const QModelIndex& index) const
{
    if (m_replayBar.isNull()) {
        return nullptr;
    }
    const int marker = index.row() + VCReplayBar::FirstBookmarkMarker;
    auto* const editor = new VCDateTimeEdit(parent);
    editor->setObjectName(QStringLiteral("pSelectedTime"));
    editor->setDisplayFormat(QStringLiteral("yyyy-MM-dd hh:mm:ss"));
    editor->setToolTip(tr("Shows the current position of the bookmark"));
    editor->setAccessibleName(tr("Time of the bookmark"));
    editor->SetDateTime_ValuePath(m_replayBar->GetValueTreePath(marker));
    m_replayBar->SetCurrentMarker(marker);
    return editor;
}

void DateTimeEditDelegate::setEditorData(QWidget* editor, const QModelIndex&) const
{
    auto* const edit = qobject_cast<QDateTimeEdit*>(editor);
    if (edit == nullptr || m_replayBar.isNull()) {
        return;
    }
    const QDateTime start = toTheSecond(m_replayBar->GetRecordingStart());
    const QDateTime stop = toTheSecond(m_replayBar->GetRecordingStop());
    edit->setMinimumDate(start.date());
    edit->setMinimumTime(start.time());
    edit->setMaximumDate(stop.date());
    edit->setMaximumTime(stop.time());
}

void DateTimeEditDelegate::setModelData(QWidget*, QAbstractItemModel*, const QModelIndex&) const
{
    if (!m_replayBar.isNull()) {
        m_replayBar->SetCurrentMarker(VCReplayBar::PositionMarker);
    }
}

void DateTimeEditDelegate::updateEditorGeometry(QWidget* editor, const QStyleOptionViewItem& option,
                                                const QModelIndex&) const
{
    editor->setGeometry(option.rect);
}

} // namespace ZelkoCommon
