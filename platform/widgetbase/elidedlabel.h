#pragma once

#include <widgetbase/widgetbase_export.h>

#include <QLabel>

namespace guiHelper {

/// A line of plain text of any length that never widens its window: an ellipsis stands for what there is no room for,
/// and all of it in the tool tip then, in front of the one that was set. It stands where alignment() has it, and on the
/// other side in languages that are read from right to left.
class WIDGETBASE_EXPORT ElidedLabel : public QLabel
{
    Q_OBJECT

public:
    explicit ElidedLabel(const QString& text = QString(), QWidget* parent = nullptr);
    ~ElidedLabel() override;

    /// Where text is left out; on the right at first.
    void setElideMode(Qt::TextElideMode mode);

    /// For how many characters there is room in any window, if the text has as many; 6 at first.
    void setFewestCharacters(int count);

    QSize minimumSizeHint() const override;

    /// Whether something is left out.
    bool isElided() const;

protected:
    bool event(QEvent* event) override;
    void paintEvent(QPaintEvent* event) override;

private:
    QString wholeToolTip() const;

    Qt::TextElideMode m_mode = Qt::ElideRight;
    int m_fewestCharacters = 6;
};

} // namespace guiHelper
