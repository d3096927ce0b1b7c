#include <zelkoguibase/filter/extendedfilterdialog.h>

#include "filterdocument.h"
#include "filterfolder.h"
#include "filterwindow.h"
#include "markingtranslator.h"
#include "readonlyfolder.h"
#include "tracetexts.h"
#include "windowsignals.h"

using namespace filterdocument;
using Dialog = ZelkoGUI::Filter::ExtendedFilterDialog;

/// What is no filter file is refused with a warning, and no filter changes.
class FilterFileRefusalTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { m_folder = std::make_unique<FilterFolder>(); }

    void aForeignIdIsRefused();
    void aDocumentOfAnotherClassIsRefused();
    void whatIsNoFilterFileIsRefused_data();
    void whatIsNoFilterFileIsRefused();
    void aPatternThatIsTooComplexIsRefused_data();
    void aPatternThatIsTooComplexIsRefused();
    void aFileOfAHundredMegabytesIsRefused();
    void everyTruncatedFileIsRefused();
    void aFileThatCannotBeReadIsRefused();
    void theWarningShowsWhatTheFileSaysAsPlainText();
    void theWarningIsTranslated_data();
    void theWarningIsTranslated();

private:
    QString file() const { return m_folder->file(); }
    void write(const QByteArray& bytes) const { m_folder->write(bytes); }
    void requireRefusal(const QString& text, bool hasReason, const QString& fileName) const;
    void requireRefusalAsForeign() const
    {
        requireRefusal(QStringLiteral("filter file is not applicable"), false, file());
    }
    void requireRefusalWithReason() const { requireRefusal(m_failure + file(), true, file()); }

    const QString m_failure = QStringLiteral("filter could not be loaded from ");
    std::unique_ptr<FilterFolder> m_folder;
};

// Restores that file in a window in which something was entered.
void FilterFileRefusalTest::requireRefusal(const QString& text, bool hasReason, const QString& fileName) const
{
    FilterWindow window;
    window.type(QStringLiteral("NameFilterWidget"), QStringLiteral("TextEdit"), QStringLiteral("band"));
    window.check(QStringLiteral("SizeFilterWidget"), QStringLiteral("LowerLimitCheckbox"));
    const QMap<QString, QString> before = window.state();
    WindowSignals changes(window.dialog());
    const TraceTexts traces;
    const QString warning = window.restoreFrom(fileName);
    QCOMPARE(warning, text);
    QCOMPARE(!window.lastWarning().reason.isEmpty(), hasReason);
    QCOMPARE(window.lastWarning().title, QStringLiteral("unable to load file"));
    QCOMPARE(window.lastWarning().icon, QMessageBox::Warning);
    QCOMPARE(window.lastWarning().buttons, QMessageBox::StandardButtons(QMessageBox::Ok));
    QCOMPARE(window.lastWarning().parent, &window.dialog());
    QVERIFY(traces.withSources().last().endsWith(
        QStringLiteral(": ExtendedFileDialog: Exception while loading filter ") + text));
    const QString cause = QStringLiteral("RGException: FilterConditionList:") + window.lastWarning().reason;
    QCOMPARE(traces.contain(cause), hasReason);
    QCOMPARE(changes.take(), QStringList());
    QCOMPARE(window.state(), before);
    QCOMPARE(FilterFolder::remembered(), QString());
}

void FilterFileRefusalTest::aForeignIdIsRefused()
{
    write("<FilterConditionList><ID>OtherFilter</ID>" + goodEntry + "</FilterConditionList>");
    requireRefusalAsForeign();
    write("<FilterConditionList><ID/>" + goodEntry + "</FilterConditionList>");
    requireRefusalAsForeign();
}

void FilterFileRefusalTest::aDocumentOfAnotherClassIsRefused()
{
    write("<ZELKO_RecordData/>");
    requireRefusal(m_failure + file(), false, file());
}

void FilterFileRefusalTest::whatIsNoFilterFileIsRefused_data()
{
    QTest::addColumn<QByteArray>("document");

    QTest::newRow("nothing") << QByteArray();
    QTest::newRow("no XML") << QByteArray("filter");
    QTest::newRow("bytes") << QByteArray("\x00\xff\xfe\x01", 4);
    QTest::newRow("an entity") << QByteArray("<!DOCTYPE x [<!ENTITY e 'e'>]><FilterConditionList/>");
    QTest::newRow("an unknown element") << documentWith(goodEntry + "<Colour>red</Colour>");
    QTest::newRow("an unknown element in an entry")
        << documentWith(goodEntry + entry("IDFilter", 7, "<Colour>red</Colour>"));
    QTest::newRow("an unknown kind") << documentWith(goodEntry + entry("IDFilter", 7, "<DateFilter/>"));
    QTest::newRow("an entry without a kind") << documentWith(goodEntry + entry("IDFilter", 7, ""));
    QTest::newRow("a huge limit") << documentWith(goodEntry + entry("SizeUpperLimit", 1, limit("Double", "1e999")));
    QTest::newRow("a huge moment") << documentWith(
        goodEntry + entry("StartTimeLowerLimit", 2, limit("DateTime", "9223372036854775808")));
    QTest::newRow("a huge enumerator") << documentWith(
        goodEntry + entry("StatusFilter", 8, "<EnumFilter><EnumValue>2147483648</EnumValue></EnumFilter>"));
    QTest::newRow("a huge column") << documentWith(
        goodEntry + QByteArray("<FilterCondition><Column>4294967297</Column><Role>33</Role><EnumFilter/>"
                               "</FilterCondition>"));
    QTest::newRow("a word for a number") << documentWith(goodEntry +
                                                         entry("SizeUpperLimit", 1, limit("Double", "much")));
    QTest::newRow("a number for a duration")
        << documentWith(goodEntry + entry("DurationUpperLimit", 4, limit("Time", "7")));
    QTest::newRow("a word for a flag") << documentWith(
        goodEntry + entry("DeletableFlag", 12, "<BooleanFilter><TestValue>perhaps</TestValue></BooleanFilter>"));
    QTest::newRow("an unknown type") << documentWith(goodEntry + entry("SizeUpperLimit", 1, limit("Complex", "1")));
    QTest::newRow("a pattern without an end")
        << documentWith(goodEntry + entry("IDFilter", 7,
                                          "<StringFilter><Pattern>" + QByteArray(40'000, 'x') +
                                              "</Pattern><CaseSensitive>true</CaseSensitive></StringFilter>"));
}

void FilterFileRefusalTest::whatIsNoFilterFileIsRefused()
{
    QFETCH(QByteArray, document);
    write(document);
    requireRefusalWithReason();
}

void FilterFileRefusalTest::aPatternThatIsTooComplexIsRefused_data()
{
    QTest::addColumn<QByteArray>("name");
    QTest::addColumn<QByteArray>("filter");

    const auto filter = [](const QByteArray& pattern, const QByteArray& syntax) {
        return "<StringFilter><Pattern>" + pattern + "</Pattern><CaseSensitive>true</CaseSensitive><PatternSyntax>" +
               syntax + "</PatternSyntax></StringFilter>";
    };
    const QByteArray nested = "((a{1,50}){1,50}){1,50}";
    QTest::newRow("for a row of the window") << QByteArray("IDFilter") << filter(nested, "RegularExpression");
    QTest::newRow("for nobody") << QByteArray("OtherFilter") << filter(nested, "RegularExpression");
    QTest::newRow("for a filter of a long name") << QByteArray(9'000, 'n') << filter(nested, "RegularExpression");
    QTest::newRow("brackets in brackets")
        << QByteArray("IDFilter") << filter(QByteArray(16'000, '('), "RegularExpression");
    QTest::newRow("stars") << QByteArray("IDFilter") << filter(QByteArray(32'000, '*'), "Wildcard");
}

void FilterFileRefusalTest::aPatternThatIsTooComplexIsRefused()
{
    QFETCH(QByteArray, name);
    QFETCH(QByteArray, filter);
    write(documentWith(goodEntry + entry(name, 7, filter)));
    requireRefusalWithReason();
    FilterWindow window;
    window.restoreFrom(file());
    const QString reason = window.lastWarning().reason;
    QVERIFY2(reason.startsWith(QStringLiteral("the pattern of ") + QString::fromLatin1(name.left(100))),
             qPrintable(reason));
    QVERIFY2(reason.size() < 400, qPrintable(reason));
}

void FilterFileRefusalTest::aFileOfAHundredMegabytesIsRefused()
{
    write(documentWith(goodEntry));
    QFile target(file());
    QVERIFY(target.open(QIODevice::Append));
    const QByteArray spaces(1024 * 1024, ' ');
    for (int i = 0; i < 100; ++i) {
        QCOMPARE(target.write(spaces), spaces.size());
    }
    target.close();
    requireRefusalWithReason();
}

void FilterFileRefusalTest::everyTruncatedFileIsRefused()
{
    FilterWindow window(Dialog::NameColumn | Dialog::SizeColumn);
    window.type(QStringLiteral("NameFilterWidget"), QStringLiteral("TextEdit"), QStringLiteral("band"));
    window.saveAs(file());
    QFile whole(file());
    QVERIFY(whole.open(QIODevice::ReadOnly));
    const QByteArray bytes = whole.readAll().trimmed();
    window.resetAll();
    const QMap<QString, QString> before = window.state();
    for (qsizetype size = 0; size < bytes.size(); size += bytes.size() / 12) {
        write(bytes.first(size));
        QVERIFY(!window.restoreFrom(file()).isEmpty());
        QCOMPARE(window.state(), before);
    }
    write(bytes.chopped(1));
    QVERIFY(!window.restoreFrom(file()).isEmpty());
    QCOMPARE(window.state(), before);
}

void FilterFileRefusalTest::theWarningShowsWhatTheFileSaysAsPlainText()
{
    const QByteArray name = QByteArray("img") + QByteArray(5'000, 'g');
    write(documentWith(goodEntry + "<" + name + "/>"));
    FilterWindow window;
    QCOMPARE(window.restoreFrom(file()), m_failure + file());
    QCOMPARE(window.lastWarning().format, Qt::PlainText);
    const QString reason = window.lastWarning().reason;
    QVERIFY2(reason.contains(QStringLiteral("imgg")), qPrintable(reason));
    QVERIFY2(reason.size() < 400, qPrintable(reason));
}

void FilterFileRefusalTest::theWarningIsTranslated_data()
{
    QTest::addColumn<QByteArray>("document");
    QTest::addColumn<QString>("text");

    QTest::newRow("no XML") << QByteArray("filter") << QStringLiteral("<filter could not be loaded from >%1");
    QTest::newRow("a foreign document") << QByteArray("<FilterConditionList><ID>OtherFilter</ID></FilterConditionList>")
                                        << QStringLiteral("<filter file is not applicable>");
}

void FilterFileRefusalTest::theWarningIsTranslated()
{
    QFETCH(QByteArray, document);
    QFETCH(QString, text);
    write(document);
    const ZelkoTest::MarkingTranslator translator("ZelkoGUI::Filter::ExtendedFilterDialog");
    FilterWindow window;
    QCOMPARE(window.restoreFrom(file()), text.contains(QLatin1Char('%')) ? text.arg(file()) : text);
    QCOMPARE(window.lastWarning().title, QStringLiteral("<unable to load file>"));
}

void FilterFileRefusalTest::aFileThatCannotBeReadIsRefused()
{
    const QString folder = m_folder->makeFolder(QStringLiteral("locked"));
    const QString name = QStringLiteral("locked/filter.xml");
    m_folder->write(documentWith(goodEntry), name);
    QVERIFY(QFile::setPermissions(m_folder->file(name), {}));
    const ZelkoTest::ReadOnlyFolder asNobody(folder);
    requireRefusal(m_failure + m_folder->file(name), false, m_folder->file(name));
}

QTEST_MAIN(FilterFileRefusalTest)
#include "tst_filterfilerefusal.moc"
