#include "mapmodelsetting.h"

// Slots that change the map, or let go of it, while the model works.
class TestRecordItemMapModelSlots : public QObject, private MapModelSetting
{
    Q_OBJECT

private Q_SLOTS:
    void init() { setUp(); }
    void cleanup() { tearDown(); }

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

private:
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
};

QTEST_GUILESS_MAIN(TestRecordItemMapModelSlots)
#include "tst_recorditemmapmodelslots.moc"
