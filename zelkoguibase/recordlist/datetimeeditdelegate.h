#pragma once

#include <zelkoguibase/zelkoguibase_export.h>

#include <QItemDelegate>
#include <QPointer>

#include <memory>

class VCReplayBar;

namespace ZelkoCommon {

/// Edits the time of a bookmark where it stands on a replay bar: row 0 of the table is the first bookmark of the bar.
/// What is entered goes to the value of the bookmark's marker at once, never to the model. GUI thread only.
class ZELKOGUIBASE_EXPORT DateTimeEditDelegate : public QItemDelegate
{
    Q_OBJECT

public:
    /// The bar is not owned and may go first: there are no editors then.
    explicit DateTimeEditDelegate(VCReplayBar* replayBar, QObject* parent = nullptr);
    ~DateTimeEditDelegate() override;

    /// An editor of the bookmark's time; its marker becomes the current one of the bar. When the editor goes, in
    /// whatever way, the current position of the bar is its current marker again.
    QWidget* createEditor(QWidget* parent, const QStyleOptionViewItem& option, const QModelIndex& index) const override;

    /// Limits the editor to the recording, to the second. Its time is not touched by that: it comes from the bar.
    void setEditorData(QWidget* editor, const QModelIndex& index) const override;

    /// The current position of the bar becomes its current marker again.
    void setModelData(QWidget* editor, QAbstractItemModel* model, const QModelIndex& index) const override;

    void updateEditorGeometry(QWidget* editor, const QStyleOptionViewItem& option,
                              const QModelIndex& index) const override;

private:
    void resetMarkerAfter(const QWidget* editor, int marker) const;

    const QPointer<VCReplayBar> m_replayBar;
    const std::shared_ptr<int> m_opened; // how many editors there were; outlives this with the last of them
};

} // namespace ZelkoCommon
