#pragma once

#include <zelkoguibase/zelkoguibase_export.h>

#include <QWidget>

#include <memory>

namespace ZelkoCommon {
class AbstractRecordListModel;
}

namespace ZelkoGUI {

class BookmarkModel;
class ReplayBarWidget;

/// A part of a record, chosen by its start and its stop, that is to become a record of its own. The range that is
/// chosen is shown on a replay bar.
///
/// Nothing is copied here: si_copyRecord asks for it, with positions of the recording and not with times. A record can
/// be copied that is at rest, and whose times and positions both rise. A change of the record takes the whole of it
/// again, and its usual name for the copy, whatever the user had chosen.
///
/// Times are microseconds since the epoch. The models and the bar are not owned; the record model may go first.
/// GUI thread.
class ZELKOGUIBASE_EXPORT CopyRecordWidget : public QWidget
{
    Q_OBJECT

public:
    class PositionWidget;

    /// `replayBar` and `bookmarkModel` may be null. The copy may be given an empty name if `allowEmptyName`.
    CopyRecordWidget(ReplayBarWidget* replayBar, BookmarkModel* bookmarkModel, bool allowEmptyName,
                     QWidget* parent = nullptr);
    ~CopyRecordWidget() override;

    /// Shows the whole of a record; nothing with an empty ID, a null model, or one without that record.
    void setRecord(const QString& recordID, ZelkoCommon::AbstractRecordListModel* model);
    void resetRecord();

Q_SIGNALS:
    /// The user wants what lies between two positions of the recording as a record of that name.
    void si_copyRecord(QString recordId, quint64 start, quint64 stop, QString recordName);

    /// Whenever something was chosen anew: the range, or that there is none.
    void si_setRange(quint64 start, quint64 stop);
    void si_resetRange();

protected:
    void keyPressEvent(QKeyEvent* event) override;

private Q_SLOTS:
    void sl_recordChanged(const QString& recordID);
    void sl_recordDeleted(const QString& recordID);
    void sl_allRecordsChanged();
    void sl_modelDeleted();
    void sl_bookmarksChanged();
    void sl_currentPosChanged(quint64 position);
    void sl_startPositionChanged(quint64 value);
    void sl_stopPositionChanged(quint64 value);
    void sl_updateSaveButton();
    void sl_updateSelectedRange();
    void sl_save();

private:
    void createParts(ReplayBarWidget* replayBar);
    void connectPosition(const PositionWidget* position, void (CopyRecordWidget::*changed)(quint64));
    void connectReplayBar(ReplayBarWidget* replayBar);
    void connectBookmarks();
    void follow(ZelkoCommon::AbstractRecordListModel* model);

    struct Private;
    const std::unique_ptr<Private> d;
};

} // namespace ZelkoGUI
