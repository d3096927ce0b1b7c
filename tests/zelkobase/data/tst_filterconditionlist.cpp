#include <zelkobase/data/filterconditionlist.h>

#include "filterdocument.h"
#include "filterschema.h"

#include <reportcore/rgexception.h>

#include <QTemporaryDir>
#include <QtTest>

#include <limits>

using namespace ZELKO_XML;
using filterdocument::documentWith;

namespace {

using Comparator = NumberFilter::Comparator;
using Type = NumberFilter::Type;

FilterCondition unnamed(int column)
{
    FilterCondition entry;
    entry.SetColumn(column);
    entry.SetRole(Qt::UserRole + 1);
    return entry;
}

FilterCondition named(const QString& name, int column)
{
    FilterCondition entry = unnamed(column);
    entry.SetName(name);
    entry.SetEnabled(true);
    return entry;
}

FilterCondition textEntry(const QString& pattern, StringFilter::PatternSyntax syntax)
{
    StringFilter filter;
    filter.SetPattern(pattern);
    filter.SetCaseSensitive(false);
    filter.SetPatternSyntax(syntax);
    FilterCondition entry = named(QStringLiteral("NameFilter"), 0);
    entry.SetStringFilter(filter);
    return entry;
}

FilterCondition numberEntry(Type type, Comparator comparator, const QString& value)
{
    NumberFilter filter;
    filter.SetType(type);
    filter.SetComparator(comparator);
    filter.SetFilterValue(value);
    FilterCondition entry = named(QStringLiteral("SizeLowerLimit"), 1);
    entry.SetNumberFilter(filter);
    return entry;
}

FilterCondition flagEntry()
{
    BooleanFilter filter;
    filter.SetTestValue(false);
    FilterCondition entry = unnamed(12);
    entry.SetBooleanFilter(filter);
    return entry;
}

FilterCondition enumEntry(const QVector<int>& values)
{
    EnumFilter filter;
    filter.SetEnumValue(values);
    FilterCondition entry = named(QStringLiteral("StatusFilter"), 8);
    entry.SetEnumFilter(filter);
    return entry;
}

FilterConditionList withEntries(const QVector<FilterCondition>& entries)
{
    FilterConditionList list;
    list.SetID(QStringLiteral("ExtendedRecordListFilter"));
    list.SetFilterCondition(entries);
    return list;
}

FilterConditionList listOfEachKind()
{
    return withEntries({textEntry(QStringLiteral("<a>&\"]]>\\u0041\n "), StringFilter::PatternSyntax::Wildcard),
                        textEntry(QString(), StringFilter::PatternSyntax::RegularExpression),
                        numberEntry(Type::Double, Comparator::Equal, QStringLiteral("1.04858e+06")),
                        numberEntry(Type::Double, Comparator::Less, QStringLiteral("nan")),
                        numberEntry(Type::Int, Comparator::Greater, QStringLiteral("-5")),
                        numberEntry(Type::Time, Comparator::LessOrEqual, QStringLiteral("00:01:02.003")),
                        numberEntry(Type::Time, Comparator::GreaterOrEqual, QString()),
                        numberEntry(Type::DateTime, Comparator::NotEqual, QStringLiteral("1767323045678")), flagEntry(),
                        enumEntry({}),
                        enumEntry({std::numeric_limits<int>::max(), 0, std::numeric_limits<int>::min()})});
}

QByteArray entryWith(const QByteArray& filter)
{
    return "<FilterCondition><Column>1</Column><Role>257</Role>" + filter + "</FilterCondition>";
}

QByteArray numberWith(const QByteArray& type, const QByteArray& comparator, const QByteArray& value)
{
    return documentWith(entryWith(filterdocument::limit(type, value, comparator)));
}

const QByteArray flag = "<BooleanFilter><TestValue>true</TestValue></BooleanFilter>";

} // namespace

class FilterConditionListTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();

    void theNumbersOfTypesAndComparatorsAreThoseOfFiles();
    void whatIsWrittenIsReadAgain();
    void whatIsWrittenObeysTheSchema_data();
    void whatIsWrittenObeysTheSchema();
    void anEntryHoldsExactlyOneFilter();
    void theOrderOfElementsDoesNotMatter();
    void aListWithoutAnIdIsAccepted();
    void anotherIdIsReadForWhoeverComparesIt();
    void whatCannotBeIsRefused_data();
    void whatCannotBeIsRefused();
    void whatASchemaCannotTellIsRefused_data();
    void whatASchemaCannotTellIsRefused();
    void everyTruncatedFileIsRefused();
    void aFileOfAHundredMegabytesIsRefused();
    void aMissingFileIsNotRead();
    void aListThatCannotBeWrittenLeavesTheFileAlone();

private:
    QString file() const { return m_folder->filePath(QStringLiteral("filter.xml")); }
    void write(const QByteArray& bytes) const;
    void requireRefusal() const;
    bool obeysSchema() const { return ZelkoTest::objectionsOfFilterSchema(file()).isEmpty(); }

    std::unique_ptr<QTemporaryDir> m_folder;
};

void FilterConditionListTest::init()
{
    m_folder = std::make_unique<QTemporaryDir>();
}

void FilterConditionListTest::write(const QByteArray& bytes) const
{
    QFile target(file());
    QVERIFY(target.open(QIODevice::WriteOnly) && target.write(bytes) == bytes.size());
}

void FilterConditionListTest::requireRefusal() const
{
    const FilterConditionList before = listOfEachKind();
    FilterConditionList list = before;
    bool loaded = false;
    try {
        loaded = list.LoadXml(file());
    } catch (const RGException&) {
    }
    QVERIFY(!loaded);
    QVERIFY(list == before);
}

void FilterConditionListTest::theNumbersOfTypesAndComparatorsAreThoseOfFiles()
{
    QCOMPARE(static_cast<int>(Type::Double), 0);
    QCOMPARE(static_cast<int>(Type::Int), 1);
    QCOMPARE(static_cast<int>(Type::Time), 3);
    QCOMPARE(static_cast<int>(Type::DateTime), 4);
    QCOMPARE(
        NumberFilter::GetComparators(),
        QStringList({QStringLiteral("Equal"), QStringLiteral("Less"), QStringLiteral("Greater"),
                     QStringLiteral("LessOrEqual"), QStringLiteral("GreaterOrEqual"), QStringLiteral("NotEqual")}));
}

void FilterConditionListTest::whatIsWrittenIsReadAgain()
{
    const FilterConditionList list = listOfEachKind();
    QVERIFY(list.SaveXml(file()));
    FilterConditionList back;
    QVERIFY(back.LoadXml(file()));
    QVERIFY(back == list);
    QVERIFY(!back.GetFilterCondition().at(8).IsNameSet());
    QVERIFY(!back.GetFilterCondition().at(8).IsEnabledSet());
    QVERIFY(back.GetFilterCondition().at(9).IsEnumFilterSet());
    QVERIFY(!back.GetFilterCondition().at(9).GetEnumFilter().IsEnumValueSet());
}

void FilterConditionListTest::whatIsWrittenObeysTheSchema_data()
{
    QTest::addColumn<FilterConditionList>("list");

    FilterConditionList withoutId = listOfEachKind();
    withoutId.ResetID();
    QTest::newRow("entries of each kind") << listOfEachKind();
    QTest::newRow("no entries") << withEntries({});
    QTest::newRow("no ID") << withoutId;
    QTest::newRow("nothing") << FilterConditionList();
    FilterCondition plain = unnamed(0);
    plain.GetStringFilter().SetPattern(QStringLiteral("x"));
    plain.GetStringFilter().SetCaseSensitive(true);
    QTest::newRow("a pattern without a syntax") << withEntries({plain});
}

void FilterConditionListTest::whatIsWrittenObeysTheSchema()
{
    QFETCH(FilterConditionList, list);
    QVERIFY(list.SaveXml(file()));
    QVERIFY(obeysSchema());
}

void FilterConditionListTest::anEntryHoldsExactlyOneFilter()
{
    FilterCondition entry = unnamed(3);
    QVERIFY(!entry.Check(false));
    entry.GetBooleanFilter().SetTestValue(true);
    QVERIFY(entry.Check(false));
    entry.SetEnumFilter({});
    QVERIFY(!entry.Check(false));
    entry.ResetBooleanFilter();
    QVERIFY(entry.Check(false));
}

void FilterConditionListTest::theOrderOfElementsDoesNotMatter()
{
    write("<FilterConditionList><FilterCondition>" + flag +
          "<Role>257</Role><Column>12</Column></FilterCondition></FilterConditionList>");
    FilterConditionList list;
    QVERIFY(list.LoadXml(file()));
    QCOMPARE(list.GetFilterCondition().size(), 1);
    QCOMPARE(list.GetFilterCondition().constFirst().GetColumn(), 12);
}

void FilterConditionListTest::aListWithoutAnIdIsAccepted()
{
    write("<FilterConditionList>" + entryWith(flag) + "</FilterConditionList>");
    FilterConditionList list;
    QVERIFY(list.LoadXml(file()));
    QVERIFY(!list.IsIDSet());
    QVERIFY(obeysSchema());
}

// Which of its filters a file is for is not known here, but to the window that reads it.
void FilterConditionListTest::anotherIdIsReadForWhoeverComparesIt()
{
    write("<FilterConditionList><ID>Something else</ID></FilterConditionList>");
    FilterConditionList list;
    QVERIFY(list.LoadXml(file()));
    QCOMPARE(list.GetID(), QStringLiteral("Something else"));
    QVERIFY(!obeysSchema());
}

void FilterConditionListTest::whatCannotBeIsRefused_data()
{
    QTest::addColumn<QByteArray>("document");

    QTest::newRow("nothing") << QByteArray();
    QTest::newRow("no XML") << QByteArray("filter");
    QTest::newRow("another document") << QByteArray("<ZELKO_RecordData/>");
    QTest::newRow("two IDs") << documentWith("<ID>ExtendedRecordListFilter</ID>");
    QTest::newRow("an unknown element in the list") << documentWith("<Filter/>");
    QTest::newRow("an unknown element in an entry") << documentWith(entryWith(flag + "<Colour>red</Colour>"));
    QTest::newRow("an unknown kind") << documentWith(entryWith("<DateFilter/>"));
    QTest::newRow("an unknown element in a kind")
        << documentWith(entryWith("<EnumFilter><Value>1</Value></EnumFilter>"));
    QTest::newRow("text between the elements") << documentWith("filters");
    QTest::newRow("an entry without a kind") << documentWith(entryWith(""));
    QTest::newRow("an entry of two kinds") << documentWith(entryWith(flag + "<EnumFilter/>"));
    QTest::newRow("one kind twice") << documentWith(entryWith(flag + flag));
    QTest::newRow("an entry without a column")
        << documentWith("<FilterCondition><Role>257</Role>" + flag + "</FilterCondition>");
    QTest::newRow("an entry without a role")
        << documentWith("<FilterCondition><Column>1</Column>" + flag + "</FilterCondition>");
    QTest::newRow("a word for a column") << documentWith("<FilterCondition><Column>Size</Column><Role>257</Role>" +
                                                         flag + "</FilterCondition>");
    QTest::newRow("a huge column") << documentWith("<FilterCondition><Column>4294967297</Column><Role>257</Role>" +
                                                   flag + "</FilterCondition>");
    QTest::newRow("no word for a flag") << documentWith(
        entryWith("<BooleanFilter><TestValue>yes</TestValue></BooleanFilter>"));
    QTest::newRow("an empty flag") << documentWith(entryWith("<BooleanFilter><TestValue/></BooleanFilter>"));
    QTest::newRow("a filter without a flag") << documentWith(entryWith("<BooleanFilter/>"));
    QTest::newRow("a huge enumerator") << documentWith(
        entryWith("<EnumFilter><EnumValue>99999999999999999999</EnumValue></EnumFilter>"));
    QTest::newRow("a word for an enumerator")
        << documentWith(entryWith("<EnumFilter><EnumValue>Finished</EnumValue></EnumFilter>"));
    QTest::newRow("a pattern without a case")
        << documentWith(entryWith("<StringFilter><Pattern>x</Pattern></StringFilter>"));
    QTest::newRow("an unknown syntax") << documentWith(
        entryWith("<StringFilter><Pattern>x</Pattern><CaseSensitive>1</CaseSensitive>"
                  "<PatternSyntax>Perl</PatternSyntax></StringFilter>"));
    QTest::newRow("an unknown type") << numberWith("Complex", "Equal", "1");
    QTest::newRow("an unknown comparator") << numberWith("Double", "Near", "1");
    QTest::newRow("a limit without a value")
        << documentWith(entryWith("<NumberFilter><Type>Time</Type><Comparator>Less</Comparator></NumberFilter>"));
    QTest::newRow("the reserved type") << numberWith("Reserved", "Equal", "1");
}

void FilterConditionListTest::whatCannotBeIsRefused()
{
    QFETCH(QByteArray, document);
    write(document);
    requireRefusal();
    QVERIFY(!obeysSchema());
}

void FilterConditionListTest::whatASchemaCannotTellIsRefused_data()
{
    QTest::addColumn<QByteArray>("document");

    QTest::newRow("a number that is a word") << numberWith("Double", "Equal", "abc");
    QTest::newRow("a number beyond all numbers") << numberWith("Double", "Equal", "1e999");
    QTest::newRow("an empty number") << numberWith("Double", "Equal", "");
    QTest::newRow("a fraction for a whole number") << numberWith("Int", "Equal", "1.5");
    QTest::newRow("a number for a time") << numberWith("Time", "Less", "7");
    QTest::newRow("a moment beyond 64 bits") << numberWith("DateTime", "Less", "9223372036854775808");
    QTest::newRow("a pattern that is too long")
        << documentWith(entryWith("<StringFilter><Pattern>" + QByteArray(StringFilter::longestPattern + 1, 'x') +
                                  "</Pattern><CaseSensitive>1</CaseSensitive></StringFilter>"));
    QTest::newRow("a pattern with half a character")
        << documentWith(entryWith("<StringFilter><Pattern>\\ud800</Pattern><CaseSensitive>1</CaseSensitive>"
                                  "</StringFilter>"));
}

void FilterConditionListTest::whatASchemaCannotTellIsRefused()
{
    QFETCH(QByteArray, document);
    write(document);
    requireRefusal();
}

void FilterConditionListTest::everyTruncatedFileIsRefused()
{
    QVERIFY(listOfEachKind().SaveXml(file()));
    QFile whole(file());
    QVERIFY(whole.open(QIODevice::ReadOnly));
    const QByteArray bytes = whole.readAll().trimmed();
    for (qsizetype size = 0; size < bytes.size(); size += 7) {
        write(bytes.first(size));
        requireRefusal();
    }
    write(bytes.chopped(1));
    requireRefusal();
}

void FilterConditionListTest::aFileOfAHundredMegabytesIsRefused()
{
    QFile target(file());
    QVERIFY(target.open(QIODevice::WriteOnly));
    target.write("<FilterConditionList><ID>");
    const QByteArray piece(1024 * 1024, 'x');
    for (int i = 0; i < 100; ++i) {
        QCOMPARE(target.write(piece), piece.size());
    }
    target.write("</ID></FilterConditionList>");
    target.close();
    requireRefusal();
}

void FilterConditionListTest::aMissingFileIsNotRead()
{
    requireRefusal();
}

void FilterConditionListTest::aListThatCannotBeWrittenLeavesTheFileAlone()
{
    QVERIFY(listOfEachKind().SaveXml(file()));
    const FilterConditionList impossible =
        withEntries({numberEntry(Type::Double, Comparator::Less, QStringLiteral("12:00"))});
    QVERIFY_EXCEPTION_THROWN(impossible.SaveXml(file()), RGException);
    FilterConditionList back;
    QVERIFY(back.LoadXml(file()));
    QVERIFY(back == listOfEachKind());
}

QTEST_APPLESS_MAIN(FilterConditionListTest)
#include "tst_filterconditionlist.moc"
