#include <zelkoguibase/bookmarks/bookmarkrecord_p.h>

#include "fixedrecordmodel.h"
#include "testbookmarks.h"
#include "testrecords.h"

#include <QtTest>

using ZELKO_XML::RecordExtent;
using ZelkoGUI::BookmarkRecord;

namespace {

/// Counts what it hears of a list of records.
struct Follower : QObject
{
    void follow(const FixedRecordModel& list)
    {
        connect(&list, &FixedRecordModel::si_allRecordsChanged, this, [this] { ++heard; });
    }

    int heard = 0;
};

const RecordExtent ninetySeconds{recordBegin, recordBegin + 90'000'000};

} // namespace

class BookmarkRecordTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void theRecordIsLookedUpInTheList_data();
    void theRecordIsLookedUpInTheList();
    void withoutAListThereIsNoRecord();
    void theDeviceIsKept();
    void theListBeforeIsNotHeardAnyMore();
    void theSameListGoesOnBeingHeard();
    void noRecordHasNoExtent();
    void aRecordThatGoesOnHasNoLimits_data();
    void aRecordThatGoesOnHasNoLimits();
};

void BookmarkRecordTest::theRecordIsLookedUpInTheList_data()
{
    QTest::addColumn<QString>("id");
    QTest::addColumn<bool>("isThere");
    QTest::newRow("a record of the list") << "R" << true;
    QTest::newRow("a record of no list") << "X" << false;
    QTest::newRow("a record without data") << "N" << false;
    QTest::newRow("no ID") << "" << false;
}

void BookmarkRecordTest::theRecordIsLookedUpInTheList()
{
    QFETCH(const QString, id);
    QFETCH(const bool, isThere);
    const auto data = makeRecord(QStringLiteral("R"));
    FixedRecordModel list({{QStringLiteral("R"), data}, {QStringLiteral("N"), nullptr}});
    Follower follower;
    BookmarkRecord record;
    record.setIDs(id, {});
    QVERIFY(record.lookIn(&list, &follower));
    QCOMPARE(record.data().get(), isThere ? data.get() : nullptr);
}

void BookmarkRecordTest::withoutAListThereIsNoRecord()
{
    FixedRecordModel list({{QStringLiteral("R"), makeRecord(QStringLiteral("R"))}});
    Follower follower;
    BookmarkRecord record;
    record.setIDs(QStringLiteral("R"), {});
    QVERIFY(!record.data());
    record.lookIn(&list, &follower);
    QVERIFY(record.data());
    QVERIFY(record.lookIn(nullptr, &follower));
    QVERIFY(!record.data());
}

void BookmarkRecordTest::theDeviceIsKept()
{
    BookmarkRecord record;
    record.setIDs(QStringLiteral("R"), QStringLiteral("D"));
    QCOMPARE(record.recordID(), QStringLiteral("R"));
    QCOMPARE(record.deviceID(), QStringLiteral("D"));
}

void BookmarkRecordTest::theListBeforeIsNotHeardAnyMore()
{
    FixedRecordModel first({});
    FixedRecordModel second({});
    Follower follower;
    BookmarkRecord record;
    record.lookIn(&first, &follower);
    follower.follow(first);
    QVERIFY(record.lookIn(&second, &follower));
    Q_EMIT first.si_allRecordsChanged();
    QCOMPARE(follower.heard, 0);
}

void BookmarkRecordTest::theSameListGoesOnBeingHeard()
{
    FixedRecordModel list({});
    Follower follower;
    BookmarkRecord record;
    record.lookIn(&list, &follower);
    follower.follow(list);
    QVERIFY(!record.lookIn(&list, &follower));
    Q_EMIT list.si_allRecordsChanged();
    QCOMPARE(follower.heard, 1);
}

void BookmarkRecordTest::noRecordHasNoExtent()
{
    QVERIFY((BookmarkRecord::extent(nullptr) == RecordExtent{0, 0}));
    QVERIFY(!BookmarkRecord::limits(nullptr));
}

void BookmarkRecordTest::aRecordThatGoesOnHasNoLimits_data()
{
    QTest::addColumn<int>("status");
    QTest::addColumn<int>("finished"); // -1: not set
    QTest::addColumn<bool>("hasLimits");
    QTest::newRow("at rest") << 5 << -1 << true;
    QTest::newRow("said to be finished") << 5 << 1 << true;
    QTest::newRow("not finished") << 5 << 0 << false;
    QTest::newRow("being recorded") << 2 << -1 << false;
    QTest::newRow("being recorded and said to be finished") << 2 << 1 << false;
    QTest::newRow("being recorded in a loop") << 3 << 1 << false;
}

void BookmarkRecordTest::aRecordThatGoesOnHasNoLimits()
{
    QFETCH(const int, status);
    QFETCH(const int, finished);
    QFETCH(const bool, hasLimits);
    const auto data = makeRecord(QStringLiteral("R"), status);
    if (finished >= 0) {
        data->SetFinished(finished != 0);
    }
    QVERIFY(BookmarkRecord::extent(data.get()) == ninetySeconds);
    QVERIFY(BookmarkRecord::limits(data.get()) == (hasLimits ? std::optional(ninetySeconds) : std::nullopt));
}

QTEST_GUILESS_MAIN(BookmarkRecordTest)
#include "tst_bookmarkrecord.moc"
