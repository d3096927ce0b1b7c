#include <chartcontrols/replaybartrack_p.h>

#include <QImage>
#include <QPainter>
#include <QtTest>

namespace {

constexpr int middle = 20;

/// A track from 10 to 90 on white, whose colours are all told apart.
class PaintedTrack
{
public:
    PaintedTrack()
    {
        m_image.fill(Qt::white);
        track.palette.setColor(QPalette::Base, QColor(0xF0, 0xF0, 0xE0));
        track.palette.setColor(QPalette::Window, QColor(0xC0, 0xC0, 0xD0));
        track.palette.setColor(QPalette::Mid, Qt::darkGray);
        track.palette.setColor(QPalette::Highlight, Qt::blue);
        track.area = QRectF(QPointF(10, 5), QPointF(90, 35));
    }

    template <typename Paint>
    void paint(Paint&& what)
    {
        QPainter painter(&m_image);
        what(painter);
    }

    QColor at(int x) const { return m_image.pixelColor(x, middle); }

    ReplayBarTrack track;

private:
    QImage m_image{100, 40, QImage::Format_RGB32};
};

} // namespace

class ReplayBarTrackTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void framesARecording_data();
    void framesARecording();
    void hasAnotherGroundWithoutARecording();
    void paintsARangeAsFarAsItGoes_data();
    void paintsARangeAsFarAsItGoes();
    void paintsTicksPale();
};

void ReplayBarTrackTest::framesARecording_data()
{
    QTest::addColumn<bool>("hasFocus");
    QTest::addColumn<QColor>("edge");
    QTest::newRow("with the focus") << true << QColor(Qt::blue);
    QTest::newRow("without it") << false << QColor(Qt::darkGray);
}

void ReplayBarTrackTest::framesARecording()
{
    QFETCH(bool, hasFocus);
    QFETCH(QColor, edge);
    PaintedTrack painted;
    painted.track.hasFocus = hasFocus;
    painted.paint([&](QPainter& painter) { painted.track.paintRecording(painter); });
    QCOMPARE(painted.at(9), QColor(Qt::white));
    QCOMPARE(painted.at(10), edge);
    QCOMPARE(painted.at(11), painted.track.palette.color(QPalette::Base));
    QCOMPARE(painted.at(89), painted.track.palette.color(QPalette::Base));
    QCOMPARE(painted.at(90), edge);
    QCOMPARE(painted.at(91), QColor(Qt::white));
}

void ReplayBarTrackTest::hasAnotherGroundWithoutARecording()
{
    PaintedTrack painted;
    painted.paint([&](QPainter& painter) { painted.track.paintEmpty(painter, QString()); });
    QCOMPARE(painted.at(50), painted.track.palette.color(QPalette::Window));
}

void ReplayBarTrackTest::paintsARangeAsFarAsItGoes_data()
{
    QTest::addColumn<double>("from");
    QTest::addColumn<double>("to");
    QTest::addColumn<QList<int>>("edges");
    QTest::addColumn<QList<int>>("inside");
    QTest::addColumn<QList<int>>("untouched");
    QTest::newRow("within") << 20.0 << 30.0 << QList{20, 30} << QList{21, 29} << QList{19, 31};
    QTest::newRow("of a single moment") << 20.0 << 20.0 << QList{20} << QList<int>() << QList{19, 21};
    QTest::newRow("from before the start") << 0.0 << 30.0 << QList{30} << QList{10, 29} << QList{9, 31};
    QTest::newRow("to behind the stop") << 60.0 << 99.0 << QList{60} << QList{61, 90} << QList{59, 91};
    QTest::newRow("beyond both") << 0.0 << 99.0 << QList<int>() << QList{10, 50, 90} << QList{9, 91};
    QTest::newRow("all before the start") << 2.0 << 8.0 << QList<int>() << QList<int>() << QList{2, 8, 10};
    QTest::newRow("all behind the stop") << 92.0 << 98.0 << QList<int>() << QList<int>() << QList{90, 92, 98};
}

void ReplayBarTrackTest::paintsARangeAsFarAsItGoes()
{
    QFETCH(double, from);
    QFETCH(double, to);
    QFETCH(QList<int>, edges);
    QFETCH(QList<int>, inside);
    QFETCH(QList<int>, untouched);
    PaintedTrack painted;
    painted.paint([&](QPainter& painter) { painted.track.paintRange(painter, from, to); });
    for (const int x : edges) {
        QCOMPARE(painted.at(x), QColor(Qt::blue));
    }
    for (const int x : inside) {
        QVERIFY(painted.at(x) != QColor(Qt::blue));
        QVERIFY(painted.at(x) != QColor(Qt::white));
    }
    for (const int x : untouched) {
        QCOMPARE(painted.at(x), QColor(Qt::white));
    }
}

void ReplayBarTrackTest::paintsTicksPale()
{
    PaintedTrack painted;
    painted.paint([&](QPainter& painter) { painted.track.paintTick(painter, 40); });
    QVERIFY(painted.at(40) != QColor(Qt::white));
    QVERIFY(painted.at(40).lightness() > 200);
    QCOMPARE(painted.at(41), QColor(Qt::white));
}

QTEST_MAIN(ReplayBarTrackTest)
#include "tst_replaybartrack.moc"
