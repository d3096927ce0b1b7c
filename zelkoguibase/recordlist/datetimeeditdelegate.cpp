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
    , m_opened(std::make_shared<int>(0))
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
    resetMarkerAfter(editor, marker);
    return editor;
}

// However it goes: Escape, for one, closes an editor without a word to setModelData(). By then another one may have
// been opened, also in the same row, or somebody may have made another marker the current one.
void DateTimeEditDelegate::resetMarkerAfter(const QWidget* editor, int marker) const
{
    connect(editor, &QObject::destroyed, m_replayBar,
            [bar = m_replayBar.data(), marker, opened = m_opened, number = ++*m_opened] {
                if (*opened == number && bar->GetCurrentMarker() == marker) {
                    bar->SetCurrentMarker(VCReplayBar::PositionMarker);
                }
            });
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
