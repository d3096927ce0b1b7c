#include "framestream.h"
#include "frametext.h"

#include <zelkobase/connection/linkframe.h>

#include <QtTest>

using namespace ZelkoCommon::link;

class TestLinkFrame : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void readsBackWhatWasWritten();
    void takesNothingOfAFrameThatHasNotComeWhole();
    void refusesWhatIsNoFrame_data();
    void refusesWhatIsNoFrame();
    void readsAnnouncements_data();
    void readsAnnouncements();
    void refusesAnnouncements_data();
    void refusesAnnouncements();
    void theChecksumTellsDamage_data();
    void theChecksumTellsDamage();
};

void TestLinkFrame::readsBackWhatWasWritten()
{
    std::string bytes;
    appendFrame(bytes, FrameType::Commands, 0x01020304, "payload");
    appendFrame(bytes, FrameType::Ready, 0);
    std::string_view rest = bytes;
    Frame frame;
    QCOMPARE(readFrame(rest, frame), ReadResult::Frame);
    QCOMPARE(frame.type, FrameType::Commands);
    QCOMPARE(frame.handle, 0x01020304u);
    QCOMPARE(frame.payload, std::string_view("payload"));
    QCOMPARE(readFrame(rest, frame), ReadResult::Frame);
    QCOMPARE(frame.type, FrameType::Ready);
    QCOMPARE(frame.payload, std::string_view());
    QVERIFY(rest.empty());
    QCOMPARE(readFrame(rest, frame), ReadResult::Incomplete);
}

void TestLinkFrame::takesNothingOfAFrameThatHasNotComeWhole()
{
    std::string bytes;
    appendFrame(bytes, FrameType::Commands, 7, "payload");
    for (std::size_t size = 0; size < bytes.size(); ++size) {
        std::string_view rest = std::string_view(bytes).substr(0, size);
        Frame frame;
        QCOMPARE(readFrame(rest, frame), ReadResult::Incomplete);
        QCOMPARE(rest.size(), size);
    }
}

void TestLinkFrame::refusesWhatIsNoFrame_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::newRow("type 0") << QByteArray(1, '\0');
    QTest::newRow("type beyond the last one") << QByteArray("\x07");
    QTest::newRow("type with the highest bit") << QByteArray("\xff");
    QTest::newRow("payload one byte too large") << QByteArray("\x04\0\0\0\0\x01\0\0\x04", 9);
    QTest::newRow("largest payload that can be written") << QByteArray("\x04\0\0\0\0\xff\xff\xff\xff", 9);
}

void TestLinkFrame::refusesWhatIsNoFrame()
{
    QFETCH(QByteArray, bytes);
    std::string_view rest(bytes.data(), static_cast<std::size_t>(bytes.size()));
    Frame frame;
    QCOMPARE(readFrame(rest, frame), ReadResult::Malformed);
    QCOMPARE(rest.size(), static_cast<std::size_t>(bytes.size()));
}

void TestLinkFrame::readsAnnouncements_data()
{
    QTest::addColumn<QString>("path");
    QTest::addColumn<QByteArray>("typeName");
    QTest::newRow("a node") << QStringLiteral("/ZELKO") << QByteArray();
    QTest::newRow("a value") << QStringLiteral("/ZELKO/Device/A") << QByteArray("RecordItemMap");
    QTest::newRow("a name of other letters") << QStringLiteral("/Gerät/受信機") << QByteArray("int");
    QTest::newRow("the longest path") << QString(maxPathLength, QLatin1Char('/')) << QByteArray("int");
}

void TestLinkFrame::readsAnnouncements()
{
    QFETCH(QString, path);
    QFETCH(QByteArray, typeName);
    std::string bytes;
    appendAnnouncement(bytes, 5, {path, typeName.toStdString()});
    std::string_view rest = bytes;
    Frame frame;
    QCOMPARE(readFrame(rest, frame), ReadResult::Frame);
    Announcement what;
    QVERIFY(readAnnouncement(frame.payload, what));
    QCOMPARE(what.path, path);
    QCOMPARE(what.typeName, typeName.toStdString());
}

void TestLinkFrame::refusesAnnouncements_data()
{
    QTest::addColumn<QByteArray>("payload");
    QTest::newRow("empty") << QByteArray();
    QTest::newRow("half a count") << QByteArray("\x01\0", 2);
    QTest::newRow("a path shorter than announced") << QByteArray("\x05\0\0\0/\0", 6);
    QTest::newRow("a path of a size beyond all memory") << QByteArray("\xff\xff\xff\xff/\0", 6);
    QTest::newRow("an empty path") << QByteArray("\0\0\0\0int", 7);
    QTest::newRow("a path that does not begin at the top") << QByteArray("\x01\0\0\0A\0int", 9);
    std::string tooLong;
    commandwriter::string(tooLong, QString(maxPathLength + 1, QLatin1Char('/')));
    QTest::newRow("a path that is too long") << QByteArray::fromStdString(tooLong);
}

void TestLinkFrame::refusesAnnouncements()
{
    QFETCH(QByteArray, payload);
    Announcement what;
    QVERIFY(!readAnnouncement({payload.data(), static_cast<std::size_t>(payload.size())}, what));
}

void TestLinkFrame::theChecksumTellsDamage_data()
{
    QTest::addColumn<int>("size");
    for (const int size : {0, 1, 7, 8, 9, 16, 33, 1000}) {
        QTest::addRow("%d bytes", size) << size;
    }
}

void TestLinkFrame::theChecksumTellsDamage()
{
    QFETCH(int, size);
    const std::string good(static_cast<std::size_t>(size), 'x');
    const auto sum = checksum(good);
    QCOMPARE(checksum(good), sum);
    QVERIFY(checksum(good + '\0') != sum);
    for (std::size_t i = 0; i < good.size(); ++i) {
        for (int bit = 0; bit < 8; ++bit) {
            std::string damaged = good;
            damaged[i] = static_cast<char>(damaged[i] ^ (1 << bit));
            QVERIFY(checksum(damaged) != sum);
        }
        QVERIFY(checksum(std::string_view(good).substr(0, i)) != sum);
    }
}

QTEST_APPLESS_MAIN(TestLinkFrame)
#include "tst_linkframe.moc"
