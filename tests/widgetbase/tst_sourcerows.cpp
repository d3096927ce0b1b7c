#include <widgetbase/sourcerows.h>

#include <QIdentityProxyModel>
#include <QRegularExpression>
#include <QSignalSpy>
#include <QSortFilterProxyModel>
#include <QStringListModel>
#include <QtTest>

#include <memory>
#include <optional>

using guiHelper::SourceRows;

namespace {

/// A list of three below a proxy, and whoever counts its rows.
struct Counted
{
    Counted()
    {
        proxy.setSourceModel(&list);
        rows.emplace(&proxy);
        spy.emplace(&*rows, &SourceRows::changed);
    }

    QStringListModel list{{"a", "b", "c"}};
    QSortFilterProxyModel proxy;
    std::optional<SourceRows> rows;
    std::optional<QSignalSpy> spy;
};

} // namespace

class SourceRowsTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void countsRowsThatComeAndGo();
    void countsRowsThatTheProxyHides();
    void countsNoneWithoutASource();
    void followsAnotherSource();
    void countsNoneOfASourceThatHasGone();
};

void SourceRowsTest::countsRowsThatComeAndGo()
{
    Counted counted;
    QCOMPARE(counted.rows->count(), 3);
    counted.list.insertRow(0);
    QCOMPARE(counted.rows->count(), 4);
    counted.list.removeRows(0, 2);
    QCOMPARE(counted.rows->count(), 2);
    counted.list.setStringList({});
    QCOMPARE(counted.rows->count(), 0);
    QCOMPARE(counted.spy->count(), 3);
}

void SourceRowsTest::countsRowsThatTheProxyHides()
{
    Counted counted;
    counted.proxy.setFilterFixedString(QStringLiteral("no such text"));
    QCOMPARE(counted.proxy.rowCount(), 0);
    QCOMPARE(counted.rows->count(), 3);
    counted.list.insertRow(0);
    QCOMPARE(counted.rows->count(), 4);
    QCOMPARE(counted.spy->count(), 1);
}

void SourceRowsTest::countsNoneWithoutASource()
{
    QTest::failOnWarning(QRegularExpression(QStringLiteral("."))); // as of a connection to nothing
    QIdentityProxyModel proxy;
    const SourceRows rows(&proxy);
    QCOMPARE(rows.count(), 0);
    QSignalSpy spy(&rows, &SourceRows::changed);
    QStringListModel list({"a"});
    proxy.setSourceModel(&list);
    QCOMPARE(rows.count(), 1);
    QCOMPARE(spy.count(), 1);
    proxy.setSourceModel(nullptr);
    QCOMPARE(rows.count(), 0);
    QCOMPARE(spy.count(), 2);
}

void SourceRowsTest::followsAnotherSource()
{
    Counted counted;
    QStringListModel other({"d"});
    counted.proxy.setSourceModel(&other);
    QCOMPARE(counted.rows->count(), 1);
    QCOMPARE(counted.spy->count(), 1);
    counted.list.insertRow(0);
    QCOMPARE(counted.spy->count(), 1);
    other.insertRow(0);
    QCOMPARE(counted.rows->count(), 2);
    QCOMPARE(counted.spy->count(), 2);
}

void SourceRowsTest::countsNoneOfASourceThatHasGone()
{
    QIdentityProxyModel proxy;
    auto list = std::make_unique<QStringListModel>(QStringList{"a"});
    proxy.setSourceModel(list.get());
    const SourceRows rows(&proxy);
    QList<int> counts;
    connect(&rows, &SourceRows::changed, this, [&] { counts << rows.count(); });
    list.reset();
    QCOMPARE(rows.count(), 0);
    QVERIFY(!counts.isEmpty());
    QCOMPARE(counts.constLast(), 0);
}

QTEST_GUILESS_MAIN(SourceRowsTest)
#include "tst_sourcerows.moc"
