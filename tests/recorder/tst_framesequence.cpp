#include <recorder/service/framesequence.h>

#include <QTest>

#include <limits>

using namespace ZelkoRecorder;
using Place = FrameSequence::Place;

namespace {

constexpr quint64 second = 1'000'000;

} // namespace

Q_DECLARE_METATYPE(Place)

// Frames of one second each, which tell their number and the second at which they begin.
class TestFrameSequence : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { m_sequence = FrameSequence(); }
    void placesTheSecondFrame_data();
    void placesTheSecondFrame();
    void countsOnBeyondTheLastNumber();
    void countsWhatNeverCame();
    void believesASourceThatBeginsAnew_data();
    void believesASourceThatBeginsAnew();
    void believesASourceThatGoesOnBehindALongHole();
    void believesShortSignalsHoursApart();
    void believesInTheEndWhatGoesOn();
    void believesNoStrangersInTheEnd_data();
    void believesNoStrangersInTheEnd();
    void believesNoStrangersThatDoNotFollowEachOther();
    void forgetsStrangersWhenTheSourceGoesOn();

private:
    using Places = std::vector<Place>;

    Place place(quint32 number, quint64 atSecond)
    {
        ChannelFrame frame;
        frame.number = number;
        frame.time = atSecond * second;
        return m_sequence.place(frame, frame.time + second);
    }

    FrameSequence m_sequence;
};

void TestFrameSequence::placesTheSecondFrame_data()
{
    constexpr quint32 gap = FrameSequence::longestGap;
    constexpr quint64 pause = FrameSequence::longestPause / second;
    QTest::addColumn<quint32>("number");
    QTest::addColumn<quint64>("atSecond");
    QTest::addColumn<Place>("expected");
    QTest::newRow("the next one") << 101U << quint64{50'001} << Place::Next;
    QTest::newRow("the next one, at the same time") << 101U << quint64{50'000} << Place::Next;
    QTest::newRow("the next one, after the longest pause") << 101U << 50'001 + pause << Place::Next;
    QTest::newRow("the next one, a second later still") << 101U << 50'002 + pause << Place::Unproven;
    QTest::newRow("the one after that") << 102U << quint64{50'002} << Place::BehindGap;
    QTest::newRow("behind the longest gap") << 100 + gap << quint64{50'002} << Place::BehindGap;
    QTest::newRow("behind a longer gap") << 101 + gap << quint64{50'002} << Place::Unproven;
    QTest::newRow("the same again") << 100U << quint64{50'000} << Place::Refused;
    QTest::newRow("the one before") << 99U << quint64{49'999} << Place::Refused;
    QTest::newRow("a later number of an earlier time") << 101U << quint64{49'999} << Place::Refused;
    QTest::newRow("the same number at a later time") << 100U << quint64{50'001} << Place::Unproven;
}

void TestFrameSequence::placesTheSecondFrame()
{
    QFETCH(const quint32, number);
    QFETCH(const quint64, atSecond);
    QCOMPARE(place(100, 50'000), Place::Next);
    QTEST(place(number, atSecond), "expected");
}

void TestFrameSequence::countsOnBeyondTheLastNumber()
{
    constexpr quint32 last = std::numeric_limits<quint32>::max();
    QCOMPARE(place(last, 10), Place::Next);
    QCOMPARE(place(0, 11), Place::Next);
    QCOMPARE(place(2, 13), Place::BehindGap);
    QCOMPARE(place(last, 10), Place::Refused);
    QCOMPARE(m_sequence.lostFrames(), quint64{1});
}

void TestFrameSequence::countsWhatNeverCame()
{
    place(0, 10);
    QCOMPARE(m_sequence.lostFrames(), quint64{0});
    place(4, 14);
    place(5, 15);
    place(5, 15); // one that is refused is none that never came
    place(7, 17);
    QCOMPARE(m_sequence.lostFrames(), quint64{4});
}

void TestFrameSequence::believesASourceThatBeginsAnew_data()
{
    QTest::addColumn<quint32>("number");
    QTest::addColumn<quint64>("atSecond");
    QTest::newRow("with its first number, an hour and more before") << 0U << quint64{10'000};
    QTest::newRow("with its first number, a day later") << 0U << quint64{136'400};
    QTest::newRow("with a number far away") << 3'000'000'000U << quint64{50'001};
}

void TestFrameSequence::believesASourceThatBeginsAnew()
{
    QFETCH(const quint32, number);
    QFETCH(const quint64, atSecond);
    QCOMPARE(place(5'000'000, 50'000), Place::Next);
    quint32 count = 0;
    for (; count < FrameSequence::framesToBelieve - 1; ++count) {
        QCOMPARE(place(number + count, atSecond + count), Place::Unproven);
    }
    QCOMPARE(place(number + count, atSecond + count), Place::Proven);
    QCOMPARE(m_sequence.unproven(), FrameSequence::framesToBelieve);
    QCOMPARE(m_sequence.believe(), (Places{Place::BehindGap, Place::Next, Place::Next, Place::Next}));
    QCOMPARE(m_sequence.unproven(), 0);
    QCOMPARE(place(number + count + 1, atSecond + count + 1), Place::Next);
    QCOMPARE(m_sequence.lostFrames(), quint64{0}); // nobody knows how many there were
}

void TestFrameSequence::believesASourceThatGoesOnBehindALongHole()
{
    QCOMPARE(place(0, 10), Place::Next);
    QCOMPARE(place(2, 7210), Place::Unproven); // it leaves out a number for the hole
    QCOMPARE(place(3, 7211), Place::Unproven);
    QCOMPARE(place(0, 10), Place::Refused); // this one is late for sure, and changes nothing
    QCOMPARE(place(6, 7214), Place::Unproven);
    QCOMPARE(place(7, 7215), Place::Proven);
    QCOMPARE(m_sequence.believe(), (Places{Place::BehindGap, Place::Next, Place::BehindGap, Place::Next}));
    QCOMPARE(m_sequence.lostFrames(), quint64{3});
    QCOMPARE(place(8, 7216), Place::Next);
}

void TestFrameSequence::believesShortSignalsHoursApart()
{
    constexpr quint64 hours = 7200;
    QCOMPARE(place(0, 0), Place::Next);
    QCOMPARE(place(1, hours), Place::Unproven);
    QCOMPARE(place(2, 2 * hours), Place::Unproven);
    QCOMPARE(place(3, 3 * hours), Place::Unproven);
    QCOMPARE(place(4, 4 * hours), Place::Proven);
    QCOMPARE(m_sequence.believe(), Places(4, Place::BehindGap));
    QCOMPARE(m_sequence.lostFrames(), quint64{0});
}

void TestFrameSequence::believesInTheEndWhatGoesOn()
{
    QCOMPARE(m_sequence.believeAtEnd(), Places());
    QCOMPARE(place(0, 10), Place::Next);
    QCOMPARE(m_sequence.believeAtEnd(), Places());
    QCOMPARE(place(2, 7210), Place::Unproven);
    QCOMPARE(place(3, 7211), Place::Unproven);
    QCOMPARE(m_sequence.believeAtEnd(), (Places{Place::BehindGap, Place::Next}));
    QCOMPARE(m_sequence.unproven(), 0);
}

void TestFrameSequence::believesNoStrangersInTheEnd_data()
{
    QTest::addColumn<quint32>("number");
    QTest::addColumn<quint64>("atSecond");
    QTest::newRow("with a number far away") << 2'000'000'000U << quint64{50'001};
    QTest::newRow("with an older number") << 99U << quint64{60'000};
    QTest::newRow("from hours before") << 101U << quint64{40'000};
}

void TestFrameSequence::believesNoStrangersInTheEnd()
{
    QFETCH(const quint32, number);
    QFETCH(const quint64, atSecond);
    QCOMPARE(place(100, 50'000), Place::Next);
    QCOMPARE(place(number, atSecond), Place::Unproven);
    QCOMPARE(m_sequence.believeAtEnd(), Places());
    QCOMPARE(m_sequence.unproven(), 0);
    QCOMPARE(place(101, 50'001), Place::Next);
}

void TestFrameSequence::believesNoStrangersThatDoNotFollowEachOther()
{
    place(0, 10);
    for (quint32 i = 1; i < 20; ++i) {
        QCOMPARE(place(2'000'000'000U - i * 2'000'000U, 10), Place::Unproven);
        QCOMPARE(m_sequence.unproven(), 1);
    }
    QCOMPARE(place(1, 11), Place::Next);
    QCOMPARE(m_sequence.unproven(), 0);
}

void TestFrameSequence::forgetsStrangersWhenTheSourceGoesOn()
{
    place(0, 10);
    for (quint32 i = 0; i < 20; ++i) {
        QCOMPARE(place(2'000'000'000U + i, 10 + i), Place::Unproven);
        QCOMPARE(place(1 + i, 11 + i), Place::Next);
    }
}

QTEST_GUILESS_MAIN(TestFrameSequence)
#include "tst_framesequence.moc"
