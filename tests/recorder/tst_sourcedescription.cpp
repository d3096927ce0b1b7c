#include <recorder/source/sourcedescription.h>

#include <QTest>

using namespace ZelkoRecorder;

class TestSourceDescription : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void framesBecomeMicroseconds_data();
    void framesBecomeMicroseconds();
    void firstSegmentTellsStartAndFrequency();
};

void TestSourceDescription::framesBecomeMicroseconds_data()
{
    QTest::addColumn<quint64>("rate");
    QTest::addColumn<qint64>("frame");
    QTest::addColumn<quint64>("microseconds");
    constexpr quint64 fastest = SourceDescription::maximumSampleRate;
    constexpr qint64 last = SourceDescription::maximumFrame;
    QTest::newRow("first frame") << quint64{48'000} << qint64{0} << quint64{0};
    QTest::newRow("a second") << quint64{48'000} << qint64{48'000} << quint64{1'000'000};
    QTest::newRow("rounded down") << quint64{48'000} << qint64{1} << quint64{20};
    QTest::newRow("slowest, last frame") << quint64{1} << last << quint64{1'000'000'000'000'000'000};
    QTest::newRow("fastest, last frame") << fastest << last << quint64{1'000'000};
    QTest::newRow("fastest, one before") << fastest << last - 1 << quint64{999'999};
}

void TestSourceDescription::framesBecomeMicroseconds()
{
    QFETCH(const quint64, rate);
    QFETCH(const qint64, frame);
    SourceDescription description;
    description.sampleRate = rate;
    QTEST(description.microsecondsAt(frame), "microseconds");
}

void TestSourceDescription::firstSegmentTellsStartAndFrequency()
{
    SourceDescription description;
    QCOMPARE(description.startTime(), quint64{0});
    QCOMPARE(description.centreFrequency(), quint64{0});
    description.segments = {{0, 5, 6}, {10, 7, 8}};
    QCOMPARE(description.centreFrequency(), quint64{5});
    QCOMPARE(description.startTime(), quint64{6});
}

QTEST_APPLESS_MAIN(TestSourceDescription)
#include "tst_sourcedescription.moc"
