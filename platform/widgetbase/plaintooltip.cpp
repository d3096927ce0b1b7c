#include <widgetbase/plaintooltip.h>

#include <QTextDocument>
#include <QToolTip>

namespace guiHelper {

QString plainToolTip(const QString& text)
{
    return Qt::mightBeRichText(text) ? QStringLiteral("<qt>%1</qt>").arg(text.toHtmlEscaped()) : text;
}

void showPlainToolTip(const QPoint& globalPosition, const QString& text, QWidget* widget, const QRect& area)
{
    QToolTip::showText(globalPosition, plainToolTip(text), widget, area);
}

} // namespace guiHelper
