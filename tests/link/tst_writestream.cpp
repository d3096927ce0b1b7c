#include "framestream.h"

#include <recorder/link/writestream.h>

#include <QtTest>

using namespace ZelkoCommon::link;
using ZelkoRecorder::WriteStream;

namespace {

// What can be read: "HANDLE PAYLOAD" for each frame, then "malformed" if that is the end.
QStringList readAll(WriteStream& stream)
{
    QStringList texts;
    Frame frame;
    ReadResult result = stream.next(frame);
    for (; result == ReadResult::Frame; result = stream.next(frame)) {
        const QString payload = QString::fromLatin1(frame.payload.data(), qsizetype(frame.payload.size()));
        texts << QStringLiteral("%1 %2").arg(QString::number(frame.handle), payload);
    }
    if (result == ReadResult::Malformed) {
        texts << QStringLiteral("malformed");
    }
    return texts;
}

} // namespace

class TestWriteStream : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void readsTheFramesOfABatch();
    void readsFramesThatComeByteByByte();
    void tellsWhatHasBegun();
    void passesOverWhatHasBegunAndReadsOnBehindIt();
    void passesOverNothingBetweenFrames();
    void takesFramesUpToTheBoundOfAWrite();
    void readsNothingBehindWhatIsNoWrite_data();
    void readsNothingBehindWhatIsNoWrite();
};

void TestWriteStream::readsTheFramesOfABatch()
{
    WriteStream stream;
    stream.append(FrameStream().commands(1, "one").commands(2, "").commands(3, "three").bytes());
    QCOMPARE(readAll(stream), (QStringList{"1 one", "2 ", "3 three"}));
    QCOMPARE(readAll(stream), QStringList());
}

void TestWriteStream::readsFramesThatComeByteByByte()
{
    WriteStream stream;
    QStringList read;
    const std::string frames = FrameStream().commands(1, "one").commands(2, "two").bytes();
    for (const char byte : frames) {
        stream.append({&byte, 1});
        read << readAll(stream);
    }
    QCOMPARE(read, (QStringList{"1 one", "2 two"}));
}

void TestWriteStream::tellsWhatHasBegun()
{
    WriteStream stream;
    QVERIFY(!stream.begunHandle());
    const std::string frames = FrameStream().commands(1, "one").commands(2, "two").bytes();
    const std::size_t behindHeader = frames.size() - 3;
    stream.append(std::string_view(frames).substr(0, behindHeader - 1));
    QCOMPARE(readAll(stream), QStringList{"1 one"});
    QVERIFY(!stream.begunHandle());
    stream.append(std::string_view(frames).substr(behindHeader - 1, 1));
    QCOMPARE(readAll(stream), QStringList());
    QCOMPARE(stream.begunHandle(), std::optional<std::uint32_t>(2));
    stream.append(std::string_view(frames).substr(behindHeader));
    QCOMPARE(readAll(stream), QStringList{"2 two"});
    QVERIFY(!stream.begunHandle());
}

void TestWriteStream::passesOverWhatHasBegunAndReadsOnBehindIt()
{
    const std::string frames = FrameStream().commands(1, "one").commands(2, "two").commands(3, "three").bytes();
    const std::size_t inTheSecond = 2 * frameHeaderSize + 4;
    WriteStream stream;
    stream.append(std::string_view(frames).substr(0, inTheSecond));
    QCOMPARE(readAll(stream), QStringList{"1 one"});
    stream.passOver();
    QVERIFY(!stream.begunHandle());
    QStringList read;
    for (const char byte : frames.substr(inTheSecond)) {
        stream.append({&byte, 1});
        read << readAll(stream);
    }
    QCOMPARE(read, QStringList{"3 three"});
}

void TestWriteStream::passesOverNothingBetweenFrames()
{
    WriteStream stream;
    stream.append(FrameStream().commands(1, "one").bytes());
    QCOMPARE(readAll(stream), QStringList{"1 one"});
    stream.passOver();
    stream.append(FrameStream().commands(2, "two").bytes());
    QCOMPARE(readAll(stream), QStringList{"2 two"});
}

void TestWriteStream::takesFramesUpToTheBoundOfAWrite()
{
    WriteStream stream;
    stream.append(FrameStream().commands(1, std::string(maxWritePayload, 'x')).bytes());
    QCOMPARE(readAll(stream).size(), 1);
    stream.append(FrameStream().commands(1, std::string(maxWritePayload + 1, 'x')).bytes());
    QCOMPARE(readAll(stream), QStringList{"malformed"});
}

void TestWriteStream::readsNothingBehindWhatIsNoWrite_data()
{
    QTest::addColumn<QByteArray>("bytes");
    const auto row = [](const char* name, const std::string& bytes) {
        QTest::newRow(name) << QByteArray::fromStdString(bytes);
    };
    row("a frame that clients do not send", FrameStream().ready().bytes());
    row("the header of one that has begun", FrameStream().frame(FrameType::Announce, 3, "x").bytes().substr(0, 9));
    row("the header of one that is too large", std::string("\x04\x01\0\0\0\x01\0\x80\0", 9));
    row("no frame at all", "\x7f");
}

void TestWriteStream::readsNothingBehindWhatIsNoWrite()
{
    QFETCH(QByteArray, bytes);
    WriteStream stream;
    stream.append(FrameStream().commands(1, "one").bytes() + bytes.toStdString());
    QCOMPARE(readAll(stream), (QStringList{"1 one", "malformed"}));
    stream.append(FrameStream().commands(2, "two").bytes());
    QCOMPARE(readAll(stream), QStringList{"malformed"});
}

QTEST_APPLESS_MAIN(TestWriteStream)
#include "tst_writestream.moc"
