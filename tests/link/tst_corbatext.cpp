#include <zelkobase/orb/corbatext.h>

#include <QtTest>

using namespace ZelkoCommon;

namespace {

// Not a literal, which would end at a zero.
QString of(std::initializer_list<char16_t> units)
{
    return QString::fromUtf16(units.begin(), static_cast<qsizetype>(units.size()));
}

QList<uint> elements(const CORBA::WChar* text)
{
    QList<uint> result;
    for (; *text; ++text) {
        result << static_cast<uint>(*text);
    }
    return result;
}

} // namespace

class TestCorbaText : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void keepsTheTextsOfPeople_data();
    void keepsTheTextsOfPeople();
    void sendsNothingThatEndsATextOrFailsACall_data();
    void sendsNothingThatEndsATextOrFailsACall();
    void refusesATextThatNoRequestHolds();
    void sendsOneElementPerUnit();
    void readsAnElementOfAPeer_data();
    void readsAnElementOfAPeer();
    void readsNothingAsAnEmptyText();
    void replacesBytesThatAreNoText();
};

void TestCorbaText::keepsTheTextsOfPeople_data()
{
    QTest::addColumn<QString>("text");
    QTest::newRow("nothing") << QString();
    QTest::newRow("plain letters") << "north mast";
    QTest::newRow("letters with marks") << QStringLiteral("Ätherwelle à côté");
    QTest::newRow("letters of other scripts") << QStringLiteral("Ω 記録 запись");
    QTest::newRow("characters beyond U+FFFF") << QStringLiteral("\U0001F4E1 and \U0010FFFF");
    QTest::newRow("the last one before the halves") << of({0xd7ff, 0xe000});
}

void TestCorbaText::keepsTheTextsOfPeople()
{
    QFETCH(QString, text);
    QCOMPARE(fromCorba(toCorba(text).in()), text);
    QCOMPARE(fromCorba(toWideCorba(text).in()), text);
}

void TestCorbaText::sendsNothingThatEndsATextOrFailsACall_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("sent");
    QTest::newRow("a zero in the middle") << of({'a', 0, 'b'}) << of({'a', 0xfffd, 'b'});
    QTest::newRow("a zero at the end") << of({'a', 0}) << of({'a', 0xfffd});
    QTest::newRow("a first half alone") << of({'a', 0xd83d, 'b'}) << of({'a', 0xfffd, 'b'});
    QTest::newRow("a first half at the end") << of({'a', 0xd83d}) << of({'a', 0xfffd});
    QTest::newRow("a second half alone") << of({0xdce1, 'b'}) << of({0xfffd, 'b'});
}

void TestCorbaText::sendsNothingThatEndsATextOrFailsACall()
{
    QFETCH(QString, text);
    QFETCH(QString, sent);
    QCOMPARE(fromCorba(toCorba(text).in()), sent);
    QCOMPARE(fromCorba(toWideCorba(text).in()), sent);
}

void TestCorbaText::refusesATextThatNoRequestHolds()
{
    const QString longest(longestText, 'x');
    QCOMPARE(fromCorba(toCorba(longest).in()), longest);
    QCOMPARE(fromCorba(toWideCorba(longest).in()), longest);
    QVERIFY_EXCEPTION_THROWN(toCorba(longest + 'x'), CORBA::MARSHAL);
    QVERIFY_EXCEPTION_THROWN(toWideCorba(longest + 'x'), CORBA::MARSHAL);
}

void TestCorbaText::sendsOneElementPerUnit()
{
    const QList<uint> expected{'a', 0xd83d, 0xdce1, 'b'};
    QCOMPARE(elements(toWideCorba(QStringLiteral("a\U0001F4E1b")).in()), expected);
}

void TestCorbaText::readsAnElementOfAPeer_data()
{
    QTest::addColumn<QList<uint>>("elements");
    QTest::addColumn<QString>("text");
    QTest::newRow("a character beyond U+FFFF") << QList<uint>{0x1f4e1} << QStringLiteral("\U0001F4E1");
    QTest::newRow("the same in its two halves") << QList<uint>{0xd83d, 0xdce1} << QStringLiteral("\U0001F4E1");
    QTest::newRow("a half alone") << QList<uint>{0xd83d, 'b'} << of({0xfffd, 'b'});
    QTest::newRow("no character at all") << QList<uint>{'a', 0x110000, 'b'} << of({'a', 0xfffd, 'b'});
    QTest::newRow("a negative one") << QList<uint>{0xffffffff} << of({0xfffd});
}

void TestCorbaText::readsAnElementOfAPeer()
{
    QFETCH(QList<uint>, elements);
    std::vector<CORBA::WChar> received;
    for (const uint element : elements) {
        received.push_back(static_cast<CORBA::WChar>(element));
    }
    received.push_back(0);
    QTEST(fromCorba(received.data()), "text");
}

void TestCorbaText::readsNothingAsAnEmptyText()
{
    QCOMPARE(fromCorba(static_cast<const char*>(nullptr)), QString());
    QCOMPARE(fromCorba(static_cast<const CORBA::WChar*>(nullptr)), QString());
}

void TestCorbaText::replacesBytesThatAreNoText()
{
    QCOMPARE(fromCorba("a\xff"
                       "b"),
             of({'a', 0xfffd, 'b'}));
}

QTEST_APPLESS_MAIN(TestCorbaText)
#include "tst_corbatext.moc"
