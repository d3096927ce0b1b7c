#include <zelkoguibase/recordlist/proxiedrecords_p.h>

#include "listedrecords.h"

#include <QSortFilterProxyModel>
#include <QtTest>

using namespace Qt::StringLiterals;
using ZelkoGUI::ProxiedRecords;

namespace {

/// The records A to H from the last to the first, without D.
struct Setting
{
    Setting()
        : source({u"A"_s, u"B"_s, u"C"_s, u"D"_s, u"E"_s, u"F"_s, u"G"_s, u"H"_s})
    {
        proxy.setSourceModel(&source);
        proxy.setFilterKeyColumn(ListedRecords::RecordIDColumn);
        proxy.setFilterRegularExpression(u"[^D]"_s);
        proxy.sort(0, Qt::DescendingOrder);
    }

    /// "0-2 5-5": the rows of the ranges.
    QString rowsOf(const QStringList& ids) const
    {
        QStringList parts;
        const QItemSelection selection = ProxiedRecords(proxy).rowsOf(ids);
        for (const QItemSelectionRange& range : selection) {
            parts << u"%1-%2"_s.arg(range.top()).arg(range.bottom());
        }
        return parts.join(u' ');
    }

    ListedRecords source;
    QSortFilterProxyModel proxy;
};

} // namespace

class ProxiedRecordsTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void findsRowsAndIDs();
    void findsNothingThatIsNotShown();
    void takesAdjacentRowsTogether_data();
    void takesAdjacentRowsTogether();
    void takesWholeRows();
    void hasNothingWithoutAList();
};

void ProxiedRecordsTest::findsRowsAndIDs()
{
    const Setting setting;
    const ProxiedRecords records(setting.proxy);
    QCOMPARE(records.source(), &setting.source);
    QCOMPARE(records.indexOf(u"H"_s), setting.proxy.index(0, 0));
    QCOMPARE(records.indexOf(u"A"_s), setting.proxy.index(6, 0));
    QCOMPARE(records.idOf(setting.proxy.index(6, 5)), u"A"_s);
    QCOMPARE(records.sourceIndexOf(u"D"_s), setting.source.index(3, 0));
}

void ProxiedRecordsTest::findsNothingThatIsNotShown()
{
    const Setting setting;
    const ProxiedRecords records(setting.proxy);
    QVERIFY(!records.indexOf(u"D"_s).isValid());
    QVERIFY(!records.indexOf(u"nobody"_s).isValid());
    QVERIFY(!records.sourceIndexOf(QString()).isValid());
    QCOMPARE(records.idOf({}), QString());
}

void ProxiedRecordsTest::takesAdjacentRowsTogether_data()
{
    QTest::addColumn<QStringList>("ids");
    QTest::addColumn<QString>("rows");
    QTest::newRow("none") << QStringList() << QString();
    QTest::newRow("one") << QStringList{u"G"_s} << u"1-1"_s;
    QTest::newRow("two beside each other, whatever their order") << QStringList{u"G"_s, u"H"_s} << u"0-1"_s;
    QTest::newRow("two apart") << QStringList{u"A"_s, u"H"_s} << u"0-0 6-6"_s;
    QTest::newRow("two beside each other for want of a third") << QStringList{u"C"_s, u"D"_s, u"E"_s} << u"3-4"_s;
    QTest::newRow("the same twice") << QStringList{u"G"_s, u"G"_s, u"F"_s} << u"1-2"_s;
    QTest::newRow("all") << QStringList{u"A"_s, u"B"_s, u"C"_s, u"E"_s, u"F"_s, u"G"_s, u"H"_s} << u"0-6"_s;
    QTest::newRow("nothing that is shown") << QStringList{u"D"_s, u"nobody"_s} << QString();
}

void ProxiedRecordsTest::takesAdjacentRowsTogether()
{
    QFETCH(QStringList, ids);
    const Setting setting;
    QTEST(setting.rowsOf(ids), "rows");
}

void ProxiedRecordsTest::takesWholeRows()
{
    const Setting setting;
    const QItemSelection selection = ProxiedRecords(setting.proxy).rowsOf({u"B"_s});
    QCOMPARE(selection.constFirst().left(), 0);
    QCOMPARE(selection.constFirst().right(), setting.proxy.columnCount() - 1);
}

void ProxiedRecordsTest::hasNothingWithoutAList()
{
    QSortFilterProxyModel proxy;
    const ProxiedRecords records(proxy);
    QVERIFY(!records.source());
    QVERIFY(!records.indexOf(u"A"_s).isValid());
    QVERIFY(records.rowsOf({u"A"_s}).isEmpty());
}

QTEST_MAIN(ProxiedRecordsTest)
#include "tst_proxiedrecords.moc"
