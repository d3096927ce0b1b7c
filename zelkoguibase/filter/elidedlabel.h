#pragma once

#include <zelkoguibase/filter/enumerationfilterwidgetbase.h>

#include <QLabel>

namespace ZelkoGUI::Filter {

/// A line of plain text that ends in an ellipsis where there is too little room for it, with a longer text in its tool
/// tip then. Unlike those of guiHelper::ElidedLabel, its text() and toolTip() are what is shown, for whoever reads the
/// window through them.
class ZELKOGUIBASE_EXPORT EnumerationFilterWidgetBase::ElidedLabel : public QLabel
{
    Q_OBJECT

public:
    /// It is never narrower than `minimumChars` average characters of its font.
    ElidedLabel(int minimumChars, QWidget* parent);
    ~ElidedLabel() override;

    /// An empty `longText` stands for `text`.
    void setText(const QString& text, const QString& longText);

protected:
    bool event(QEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;

private:
    void keepMinimumWidth();
    void showText();

    const int m_minimumChars;
    QString m_text;
    QString m_longText;
};

} // namespace ZelkoGUI::Filter
