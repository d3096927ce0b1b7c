#include <zelkoguibase/filter/patterncomplexity_p.h>

#include <zelkobase/data/stringfilter.h>

#include <QRandomGenerator>
#include <QtTest>

using ZelkoGUI::Filter::isTooComplex;

/// Nothing here makes an expression of the patterns that are too complex: that is what they are refused for.
class PatternComplexityTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void expressionsAreJudgedByWhatTheyStandFor_data();
    void expressionsAreJudgedByWhatTheyStandFor();
    void wildcardsAreJudgedByTheirStars_data();
    void wildcardsAreJudgedByTheirStars();
    void noFixedStringIsTooComplex();
    void whatCanBeTypedAsATextCanBeBorne_data();
    void whatCanBeTypedAsATextCanBeBorne();
    void bracketsMayBeNestedAHundredDeep();
    void repetitionsThatAreNoNumbersCountAsTheMost();
    void anyTextIsReadToItsEnd_data();
    void anyTextIsReadToItsEnd();
};

void PatternComplexityTest::expressionsAreJudgedByWhatTheyStandFor_data()
{
    QTest::addColumn<QString>("pattern");
    QTest::addColumn<bool>("tooComplex");

    const auto text = [](const char* pattern) { return QString::fromLatin1(pattern); };
    QTest::newRow("nothing") << QString() << false;
    QTest::newRow("a date") << text("[0-9]{4}-[0-9]{2}-[0-9]{2}T\\d{2}:\\d{2}") << false;
    QTest::newRow("an address") << text("^(([0-9]{1,3})\\.){3}[0-9]{1,3}$") << false;
    QTest::newRow("a thousand characters") << text(".{1000}") << false;
    QTest::newRow("up to a thousand characters") << text("[A-Za-z]{0,1000}") << false;
    QTest::newRow("2,500 characters") << text("(a{1,50}){1,50}") << false;
    QTest::newRow("125,000 characters") << text("((a{1,50}){1,50}){1,50}") << true;
    QTest::newRow("a million characters") << text("(a{1000}){1000}") << true;
    QTest::newRow("a million characters that are not remembered") << text("(?:a{1000}){1000}") << true;
    QTest::newRow("a million characters, and more") << text("(a{1000}){1000,}") << true;
    QTest::newRow("a million characters ahead") << text("x(?=(a{1000}){1000})") << true;
    QTest::newRow("a million characters not ahead") << text("x(?!(a{1000}){1000})") << true;
    QTest::newRow("a million characters or another") << text("b|(a{1000}){1000}") << true;
    QTest::newRow("a million times nothing") << text("((){1000}){1000}") << true;
    QTest::newRow("a million borders of words") << text("(\\b{1000}){1000}") << true;
    QTest::newRow("a million line ends") << text("($a{,1000}){,1000}") << true;
    QTest::newRow("more than fits a number") << text("((((((a{999}){999}){999}){999}){999}){999}){999}") << true;
    QTest::newRow("a large set, often") << u'(' + QStringLiteral("[%1]").arg(QString(500, u'x')) + text("){500}")
                                        << true;
    QTest::newRow("a set of brackets") << text("([]({[]{900}){100}") << true;
    QTest::newRow("a set without brackets") << text("([^](]{10}){10}") << false;
    QTest::newRow("brackets that are no brackets") << text("\\(\\(a\\{900\\}\\){900}\\){900}") << false;
    QTest::newRow("300 that may be missing") << text("a?").repeated(300) << false;
    QTest::newRow("1,000 that may be missing") << text("a?").repeated(1000) << true;
    QTest::newRow("1,000 escapes that may be missing") << text("\\x0041?").repeated(1000) << true;
    QTest::newRow("1,000 octal escapes that may be missing") << text("\\0101?").repeated(1000) << true;
    QTest::newRow("1,000 captures that may be missing") << text("\\12?").repeated(1000) << true;
    QTest::newRow("1,000 that may be missing, repeated") << text("(a?){1000}") << true;
    QTest::newRow("1,000 endless ones") << text("(a*){1000}") << true;
    QTest::newRow("1,000 endless ones that are needed") << text("(a+){1000}") << false;
    QTest::newRow("one of 200 words") << u'(' + text("word|").repeated(200) + u')' << false;
    QTest::newRow("any of 200 words") << u'(' + text("word|").repeated(200) + text(")*") << false;
    QTest::newRow("one of 2,000 words") << u'(' + text("word|").repeated(2000) + u')' << false;
    QTest::newRow("any of 2,000 words") << u'(' + text("word|").repeated(2000) + text(")+") << true;
}

void PatternComplexityTest::expressionsAreJudgedByWhatTheyStandFor()
{
    QFETCH(QString, pattern);
    QFETCH(bool, tooComplex);
    QCOMPARE(isTooComplex(pattern, QRegExp::RegExp), tooComplex);
    QCOMPARE(isTooComplex(pattern, QRegExp::RegExp2), tooComplex);
    if (!tooComplex) {
        QVERIFY(QRegExp(pattern).isValid());
    }
}

void PatternComplexityTest::wildcardsAreJudgedByTheirStars_data()
{
    QTest::addColumn<QString>("pattern");
    QTest::addColumn<bool>("tooComplex");

    const auto text = [](const char* pattern) { return QString::fromLatin1(pattern); };
    QTest::newRow("a beginning") << text("rec*") << false;
    QTest::newRow("a few") << text("*a*[b-d]*?.*") << false;
    QTest::newRow("100 stars in a row") << text("*").repeated(100) << false;
    QTest::newRow("1,000 stars in a row") << text("*").repeated(1000) << true;
    QTest::newRow("1,000 stars between letters") << text("a*").repeated(1000) << false;
    QTest::newRow("1,000 question marks") << text("?").repeated(1000) << false;
    QTest::newRow("what would be a repetition") << text("((a{1,900}){1,900}){1,900}") << false;
}

void PatternComplexityTest::wildcardsAreJudgedByTheirStars()
{
    QFETCH(QString, pattern);
    QFETCH(bool, tooComplex);
    QCOMPARE(isTooComplex(pattern, QRegExp::Wildcard), tooComplex);
    QCOMPARE(isTooComplex(pattern, QRegExp::WildcardUnix), tooComplex);
    if (!tooComplex) {
        QVERIFY(QRegExp(pattern, Qt::CaseSensitive, QRegExp::Wildcard).isValid());
    }
}

void PatternComplexityTest::noFixedStringIsTooComplex()
{
    for (const QString& pattern : {QStringLiteral("(a{1000}){1000}"), QString(32'767, u'('), QString(32'767, u'*')}) {
        QVERIFY(!isTooComplex(pattern, QRegExp::FixedString));
    }
}

void PatternComplexityTest::whatCanBeTypedAsATextCanBeBorne_data()
{
    QTest::addColumn<QString>("piece");

    QTest::newRow("letters") << QStringLiteral("x");
    QTest::newRow("words with choices between them") << QStringLiteral("word|");
    QTest::newRow("any characters") << QStringLiteral(".");
    QTest::newRow("digits") << QStringLiteral("\\d");
    QTest::newRow("sets") << QStringLiteral("[a-z]");
    QTest::newRow("letters between those that may be missing") << QStringLiteral("ab?");
    QTest::newRow("brackets") << QStringLiteral("(a)");
}

void PatternComplexityTest::whatCanBeTypedAsATextCanBeBorne()
{
    QFETCH(QString, piece);
    const QString pattern = piece.repeated(ZELKO_XML::StringFilter::longestPattern / piece.size());
    QVERIFY(!isTooComplex(pattern, QRegExp::RegExp));
    QVERIFY(QRegExp(pattern).isValid());
}

void PatternComplexityTest::bracketsMayBeNestedAHundredDeep()
{
    for (const QString& opening : {QStringLiteral("("), QStringLiteral("(?:"), QStringLiteral("a(b|")}) {
        const auto nested = [&opening](int depth) { return opening.repeated(depth) + u'c' + QString(depth, u')'); };
        QVERIFY(!isTooComplex(nested(100), QRegExp::RegExp));
        QVERIFY(QRegExp(nested(100)).isValid());
        QVERIFY(isTooComplex(nested(101), QRegExp::RegExp));
        QVERIFY(isTooComplex(nested(30'000), QRegExp::RegExp));
        QVERIFY(isTooComplex(opening.repeated(30'000), QRegExp::RegExp));
    }
    QVERIFY(!isTooComplex(QStringLiteral("(a)").repeated(1000), QRegExp::RegExp));
}

void PatternComplexityTest::repetitionsThatAreNoNumbersCountAsTheMost()
{
    QVERIFY(isTooComplex(QStringLiteral("(a{99999999999999999999}){1000}"), QRegExp::RegExp));
    QVERIFY(isTooComplex(QStringLiteral("(a{0,99999999999999999999}){1000}"), QRegExp::RegExp));
    QVERIFY(!isTooComplex(QStringLiteral("a{99999999999999999999}"), QRegExp::RegExp));
}

void PatternComplexityTest::anyTextIsReadToItsEnd_data()
{
    QTest::addColumn<quint32>("seed");
    for (const quint32 seed : {1U, 2U, 3U}) {
        QTest::addRow("random texts %u", seed) << seed;
    }
}

// Right or wrong, as QRegExp itself finds out of those that it gets.
void PatternComplexityTest::anyTextIsReadToItsEnd()
{
    QFETCH(quint32, seed);
    QRandomGenerator random(seed);
    const QString signs = QStringLiteral("ab0179xbB\\\\((()))[[]]^$?*+{{{}},|=!:.");
    for (int i = 0; i < 20'000; ++i) {
        QString pattern(random.bounded(1, 12), Qt::Uninitialized);
        for (QChar& c : pattern) {
            c = signs[random.bounded(static_cast<int>(signs.size()))];
        }
        QVERIFY2(!isTooComplex(pattern, QRegExp::Wildcard), qPrintable(pattern));
        if (!isTooComplex(pattern, QRegExp::RegExp)) {
            QRegExp(pattern).isValid();
        }
    }
}

QTEST_APPLESS_MAIN(PatternComplexityTest)
#include "tst_patterncomplexity.moc"
