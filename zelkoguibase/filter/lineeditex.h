#pragma once

#include <zelkoguibase/filter/textfilterwidget.h>

#include <QLineEdit>

namespace guiHelper {
class TextAlpha;
}

namespace ZelkoGUI::Filter {

/// A line edit that shows a pale hint while it is empty and without the focus. text() is what is shown, which may be
/// the hint; realText() is what was entered.
class ZELKOGUIBASE_EXPORT TextFilterWidget::LineEditEx : public QLineEdit
{
    Q_OBJECT

public:
    LineEditEx(const QString& hint, QWidget* parent);
    ~LineEditEx() override;

    /// The text without the hint; empty while the hint is shown.
    QString realText() const { return m_realText; }

    /// As wide as the hint.
    QSize minimumSizeHint() const override;

    /// Of its own events. It never eats one.
    bool eventFilter(QObject* watched, QEvent* event) override;

public Q_SLOTS:
    /// Emits nothing: it comes from whoever knows the text already.
    void setText(const QString& text);
    void resetText();

protected:
    /// What is dropped on the hint replaces it.
    void dropEvent(QDropEvent* event) override;

private:
    void showText(bool withFocus);

    const QString m_hintText;
    guiHelper::TextAlpha* const m_colour;
    QString m_realText;
};

} // namespace ZelkoGUI::Filter
