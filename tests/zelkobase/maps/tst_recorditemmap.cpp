#include <zelkobase/maps/recorditemmap.h>

#include "changelogtext.h"
#include "testrecords.h"
#include "updatecounter.h"

#include <valuecore/valuefactory.h>
#include <valuecore/valuetypes.h>
#include <zelkobase/maps/itemmaptypes.h>

#include <QtTest>

using zelko::recordmap::RecordItemMap;
using zelko::recordmap::RecordMapData;

namespace {

const QString A = QStringLiteral("A");
const QString B = QStringLiteral("B");
const QString C = QStringLiteral("C");

RecordMapData item(const QString& id, quint64 size = 0)
{
    return RecordMapData(makeRecord(id, 5, size));
}

void fill(RecordItemMap& map, int count, int first = 0)
{
    for (int i = first; i < first + count; ++i) {
        map.Add(item(QString::number(i)), nullptr);
    }
}

std::string objectState(RecordItemMap& map)
{
    std::string state;
    map.AddObjectStateStringForTransmission(state, 0);
    return state;
}

const std::vector<TChangeCode> once{TChangeCode::ValueChanged};
const std::vector<TChangeCode> never;

} // namespace

class TestRecordItemMap : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        m_map = std::make_unique<RecordItemMap>(QStringLiteral("Map"), TValueState::Open);
        m_map->AddObserver(&m_observer);
        m_observer.take();
        m_cursor = 0;
    }
    void cleanup() { m_map.reset(); }

    void equalItemSetTwiceIsLoggedAndToldOnce()
    {
        QCOMPARE(m_map->SetAt(A, item(A), nullptr), A);
        QCOMPARE(m_map->SetAt(A, item(A), nullptr), A);
        QCOMPARE(changes(), QStringList{QStringLiteral("1 A")});
        QVERIFY(m_observer.take() == once);
    }

    void eachFormOfSettingUsesTheRecordsID()
    {
        QCOMPARE(m_map->Add(item(A), nullptr), A);
        QCOMPARE(m_map->PushBack(item(B), nullptr), B);
        QCOMPARE(m_map->Set(item(C), nullptr), C);
        QCOMPARE(m_map->InsertAt(A, item(A, 1), nullptr), A);
        QCOMPARE(changes().join(QLatin1Char(',')), QStringLiteral("1 A,1 B,1 C,1 A"));
    }

    void erasingAnUnknownIDChangesNothing()
    {
        m_map->EraseAt(A, nullptr);
        QCOMPARE(m_map->GetChangeLog().NextNumber(), std::uint64_t{0});
        QVERIFY(m_observer.take() == never);
    }

    void clearingAnEmptyMapChangesNothing()
    {
        m_map->Clear(nullptr);
        QCOMPARE(m_map->GetChangeLog().NextNumber(), std::uint64_t{0});
        QVERIFY(m_observer.take() == never);
    }

    void replacingNothingByNothingIsLoggedAndTold()
    {
        m_map->SetMap({}, nullptr);
        QCOMPARE(changes(), QStringList{QStringLiteral("3 ")});
        QVERIFY(m_observer.take() == once);
    }

    void readerFarBehindIsToldSoOnce()
    {
        fill(*m_map, 101);
        QCOMPARE(changes(), QStringList{QStringLiteral("behind")});
        QCOMPARE(m_cursor, std::uint64_t{101});
    }

    void readerAtTheOldestChangeReadsItAndOneBehindItDoesNot()
    {
        fill(*m_map, 101);
        m_cursor = 1;
        QCOMPARE(changes().size(), 100);
        m_cursor = 0;
        QCOMPARE(changes().size(), 1);
    }

    void growingTheLogKeepsChangesAndNumbers()
    {
        fill(*m_map, 101);
        m_map->SetChangeLogSize(250);
        fill(*m_map, 100, 101);
        m_cursor = 1;
        const QStringList read = changes();
        QCOMPARE(read.size(), 200);
        QCOMPARE(read.first(), QStringLiteral("1 1"));
        QCOMPARE(read.last(), QStringLiteral("1 200"));
    }

    void shrinkingTheLogKeepsTheOldestChanges()
    {
        fill(*m_map, 100);
        m_map->SetChangeLogSize(10);
        QCOMPARE(m_map->GetChangeLog().NextNumber(), std::uint64_t{100});
        char type = 0;
        QString key;
        m_cursor = 10;
        QCOMPARE(int{m_map->GetChangeLog().ReadNext(m_cursor, type, key)}, 0);
        m_cursor = 100;
        QCOMPARE(int{m_map->GetChangeLog().ReadNext(m_cursor, type, key)}, 0);
        m_map->Add(item(A), nullptr);
        m_cursor = 10;
        QCOMPARE(int{m_map->GetChangeLog().ReadNext(m_cursor, type, key)}, 1);
        QCOMPARE(key, A);
    }

    void differencesOfAnEqualListEndTheTransactionWithoutAChange()
    {
        m_map->Add(item(A), nullptr);
        changes();
        m_observer.take();
        m_map->Set(std::list{item(A)}, true, true, nullptr);
        QVERIFY(changes().isEmpty());
        QVERIFY(m_observer.take() == once);
    }

    void differencesOfAListRemoveWhatItDoesNotHold()
    {
        fill(*m_map, 2);
        changes();
        m_map->Set(std::list{item(QStringLiteral("1")), item(A)}, true, true, nullptr);
        QCOMPARE(changes().join(QLatin1Char(',')), QStringLiteral("1 A,2 0"));
    }

    void givenMapReplacesAllWhateverIsSaidOfTheOthers()
    {
        m_map->Add(item(A), nullptr);
        changes();
        m_map->Set(RecordItemMap::MapType{{B, item(B)}}, false, false, nullptr);
        QCOMPARE(changes().join(QLatin1Char(',')), QStringLiteral("3 ,1 B"));
        QVERIFY(!m_map->contains(A));
    }

    void copyTakesItemsButNeitherLogNorObservers()
    {
        RecordItemMap other(QStringLiteral("Other"), TValueState::Open);
        other.Add(item(A), nullptr);
        *m_map = other;
        QVERIFY(m_map->contains(A));
        QCOMPARE(m_map->GetChangeLog().NextNumber(), std::uint64_t{0});
        QVERIFY(m_observer.take() == never);
        QCOMPARE(RecordItemMap(other).Size(), std::uint64_t{1});
        QVERIFY(m_map->Compare(&other));
    }

    void valueOfAnotherTypeIsNotAssigned()
    {
        QVERIFY_EXCEPTION_THROWN(m_map->Assign(Value<int>()), std::bad_cast);
        const Value<int> number;
        QVERIFY(!m_map->Compare(&number));
    }

    void setWithoutAKeyThrowsAndChangesNothing()
    {
        try {
            m_map->SetAt(QString(), item(A), nullptr);
            QFAIL("no exception");
        } catch (const std::exception& error) {
            QCOMPARE(QString::fromLatin1(error.what()),
                     QStringLiteral(
                         "Cannot create unique key for this KeyType. Override CreateNewUnqiqueKey() method in your "
                         "item map specialization"));
        }
        QVERIFY(m_map->Empty());
        QVERIFY(m_observer.take() == never);
    }

    void lookUpOfAMissingKeyThrows()
    {
        try {
            m_map->At(A);
            QFAIL("no exception");
        } catch (const std::out_of_range& error) {
            QCOMPARE(error.what(), "invalid unordered_map<K, T> key");
        }
    }

    void findGivesTheKeyOfAnEqualItem()
    {
        m_map->Add(item(A, 7), nullptr);
        QCOMPARE(m_map->find(item(A, 7)), A);
        QCOMPARE(m_map->find(item(A, 8)), RecordItemMap::GetInvalidKey());
    }

    void displayTextCountsTheOtherItems()
    {
        QVERIFY(m_map->GetStringValue().isEmpty());
        m_map->Add(item(A), nullptr);
        QCOMPARE(m_map->GetStringValue(), QStringLiteral("name of A (A) - 0 more items..."));
        m_map->Add(item(B), nullptr);
        QVERIFY(m_map->GetStringValue().endsWith(QStringLiteral(" - 1 more items...")));
    }

    void recordWithoutDataIsAnItem()
    {
        m_map->SetAt(A, RecordMapData(), nullptr);
        QVERIFY(m_map->contains(A));
        QVERIFY(!m_map->At(A).GetRecordData());
        m_map->SetAt(A, RecordMapData(), nullptr);
        QCOMPARE(changes(), QStringList{QStringLiteral("1 A")});
    }

    void objectStateMakesACopy()
    {
        fill(*m_map, 20);
        m_map->SetAt(A, RecordMapData(), nullptr);
        RecordItemMap copy;
        copy.Add(item(C), nullptr);
        QVERIFY(copy.SetCommandString(objectState(*m_map), nullptr));
        QVERIFY(copy.data() == m_map->data());
    }

    void changesTravelAsCommands()
    {
        m_map->SetRecording(true);
        fill(*m_map, 3);
        m_map->EraseAt(QStringLiteral("1"), nullptr);
        m_map->Add(item(QStringLiteral("0"), 99), nullptr);
        RecordItemMap copy;
        QVERIFY(copy.SetCommandString(m_map->GetCommandStringForRecording(), nullptr));
        QVERIFY(copy.data() == m_map->data());
        m_map->Clear(nullptr);
        QVERIFY(copy.SetCommandString(m_map->GetCommandStringForRecording(), nullptr));
        QVERIFY(copy.Empty());
    }

    void keyAndRecordShareOneTextAfterReading()
    {
        m_map->Add(item(QStringLiteral("a long identifier")), nullptr);
        RecordItemMap copy;
        QVERIFY(copy.SetCommandString(objectState(*m_map), nullptr));
        const auto& [key, read] = *copy.data().begin();
        QCOMPARE(static_cast<const void*>(key.constData()),
                 static_cast<const void*>(read.GetRecordData()->GetRecordID().constData()));
    }

    void recordUnderAForeignKeyKeepsBoth()
    {
        m_map->SetAt(B, item(A), nullptr);
        RecordItemMap copy;
        QVERIFY(copy.SetCommandString(objectState(*m_map), nullptr));
        QCOMPARE(copy.At(B).GetKey(), A);
    }

    void truncatedStateIsRefusedWhole()
    {
        fill(*m_map, 3);
        const std::string state = objectState(*m_map);
        std::size_t accepted = 0;
        for (std::size_t size = 1; size < state.size(); ++size) {
            RecordItemMap copy;
            copy.Add(item(C), nullptr);
            if (copy.SetCommandString(std::string_view(state).substr(0, size), nullptr)) {
                ++accepted;
            } else {
                QCOMPARE(copy.IndexVector(), std::vector{C});
            }
        }
        QCOMPARE(accepted, std::size_t{5}); // a cut behind the state, the clear, the size and two of the three items
    }

    void valueIsMadeByTheNameOfItsType()
    {
        zelko::registerItemMapTypes();
        zelko::registerItemMapTypes();
        const auto made = valuefactory::create(m_map->GetTypeName());
        QVERIFY(dynamic_cast<RecordItemMap*>(made.get()));
        QCOMPARE(made->GetType(), m_map->GetType());
    }

private:
    QStringList changes() { return readChanges(m_map->GetChangeLog(), m_cursor); }

    UpdateCounter m_observer;
    std::unique_ptr<RecordItemMap> m_map;
    std::uint64_t m_cursor = 0;
};

QTEST_GUILESS_MAIN(TestRecordItemMap)
#include "tst_recorditemmap.moc"
