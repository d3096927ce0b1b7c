#include <console/demo/paintedrecorder.h>
#include <console/demo/paintedrecords.h>
#include <console/demo/paintedspectra.h>
#include <console/demo/scenepainter.h>
#include <console/demo/scenes.h>

#include <overviewdisplay/spectrumoverviewwidget.h>
#include <overviewdisplay/waterfallview.h>

#include <QAction>
#include <QDialog>
#include <QProgressBar>
#include <QTest>
#include <QTimer>

#include <functional>

namespace ZelkoConsole {
namespace {

using SPECTRUM_OVERVIEW::SpectrumOverviewWidget;
using SPECTRUM_OVERVIEW::WaterfallView;

constexpr auto ordinary = QLatin1String("R");

// What has not come after some seconds is not in the picture.
void waitFor(const std::function<bool()>& happened)
{
    static_cast<void>(QTest::qWaitFor(happened, 4000));
}

/// A window of an overview, with its record and its recorder.
class PaintedOverview
{
public:
    /// `share` of the lines that the window wants come, and bookmarks as many.
    PaintedOverview(double share, int bookmarks, const QString& name, const QSize& size = {1000, 700})
        : m_recorder(window, share)
        , m_share(share)
    {
        const auto record = PaintedRecorder::makeRecord(ordinary, name);
        record->SetBookmarkEntry(PaintedSpectra().bookmarks(bookmarks));
        records.store(record);
        window.resize(size);
    }

    void open(const QString& id = ordinary)
    {
        window.show();
        window.setRecord(PaintedRecorder::device(), id, records.model(), PaintedRecorder::address());
        waitFor([this] { return isThere(); });
    }
    void paint(ScenePainter& painter, const char* scene)
    {
        view().image();
        painter.paint(window, scene);
    }

    WaterfallView& view() { return *window.findChild<WaterfallView*>(); }
    QAction& action(const char* name) { return *window.findChild<QAction*>(QLatin1String(name)); }

    PaintedRecords records;
    SpectrumOverviewWidget window{QStringLiteral("PaintedOverview")};

private:
    bool isThere()
    {
        const auto* const progress = window.findChild<QProgressBar*>();
        const bool hasLines =
            progress->maximum() > 0 && progress->value() >= static_cast<int>(progress->maximum() * m_share);
        return hasLines && (m_share < 1 || !progress->isVisible());
    }

    PaintedRecorder m_recorder;
    const double m_share;
};

// What the window wants to know of the user, over it.
void paintQuestion(ScenePainter& painter, PaintedOverview& painted, const char* action, const char* scene)
{
    painted.action(action).trigger();
    auto* const question = painted.window.findChild<QDialog*>();
    painter.paint(*question, scene);
    question->reject();
}

void paintInUse(ScenePainter& painter)
{
    PaintedOverview painted(1, 6, QStringLiteral("Airport tower"));
    painted.open();
    painted.paint(painter, "overview");
    const QRect picture = painted.view().pictureArea().toRect();
    QTest::mousePress(&painted.view(), Qt::LeftButton, {}, picture.topLeft() + QPoint(400, 150));
    QTest::mouseMove(&painted.view(), picture.topLeft() + QPoint(420, 200));
    QTest::mouseMove(&painted.view(), picture.topLeft() + QPoint(420, 260));
    QTest::mouseRelease(&painted.view(), Qt::LeftButton, {}, picture.topLeft() + QPoint(420, 260));
    painted.paint(painter, "overview-selected");
    paintQuestion(painter, painted, "ActionAddBookmark", "overview-new-bookmark");
    painted.window.resize(480, 420);
    painted.paint(painter, "overview-narrow");
}

void paintAsItArrives(ScenePainter& painter)
{
    PaintedOverview painted(0.55, 3, QStringLiteral("Airport tower"));
    painted.open();
    painted.paint(painter, "overview-half-arrived");
}

void paintOverlong(ScenePainter& painter)
{
    PaintedOverview painted(1, 60, QStringLiteral("a text that goes on and on ").repeated(20));
    painted.open();
    painted.view().setSelection(PaintedSpectra::begin + 60 * PaintedSpectra::second,
                                PaintedSpectra::begin + 90 * PaintedSpectra::second);
    painted.paint(painter, "overview-overlong");
    paintQuestion(painter, painted, "ActionCopyRange", "overview-copy-overlong");
}

void paintEmpty(ScenePainter& painter)
{
    PaintedOverview painted(0, 0, QString());
    painted.window.show();
    painted.paint(painter, "overview-without-a-record");
    const auto record = PaintedRecorder::makeRecord(QStringLiteral("E"), QStringLiteral("Nothing in it"));
    record->SetStopTime(record->GetStartTime());
    record->SetIndexEntry({});
    painted.records.store(record);
    painted.window.setRecord(PaintedRecorder::device(), record->GetRecordID(), painted.records.model(),
                             PaintedRecorder::address());
    painted.paint(painter, "overview-of-an-empty-record");
}

// A recorder that is waited for in vain; for the picture, no time at all.
void paintSilent(ScenePainter& painter)
{
    PaintedOverview painted(0, 3, QStringLiteral("Airport tower"));
    painted.window.setSingleShot([](std::chrono::milliseconds, QObject* context, const std::function<void()>& call) {
        QTimer::singleShot(0, context, call);
    });
    painted.window.show();
    painted.window.setRecord(PaintedRecorder::device(), ordinary, painted.records.model(), PaintedRecorder::address());
    waitFor([&] { return !painted.window.findChild<QProgressBar*>()->isVisible(); });
    painted.paint(painter, "overview-silent");
}

} // namespace

void paintOverviewScenes(ScenePainter& painter)
{
    paintInUse(painter);
    paintAsItArrives(painter);
    paintOverlong(painter);
    paintEmpty(painter);
    paintSilent(painter);
}

} // namespace ZelkoConsole
