#pragma once

#include <QProxyStyle>

namespace ZelkoConsole {

/// The application's style with some more room in lists and tables: around the text of cells and headers, and between
/// rows. The focus is a line around a cell, so that it does not fade its text; what is selected in a list without the
/// focus is greyed, so that one sees where the keys go.
class RoomyStyle : public QProxyStyle
{
    Q_OBJECT

public:
    /// Gives `view` such a style, which goes with it.
    static void apply(QWidget* view);

    int pixelMetric(PixelMetric metric, const QStyleOption* option, const QWidget* widget) const override;
    void drawPrimitive(PrimitiveElement element, const QStyleOption* option, QPainter* painter,
                       const QWidget* widget) const override;
    void drawControl(ControlElement element, const QStyleOption* option, QPainter* painter,
                     const QWidget* widget) const override;
    QSize sizeFromContents(ContentsType type, const QStyleOption* option, const QSize& size,
                           const QWidget* widget) const override;

    /// Room on either side of each thing in a cell, a sign or the text.
    static constexpr int cellMargin() { return sideMargin + 1; } // a pixel more than the metric, as Qt's styles do

    /// Height of a row of text in `view`.
    static int rowHeight(const QWidget* view);

    /// The colour of what is selected in a list without the focus. The text on it is that of any selection.
    static QColor restingHighlight(const QPalette& palette);

private:
    static constexpr int sideMargin = 6;
};

} // namespace ZelkoConsole
