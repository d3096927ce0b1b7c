#include <console/demo/paintedspectra.h>
#include <console/demo/scenepainter.h>
#include <console/demo/scenes.h>

#include <overviewdisplay/waterfallview.h>

#include <QTest>

namespace ZelkoConsole {
namespace {

using SPECTRUM_OVERVIEW::WaterfallView;

/// A view of its own for a scene, with the pictures made to the end.
class PaintedWaterfall
{
public:
    explicit PaintedWaterfall(const PaintedSpectra& spectra, const QSize& size = {960, 560})
    {
        view.resize(size);
        view.setLevels(&spectra.levels());
        view.setLevelRange(-115, -15);
        view.show();
    }

    void paint(ScenePainter& painter, const char* scene)
    {
        view.image();
        painter.paint(view, scene);
    }

    WaterfallView view;
};

quint64 at(double seconds)
{
    return PaintedSpectra::begin + static_cast<quint64>(seconds * static_cast<double>(PaintedSpectra::second));
}

void paintInUse(ScenePainter& painter)
{
    PaintedSpectra spectra;
    spectra.takeAll();
    PaintedWaterfall painted(spectra);
    painted.view.setBookmarks(spectra.bookmarks(6));
    painted.paint(painter, "waterfall");
    painted.view.activateWindow();
    painted.view.setFocus();
    painted.view.setSelection(at(190), at(325));
    QTest::mouseMove(&painted.view, QPoint(640, 300));
    painted.paint(painter, "waterfall-selected");
    painted.view.setBookmarks(spectra.bookmarks(300));
    painted.paint(painter, "waterfall-many-bookmarks");
}

void paintAsItArrives(ScenePainter& painter)
{
    PaintedSpectra spectra;
    PaintedWaterfall painted(spectra);
    painted.view.setEmptyText(QStringLiteral("Waiting for the recorder"));
    painted.paint(painter, "waterfall-waiting");
    spectra.take(0, 400);
    spectra.take(450, 520);
    painted.view.linesArrived(0, 520);
    painted.paint(painter, "waterfall-half-arrived");
    painted.view.setTimeRange(at(240), at(300));
    painted.paint(painter, "waterfall-zoomed-coarse");
}

void paintRanges(ScenePainter& painter)
{
    PaintedSpectra moment(0.02, 300);
    moment.setCentre(0, 48'000);
    moment.takeAll();
    PaintedWaterfall(moment).paint(painter, "waterfall-of-a-moment-around-an-unknown-centre");
    PaintedSpectra days(400'000, 600);
    days.setCentre(2'437'000'000, 20'000'000);
    days.takeAll();
    PaintedWaterfall(days).paint(painter, "waterfall-of-days");
    PaintedSpectra unknown(3600, 300);
    unknown.setCentre(0, 0);
    unknown.takeAll();
    PaintedWaterfall(unknown).paint(painter, "waterfall-without-frequencies");
}

void paintAtTheLimits(ScenePainter& painter)
{
    PaintedSpectra spectra(600, 200);
    spectra.takeAll();
    PaintedWaterfall narrow(spectra, {380, 240});
    narrow.view.setBookmarks(spectra.bookmarks(6));
    QTest::mouseMove(&narrow.view, QPoint(180, 120));
    narrow.paint(painter, "waterfall-narrow");
    WaterfallView none;
    none.resize(960, 560);
    none.show();
    painter.paint(none, "waterfall-empty");
}

} // namespace

void paintWaterfallScenes(ScenePainter& painter)
{
    paintInUse(painter);
    paintAsItArrives(painter);
    paintRanges(painter);
    paintAtTheLimits(painter);
}

} // namespace ZelkoConsole
