#include "mapmodelsetting.h"

#include <QSet>

#include <random>

// Many changes of the map in one notification.
class TestRecordItemMapModelFolds : public QObject, private MapModelSetting
{
    Q_OBJECT

private Q_SLOTS:
    void init() { setUp(); }
    void cleanup() { tearDown(); }

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

    QString sortedIds() const
    {
        QStringList texts = columnTexts(*m_model, RecordItemMapModel::RecordIDColumn);
        texts.sort();
        return texts.join(QLatin1Char(' '));
    }

    void checkEqualToMap() const
    {
        QCOMPARE(static_cast<std::uint64_t>(m_model->rowCount()), m_map->Size());
        checkLookUps();
        for (int row = 0; row < m_model->rowCount(); ++row) {
            QCOMPARE(m_model->recordData(row).get(), m_map->At(m_model->recordID(row)).GetRecordData().get());
        }
    }
};

QTEST_GUILESS_MAIN(TestRecordItemMapModelFolds)
#include "tst_recorditemmapmodelfolds.moc"
