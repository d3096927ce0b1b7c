#pragma once

#include "overviewpieces.h"

#include <overviewdisplay/levelcolours.h>
#include <overviewdisplay/overviewlevels.h>
#include <overviewdisplay/waterfallview.h>

#include <QCoreApplication>
#include <QImage>
#include <QMouseEvent>
#include <QTest>

namespace ZelkoTest {

/// A waterfall in a window whose picture has `columns` times `rows` pixels, and the spectra for it, none of which has
/// come yet. A bin of a line has the level that `AnswerPieces::level` gives; the scale is from -100 to 0 dB.
class ShownWaterfall
{
public:
    static constexpr quint64 begin = 1'700'000'000'000'000;
    static constexpr int columns = 512;
    static constexpr int rows = 200;

    explicit ShownWaterfall(quint32 lines = 100, quint32 bins = 256, quint64 start = begin, quint64 lineTime = 70)
        : answer{{start, start + lines * lineTime, lines, bins, ZelkoDataTypes::eFFT_Window::Hann}}
    {
        levels.begin(answer.wish);
        view.resize(800, 400);
        view.show();
        view.resize(view.size() + QSize(columns, rows) - view.pictureArea().size().toSize());
        view.setLevelRange(-100, 0);
        view.setLevels(&levels);
    }

    /// These lines arrive, both included.
    void take(int first, int last)
    {
        for (int line = first; line <= last; ++line) {
            for (int number = 0; number < answer.piecesOfALine(); ++number) {
                levels.take(answer.piece(line, number));
            }
        }
        view.linesArrived(first, last);
    }
    void takeAll() { take(0, static_cast<int>(answer.wish.lineCount) - 1); }

    /// A place of the picture in the window.
    QPoint at(int column, int row) const { return view.pictureArea().topLeft().toPoint() + QPoint(column, row); }

    QRgb missing() const { return SPECTRUM_OVERVIEW::LevelColours::missingIn(view.palette()).rgb(); }

    /// The colour of a level in hundredths of a dB.
    QRgb colourOf(int level) const
    {
        return SPECTRUM_OVERVIEW::LevelColours(-100, 0, missing()).of(static_cast<qint16>(level));
    }

    /// Of the picture made to the end.
    QRgb painted(int column, int row) const { return view.image().pixel(at(column, row)); }

    /// The mouse moves, also to where it is already, which moving the pointer of the screen would not tell.
    void move(const QPoint& place, Qt::MouseButtons buttons = Qt::NoButton)
    {
        QMouseEvent event(QEvent::MouseMove, place, view.mapToGlobal(place), Qt::NoButton, buttons, {});
        QCoreApplication::sendEvent(&view, &event);
    }

    void drag(const QPoint& from, const QPoint& to)
    {
        QTest::mousePress(&view, Qt::LeftButton, {}, from);
        move(to, Qt::LeftButton);
        QTest::mouseRelease(&view, Qt::LeftButton, {}, to);
    }

    AnswerPieces answer;
    SPECTRUM_OVERVIEW::OverviewLevels levels;
    SPECTRUM_OVERVIEW::WaterfallView view;
};

} // namespace ZelkoTest
