#include "mapmodelsetting.h"

#include <observerbase/errorhandler.h>
#include <observerbase/trace.h>
#include <valuecore/valuetypes.h>

#include <limits>

// Any instance of the template may write to a log; this one writes what no map would.
template <>
class ValueItemMapBase<void, void, void>
{
public:
    static void append(zelko::recordmap::RecordItemMap& map, char type, const QString& key)
    {
        const_cast<zelko::recordmap::RecordItemMap::ChangeLog&>(map.GetChangeLog()).append(type, key);
    }
};

namespace {

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

class TestRecordItemMapModel : public QObject, private MapModelSetting
{
    Q_OBJECT

private Q_SLOTS:
    void init() { setUp(); }
    void cleanup() { tearDown(); }

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
};

QTEST_GUILESS_MAIN(TestRecordItemMapModel)
#include "tst_recorditemmapmodel.moc"
