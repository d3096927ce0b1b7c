#include "testrecords.h"
#include "watch.h"

#include <zelkobase/connection/notificationfold.h>
#include <zelkobase/maps/recorditemmap.h>

#include <observerbase/iobserver.h>
#include <valuecore/value.h>
#include <zelkoguibase/valueitemmap/itemmapcommands.h>

#include <QtTest>

using zelko::recordmap::RecordItemMap;
using zelko::recordmap::RecordMapData;
using ZelkoCommon::NotificationFold;

namespace {

// Reads the log at each notification: "1 A, 2 B", or "behind".
class LogReader final : public IObserver
{
public:
    explicit LogReader(RecordItemMap& map)
        : m_map(map)
    {
        m_map.AddObserver(this);
    }
    ~LogReader() override { m_map.DeleteObserver(this); }

    void Update(Observable*, TChangeCode) override
    {
        QStringList changes;
        char type = 0;
        QString key;
        while (const auto result = m_map.GetChangeLog().ReadNext(m_cursor, type, key)) {
            changes << (result < 0 ? QStringLiteral("behind")
                                   : QStringLiteral("%1 %2").arg(int(type)).arg(key).trimmed());
        }
        notifications << changes.join(QStringLiteral(", "));
    }

    QStringList notifications;

private:
    RecordItemMap& m_map;
    std::uint64_t m_cursor = 0;
};

// Runs commands through a fold, as a mirror does.
class Folder
{
public:
    explicit Folder(RecordItemMap& map)
        : m_map(map)
    {}

    void set(const QString& key, quint64 size = 0)
    {
        run(RecordItemMap::SetAtCommand(&m_map, key, RecordMapData(makeRecord(key, 5, size)), nullptr));
    }
    void erase(const QString& key) { run(RecordItemMap::EraseAtCommand(&m_map, key, nullptr)); }
    void clear() { run(RecordItemMap::ClearCommand(&m_map, nullptr)); }
    void lock() { run(CommandState(&m_map, TValueState::Locked, nullptr)); }
    void end() { m_fold.end(); }
    NotificationFold& fold() { return m_fold; }

private:
    template <typename C>
    void run(C command)
    {
        m_fold.prepare(m_map, command);
        command.Execute();
    }

    RecordItemMap& m_map;
    NotificationFold m_fold;
};

} // namespace

class TestNotificationFold : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void foldsSetsAndErasesOfDifferentKeys();
    void tellsAllThatTheLogHoldsAndNoMore_data();
    void tellsAllThatTheLogHoldsAndNoMore();
    void followsALogThatGrows();
    void endsBeforeAClear();
    void endsBeforeAnEraseOfAKeyThatWasSet();
    void endsBeforeTheFirstEraseAfterAFoldWithoutOne();
    void endsBeforeASetOfAKeyThatWasErased();
    void foldsRepeatedSetsOfOneKey();
    void endsBeforeAChangeOfState();
    void endsWhenAnotherValueComes();
    void leavesValuesWithoutALogAlone();
    void outlivesItsValue();
    void mayBeUsedByAnObserverOfItsEnd();
    void endsAgainWhatAnObserverOfItsEndBegan();
    void endsWhenItIsDestroyed();
};

void TestNotificationFold::foldsSetsAndErasesOfDifferentKeys()
{
    RecordItemMap map;
    Folder folder(map);
    folder.set("A");
    folder.set("D");
    folder.end();
    folder.erase("D");
    folder.end();
    folder.end(); // ends nothing, and changes nothing
    LogReader reader(map);
    folder.set("B");
    folder.erase("A");
    folder.set("C");
    QVERIFY(reader.notifications.isEmpty());
    folder.end();
    QCOMPARE(reader.notifications, QStringList{"1 A, 1 D, 2 D, 1 B, 2 A, 1 C"});
    QVERIFY(!map.IsTransactionActive());
}

void TestNotificationFold::tellsAllThatTheLogHoldsAndNoMore_data()
{
    QTest::addColumn<int>("capacity");
    QTest::addColumn<int>("changes");
    QTest::addColumn<QList<int>>("sizes");
    QTest::newRow("one less than the log holds") << 10 << 9 << QList<int>{9};
    QTest::newRow("as many as the log holds") << 10 << 10 << QList<int>{10};
    QTest::newRow("one more") << 10 << 11 << QList<int>{10, 1};
    QTest::newRow("three logs full") << 10 << 30 << QList<int>{10, 10, 10};
    QTest::newRow("a log of one") << 1 << 3 << QList<int>{1, 1, 1};
    QTest::newRow("the usual log") << 100 << 250 << QList<int>{100, 100, 50};
}

void TestNotificationFold::tellsAllThatTheLogHoldsAndNoMore()
{
    QFETCH(int, capacity);
    QFETCH(int, changes);
    QFETCH(QList<int>, sizes);
    RecordItemMap map;
    map.SetChangeLogSize(static_cast<unsigned int>(capacity));
    LogReader reader(map);
    Folder folder(map);
    for (int i = 0; i < changes; ++i) {
        folder.set(QString::number(i));
    }
    folder.end();
    QList<int> seen;
    for (const QString& notification : reader.notifications) {
        QVERIFY(!notification.contains("behind"));
        seen << static_cast<int>(notification.split(", ").size());
    }
    QCOMPARE(seen, sizes);
}

void TestNotificationFold::followsALogThatGrows()
{
    RecordItemMap map;
    map.SetChangeLogSize(2);
    LogReader reader(map);
    Folder folder(map);
    folder.set("A");
    map.SetChangeLogSize(3);
    folder.set("B");
    folder.set("C");
    folder.end();
    QCOMPARE(reader.notifications, QStringList{"1 A, 1 B, 1 C"});
}

void TestNotificationFold::endsBeforeAClear()
{
    RecordItemMap map;
    LogReader reader(map);
    Folder folder(map);
    folder.set("A");
    folder.clear();
    folder.set("A");
    folder.end();
    QCOMPARE(reader.notifications, (QStringList{"1 A", "3", "1 A"}));
}

void TestNotificationFold::endsBeforeAnEraseOfAKeyThatWasSet()
{
    RecordItemMap map;
    LogReader reader(map);
    Folder folder(map);
    folder.set("A");
    folder.set("B");
    folder.erase("A");
    folder.end();
    QCOMPARE(reader.notifications, (QStringList{"1 A, 1 B", "2 A"}));
}

void TestNotificationFold::endsBeforeTheFirstEraseAfterAFoldWithoutOne()
{
    RecordItemMap map;
    Folder folder(map);
    folder.set("A");
    folder.end();
    LogReader reader(map);
    folder.set("B");
    folder.erase("A");
    folder.set("C");
    folder.set("D");
    folder.erase("C");
    folder.end();
    folder.set("E");
    folder.erase("D");
    folder.end();
    QCOMPARE(reader.notifications, (QStringList{"1 A, 1 B", "2 A, 1 C, 1 D", "2 C", "1 E, 2 D"}));
}

void TestNotificationFold::endsBeforeASetOfAKeyThatWasErased()
{
    RecordItemMap map;
    Folder folder(map);
    folder.set("A");
    folder.end();
    LogReader reader(map);
    folder.erase("A");
    folder.set("A");
    folder.end();
    QCOMPARE(reader.notifications, (QStringList{"1 A, 2 A", "1 A"}));
}

void TestNotificationFold::foldsRepeatedSetsOfOneKey()
{
    RecordItemMap map;
    LogReader reader(map);
    Folder folder(map);
    folder.set("A", 1);
    folder.set("A", 2);
    folder.end();
    QCOMPARE(reader.notifications, QStringList{"1 A, 1 A"});
}

void TestNotificationFold::endsBeforeAChangeOfState()
{
    RecordItemMap map;
    LogReader reader(map);
    Folder folder(map);
    folder.set("A");
    folder.lock();
    QCOMPARE(reader.notifications, (QStringList{"1 A", ""}));
}

void TestNotificationFold::endsWhenAnotherValueComes()
{
    RecordItemMap first;
    RecordItemMap second;
    LogReader readerOfFirst(first);
    LogReader readerOfSecond(second);
    NotificationFold fold;
    const RecordMapData item(makeRecord("A"));
    RecordItemMap::SetAtCommand setFirst(&first, "A", item, nullptr);
    RecordItemMap::SetAtCommand setSecond(&second, "A", item, nullptr);
    fold.prepare(first, setFirst);
    setFirst.Execute();
    fold.prepare(second, setSecond);
    setSecond.Execute();
    QCOMPARE(readerOfFirst.notifications, QStringList{"1 A"});
    QVERIFY(readerOfSecond.notifications.isEmpty());
    Value<int> plain;
    fold.prepare(plain, Value<int>::CommandSet(&plain, 1, false, nullptr));
    QCOMPARE(readerOfSecond.notifications, QStringList{"1 A"});
}

void TestNotificationFold::leavesValuesWithoutALogAlone()
{
    Value<int> value;
    NotificationFold fold;
    fold.prepare(value, Value<int>::CommandSet(&value, 1, false, nullptr));
    QVERIFY(!value.IsTransactionActive());
}

void TestNotificationFold::outlivesItsValue()
{
    auto map = std::make_unique<RecordItemMap>();
    Folder folder(*map);
    folder.set("A");
    map.reset();
    folder.end();
    RecordItemMap other;
    LogReader reader(other);
    RecordItemMap::EraseAtCommand erase(&other, "A", nullptr);
    folder.fold().prepare(other, erase);
    folder.end();
    QCOMPARE(reader.notifications, QStringList{""});
}

void TestNotificationFold::mayBeUsedByAnObserverOfItsEnd()
{
    class Ender final : public IObserver
    {
    public:
        explicit Ender(NotificationFold& fold)
            : m_fold(fold)
        {}
        void Update(Observable*, TChangeCode) override
        {
            ++calls;
            m_fold.end();
        }
        int calls = 0;

    private:
        NotificationFold& m_fold;
    };
    RecordItemMap map;
    Folder folder(map);
    Ender ender(folder.fold());
    map.AddObserver(&ender);
    folder.set("A");
    folder.end();
    QCOMPARE(ender.calls, 1);
    folder.set("B");
    folder.end();
    QCOMPARE(ender.calls, 2);
}

void TestNotificationFold::endsAgainWhatAnObserverOfItsEndBegan()
{
    RecordItemMap map;
    LogReader reader(map);
    Folder folder(map);
    bool hasSet = false;
    Watch setter([&] {
        if (!std::exchange(hasSet, true)) {
            folder.set("A", 2);
        }
    });
    setter.on(&map);
    folder.set("A", 1);
    folder.erase("A");
    folder.end();
    QCOMPARE(reader.notifications, (QStringList{"1 A", "1 A", "2 A"}));
}

void TestNotificationFold::endsWhenItIsDestroyed()
{
    RecordItemMap map;
    LogReader reader(map);
    {
        Folder folder(map);
        folder.set("A");
    }
    QCOMPARE(reader.notifications, QStringList{"1 A"});
}

QTEST_APPLESS_MAIN(TestNotificationFold)
#include "tst_notificationfold.moc"
