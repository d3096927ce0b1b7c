#include <recorder/service/framereader.h>

#include <frames.h>

#include <QTest>

using namespace ZelkoRecorder;
using namespace ZelkoTest;
using Result = FrameReader::Result;

class TestFrameReader : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void headsStandAsDocumented();
    void readsFramesHoweverTheyAreCut_data();
    void readsFramesHoweverTheyAreCut();
    void refusesAHead_data();
    void refusesAHead();
    void takesADatagramOnlyWhole();
};

void TestFrameReader::headsStandAsDocumented()
{
    ChannelFrame frame = frameOf(0x01020304, 0x0506);
    frame.time = 0x1112131415161718 & 0xffffffffffff;
    frame.isLast = true;
    const QByteArray head = wire(frame).left(ChannelFrame::headSize);
    QCOMPARE(head.left(24).toHex(), QByteArray("5a4344460100010004030201060500000700000000000000"));
    QCOMPARE(head.mid(24, 8).toHex(), QByteArray("1817161514130000"));
    const auto read = ChannelFrame::readHead(std::string_view(head.constData(), ChannelFrame::headSize));
    QVERIFY(read.has_value());
    QVERIFY(*read == frame);
}

void TestFrameReader::readsFramesHoweverTheyAreCut_data()
{
    QTest::addColumn<qsizetype>("piece");
    QTest::newRow("byte by byte") << qsizetype{1};
    QTest::newRow("in the middle of heads") << qsizetype{57};
    QTest::newRow("several at once") << qsizetype{100'000};
}

void TestFrameReader::readsFramesHoweverTheyAreCut()
{
    QFETCH(qsizetype, piece);
    QByteArray stream;
    for (quint32 number = 0; number < 5; ++number) {
        stream += wire(frameOf(number, number * 40));
    }
    FrameReader reader;
    quint32 next = 0;
    for (qsizetype at = 0; at < stream.size(); at += piece) {
        const QByteArray bytes = stream.mid(at, piece);
        reader.append(std::string_view(bytes.constData(), static_cast<std::size_t>(bytes.size())));
        ChannelFrame frame;
        std::string_view samples;
        while (reader.next(&frame, &samples) == Result::Frame) {
            QVERIFY(frame == frameOf(next, next * 40));
            QCOMPARE(QByteArray(samples.data(), static_cast<qsizetype>(samples.size())), samplesOf(frame));
            ++next;
        }
    }
    QCOMPARE(next, 5U);
}

void TestFrameReader::refusesAHead_data()
{
    QTest::addColumn<int>("offset");
    QTest::addColumn<char>("byte");
    QTest::newRow("that begins otherwise") << 0 << 'X';
    QTest::newRow("of another version") << 4 << '\2';
    QTest::newRow("with flags that nobody knows") << 6 << '\2';
    QTest::newRow("with more samples than a frame takes") << 15 << '\1';
    QTest::newRow("of a time behind all times") << 31 << '\x10';
    QTest::newRow("with a frequency that none is") << 39 << '\1';
    QTest::newRow("with a sample rate that none is") << 47 << '\1';
    QTest::newRow("with a bandwidth that none is") << 55 << '\1';
}

void TestFrameReader::refusesAHead()
{
    QFETCH(int, offset);
    QFETCH(char, byte);
    QByteArray bytes = wire(frameOf(1));
    bytes[offset] = byte;
    FrameReader reader;
    reader.append(std::string_view(bytes.constData(), static_cast<std::size_t>(bytes.size())));
    ChannelFrame frame;
    std::string_view samples;
    QCOMPARE(reader.next(&frame, &samples), Result::Malformed);
}

void TestFrameReader::takesADatagramOnlyWhole()
{
    const QByteArray bytes = wire(frameOf(1)) + 'x';
    const std::string_view all(bytes.constData(), static_cast<std::size_t>(bytes.size()));
    ChannelFrame frame;
    std::string_view samples;
    QCOMPARE(readDatagram(all, &frame, &samples), Result::Malformed);
    QCOMPARE(readDatagram(all.substr(0, all.size() - 2), &frame, &samples), Result::Malformed);
    QCOMPARE(readDatagram({}, &frame, &samples), Result::Malformed);
    QCOMPARE(readDatagram(all.substr(0, all.size() - 1), &frame, &samples), Result::Frame);
    QVERIFY(frame == frameOf(1));
}

QTEST_GUILESS_MAIN(TestFrameReader)
#include "tst_framereader.moc"
