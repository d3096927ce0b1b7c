#pragma once

#include <widgetbase/widgetbase_export.h>

#include <QHash>
#include <QObject>
#include <QPointer>
#include <QString>

class QHeaderView;

namespace guiHelper {

/// Keeps the layout of a header's columns in the user's configuration: their order, sizes and which of them are hidden.
///
/// A model that is reset and has no columns from then on takes the layout away from the header, but not from here: it
/// is the one that is saved, and the header has it again with the next columns, if there are as many. Which model the
/// header shows is noticed when the number of columns changes.
class WIDGETBASE_EXPORT QHeaderViewColumnHandler final : public QObject
{
    Q_OBJECT

public:
    /// `key` names the layout among those of all headers; an empty one is kept nowhere. The header must not be null; it
    /// is not owned and may go first. How wide a hidden column was is known if it was hidden after this was made.
    QHeaderViewColumnHandler(QHeaderView* header, const QString& key, QObject* parent = nullptr);
    ~QHeaderViewColumnHandler() override;

    /// The next layout is kept, or looked for, under another key.
    void setKey(const QString& key) { m_key = key; }

    /// Writes the layout to the configuration and the configuration to disk. False if that fails, or if the header has
    /// gone or has had no columns: what was kept before stands then.
    bool saveColumnStatus();

    /// Applies the layout that was kept. False, and the header as it was, if none was kept or it is one of a header
    /// with another number of columns.
    bool restoreColumnStatus();

private:
    struct Column
    {
        int logicalIndex = 0;
        int size = 0;
        bool isHidden = false;
    };

    /// In their visual order.
    QList<Column> layout() const;
    QString textOf(const QList<Column>& columns) const;
    QList<Column> columnsOf(const QString& text) const;
    void apply(const QList<Column>& columns);
    void rememberSize(int logicalIndex, int oldSize, int newSize);
    void followModel();
    void rememberLayout();
    void takeNewCount(int oldCount, int newCount);

    const QPointer<QHeaderView> m_header;
    QString m_key;
    QHash<int, int> m_shownSizes; ///< that columns have, or had when they were shown last
    QList<Column> m_lastLayout;   ///< before the model was reset; empty if it was not
    QMetaObject::Connection m_resets;
};

} // namespace guiHelper
