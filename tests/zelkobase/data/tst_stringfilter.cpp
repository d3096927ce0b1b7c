#include <zelkobase/data/stringfilter.h>

#include <QtTest>

using ZELKO_XML::StringFilter;
using Syntax = StringFilter::PatternSyntax;

class StringFilterTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void theNumbersOfTheSyntaxesAreThoseOfFiles();
    void aSyntaxThatWasNotSetIsTheFixedString();
    void patternsThatADocumentCanKeep_data();
    void patternsThatADocumentCanKeep();
    void patternsThatADocumentCannotKeep_data();
    void patternsThatADocumentCannotKeep();

private:
    static StringFilter filterFor(const QString& pattern)
    {
        StringFilter filter;
        filter.SetPattern(pattern);
        filter.SetCaseSensitive(true);
        return filter;
    }
};

void StringFilterTest::theNumbersOfTheSyntaxesAreThoseOfFiles()
{
    QCOMPARE(static_cast<int>(Syntax::FixedString), 0);
    QCOMPARE(static_cast<int>(Syntax::Wildcard), 1);
    QCOMPARE(static_cast<int>(Syntax::RegularExpression), 2);
    QCOMPARE(StringFilter::GetGUIPatternSyntaxs(),
             QStringList(
                 {QStringLiteral("Fixed String"), QStringLiteral("Wildcard"), QStringLiteral("Regular Expression")}));
}

void StringFilterTest::aSyntaxThatWasNotSetIsTheFixedString()
{
    const StringFilter filter = filterFor(QStringLiteral("x"));
    filter.Check();
    QCOMPARE(filter.GetPatternSyntax(), Syntax::FixedString);
}

void StringFilterTest::patternsThatADocumentCanKeep_data()
{
    QTest::addColumn<QString>("pattern");

    QTest::newRow("none") << QString();
    QTest::newRow("blanks") << QStringLiteral("  \t ");
    QTest::newRow("what XML marks up with") << QStringLiteral("<a b=\"c\">&amp;]]>'");
    QTest::newRow("an expression") << QStringLiteral("^\\d+(\\.[^x]*)?$");
    QTest::newRow("what looks like an escape") << QStringLiteral("\\u0041");
    QTest::newRow("a line feed") << QStringLiteral("two\nlines");
    QTest::newRow("a character of two units") << QStringLiteral("\U0001F4E1");
    QTest::newRow("the longest") << QString(StringFilter::longestPattern, u'x');
}

void StringFilterTest::patternsThatADocumentCanKeep()
{
    QFETCH(QString, pattern);
    QVERIFY(StringFilter::IsValidPattern(pattern));
    const StringFilter filter = filterFor(pattern);
    StringFilter back;
    QVERIFY(back.SetXmlString(filter.GetXmlString(), true));
    QCOMPARE(back.GetPattern(), pattern);
    QVERIFY(back == filter);
}

void StringFilterTest::patternsThatADocumentCannotKeep_data()
{
    QTest::addColumn<QString>("pattern");

    QTest::newRow("the first half of a character") << QString(QChar(0xD83D));
    QTest::newRow("the second half of a character") << QString(QChar(0xDCE1));
    QTest::newRow("a zero") << QString(QChar(0));
    QTest::newRow("a bell") << QStringLiteral("\a");
    QTest::newRow("a carriage return") << QStringLiteral("two\r\nlines");
    QTest::newRow("no character") << QString(QChar(0xFFFE));
    QTest::newRow("one unit too long") << QString(StringFilter::longestPattern + 1, u'x');
}

void StringFilterTest::patternsThatADocumentCannotKeep()
{
    QFETCH(QString, pattern);
    QVERIFY(!StringFilter::IsValidPattern(pattern));
    QVERIFY(!filterFor(pattern).Check(false));
}

QTEST_APPLESS_MAIN(StringFilterTest)
#include "tst_stringfilter.moc"
