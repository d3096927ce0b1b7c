#pragma once

#include <widgetbase/widgetbase_export.h>

#include <QObject>
#include <QPalette>
#include <QPointer>
#include <QWidget>

#include <optional>

namespace guiHelper {

/// Paints the text of a widget with an alpha of its own, in the colours that it would have without: those of the
/// application and of the widgets around it, also when they change, or those that somebody gave the widget itself. A
/// disabled widget still looks so. GUI thread only.
class WIDGETBASE_EXPORT TextAlpha final : public QObject
{
    Q_OBJECT

public:
    /// `alpha` is 0 to 255. A child of `widget`.
    TextAlpha(QWidget* widget, int alpha);
    ~TextAlpha() override;

    void setAlpha(int alpha);

    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void followParent();
    void look();
    void apply();
    bool isOwn(QPalette::ColorGroup group, QPalette::ColorRole role) const;
    QPalette around() const;

    QWidget* const m_widget;
    QPointer<QWidget> m_parent;
    int m_alpha;
    bool m_isApplying = false;
    std::optional<QPalette> m_given; // with the colours of the text that somebody gave the widget
    QPalette m_applied;
};

} // namespace guiHelper
