#include <zelkoguibase/recordlist/recorditemmapmodel.h>

#include "recordsignallog.h"
#include "testrecords.h"

#include <observerbase/errorhandler.h>
#include <observerbase/trace.h>
#include <valuecore/tree.h>
#include <valuecore/valuetypes.h>
#include <zelkobase/maps/recorditemmap.h>

#include <QAbstractItemModelTester>
#include <QSet>
#include <QtTest>

#include <optional>
#include <random>

using namespace Qt::StringLiterals;
using zelko::recordmap::RecordItemMap;
using zelko::recordmap::RecordMapData;
using ZelkoGUI::RecordItemMapModel;

// Any instance of the template may write to a log; this one writes what no map would.
template <>
class ValueItemMapBase<void, void, void>
{
public:
    static void append(RecordItemMap& map, char type, const QString& key)
    {
        const_cast<RecordItemMap::ChangeLog&>(map.GetChangeLog()).append(type, key);
    }
};

namespace {

const QString folder = QStringLiteral("/SubSystems/north/ZELKO/Device/A1/Records");
const QString mapPath = folder + QStringLiteral("/Map");

constexpr int recording = 2;
constexpr int loopRecording = 3;
constexpr int atRest = 5;

QStringList lines(std::initializer_list<const char*> texts)
{
    QStringList result;
    for (const char* text : texts) {
        result.append(QString::fromLatin1(text));
    }
    return result;
}

/// Takes the traces for as long as it lives.
class TraceLog
{
public:
    TraceLog()
        : m_before(SetTraceSink([this](const QString& text, const char*, int) { m_texts.append(text); }))
    {}
    ~TraceLog() { SetTraceSink(m_before); }
    TraceLog(const TraceLog&) = delete;
    TraceLog& operator=(const TraceLog&) = delete;

    QStringList texts() const { return m_texts; }

private:
    QStringList m_texts;
    TraceSink m_before;
};

} // namespace

class TestRecordItemMapModel : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        m_map = Tree::Instance()->Emplace(folder, std::make_unique<RecordItemMap>(u"Map"_s, TValueState::Open));
        QVERIFY(m_map);
        m_model = std::make_unique<RecordItemMapModel>(nullptr);
        m_tester.emplace(m_model.get(), QAbstractItemModelTester::FailureReportingMode::QtTest);
        m_log.emplace(m_model.get());
    }

    void cleanup()
    {
        if (m_model) {
            checkLookUps();
        }
        m_log.reset();
        m_tester.reset();
        m_model.reset();
        Tree::Instance()->Remove(u"/SubSystems"_s);
    }

    // Connecting

    void connectingToAnEmptyMapIsSilent()
    {
        QVERIFY(m_model->connect(mapPath));
        QVERIFY(m_model->connected());
        QCOMPARE(m_model->connectionPath(), mapPath);
        QCOMPARE(m_log->take(), QStringList());
        QCOMPARE(m_model->rowCount(), 0);
    }

    void connectingMakesTheLogKeepMore()
    {
        QVERIFY(m_model->connect(mapPath));
        QCOMPARE(m_map->ChangeLogCapacity(), std::size_t{250});
        m_model->disconnect();
        QCOMPARE(m_map->ChangeLogCapacity(), std::size_t{250});
    }

    void whatIsNoRecordMapIsNotConnectedTo_data()
    {
        QTest::addColumn<QString>("path");
        QTest::newRow("nothing there") << folder + u"/Other"_s;
        QTest::newRow("a node") << folder;
        QTest::newRow("a value of another type") << folder + u"/LoadCount"_s;
        QTest::newRow("no path") << QString();
    }
    void whatIsNoRecordMapIsNotConnectedTo()
    {
        QFETCH(const QString, path);
        Tree::Instance()->Emplace(folder, std::make_unique<Value<int>>(u"LoadCount"_s));
        QVERIFY(!m_model->connect(path));
        QVERIFY(!m_model->connected());
        QVERIFY(m_model->connectionPath().isEmpty());
        QCOMPARE(m_log->take(), QStringList());
    }

    void failedConnectLeavesTheMapBefore()
    {
        connectFilled({{u"A"_s, atRest}});
        QVERIFY(!m_model->connect(folder));
        QVERIFY(!m_model->connected());
        QCOMPARE(m_log->take(), lines({"begin reset", "end reset", "all records changed"}));
        m_map->Add(item(u"B"_s), nullptr);
        QCOMPARE(m_log->take(), QStringList());
    }

    void constructorWithAPathConnects()
    {
        m_map->Add(item(u"A"_s), nullptr);
        const RecordItemMapModel model(mapPath, nullptr);
        QVERIFY(model.connected());
        QCOMPARE(model.recordCount(), 1);
        QVERIFY(!RecordItemMapModel(folder, nullptr).connected());
    }

    void mapWithAWholeLogIsReadChangeByChange()
    {
        set(u"A"_s, atRest);
        set(u"B"_s, recording);
        set(u"C"_s, loopRecording);
        QVERIFY(m_model->connect(mapPath));
        QCOMPARE(m_log->take(), lines({"begin insert 0-2", "end insert 0-2", "record changed A", "record changed B",
                                       "status of B 2 after 5", "record changed C", "status of C 3 after 5"}));
        QCOMPARE(ids(), u"A B C"_s);
    }

    void mapWithAShortenedLogIsReloaded()
    {
        set(u"A"_s, recording);
        for (int i = 0; i < 100; ++i) {
            set(u"B"_s, atRest, static_cast<quint64>(i));
        }
        QVERIFY(m_model->connect(mapPath));
        QCOMPARE(m_log->take(), lines({"begin reset", "end reset", "all records changed", "status of A 2 after 5"}));
        QCOMPARE(m_model->rowCount(), 2);
    }

    void mapWhoseRecordsAllWentGivesNoRows()
    {
        set(u"A"_s, atRest);
        m_map->EraseAt(u"A"_s, nullptr);
        QVERIFY(m_model->connect(mapPath));
        QCOMPARE(m_log->take(), QStringList());
    }

    void connectingElsewhereDropsTheRowsFirst()
    {
        auto* const other =
            Tree::Instance()->Emplace(folder, std::make_unique<RecordItemMap>(u"Other"_s, TValueState::Open));
        other->Add(item(u"Z"_s), nullptr);
        connectFilled({{u"A"_s, recording}});
        QVERIFY(m_model->connect(folder + u"/Other"_s));
        QCOMPARE(m_log->take(), lines({"begin reset", "end reset", "all records changed", "begin insert 0-0",
                                       "end insert 0-0", "record changed Z"}));
        set(u"B"_s, atRest);
        QCOMPARE(m_log->take(), QStringList());
        QCOMPARE(m_model->connectionPath(), folder + u"/Other"_s);
    }

    // Disconnecting

    void disconnectingAnUnconnectedModelDoesNothing()
    {
        m_model->disconnect();
        QCOMPARE(m_log->take(), QStringList());
        QVERIFY(!m_model->connected());
    }

    void disconnectingFromAnEmptyMapIsSilent()
    {
        QVERIFY(m_model->connect(mapPath));
        m_model->disconnect();
        QCOMPARE(m_log->take(), QStringList());
        QVERIFY(!m_model->connected());
    }

    void disconnectingDropsTheRowsAndTheMap()
    {
        connectFilled({{u"A"_s, atRest}});
        m_model->disconnect();
        QCOMPARE(m_log->take(), lines({"begin reset", "end reset", "all records changed"}));
        set(u"B"_s, atRest);
        QCOMPARE(m_log->take(), QStringList());
        QCOMPARE(m_map->ObserverCount(), std::size_t{0});
    }

    void deletedMapLeavesAnUnconnectedModelWithoutRows()
    {
        connectFilled({{u"A"_s, atRest}});
        Tree::Instance()->Remove(mapPath);
        QCOMPARE(m_log->take(), lines({"begin reset", "end reset", "all records changed"}));
        QVERIFY(!m_model->connected());
        QVERIFY(m_model->connectionPath().isEmpty());
    }

    void deletedModelIsNotToldAnyMore()
    {
        connectFilled({{u"A"_s, atRest}});
        m_log.reset();
        m_tester.reset();
        m_model.reset();
        QCOMPARE(m_map->ObserverCount(), std::size_t{0});
    }

    // Codes of notifications

    void stateChangesOfALivingMapAreIgnored()
    {
        connectFilled({{u"A"_s, atRest}});
        m_map->SetState(TValueState::Locked, nullptr);
        QCOMPARE(m_log->take(), QStringList());
    }

    void removedChildIsAReset()
    {
        connectFilled({{u"A"_s, atRest}});
        m_map->NotifyObservers(TChangeCode::ChildRemoved, nullptr);
        QCOMPARE(m_log->take(), lines({"begin reset", "end reset", "all records changed"}));
        QVERIFY(m_model->connected());
        m_map->NotifyObservers(TChangeCode::ChildRemoved, nullptr);
        QCOMPARE(m_log->take(), QStringList());
    }

    void otherCodesAreIgnored()
    {
        connectFilled({{u"A"_s, atRest}});
        m_map->NotifyObservers(TChangeCode::ChildAdded, nullptr);
        m_map->NotifyObservers(TChangeCode::ValueRefreshed, nullptr);
        m_map->NotifyObservers(static_cast<TChangeCode>(77), nullptr);
        QCOMPARE(m_log->take(), QStringList());
    }

    void notificationWithoutAChangeIsSilent()
    {
        connectFilled({{u"A"_s, atRest}});
        m_map->HasChanged(TChangeCode::ValueChanged, nullptr);
        QCOMPARE(m_log->take(), QStringList());
    }

    // One change

    void newRecordIsAppended()
    {
        connectFilled({{u"A"_s, atRest}});
        set(u"B"_s, atRest);
        QCOMPARE(m_log->take(), lines({"begin insert 1-1", "end insert 1-1", "record changed B"}));
        set(u"C"_s, recording);
        QCOMPARE(m_log->take(),
                 lines({"begin insert 2-2", "end insert 2-2", "record changed C", "status of C 2 after 5"}));
    }

    void knownRecordIsUpdatedInItsRow()
    {
        connectFilled({{u"A"_s, atRest}, {u"B"_s, recording}});
        set(u"B"_s, recording, 1000);
        QCOMPARE(m_log->take(), lines({"changed 1", "record changed B"}));
        set(u"B"_s, atRest, 1000);
        QCOMPARE(m_log->take(), lines({"changed 1", "record changed B", "status of B 5 after 2"}));
        QCOMPARE(m_model->recordData(1)->GetSize(), quint64{1000});
    }

    void rowSharesTheRecordWithTheMap()
    {
        connectFilled({{u"A"_s, atRest}});
        QCOMPARE(m_model->recordData(0).get(), m_map->At(u"A"_s).GetRecordData().get());
    }

    void unknownRecordWithoutDataAddsNoRow()
    {
        QVERIFY(m_model->connect(mapPath));
        m_map->SetAt(u"A"_s, RecordMapData(), nullptr);
        QCOMPARE(m_log->take(), QStringList());
    }

    void knownRecordWithoutDataLosesItsRow()
    {
        connectFilled({{u"A"_s, atRest}, {u"B"_s, atRest}});
        m_map->SetAt(u"A"_s, RecordMapData(), nullptr);
        QCOMPARE(m_log->take(), lines({"begin remove 0-0", "end remove 0-0", "record deleted A"}));
        QCOMPARE(ids(), u"B"_s);
    }

    void erasedRecordLosesItsRow_data()
    {
        QTest::addColumn<int>("status");
        QTest::addColumn<QStringList>("signalTexts");
        const QStringList deleted = lines({"begin remove 0-0", "end remove 0-0", "record deleted A"});
        const QStringList whileRecording = deleted + lines({"deleted while recording A"});
        QTest::newRow("at rest") << atRest << deleted;
        QTest::newRow("being recorded") << recording << whileRecording;
        QTest::newRow("being recorded in a loop") << loopRecording << whileRecording;
        QTest::newRow("in another state") << 4 << deleted;
    }
    void erasedRecordLosesItsRow()
    {
        QFETCH(const int, status);
        connectFilled({{u"A"_s, status}, {u"B"_s, atRest}});
        m_map->EraseAt(u"A"_s, nullptr);
        QTEST(m_log->take(), "signalTexts");
        QVERIFY(!m_model->hasRecord(u"A"_s));
        QCOMPARE(m_model->recordIndex(u"B"_s).row(), 0);
    }

    void clearResetsOnce()
    {
        connectFilled({{u"A"_s, recording}, {u"B"_s, atRest}});
        m_map->Clear(nullptr);
        QCOMPARE(m_log->take(), lines({"begin reset", "end reset", "all records changed"}));
        m_map->SetMap({}, nullptr);
        QCOMPARE(m_log->take(), QStringList());
    }

    void replacedMapComesBackAsOneInsertion()
    {
        connectFilled({{u"A"_s, atRest}});
        m_map->SetMap({{u"B"_s, item(u"B"_s)}}, nullptr);
        QCOMPARE(m_log->take(), lines({"begin reset", "end reset", "all records changed", "begin insert 0-0",
                                       "end insert 0-0", "record changed B"}));
    }

    // Many changes in one notification

    void newRowsComeBeforeRemovals()
    {
        connectFilled({{u"A"_s, atRest}, {u"B"_s, atRest}});
        fold([this] {
            m_map->EraseAt(u"A"_s, nullptr);
            set(u"C"_s, atRest);
        });
        QCOMPARE(m_log->take(), lines({"begin insert 2-2", "end insert 2-2", "record changed C", "begin remove 0-0",
                                       "end remove 0-0", "record deleted A"}));
        QCOMPARE(ids(), u"B C"_s);
    }

    void updatesComeBeforeAllElse()
    {
        connectFilled({{u"A"_s, atRest}, {u"B"_s, atRest}});
        fold([this] {
            m_map->EraseAt(u"A"_s, nullptr);
            set(u"C"_s, atRest);
            set(u"B"_s, recording);
        });
        QCOMPARE(m_log->take(),
                 lines({"changed 1", "record changed B", "status of B 2 after 5", "begin insert 2-2", "end insert 2-2",
                        "record changed C", "begin remove 0-0", "end remove 0-0", "record deleted A"}));
    }

    void repeatedSetsOfANewRecordMakeOneRow()
    {
        QVERIFY(m_model->connect(mapPath));
        fold([this] {
            set(u"A"_s, recording, 1);
            set(u"B"_s, atRest);
            set(u"A"_s, recording, 2);
        });
        QCOMPARE(m_log->take(), lines({"begin insert 0-1", "end insert 0-1", "record changed A",
                                       "status of A 2 after 5", "record changed B"}));
        QCOMPARE(m_model->recordData(0)->GetSize(), quint64{2});
    }

    void runsAreRemovedFromTheLastToTheFirst()
    {
        connectFilled(manyAtRest(9));
        fold([this] {
            for (const int number : {7, 2, 1, 3}) {
                m_map->EraseAt(numbered(number), nullptr);
            }
        });
        QCOMPARE(m_log->take(), lines({"begin remove 7-7", "end remove 7-7", "record deleted 7", "begin remove 1-3",
                                       "end remove 1-3", "record deleted 1", "record deleted 2", "record deleted 3"}));
        QCOMPARE(ids(), u"0 4 5 6 8"_s);
    }

    void recordingsOfARunAreToldOneByOne()
    {
        connectFilled({{u"A"_s, recording}, {u"B"_s, atRest}, {u"C"_s, loopRecording}});
        fold([this] {
            for (const QString& id : {u"C"_s, u"B"_s, u"A"_s}) {
                m_map->EraseAt(id, nullptr);
            }
        });
        QCOMPARE(m_log->take(),
                 lines({"begin remove 0-2", "end remove 0-2", "record deleted A", "deleted while recording A",
                        "record deleted B", "record deleted C", "deleted while recording C"}));
    }

    void recordListedTwiceIsRemovedOnce()
    {
        connectFilled({{u"A"_s, atRest}, {u"B"_s, atRest}});
        fold([this] {
            m_map->SetAt(u"A"_s, RecordMapData(), nullptr);
            m_map->EraseAt(u"A"_s, nullptr);
        });
        QCOMPARE(m_log->take(), lines({"begin remove 0-0", "end remove 0-0", "record deleted A"}));
    }

    void recordThatCameAndWentUnseenLeavesNothing()
    {
        QVERIFY(m_model->connect(mapPath));
        fold([this] {
            set(u"A"_s, atRest);
            m_map->EraseAt(u"A"_s, nullptr);
        });
        QCOMPARE(m_log->take(), QStringList());
    }

    void erasedRecordSetAgainInTheSameNotificationGoes()
    {
        connectFilled({{u"A"_s, atRest}});
        fold([this] {
            m_map->EraseAt(u"A"_s, nullptr);
            set(u"A"_s, recording);
        });
        QCOMPARE(m_log->take(), lines({"changed 0", "record changed A", "status of A 2 after 5", "begin remove 0-0",
                                       "end remove 0-0", "record deleted A", "deleted while recording A"}));
        set(u"A"_s, recording, 1);
        QCOMPARE(m_log->take(),
                 lines({"begin insert 0-0", "end insert 0-0", "record changed A", "status of A 2 after 5"}));
    }

    void queuedRecordsOutliveAClearInTheSameNotification()
    {
        connectFilled({{u"A"_s, atRest}});
        fold([this] {
            set(u"B"_s, atRest);
            m_map->Clear(nullptr);
            set(u"C"_s, atRest);
            set(u"B"_s, recording);
        });
        QCOMPARE(m_log->take(),
                 lines({"begin reset", "end reset", "all records changed", "begin insert 0-1", "end insert 0-1",
                        "record changed B", "status of B 2 after 5", "record changed C"}));
        QCOMPARE(ids(), u"B C"_s);
    }

    void removalListedBeforeAClearIsNoRemovalAfterIt()
    {
        connectFilled({{u"A"_s, atRest}, {u"B"_s, atRest}});
        fold([this] {
            m_map->EraseAt(u"A"_s, nullptr);
            m_map->Clear(nullptr);
        });
        QCOMPARE(m_log->take(), lines({"begin reset", "end reset", "all records changed"}));
    }

    void rowsAndIDsCanBeLookedUpBetweenTheRuns()
    {
        connectFilled(manyAtRest(40));
        int looks = 0;
        const auto look = [&] {
            ++looks;
            checkLookUps();
        };
        QObject::connect(m_model.get(), &QAbstractItemModel::rowsRemoved, this, look);
        QObject::connect(m_model.get(), &RecordItemMapModel::si_recordDeleted, this, look);
        fold([this] {
            for (const int number : {3, 4, 39, 0, 20, 22, 21, 30, 32, 34, 10}) {
                m_map->EraseAt(numbered(number), nullptr);
            }
        });
        m_model->QObject::disconnect(this);
        QCOMPARE(looks, 8 + 11);
        QCOMPARE(m_model->rowCount(), 29);
    }

    // Overrun of the log

    void overrunReloadsAndTellsStatusesThatDiffer()
    {
        connectFilled({{u"A"_s, recording}, {u"B"_s, atRest}, {u"C"_s, recording}});
        fold([this] {
            set(u"A"_s, atRest);
            m_map->EraseAt(u"B"_s, nullptr);
            set(u"D"_s, loopRecording);
            set(u"E"_s, atRest);
            for (int i = 1; i <= 250; ++i) {
                set(u"C"_s, recording, static_cast<quint64>(i));
            }
        });
        QStringList texts = m_log->take();
        QCOMPARE(texts.mid(0, 3), lines({"begin reset", "end reset", "all records changed"}));
        // The order of rows after a reload is that of the map.
        texts = texts.mid(3);
        texts.sort();
        QCOMPARE(texts, lines({"status of A 5 after 2", "status of D 3 after 5"}));
        QCOMPARE(sortedIds(), u"A C D E"_s);
        QCOMPARE(m_model->getRecordData(u"C"_s)->GetSize(), quint64{250});
    }

    void reloadKeepsRecordsWithoutDataAsRows()
    {
        QVERIFY(m_model->connect(mapPath));
        overrun();
        m_map->SetAt(u"A"_s, RecordMapData(), nullptr);
        m_log->take();
        fold([this] { overrun(); });
        QCOMPARE(m_log->take(), lines({"begin reset", "end reset", "all records changed"}));
        QVERIFY(m_model->hasRecord(u"A"_s));
        QVERIFY(!m_model->getRecordData(u"A"_s));

        set(u"A"_s, recording);
        const int row = m_model->recordIndex(u"A"_s).row();
        QCOMPARE(m_log->take(),
                 lines({qPrintable(u"changed %1"_s.arg(row)), "record changed A", "status of A 2 after 5"}));
    }

    void fullLogIsReadWithoutAReload()
    {
        QVERIFY(m_model->connect(mapPath));
        fold([this] {
            for (int i = 0; i < 250; ++i) {
                set(numbered(i), atRest);
            }
        });
        QCOMPARE(m_log->take().mid(0, 2), lines({"begin insert 0-249", "end insert 0-249"}));
    }

    void readingGoesOnAfterAReload()
    {
        QVERIFY(m_model->connect(mapPath));
        fold([this] { overrun(); });
        m_log->take();
        set(u"A"_s, atRest);
        QCOMPARE(m_log->take(), lines({"begin insert 1-1", "end insert 1-1", "record changed A"}));
    }

    // Slots that change the map, or let go of it, while the model works

    void changeMadeByASlotIsWorkedOffAfterwards()
    {
        connectFilled({{u"A"_s, atRest}, {u"B"_s, atRest}});
        const auto guard = onFirst(&RecordItemMapModel::si_recordDeleted, [this] {
            m_map->EraseAt(u"B"_s, nullptr);
            set(u"C"_s, atRest);
        });
        m_map->EraseAt(u"A"_s, nullptr);
        QCOMPARE(m_log->take(),
                 lines({"begin remove 0-0", "end remove 0-0", "record deleted A", "begin insert 1-1", "end insert 1-1",
                        "record changed C", "begin remove 0-0", "end remove 0-0", "record deleted B"}));
        QCOMPARE(ids(), u"C"_s);
    }

    void recordErasedByASlotWhileItIsQueuedKeepsItsRowUntilItsNextChange()
    {
        connectFilled({{u"A"_s, atRest}});
        const auto guard = onFirst(&RecordItemMapModel::si_recordChanged, [this] { m_map->EraseAt(u"B"_s, nullptr); });
        fold([this] {
            set(u"B"_s, recording);
            set(u"A"_s, atRest, 1);
        });
        QCOMPARE(m_log->take(), lines({"changed 0", "record changed A", "begin insert 1-1", "end insert 1-1",
                                       "record changed B", "status of B 2 after 5"}));
        QVERIFY(!m_map->contains(u"B"_s));
        m_map->SetAt(u"B"_s, RecordMapData(), nullptr);
        QCOMPARE(m_log->take(),
                 lines({"begin remove 1-1", "end remove 1-1", "record deleted B", "deleted while recording B"}));
    }

    void recordQueuedBeforeAClearByASlotReachesTheListAfterIt()
    {
        connectFilled({{u"A"_s, atRest}});
        const auto guard = onFirst(&RecordItemMapModel::si_recordChanged, [this] { m_map->Clear(nullptr); });
        fold([this] {
            set(u"B"_s, atRest);
            set(u"A"_s, atRest, 1);
        });
        QCOMPARE(m_log->take(),
                 lines({"changed 0", "record changed A", "begin reset", "end reset", "all records changed",
                        "begin insert 0-0", "end insert 0-0", "record changed B"}));
        QVERIFY(m_map->Empty());
    }

    void disconnectBySlotEndsTheWork_data()
    {
        QTest::addColumn<QByteArray>("moment");
        for (const char* moment : {"update", "insertion", "removal", "reload"}) {
            QTest::newRow(moment) << QByteArray(moment);
        }
    }
    void disconnectBySlotEndsTheWork()
    {
        QFETCH(const QByteArray, moment);
        connectFilled(manyAtRest(6));
        const auto letGo = [this] { m_model->disconnect(); };
        std::shared_ptr<QObject> guard;
        if (moment == "removal") {
            guard = onFirst(&RecordItemMapModel::si_recordDeleted, letGo);
        } else if (moment == "reload") {
            guard = onFirst(&RecordItemMapModel::si_allRecordsChanged, letGo);
        } else {
            guard = onFirst(&RecordItemMapModel::si_recordChanged, letGo);
        }
        fold([&] {
            if (moment == "reload") {
                overrun();
            }
            if (moment == "update") {
                set(u"0"_s, recording);
            }
            if (moment != "removal") {
                set(u"new"_s, recording);
                set(u"newer"_s, recording);
            }
            for (const int number : {1, 3, 5}) {
                m_map->EraseAt(numbered(number), nullptr);
            }
        });
        QVERIFY(!m_model->connected());
        QCOMPARE(m_model->rowCount(), 0);
        QCOMPARE(m_log->take().filter(u"all records changed"_s).size(), moment == "reload" ? 2 : 1);
        checkLookUps();
    }

    void rowThatGoesWithItsOwnChangeIsNotAnnounced()
    {
        connectFilled({{u"A"_s, atRest}});
        const auto guard = onFirst(&RecordItemMapModel::dataChanged, [this] { m_model->disconnect(); });
        fold([this] { set(u"A"_s, recording); });
        QCOMPARE(m_log->take(), lines({"changed 0", "begin reset", "end reset", "all records changed"}));
    }

    void mapDeletedByASlotEndsTheWork()
    {
        connectFilled(manyAtRest(6));
        const auto guard = onFirst(&RecordItemMapModel::si_recordDeleted, [] { Tree::Instance()->Remove(mapPath); });
        fold([this] {
            for (const int number : {1, 3, 5}) {
                m_map->EraseAt(numbered(number), nullptr);
            }
        });
        QVERIFY(!m_model->connected());
        QCOMPARE(m_log->take(), lines({"begin remove 5-5", "end remove 5-5", "record deleted 5", "begin reset",
                                       "end reset", "all records changed"}));
    }

    void reconnectBySlotShowsTheNewMap()
    {
        auto* const other =
            Tree::Instance()->Emplace(folder, std::make_unique<RecordItemMap>(u"Other"_s, TValueState::Open));
        other->Add(item(u"Z"_s), nullptr);
        connectFilled(manyAtRest(6));
        const auto guard =
            onFirst(&RecordItemMapModel::si_recordDeleted, [this] { m_model->connect(folder + u"/Other"_s); });
        fold([this] {
            for (const int number : {1, 3, 5}) {
                m_map->EraseAt(numbered(number), nullptr);
            }
        });
        QCOMPARE(ids(), u"Z"_s);
        other->Add(item(u"Y"_s), nullptr);
        QCOMPARE(ids(), u"Z Y"_s);
    }

    // Rows

    void rowsOutsideOfTheListHaveNothing_data()
    {
        QTest::addColumn<int>("row");
        QTest::newRow("before the first") << -1;
        QTest::newRow("behind the last") << 2;
        QTest::newRow("far away") << std::numeric_limits<int>::max();
    }
    void rowsOutsideOfTheListHaveNothing()
    {
        QFETCH(const int, row);
        connectFilled({{u"A"_s, atRest}, {u"B"_s, atRest}});
        QVERIFY(!m_model->recordData(row));
        QVERIFY(m_model->recordID(row).isEmpty());
    }

    void unknownChangeIsTracedAndReadingGoesOn_data()
    {
        QTest::addColumn<unsigned int>("mask");
        QTest::addColumn<QStringList>("traces");
        QTest::newRow("errors wanted") << unsigned{ErrorHandler::TraceError}
                                       << lines({"RecordItemMapModel::Update() -> RecordMap unhandled changeID 9"});
        QTest::newRow("errors not wanted") << unsigned{ErrorHandler::TraceWarning} << QStringList();
    }
    void unknownChangeIsTracedAndReadingGoesOn()
    {
        QFETCH(const unsigned int, mask);
        connectFilled({{u"A"_s, atRest}});
        const unsigned int maskBefore = ErrorHandler::Instance()->GetTraceMask();
        ErrorHandler::Instance()->SetTraceMask(mask);
        const TraceLog traces;
        fold([this] {
            ValueItemMapBase<void, void, void>::append(*m_map, 9, u"A"_s);
            set(u"B"_s, atRest);
        });
        ErrorHandler::Instance()->SetTraceMask(maskBefore);
        QTEST(traces.texts(), "traces");
        QCOMPARE(m_log->take(), lines({"begin insert 1-1", "end insert 1-1", "record changed B"}));
    }

    // Anything

    void modelEndsEqualToTheMapWhateverHappens_data()
    {
        QTest::addColumn<unsigned int>("seed");
        for (const unsigned int seed : {1U, 2U, 3U, 4U, 5U, 6U}) {
            QTest::newRow(qPrintable(u"seed %1"_s.arg(seed))) << seed;
        }
    }
    void modelEndsEqualToTheMapWhateverHappens()
    {
        QFETCH(const unsigned int, seed);
        std::mt19937 random(seed);
        const auto below = [&](int limit) { return static_cast<int>(random() % static_cast<unsigned int>(limit)); };
        QVERIFY(m_model->connect(mapPath));
        for (int step = 0; step < 400; ++step) {
            fold([&] { randomFold(below); });
            if (below(50) == 0) {
                m_model->disconnect();
                QVERIFY(m_model->connect(mapPath));
            }
            if (step % 20 == 0) {
                checkEqualToMap();
            }
        }
        checkEqualToMap();
    }

private:
    using Statuses = std::initializer_list<std::pair<QString, int>>;

    static RecordMapData item(const QString& id, int status = atRest, quint64 size = 0)
    {
        return RecordMapData(makeRecord(id, status, size));
    }
    static QString numbered(int number) { return QString::number(number); }
    static std::vector<std::pair<QString, int>> manyAtRest(int count)
    {
        std::vector<std::pair<QString, int>> result;
        for (int i = 0; i < count; ++i) {
            result.emplace_back(numbered(i), atRest);
        }
        return result;
    }

    void set(const QString& id, int status, quint64 size = 0) { m_map->SetAt(id, item(id, status, size), nullptr); }

    template <typename Changes>
    void fold(Changes changes)
    {
        const auto keepAlive = m_map;
        keepAlive->StartTransaction(nullptr);
        changes();
        keepAlive->EndTransaction(TChangeCode::ValueChanged, nullptr);
    }

    // More changes than the log keeps.
    void overrun()
    {
        for (int i = 0; i <= 250; ++i) {
            set(u"overrun"_s, atRest, m_size++);
        }
    }

    void connectFilled(const std::vector<std::pair<QString, int>>& records)
    {
        for (const auto& [id, status] : records) {
            set(id, status);
        }
        QVERIFY(m_model->connect(mapPath));
        m_log->take();
    }

    // Runs `action` when the signal comes for the first time, for as long as the result lives.
    template <typename Signal, typename Action>
    std::shared_ptr<QObject> onFirst(Signal signal, Action action)
    {
        auto guard = std::make_shared<QObject>();
        QObject::connect(m_model.get(), signal, guard.get(), [done = false, action]() mutable {
            if (!std::exchange(done, true)) {
                action();
            }
        });
        return guard;
    }

    // A few changes folded into one notification. What is erased is not set again in the same one.
    template <typename Below>
    void randomFold(Below below)
    {
        if (below(40) == 0) {
            overrun();
        }
        QSet<QString> erased;
        for (int changes = below(20); changes > 0; --changes) {
            const QString id = numbered(below(60));
            const int kind = below(200);
            if (kind == 0 && erased.isEmpty()) {
                m_map->Clear(nullptr);
            } else if (kind < 60) {
                m_map->EraseAt(id, nullptr);
                erased.insert(id);
            } else if (!erased.contains(id)) {
                set(id, 1 + below(5), m_size++);
            }
        }
    }

    QString ids() const { return columnTexts(*m_model, RecordItemMapModel::RecordIDColumn).join(QLatin1Char(' ')); }
    QString sortedIds() const
    {
        QStringList texts = columnTexts(*m_model, RecordItemMapModel::RecordIDColumn);
        texts.sort();
        return texts.join(QLatin1Char(' '));
    }

    void checkLookUps() const
    {
        for (int row = 0; row < m_model->rowCount(); ++row) {
            const QString id = m_model->recordID(row);
            QVERIFY(!id.isEmpty());
            QCOMPARE(m_model->recordIndex(id).row(), row);
            QCOMPARE(m_model->getRecordData(id).get(), m_model->recordData(row).get());
        }
    }

    void checkEqualToMap() const
    {
        QCOMPARE(static_cast<std::uint64_t>(m_model->rowCount()), m_map->Size());
        checkLookUps();
        for (int row = 0; row < m_model->rowCount(); ++row) {
            QCOMPARE(m_model->recordData(row).get(), m_map->At(m_model->recordID(row)).GetRecordData().get());
        }
    }

    RecordItemMap* m_map = nullptr;
    std::unique_ptr<RecordItemMapModel> m_model;
    std::optional<QAbstractItemModelTester> m_tester;
    std::optional<RecordSignalLog> m_log;
    quint64 m_size = 0;
};

QTEST_GUILESS_MAIN(TestRecordItemMapModel)
#include "tst_recorditemmapmodel.moc"
