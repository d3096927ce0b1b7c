#include <zelkobase/service/overviewline.h>

#include <QTest>
#include <QtEndian>

using namespace ZelkoCommon;

namespace {

OverviewLine lineOf(quint32 number, quint32 lineCount = 7)
{
    OverviewLine line;
    line.cookie = 0x0102030405060708;
    line.line = number;
    line.lineCount = lineCount;
    line.time = 1'700'000'000'123'456;
    line.centreFrequency = 145'000'000;
    line.span = 48'000;
    return line;
}

// Levels that tell bins apart, from -100 dB on in steps of a hundredth.
std::vector<float> levelsOf(std::size_t bins)
{
    std::vector<float> levels(bins);
    for (std::size_t i = 0; i < bins; ++i) {
        levels[i] = -100 + static_cast<float>(i % 10'000) / 100;
    }
    return levels;
}

// The second datagram of line 2 of 7 with 1300 bins: neither the first nor the last of anything.
QByteArray middleDatagram()
{
    return lineOf(2).datagrams(levelsOf(1300)).at(1);
}

template <typename T>
QByteArray with(QByteArray datagram, qsizetype offset, T value)
{
    qToLittleEndian(value, datagram.data() + offset);
    return datagram;
}

} // namespace

class TestOverviewLine : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void headsStandAsDocumented();
    void readsWhatItWrites_data();
    void readsWhatItWrites();
    void marksTheVeryLastDatagramAlone();
    void boundsLevels_data();
    void boundsLevels();
    void takesAnyTimeAndFrequency();
    void refusesADatagram_data();
    void refusesADatagram();
    void refusesADatagramThatIsCut();
    void makesNothingOfNoLevels();
    void tellsRecordsApart();
};

void TestOverviewLine::headsStandAsDocumented()
{
    const QByteArray datagram = lineOf(6).datagrams({-12.34F, 1}).constFirst();
    QCOMPARE(datagram.left(32).toHex(), QByteArray("5a4f564c0100010008070605040302010600000007000000"
                                                   "0000000002000000"));
    QCOMPARE(qFromLittleEndian<quint64>(datagram.constData() + 32), quint64{1'700'000'000'123'456});
    QCOMPARE(qFromLittleEndian<quint64>(datagram.constData() + 40), quint64{145'000'000});
    QCOMPARE(qFromLittleEndian<quint64>(datagram.constData() + 48), quint64{48'000});
    QCOMPARE(datagram.mid(56).toHex(), QByteArray("020000002efb6400"));
}

void TestOverviewLine::readsWhatItWrites_data()
{
    QTest::addColumn<std::size_t>("bins");
    QTest::addColumn<QList<quint32>>("firstBins");
    QTest::newRow("a line of one bin") << std::size_t{1} << QList<quint32>{0};
    QTest::newRow("a datagram that is full") << std::size_t{512} << QList<quint32>{0};
    QTest::newRow("one bin more than a datagram takes") << std::size_t{513} << QList<quint32>{0, 512};
    QTest::newRow("full datagrams") << std::size_t{2048} << QList<quint32>{0, 512, 1024, 1536};
}

void TestOverviewLine::readsWhatItWrites()
{
    QFETCH(std::size_t, bins);
    QFETCH(QList<quint32>, firstBins);
    const OverviewLine line = lineOf(3);
    QList<quint32> read;
    QList<qint16> levels;
    for (const QByteArray& datagram : line.datagrams(levelsOf(bins))) {
        const auto piece = overviewPiece(datagram);
        QVERIFY(piece.has_value());
        const OverviewLine head{piece->cookie,          piece->line, piece->lineCount, piece->time,
                                piece->centreFrequency, piece->span};
        QCOMPARE(head, line);
        QCOMPARE(piece->binCount, static_cast<quint32>(bins));
        QVERIFY(!piece->isLast);
        read.append(piece->firstBin);
        levels += piece->levels;
    }
    QCOMPARE(read, firstBins);
    QCOMPARE(levels.size(), static_cast<qsizetype>(bins));
    for (qsizetype i = 0; i < levels.size(); ++i) {
        QCOMPARE(int{levels.at(i)}, -10'000 + static_cast<int>(i));
    }
}

void TestOverviewLine::marksTheVeryLastDatagramAlone()
{
    QList<bool> marks;
    for (quint32 number = 0; number < 2; ++number) {
        for (const QByteArray& datagram : lineOf(number, 2).datagrams(levelsOf(600))) {
            const auto piece = overviewPiece(datagram);
            QVERIFY(piece.has_value());
            marks.append(piece->isLast);
        }
    }
    QCOMPARE(marks, QList<bool>({false, false, false, true}));
}

void TestOverviewLine::boundsLevels_data()
{
    QTest::addColumn<float>("level");
    QTest::addColumn<qint16>("written");
    QTest::newRow("rounded to the nearest") << -1.006F << qint16{-101};
    QTest::newRow("the lowest") << -1e9F << qint16{-32767};
    QTest::newRow("the highest") << 1e9F << qint16{32767};
    QTest::newRow("less than everything") << -std::numeric_limits<float>::infinity() << qint16{-32767};
    QTest::newRow("no number at all") << std::numeric_limits<float>::quiet_NaN() << qint16{-32767};
}

void TestOverviewLine::boundsLevels()
{
    QFETCH(float, level);
    QFETCH(qint16, written);
    const auto piece = overviewPiece(lineOf(0).datagrams({level}).constFirst());
    QVERIFY(piece.has_value());
    QCOMPARE(piece->levels, QList<qint16>{written});
}

void TestOverviewLine::takesAnyTimeAndFrequency()
{
    OverviewLine line = lineOf(0);
    line.cookie = line.time = line.centreFrequency = line.span = std::numeric_limits<quint64>::max();
    const auto piece = overviewPiece(line.datagrams({0}).constFirst());
    QVERIFY(piece.has_value());
    QCOMPARE(piece->time, line.time);
    QCOMPARE(piece->centreFrequency, line.centreFrequency);
    QCOMPARE(piece->span, line.span);
}

void TestOverviewLine::refusesADatagram_data()
{
    QTest::addColumn<QByteArray>("datagram");
    const QByteArray good = middleDatagram();
    QVERIFY(overviewPiece(good).has_value());
    QTest::newRow("of nothing") << QByteArray();
    QTest::newRow("that begins otherwise") << with(good, 0, 'z');
    QTest::newRow("of an older version") << with(good, 4, quint16{0});
    QTest::newRow("of a newer version") << with(good, 4, quint16{2});
    QTest::newRow("with flags that nobody knows") << with(good, 6, quint16{2});
    QTest::newRow("that is marked the last in the middle") << with(good, 6, quint16{1});
    const QByteArray last = lineOf(6).datagrams(levelsOf(600)).at(1);
    QVERIFY(overviewPiece(last).has_value());
    QTest::newRow("that is the last without the mark") << with(last, 6, quint16{0});
    QTest::newRow("that is the last with another flag") << with(last, 6, quint16{3});
    QTest::newRow("of a line behind all lines") << with(good, 16, quint32{7});
    QTest::newRow("of a line that is far away") << with(good, 16, ~quint32{0});
    QTest::newRow("of no lines") << with(with(good, 16, quint32{0}), 20, quint32{0});
    QTest::newRow("of more lines than there are") << with(good, 20, quint32{100'001});
    QTest::newRow("from a bin where none begins") << with(good, 24, quint32{511});
    QTest::newRow("from a bin behind the last") << with(good, 24, quint32{1536});
    QTest::newRow("from a bin that is far away") << with(good, 24, quint32{0xfffffe00});
    QTest::newRow("with fewer levels than the line still has") << with(good, 24, quint32{1024});
    QTest::newRow("of a line without bins") << with(with(good, 24, quint32{0}), 28, quint32{0});
    QTest::newRow("of a line that ends before") << with(good, 28, quint32{512});
    QTest::newRow("of a line that ends within") << with(good, 28, quint32{1023});
    QTest::newRow("of more bins than there are") << with(good, 28, quint32{65'537});
    QTest::newRow("that says fewer levels than follow") << with(good, 56, quint16{511});
    QTest::newRow("that says more levels than follow") << with(good, 56, quint16{513});
    QTest::newRow("that says no levels") << with(good, 56, quint16{0});
    QTest::newRow("with something where nothing is") << with(good, 58, quint16{1});
    QTest::newRow("with a level that nobody writes") << with(good, 60, qint16{-32768});
    QTest::newRow("with a byte too many") << good + 'x';
    QTest::newRow("with a level too many") << good + "xx";
    QTest::newRow("of a head alone") << good.left(60);
}

void TestOverviewLine::refusesADatagram()
{
    QFETCH(QByteArray, datagram);
    QVERIFY(!overviewPiece(datagram).has_value());
}

void TestOverviewLine::refusesADatagramThatIsCut()
{
    const QByteArray good = middleDatagram();
    for (qsizetype size = 0; size < good.size(); ++size) {
        const QByteArray cut(good.constData(), size); // of its own, so that reading on would be noticed
        QVERIFY2(!overviewPiece(cut).has_value(), QByteArray::number(size).constData());
    }
}

void TestOverviewLine::makesNothingOfNoLevels()
{
    QVERIFY(lineOf(0).datagrams({}).isEmpty());
}

void TestOverviewLine::tellsRecordsApart()
{
    QCOMPARE(overviewCookie(QString(), QString()), quint64{0xaf63a24c860189fe}); // of the slash alone
    QCOMPARE_NE(overviewCookie("D1", "r1"), overviewCookie("D1", "r2"));
    QCOMPARE_NE(overviewCookie("D1", "r1"), overviewCookie("D2", "r1"));
    QCOMPARE_NE(overviewCookie("D1", QStringLiteral("\u00e4")), overviewCookie("D1", "a"));
}

QTEST_GUILESS_MAIN(TestOverviewLine)
#include "tst_overviewline.moc"
