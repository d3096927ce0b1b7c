#pragma once

#include <widgetbase/widgetbase_export.h>

#include <QObject>

class QKeyEvent;
class QTableView;

namespace guiHelper {

/// Presses the buttons in the vertical header of a table by keys, for who has no mouse: of a table whose rows can be
/// removed there, but for the last one, which stands for a row to come. Delete presses that of the current row, Insert
/// that of the last one. The header says `sectionClicked` then, as for the mouse.
class WIDGETBASE_EXPORT RowHeaderKeys final : public QObject
{
    Q_OBJECT

public:
    /// For as long as the view lives, which must not be null. Keys that an open editor takes are the editor's.
    explicit RowHeaderKeys(QTableView* view);
    ~RowHeaderKeys() override;

    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    int pressedSection(const QKeyEvent& key) const;
    void press(int section);

    QTableView* const m_view;
};

} // namespace guiHelper
