#pragma once

#include <QLabel>

namespace ZelkoGUI {

/// A label for a plain text of any length, which never widens its window: what there is no room for is cut off, with
/// three dots in its place, and the tool tip has it.
class YieldingLabel final : public QLabel
{
    Q_OBJECT

public:
    explicit YieldingLabel(QWidget* parent);
    ~YieldingLabel() override;

    /// A few characters wide.
    QSize minimumSizeHint() const override;

protected:
    bool event(QEvent* event) override;
    void paintEvent(QPaintEvent* event) override;

private:
    QString shownText() const;
};

} // namespace ZelkoGUI
