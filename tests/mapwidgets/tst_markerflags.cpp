#include <mapwidgets/markerflags_p.h>

#include <QtTest>

#include <random>

namespace {

constexpr double padding = MarkerFlags::padding;

// Texts whose characters are ten pixels wide, and are cut without a sign.
const MarkerFlags::Texts texts{[](const QString& text) { return 10.0 * static_cast<double>(text.size()); },
                               [](const QString& text, double room) { return text.left(int(room / 10)); }};

QString nameOf(int number)
{
    return QStringLiteral("mark%1").arg(number);
}

/// "number at place: text", with the count where it is not one.
QStringList textsOf(const std::vector<MarkerFlag>& flags)
{
    QStringList all;
    for (const MarkerFlag& flag : flags) {
        all << QStringLiteral("%1 at %2: %3").arg(flag.number).arg(flag.place).arg(flag.text);
    }
    return all;
}

} // namespace

class MarkerFlagsTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void flagsStandFromLeftToRight();
    void textsEndBeforeTheNextFlag();
    void longTextsAreCut();
    void markersOnAPixelAreOneFlag();
    void theCurrentMarkerIsTheOneThatIsShown();
    void pixelsOfTheScreenCount();
    void whatIsNoPlaceIsLeftOut_data();
    void whatIsNoPlaceIsLeftOut();
    void theLastFlagFliesToTheLeft();
    void theLastFlagStaysWhereThereIsNoMoreRoom();
    void aFlagWithoutATextHasAShortCloth();
    void anAxisWithoutWidthHasOnePlace();
    void namesAreAskedForWhereThereIsRoomOnly();
    void clothsNeverLieOverEachOther();
    void namesThatLookLikePlaceholdersStayAsTheyAre();
};

void MarkerFlagsTest::flagsStandFromLeftToRight()
{
    MarkerFlags flags({0, 1000, 1});
    QVERIFY(flags.layOut(texts, nameOf).empty());
    flags.add(7, 500, false);
    flags.add(6, 200.4, false);
    QCOMPARE(textsOf(flags.layOut(texts, nameOf)), (QStringList{"6 at 200: mark6", "7 at 500: mark7"}));
}

void MarkerFlagsTest::textsEndBeforeTheNextFlag()
{
    MarkerFlags flags({0, 1000, 1});
    for (const int place : {100, 150, 170, 171}) {
        flags.add(place, place, false);
    }
    const std::vector<MarkerFlag> found = flags.layOut(texts, nameOf);
    QCOMPARE(textsOf(found), (QStringList{"100 at 100: mark", "150 at 150: ", "170 at 170: ", "171 at 171: mark171"}));
    QCOMPARE(found[0].right, 100 + 40 + 2 * padding);
    QVERIFY(!found[0].isCrowded);
    QVERIFY(found[1].isCrowded);
    QCOMPARE(found[2].right, 171.0);
}

void MarkerFlagsTest::longTextsAreCut()
{
    MarkerFlags flags({0, 1000, 1});
    flags.add(1, 0, false);
    const auto found = flags.layOut(texts, [](int) { return QString(100, QLatin1Char('x')); });
    QVERIFY(found[0].text.size() > 10 && found[0].text.size() < 30);
}

void MarkerFlagsTest::markersOnAPixelAreOneFlag()
{
    MarkerFlags flags({0, 1000, 1});
    flags.add(6, 99.6, false);
    flags.add(7, 100.4, false);
    flags.add(8, 100, false);
    const auto found = flags.layOut(texts, nameOf);
    QCOMPARE(textsOf(found), QStringList{"8 at 100: mark8 +2"});
    QCOMPARE(found[0].count, 3);
}

void MarkerFlagsTest::theCurrentMarkerIsTheOneThatIsShown()
{
    MarkerFlags flags({0, 1000, 1});
    flags.add(6, 100, false);
    flags.add(7, 100, true);
    flags.add(8, 100, false);
    QCOMPARE(textsOf(flags.layOut(texts, nameOf)), QStringList{"7 at 100: mark7 +2"});
}

void MarkerFlagsTest::pixelsOfTheScreenCount()
{
    MarkerFlags flags({10, 1000, 0.5});
    flags.add(6, 100, false);
    flags.add(7, 100.5, false);
    flags.add(8, 100.6, false);
    const auto found = flags.layOut(texts, nameOf);
    QCOMPARE(found.size(), std::size_t(2));
    QCOMPARE(found[1].place, 100.5);
    QCOMPARE(found[1].count, 2);
}

void MarkerFlagsTest::whatIsNoPlaceIsLeftOut_data()
{
    QTest::addColumn<double>("place");
    QTest::newRow("before the axis") << 9.0;
    QTest::newRow("behind the axis") << 101.0;
    QTest::newRow("far away") << 1e300;
    QTest::newRow("no number") << std::numeric_limits<double>::quiet_NaN();
}

void MarkerFlagsTest::whatIsNoPlaceIsLeftOut()
{
    QFETCH(double, place);
    MarkerFlags flags({10, 100, 1});
    flags.add(6, place, true);
    QVERIFY(flags.layOut(texts, nameOf).empty());
}

void MarkerFlagsTest::theLastFlagFliesToTheLeft()
{
    MarkerFlags flags({0, 1000, 1});
    flags.add(6, 890, false);
    flags.add(7, 990, false);
    const auto found = flags.layOut(texts, nameOf);
    QCOMPARE(textsOf(found), (QStringList{"6 at 890: mark", "7 at 990: mark"}));
    QCOMPARE(found[1].right, 991.0);
    QCOMPARE(found[1].left, 991 - 40 - 2 * padding);
    QVERIFY(found[0].right < found[1].left);
}

void MarkerFlagsTest::theLastFlagStaysWhereThereIsNoMoreRoom()
{
    MarkerFlags flags({0, 1000, 1});
    flags.add(6, 980, false);
    flags.add(7, 990, false);
    const auto found = flags.layOut(texts, nameOf);
    QCOMPARE(found[1].left, 990.0);
    QCOMPARE(found[1].text, QString());
}

void MarkerFlagsTest::aFlagWithoutATextHasAShortCloth()
{
    MarkerFlags flags({0, 1000, 1});
    flags.add(6, 100, false);
    flags.add(7, 995, false);
    const auto found = flags.layOut(texts, [](int) { return QString(); });
    QCOMPARE(found[0].right, 108.0);
    QVERIFY(!found[0].isCrowded);
    QCOMPARE(found[1].left, 995.0);
}

void MarkerFlagsTest::anAxisWithoutWidthHasOnePlace()
{
    MarkerFlags flags({10, 5, 1});
    flags.add(6, 10, false);
    flags.add(7, 11, false);
    QCOMPARE(flags.layOut(texts, nameOf).size(), std::size_t(1));
}

void MarkerFlagsTest::namesAreAskedForWhereThereIsRoomOnly()
{
    MarkerFlags flags({0, 1000, 1});
    for (int number = 0; number < 10'000; ++number) {
        flags.add(number, number / 10.0, false);
    }
    int asked = 0;
    const auto found = flags.layOut(texts, [&asked](int number) {
        ++asked;
        return nameOf(number);
    });
    QCOMPARE(found.size(), std::size_t(1001));
    QVERIFY2(asked < 10, qPrintable(QString::number(asked)));
}

void MarkerFlagsTest::clothsNeverLieOverEachOther()
{
    std::mt19937 random(7);
    for (int round = 0; round < 200; ++round) {
        MarkerFlags flags({10, 700, 0.5});
        const int count = 1 + round;
        int total = 0;
        for (int number = 0; number < count; ++number) {
            flags.add(number, std::uniform_real_distribution(10.0, 700.0)(random), number == count / 2);
        }
        double end = 0;
        for (const MarkerFlag& flag : flags.layOut(texts, nameOf)) {
            QVERIFY(flag.left >= end && flag.right > flag.left && flag.right <= 701);
            QVERIFY(flag.left <= flag.place && flag.place < flag.right);
            end = flag.right;
            total += flag.count;
        }
        QCOMPARE(total, count);
    }
}

void MarkerFlagsTest::namesThatLookLikePlaceholdersStayAsTheyAre()
{
    MarkerFlag flag;
    flag.count = 3;
    QCOMPARE(MarkerFlags::textOf(flag, QStringLiteral("Tower %1 %2")), QStringLiteral("Tower %1 %2 +2"));
    flag.count = 1;
    QCOMPARE(MarkerFlags::textOf(flag, QStringLiteral("Tower %1")), QStringLiteral("Tower %1"));
}

QTEST_APPLESS_MAIN(MarkerFlagsTest)
#include "tst_markerflags.moc"
