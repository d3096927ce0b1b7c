#include "conditionsignallog.h"

#include <zelkoguibase/filter/stringfiltercondition.h>

#include <zelkobase/data/filterconditionlist.h>

#include <QtTest>

using namespace ZelkoGUI::Filter;
using ZELKO_XML::FilterConditionList;
using FileSyntax = ZELKO_XML::StringFilter::PatternSyntax;

Q_DECLARE_METATYPE(QRegExp::PatternSyntax)
Q_DECLARE_METATYPE(FileSyntax)

namespace {

// Of 125,000 characters when written out.
const QString nestedRepetitions = QStringLiteral("((a{1,50}){1,50}){1,50}");

} // namespace

class StringFilterConditionTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void startsSwitchedOffWithoutAPattern();
    void passesWhatHoldsThePattern_data();
    void passesWhatHoldsThePattern();
    void readsCellsOfEachTypeAsTexts_data();
    void readsCellsOfEachTypeAsTexts();
    void anEmptyPatternPassesEverythingAndIsNotActive();
    void everythingPassesWhileSwitchedOff();
    void aNewPatternIsUsedAtOnce();
    void whatIsNoCorrectExpressionPassesNothing_data();
    void whatIsNoCorrectExpressionPassesNothing();
    void aPatternThatIsTooComplexIsAFixedStringLikeAnyOther();
    void settersTellChangesOnly();
    void settersAreSilentWhileSwitchedOff();
    void oneSignalForThreeChanges();
    void theThreeSyntaxesHaveNumbersInFiles_data();
    void theThreeSyntaxesHaveNumbersInFiles();
    void aSyntaxThatFilesDoNotKnowIsNotWritten();
    void anUnknownSyntaxIsReadAsAFixedString();
    void aPatternThatNoFileCanKeepIsWrittenEmpty();
    void aPatternThatIsTooComplexIsWrittenEmpty();
    void aPatternThatIsTooComplexIsTakenFromAnEntry();
    void restoresPatternCaseAndSyntaxWithOneSignal();

private:
    static std::unique_ptr<StringFilterCondition> switchedOn(const QString& pattern, QRegExp::PatternSyntax syntax,
                                                             Qt::CaseSensitivity cs = Qt::CaseSensitive)
    {
        auto condition = std::make_unique<StringFilterCondition>(0, Qt::UserRole + 1, nullptr);
        condition->setRegExp(pattern, cs, syntax);
        condition->setEnabled(true);
        return condition;
    }

    static ZELKO_XML::StringFilter written(const StringFilterCondition& condition)
    {
        FilterConditionList list;
        condition.writeToXml(list);
        return list.GetFilterCondition().constLast().GetStringFilter();
    }
};

void StringFilterConditionTest::startsSwitchedOffWithoutAPattern()
{
    QObject parent;
    auto* const condition = new StringFilterCondition(3, 33, &parent);
    QCOMPARE(condition->parent(), &parent);
    QCOMPARE(condition->objectName(), QStringLiteral("StringFilter"));
    QCOMPARE(condition->filterKeyColumn(), 3);
    QCOMPARE(condition->filterRole(), 33);
    QVERIFY(!condition->enabled());
    QVERIFY(!condition->filterActive());
    QCOMPARE(condition->pattern(), QString());
    QCOMPARE(condition->caseSensitive(), Qt::CaseSensitive);
    QCOMPARE(condition->patternSyntax(), QRegExp::RegExp);
}

void StringFilterConditionTest::passesWhatHoldsThePattern_data()
{
    QTest::addColumn<QString>("pattern");
    QTest::addColumn<QRegExp::PatternSyntax>("syntax");
    QTest::addColumn<Qt::CaseSensitivity>("cs");
    QTest::addColumn<QString>("cell");
    QTest::addColumn<bool>("passes");

    const auto add = [](const char* row, const char* pattern, QRegExp::PatternSyntax syntax, Qt::CaseSensitivity cs,
                        const char* cell, bool passes) {
        QTest::newRow(row) << QString::fromUtf8(pattern) << syntax << cs << QString::fromUtf8(cell) << passes;
    };
    constexpr auto asIs = Qt::CaseSensitive;
    constexpr auto anyCase = Qt::CaseInsensitive;
    add("a fixed string in the middle", "ab", QRegExp::FixedString, asIs, "xaby", true);
    add("a fixed string that is the cell", "ab", QRegExp::FixedString, asIs, "ab", true);
    add("a fixed string in another case", "ab", QRegExp::FixedString, asIs, "xAby", false);
    add("a fixed string in any case", "aB", QRegExp::FixedString, anyCase, "xAby", true);
    add("a fixed string beyond the end", "abc", QRegExp::FixedString, asIs, "xab", false);
    add("a fixed string is no expression", "a.c", QRegExp::FixedString, asIs, "abc", false);
    add("a fixed string with signs of expressions", "[a].*", QRegExp::FixedString, asIs, "x[a].*y", true);
    add("a wildcard in the middle", "a?c*e", QRegExp::Wildcard, asIs, "xabcdey", true);
    add("a wildcard that is not there", "a?c", QRegExp::Wildcard, asIs, "ac", false);
    add("an expression in the middle", "\\d{3}", QRegExp::RegExp, asIs, "at 433 MHz", true);
    add("an expression with its own anchors", "^\\d{3}$", QRegExp::RegExp, asIs, "at 433 MHz", false);
    add("an expression in any case", "mhz$", QRegExp::RegExp, anyCase, "at 433 MHz", true);
    add("an expression that is none", "(a", QRegExp::RegExp, asIs, "(a", false);
    add("an empty cell", "a", QRegExp::FixedString, asIs, "", false);
    add("an empty cell and an expression that fits it", "^$", QRegExp::RegExp, asIs, "", true);
}

void StringFilterConditionTest::passesWhatHoldsThePattern()
{
    QFETCH(QString, pattern);
    QFETCH(QRegExp::PatternSyntax, syntax);
    QFETCH(Qt::CaseSensitivity, cs);
    QFETCH(QString, cell);
    QFETCH(bool, passes);
    QCOMPARE(switchedOn(pattern, syntax, cs)->passes(cell), passes);
}

void StringFilterConditionTest::readsCellsOfEachTypeAsTexts_data()
{
    QTest::addColumn<QVariant>("cell");
    QTest::addColumn<bool>("passes");

    QTest::newRow("a whole number") << QVariant(14200) << true;
    QTest::newRow("another one") << QVariant(15) << false;
    QTest::newRow("a large number") << QVariant(quint64{420}) << true;
    QTest::newRow("a number with a fraction") << QVariant(0.42) << true;
    QTest::newRow("a date") << QVariant(QDate(2042, 1, 1)) << true;
    QTest::newRow("bytes") << QVariant(QByteArray("x42")) << true;
    QTest::newRow("a flag") << QVariant(true) << false;
    QTest::newRow("what has no text") << QVariant(QVariantMap{{QStringLiteral("42"), 42}}) << false;
    QTest::newRow("nothing") << QVariant() << false;
}

void StringFilterConditionTest::readsCellsOfEachTypeAsTexts()
{
    QFETCH(QVariant, cell);
    QFETCH(bool, passes);
    QCOMPARE(switchedOn(QStringLiteral("42"), QRegExp::FixedString)->passes(cell), passes);
    QCOMPARE(switchedOn(QStringLiteral("4[2]"), QRegExp::RegExp)->passes(cell), passes);
}

void StringFilterConditionTest::anEmptyPatternPassesEverythingAndIsNotActive()
{
    for (const auto syntax : {QRegExp::RegExp, QRegExp::Wildcard, QRegExp::FixedString}) {
        const auto condition = switchedOn(QString(), syntax);
        QVERIFY(condition->passes(QStringLiteral("text")));
        QVERIFY(condition->passes(QString()));
        QVERIFY(condition->passes(QVariant()));
        QVERIFY(condition->passes(12));
        QVERIFY(!condition->filterActive());
        condition->setPattern(QStringLiteral("x"));
        QVERIFY(condition->filterActive());
        condition->setEnabled(false);
        QVERIFY(!condition->filterActive());
    }
}

void StringFilterConditionTest::everythingPassesWhileSwitchedOff()
{
    const auto condition = switchedOn(QStringLiteral("x"), QRegExp::FixedString);
    QVERIFY(!condition->passes(QStringLiteral("y")));
    condition->setEnabled(false);
    QVERIFY(condition->passes(QStringLiteral("y")));
    QVERIFY(condition->passes(12));
    QVERIFY(condition->passes(QVariant()));
}

void StringFilterConditionTest::aNewPatternIsUsedAtOnce()
{
    const auto condition = switchedOn(QStringLiteral("A.C"), QRegExp::FixedString);
    const auto answers = [&] {
        QString texts;
        for (const char* cell : {"ABC", "abc", "A.C"}) {
            texts += condition->passes(QString::fromLatin1(cell)) ? QLatin1Char('+') : QLatin1Char('-');
        }
        return texts;
    };
    QCOMPARE(answers(), QStringLiteral("--+"));
    condition->setPatternSyntax(QRegExp::RegExp);
    QCOMPARE(answers(), QStringLiteral("+-+"));
    condition->setCaseSensitivity(Qt::CaseInsensitive);
    QCOMPARE(answers(), QStringLiteral("+++"));
    condition->setPattern(QStringLiteral("b"));
    QCOMPARE(answers(), QStringLiteral("++-"));
    condition->setPatternSyntax(QRegExp::FixedString);
    QCOMPARE(answers(), QStringLiteral("++-"));
    condition->setCaseSensitivity(Qt::CaseSensitive);
    QCOMPARE(answers(), QStringLiteral("-+-"));
}

void StringFilterConditionTest::whatIsNoCorrectExpressionPassesNothing_data()
{
    QTest::addColumn<QString>("pattern");
    QTest::addColumn<QRegExp::PatternSyntax>("syntax");

    QTest::newRow("a bracket that stays open") << QStringLiteral("(a") << QRegExp::RegExp;
    QTest::newRow("a set that stays open") << QStringLiteral("[a") << QRegExp::Wildcard;
    QTest::newRow("repetitions of repetitions") << nestedRepetitions << QRegExp::RegExp;
    QTest::newRow("ten thousand brackets") << QString(10'000, u'(') + u'a' + QString(10'000, u')') << QRegExp::RegExp;
    QTest::newRow("ten thousand stars") << QString(10'000, u'*') << QRegExp::Wildcard;
}

void StringFilterConditionTest::whatIsNoCorrectExpressionPassesNothing()
{
    QFETCH(QString, pattern);
    QFETCH(QRegExp::PatternSyntax, syntax);
    StringFilterCondition condition(0, Qt::UserRole + 1, nullptr);
    condition.setEnabled(true);
    ConditionSignalLog log(condition);
    condition.setRegExp(pattern, Qt::CaseInsensitive, syntax);
    QCOMPARE(log.take(), QStringLiteral("filter"));
    QVERIFY(condition.filterActive());
    QVERIFY(!condition.passes(QStringLiteral("a")));
    QVERIFY(!condition.passes(pattern));
    QCOMPARE(condition.pattern(), pattern);
    QCOMPARE(condition.patternSyntax(), syntax);
    condition.setPattern(pattern);
    QCOMPARE(log.take(), QString());
    condition.setPattern(QStringLiteral("a"));
    QCOMPARE(log.take(), QStringLiteral("filter"));
    QVERIFY(condition.passes(QStringLiteral("bAb")));
}

void StringFilterConditionTest::aPatternThatIsTooComplexIsAFixedStringLikeAnyOther()
{
    const auto condition = switchedOn(nestedRepetitions, QRegExp::FixedString);
    QVERIFY(condition->passes(QStringLiteral("x") + nestedRepetitions + QStringLiteral("y")));
    condition->setPatternSyntax(QRegExp::RegExp);
    QVERIFY(!condition->passes(nestedRepetitions));
    condition->setPatternSyntax(QRegExp::FixedString);
    QVERIFY(condition->passes(nestedRepetitions));
    QCOMPARE(written(*condition).GetPattern(), nestedRepetitions);
}

void StringFilterConditionTest::settersTellChangesOnly()
{
    const auto condition = switchedOn(QStringLiteral("x"), QRegExp::FixedString);
    ConditionSignalLog log(*condition);
    condition->setPattern(QStringLiteral("x"));
    condition->setCaseSensitivity(Qt::CaseSensitive);
    condition->setPatternSyntax(QRegExp::FixedString);
    condition->setRegExp(QStringLiteral("x"), Qt::CaseSensitive, QRegExp::FixedString);
    QCOMPARE(log.take(), QString());
    condition->setPattern(QStringLiteral("y"));
    QCOMPARE(log.take(), QStringLiteral("filter"));
    condition->setCaseSensitivity(Qt::CaseInsensitive);
    QCOMPARE(log.take(), QStringLiteral("filter"));
    condition->setPatternSyntax(QRegExp::Wildcard);
    QCOMPARE(log.take(), QStringLiteral("filter"));
    QCOMPARE(condition->pattern(), QStringLiteral("y"));
    QCOMPARE(condition->caseSensitive(), Qt::CaseInsensitive);
    QCOMPARE(condition->patternSyntax(), QRegExp::Wildcard);
}

void StringFilterConditionTest::settersAreSilentWhileSwitchedOff()
{
    StringFilterCondition condition(0, 33, nullptr);
    ConditionSignalLog log(condition);
    condition.setPattern(QStringLiteral("x"));
    condition.setPattern(QStringLiteral("x"));
    condition.setCaseSensitivity(Qt::CaseInsensitive);
    condition.setRegExp(QStringLiteral("y"), Qt::CaseSensitive, QRegExp::Wildcard);
    QCOMPARE(log.take(), QString());
    QCOMPARE(condition.pattern(), QStringLiteral("y"));
    condition.setEnabled(true);
    QCOMPARE(log.take(), QStringLiteral("filter"));
}

void StringFilterConditionTest::oneSignalForThreeChanges()
{
    const auto condition = switchedOn(QStringLiteral("x"), QRegExp::FixedString);
    ConditionSignalLog log(*condition);
    condition->setRegExp(QStringLiteral("y"), Qt::CaseInsensitive, QRegExp::RegExp);
    QCOMPARE(log.take(), QStringLiteral("filter"));
    condition->setRegExp(QStringLiteral("y"), Qt::CaseSensitive, QRegExp::RegExp);
    QCOMPARE(log.take(), QStringLiteral("filter"));
}

void StringFilterConditionTest::theThreeSyntaxesHaveNumbersInFiles_data()
{
    QTest::addColumn<QRegExp::PatternSyntax>("syntax");
    QTest::addColumn<int>("number");

    QTest::newRow("fixed string") << QRegExp::FixedString << 0;
    QTest::newRow("wildcard") << QRegExp::Wildcard << 1;
    QTest::newRow("regular expression") << QRegExp::RegExp << 2;
}

void StringFilterConditionTest::theThreeSyntaxesHaveNumbersInFiles()
{
    QFETCH(QRegExp::PatternSyntax, syntax);
    QFETCH(int, number);
    const auto condition = switchedOn(QStringLiteral("a*"), syntax, Qt::CaseInsensitive);
    QCOMPARE(static_cast<int>(written(*condition).GetPatternSyntax()), number);
    QCOMPARE(written(*condition).GetPattern(), QStringLiteral("a*"));
    QCOMPARE(written(*condition).GetCaseSensitive(), false);

    FilterConditionList list;
    condition->writeToXml(list);
    StringFilterCondition other(0, Qt::UserRole + 1, nullptr);
    QVERIFY(other.readFromXml(list));
    QCOMPARE(other.patternSyntax(), syntax);
    QCOMPARE(other.pattern(), QStringLiteral("a*"));
    QCOMPARE(other.caseSensitive(), Qt::CaseInsensitive);
}

void StringFilterConditionTest::aSyntaxThatFilesDoNotKnowIsNotWritten()
{
    const auto condition = switchedOn(QStringLiteral("x"), QRegExp::RegExp2);
    ZELKO_XML::StringFilter expected;
    expected.SetPattern(QStringLiteral("x"));
    expected.SetCaseSensitive(true);
    QCOMPARE(written(*condition).GetXmlString(), expected.GetXmlString());
    QVERIFY(!written(*condition).GetXmlString().contains(QStringLiteral("PatternSyntax")));
}

void StringFilterConditionTest::anUnknownSyntaxIsReadAsAFixedString()
{
    FilterConditionList list;
    switchedOn(QStringLiteral("x"), QRegExp::RegExp)->writeToXml(list);
    list.GetFilterCondition().first().GetStringFilter().SetPatternSyntax(static_cast<FileSyntax>(7));
    StringFilterCondition condition(0, Qt::UserRole + 1, nullptr);
    QVERIFY(condition.readFromXml(list));
    QCOMPARE(condition.patternSyntax(), QRegExp::FixedString);
}

void StringFilterConditionTest::aPatternThatNoFileCanKeepIsWrittenEmpty()
{
    const auto condition = switchedOn(QStringLiteral("a\ab"), QRegExp::FixedString);
    QCOMPARE(written(*condition).GetPattern(), QString());
    QVERIFY(written(*condition).Check(false));
    QCOMPARE(condition->pattern(), QStringLiteral("a\ab"));
}

void StringFilterConditionTest::aPatternThatIsTooComplexIsWrittenEmpty()
{
    const auto condition = switchedOn(nestedRepetitions, QRegExp::RegExp);
    QCOMPARE(written(*condition).GetPattern(), QString());
    QCOMPARE(written(*condition).GetPatternSyntax(), FileSyntax::RegularExpression);
    QVERIFY(!StringFilterCondition::isTooComplex(written(*condition)));
    QCOMPARE(condition->pattern(), nestedRepetitions);
}

// Files with such an entry are refused before, but a list may come from elsewhere.
void StringFilterConditionTest::aPatternThatIsTooComplexIsTakenFromAnEntry()
{
    FilterConditionList list;
    switchedOn(QStringLiteral("x"), QRegExp::RegExp)->writeToXml(list);
    ZELKO_XML::StringFilter& filter = list.GetFilterCondition().first().GetStringFilter();
    filter.SetPattern(nestedRepetitions);
    QVERIFY(StringFilterCondition::isTooComplex(filter));
    const auto condition = switchedOn(QStringLiteral("y"), QRegExp::FixedString);
    ConditionSignalLog log(*condition);
    QVERIFY(condition->readFromXml(list));
    QCOMPARE(log.take(), QStringLiteral("filter, content"));
    QCOMPARE(condition->pattern(), nestedRepetitions);
    QVERIFY(!condition->passes(QStringLiteral("a")));
}

void StringFilterConditionTest::restoresPatternCaseAndSyntaxWithOneSignal()
{
    FilterConditionList list;
    switchedOn(QStringLiteral("[xX]"), QRegExp::RegExp, Qt::CaseInsensitive)->writeToXml(list);
    const auto condition = switchedOn(QStringLiteral("y"), QRegExp::FixedString);
    ConditionSignalLog log(*condition);
    QVERIFY(condition->readFromXml(list));
    QCOMPARE(log.take(), QStringLiteral("filter, content"));
    QVERIFY(condition->passes(QStringLiteral("axb")));
    QVERIFY(!condition->passes(QStringLiteral("y")));
    QVERIFY(condition->readFromXml(list));
    QCOMPARE(log.take(), QStringLiteral("content"));
}

QTEST_APPLESS_MAIN(StringFilterConditionTest)
#include "tst_stringfiltercondition.moc"
