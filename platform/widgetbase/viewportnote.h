#pragma once

#include <widgetbase/widgetbase_export.h>

#include <QLabel>

class QAbstractScrollArea;

namespace guiHelper {

/// Says something where the contents of a view would be: it covers the viewport, whatever becomes of its place and
/// size, and lets the mouse through. A plain text stands in the middle, a line of its font away from each side.
class WIDGETBASE_EXPORT ViewportNote : public QLabel
{
    Q_OBJECT

public:
    /// A child of `view`, hidden at first.
    explicit ViewportNote(QAbstractScrollArea* view);
    ~ViewportNote() override;

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;
    void changeEvent(QEvent* event) override;

private:
    void keepMargin();
};

} // namespace guiHelper
