#include "exactbytes.h"

#include <valuecore/commandreader.h>

#include <QTest>

class tst_CommandReader : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void readsWhatTheWriterWrote();
    void readsTextOfAnyKind_data();
    void readsTextOfAnyKind();
    void writesTextAsCountAndCodeUnits();
    void failsForGood();
    void failsOnATextThatIsTooLong_data();
    void failsOnATextThatIsTooLong();
    void readsCommandIds_data();
    void readsCommandIds();
    void takesZeroAndOneAsBooleans_data();
    void takesZeroAndOneAsBooleans();
    void checksAnAnnouncedSizeWithoutConsumingIt_data();
    void checksAnAnnouncedSizeWithoutConsumingIt();
    void hasNoBytesWithANegativeCount();
    void leavesTheStreamBehindWhatItRead();
};

void tst_CommandReader::readsWhatTheWriterWrote()
{
    std::string out;
    commandwriter::commandId(out, 20);
    commandwriter::number(out, std::uint32_t{0xfffefdfc});
    commandwriter::string(out, "north@south");
    commandwriter::number(out, -2.5);
    out += ';';
    const ExactBytes bytes(out);
    const char* stream = bytes.begin();
    CommandReader reader(&stream, static_cast<std::ptrdiff_t>(out.size()));
    QCOMPARE(reader.remaining(), out.size());
    QCOMPARE(reader.remainingAsInt(), static_cast<int>(out.size()));
    QCOMPARE(reader.commandId(), 20);
    QCOMPARE(reader.number<std::uint32_t>(), 0xfffefdfcu);
    QCOMPARE(reader.string(), QStringLiteral("north@south"));
    QCOMPARE(reader.number<double>(), -2.5);
    reader.eatSemicolon();
    QVERIFY(reader.ok());
    QCOMPARE(reader.remaining(), std::size_t{0});
}

void tst_CommandReader::readsTextOfAnyKind_data()
{
    QTest::addColumn<QString>("text");
    QTest::newRow("empty") << QString();
    QTest::newRow("with the end sign of parts") << ";;";
    QTest::newRow("with a zero inside") << QString(QChar()) + "x" + QString(QChar());
    QTest::newRow("beyond the basic plane") << QString::fromUcs4(U"\U0001F4E1", 1);
    QTest::newRow("half of a surrogate pair") << QString(QChar(0xd83d));
    QTest::newRow("long") << QString(100000, 'x');
}

void tst_CommandReader::readsTextOfAnyKind()
{
    QFETCH(QString, text);
    std::string out;
    commandwriter::string(out, text);
    const ExactBytes bytes(out);
    const char* stream = bytes.begin();
    CommandReader reader(&stream, static_cast<std::ptrdiff_t>(out.size()));
    QCOMPARE(reader.string(), text);
    QVERIFY(reader.ok());
    QVERIFY(stream == bytes.end());
}

void tst_CommandReader::writesTextAsCountAndCodeUnits()
{
    std::string out;
    commandwriter::string(out, "Aß");
    std::string expected;
    commandwriter::number(expected, std::uint32_t{2});
    commandwriter::number(expected, char16_t{0x41});
    commandwriter::number(expected, char16_t{0xdf});
    QCOMPARE(out, expected);
    QCOMPARE(out.size(), std::size_t{8});
}

void tst_CommandReader::failsForGood()
{
    const ExactBytes bytes("abcdef");
    const char* stream = bytes.begin();
    CommandReader reader(&stream, 6);
    QCOMPARE(reader.number<double>(), 0.0);
    QVERIFY(!reader.ok());
    QCOMPARE(reader.number<char>(), '\0');
    QCOMPARE(reader.string(), QString());
    QCOMPARE(reader.commandId(), 0);
    QCOMPARE(reader.boolean(), false);
    QCOMPARE(reader.itemSize(), std::size_t{0});
    QVERIFY(stream == bytes.begin());

    CommandReader told(&stream, 6);
    told.fail();
    QVERIFY(!told.ok());
    QCOMPARE(told.number<char>(), '\0');
}

void tst_CommandReader::failsOnATextThatIsTooLong_data()
{
    QTest::addColumn<quint32>("units");
    QTest::newRow("one unit more than there is") << quint32{3};
    QTest::newRow("half of the number space") << quint32{0x80000000};
    QTest::newRow("the largest count") << quint32{0xffffffff};
}

void tst_CommandReader::failsOnATextThatIsTooLong()
{
    QFETCH(quint32, units);
    std::string out;
    commandwriter::number(out, units);
    out += "abcd";
    const ExactBytes bytes(out);
    const char* stream = bytes.begin();
    CommandReader reader(&stream, static_cast<std::ptrdiff_t>(out.size()));
    QCOMPARE(reader.string(), QString());
    QVERIFY(!reader.ok());
}

void tst_CommandReader::readsCommandIds_data()
{
    QTest::addColumn<QByteArray>("text");
    QTest::addColumn<bool>("ok");
    QTest::addColumn<int>("id");
    QTest::newRow("zero") << QByteArray("0;") << true << 0;
    QTest::newRow("largest") << QByteArray("2147483647;") << true << 2147483647;
    QTest::newRow("one more") << QByteArray("2147483648;") << false << 0;
    QTest::newRow("negative") << QByteArray("-5;") << false << 0;
    QTest::newRow("with a plus") << QByteArray("+5;") << false << 0;
    QTest::newRow("nothing at all") << QByteArray("") << false << 0;
    QTest::newRow("only the end sign") << QByteArray(";") << false << 0;
    QTest::newRow("digits without an end") << QByteArray("12") << false << 0;
    QTest::newRow("a wrong end") << QByteArray("12,") << false << 0;
}

void tst_CommandReader::readsCommandIds()
{
    QFETCH(QByteArray, text);
    const ExactBytes bytes(text.toStdString());
    const char* stream = bytes.begin();
    CommandReader reader(&stream, text.size());
    QTEST(reader.commandId(), "id");
    QTEST(reader.ok(), "ok");
    QVERIFY(stream <= bytes.end());
}

void tst_CommandReader::takesZeroAndOneAsBooleans_data()
{
    QTest::addColumn<int>("byte");
    QTest::addColumn<bool>("ok");
    QTest::addColumn<bool>("value");
    QTest::newRow("false") << 0 << true << false;
    QTest::newRow("true") << 1 << true << true;
    QTest::newRow("two") << 2 << false << false;
    QTest::newRow("all bits") << 255 << false << false;
}

void tst_CommandReader::takesZeroAndOneAsBooleans()
{
    QFETCH(int, byte);
    const char sign = static_cast<char>(byte);
    const char* stream = &sign;
    CommandReader reader(&stream, 1);
    QTEST(reader.boolean(), "value");
    QTEST(reader.ok(), "ok");
}

void tst_CommandReader::checksAnAnnouncedSizeWithoutConsumingIt_data()
{
    QTest::addColumn<quint32>("announced");
    QTest::addColumn<bool>("ok");
    QTest::newRow("nothing behind it") << quint32{0} << true;
    QTest::newRow("exactly what there is") << quint32{3} << true;
    QTest::newRow("one byte too many") << quint32{4} << false;
    QTest::newRow("all bits") << quint32{0xffffffff} << false;
}

void tst_CommandReader::checksAnAnnouncedSizeWithoutConsumingIt()
{
    QFETCH(quint32, announced);
    QFETCH(bool, ok);
    std::string out;
    commandwriter::number(out, announced);
    out += "abc";
    const ExactBytes bytes(out);
    const char* stream = bytes.begin();
    CommandReader reader(&stream, static_cast<std::ptrdiff_t>(out.size()));
    QCOMPARE(reader.itemSize(), ok ? std::size_t{4} + announced : std::size_t{0});
    QCOMPARE(reader.ok(), ok);
    if (ok) {
        QVERIFY(stream == bytes.begin());
        QCOMPARE(reader.stream(), &stream);
    }
}

void tst_CommandReader::hasNoBytesWithANegativeCount()
{
    const char* stream = "abc";
    CommandReader reader(&stream, -3);
    QCOMPARE(reader.remaining(), std::size_t{0});
    QCOMPARE(reader.number<char>(), '\0');
    QVERIFY(!reader.ok());
}

void tst_CommandReader::leavesTheStreamBehindWhatItRead()
{
    const ExactBytes bytes("7;rest");
    const char* stream = bytes.begin();
    CommandReader reader(&stream, 6);
    QCOMPARE(reader.commandId(), 7);
    QCOMPARE(std::string(stream, bytes.end()), std::string("rest"));
    QCOMPARE(reader.remaining(), std::size_t{4});
}

QTEST_GUILESS_MAIN(tst_CommandReader)
#include "tst_commandreader.moc"
