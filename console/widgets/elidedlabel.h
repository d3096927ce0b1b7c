#pragma once

#include <QLabel>

namespace ZelkoConsole {

/// A line of plain text that gives way where there is little room: an ellipsis stands for what does not fit, and all of
/// it in the tool tip then.
class ElidedLabel : public QLabel
{
    Q_OBJECT

public:
    explicit ElidedLabel(const QString& text = QString(), QWidget* parent = nullptr);

    /// Where text is left out; on the right at first.
    void setElideMode(Qt::TextElideMode mode);

    QSize minimumSizeHint() const override;

    /// Whether something is left out.
    bool isElided() const;

protected:
    bool event(QEvent* event) override;
    void paintEvent(QPaintEvent* event) override;

private:
    Qt::TextElideMode m_mode = Qt::ElideRight;
};

} // namespace ZelkoConsole
