#include <recorder/store/signaltimeline.h>

#include <countingsource.h>

#include <QTest>

using namespace ZelkoRecorder;

class TestSignalTimeline : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void datesFrames_data();
    void datesFrames();
    void startsWhenToldIfTheSignalHasNoTime();
    void describesAFrame();
    void findsTheNextTuning_data();
    void findsTheNextTuning();

private:
    // 1 kHz; retuned at frame 1000 without a time, and at 2000 with one, after a pause.
    static SourceDescription retuned()
    {
        SourceDescription signal = ZelkoTest::CountingSource::signal(3000);
        signal.segments = {{0, 100, 5'000'000}, {1000, 200, 0}, {2000, 300, 60'000'000}};
        return signal;
    }
};

void TestSignalTimeline::datesFrames_data()
{
    QTest::addColumn<qint64>("frame");
    QTest::addColumn<quint64>("time");
    QTest::newRow("first") << qint64{0} << quint64{5'000'000};
    QTest::newRow("inside a segment") << qint64{500} << quint64{5'500'000};
    QTest::newRow("in a segment that follows from the one before") << qint64{1500} << quint64{6'500'000};
    QTest::newRow("at a segment with a time of its own") << qint64{2000} << quint64{60'000'000};
    QTest::newRow("behind it") << qint64{2001} << quint64{60'001'000};
}

void TestSignalTimeline::datesFrames()
{
    QFETCH(const qint64, frame);
    QTEST(SignalTimeline(retuned(), 7).timeAt(frame), "time");
}

void TestSignalTimeline::startsWhenToldIfTheSignalHasNoTime()
{
    const SignalTimeline timeline(ZelkoTest::CountingSource::signal(10), 42'000'000);
    QCOMPARE(timeline.timeAt(0), quint64{42'000'000});
    QCOMPARE(timeline.timeAt(3), quint64{42'003'000});
}

void TestSignalTimeline::describesAFrame()
{
    const auto entry = SignalTimeline(retuned(), 0).indexEntryAt(1500);
    QCOMPARE(entry.GetTimestamp(), quint64{6'500'000});
    QCOMPARE(entry.GetRecordOffset(), quint64{6000});
    QCOMPARE(entry.GetTunerFrequency(), quint64{200});
    QCOMPARE(entry.GetSampleRate(), quint64{1000});
    QCOMPARE(entry.GetBandwidth(), quint64{1000});
}

void TestSignalTimeline::findsTheNextTuning_data()
{
    QTest::addColumn<qint64>("frame");
    QTest::addColumn<qint64>("next");
    QTest::newRow("from the start") << qint64{0} << qint64{1000};
    QTest::newRow("just before one") << qint64{999} << qint64{1000};
    QTest::newRow("at one") << qint64{1000} << qint64{2000};
    QTest::newRow("in the last") << qint64{2500} << qint64{-1};
}

void TestSignalTimeline::findsTheNextTuning()
{
    QFETCH(const qint64, frame);
    QTEST(SignalTimeline(retuned(), 0).nextSegment(frame), "next");
}

QTEST_GUILESS_MAIN(TestSignalTimeline)
#include "tst_signaltimeline.moc"
