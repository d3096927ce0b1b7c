#include "smallitemmap.h"

#include <QRandomGenerator>
#include <QTest>

// A reader that has read a change asks the map for the item, which may have changed, gone or come again since.
class tst_ItemOfChange : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { m_map = std::make_unique<NumberItemMap>(); }
    void isTheItemAsItIsNow();
    void isNoneWhenTheItemHasGone_data();
    void isNoneWhenTheItemHasGone();
    void isTheItemThatCameAgain();
    void isTheItemOfTheKeyThatAGapGives();
    void isFoundForChangesOfAnyAge();
    void isAlwaysWhatAtGives();

private:
    using Removal = std::function<void(NumberItemMap&)>;

    void set(unsigned int key, int number) { m_map->SetAt(key, NumberItem(key, number), nullptr); }
    void changeSomething(QRandomGenerator& random);
    bool readersAreGivenWhatAtGives() const;

    std::unique_ptr<NumberItemMap> m_map;
};

Q_DECLARE_METATYPE(std::function<void(NumberItemMap&)>)

void tst_ItemOfChange::isTheItemAsItIsNow()
{
    set(7, 1);
    set(7, 2);
    QCOMPARE(m_map->ItemOfChange(0, 7)->number(), 2);
    QCOMPARE(m_map->ItemOfChange(1, 7), &m_map->At(7));
}

void tst_ItemOfChange::isNoneWhenTheItemHasGone_data()
{
    QTest::addColumn<Removal>("remove");
    QTest::newRow("by an erase") << Removal([](NumberItemMap& map) { map.EraseAt(7, nullptr); });
    QTest::newRow("by a clear") << Removal([](NumberItemMap& map) { map.Clear(nullptr); });
    QTest::newRow("with its map replaced") << Removal([](NumberItemMap& map) { map.SetMap({}, nullptr); });
    QTest::newRow("by an assignment") << Removal([](NumberItemMap& map) { map = NumberItemMap(); });
    QTest::newRow("with its content detached") << Removal([](NumberItemMap& map) { map.DetachContent(); });
}

void tst_ItemOfChange::isNoneWhenTheItemHasGone()
{
    QFETCH(Removal, remove);
    set(7, 1);
    remove(*m_map);
    QVERIFY(!m_map->ItemOfChange(0, 7));
}

void tst_ItemOfChange::isTheItemThatCameAgain()
{
    set(7, 1);
    m_map->EraseAt(7, nullptr);
    set(8, 1);
    set(7, 2);
    QCOMPARE(m_map->ItemOfChange(0, 7), &m_map->At(7));
    QCOMPARE(m_map->ItemOfChange(3, 7), &m_map->At(7));
}

void tst_ItemOfChange::isTheItemOfTheKeyThatAGapGives()
{
    m_map->SetChangeLogSize(3);
    set(1, 1);
    set(2, 1);
    set(3, 1);
    m_map->SetChangeLogSize(2); // forgets the change of key 3, the newest
    set(4, 1);
    std::uint64_t position = 2;
    char type = 0;
    unsigned int key = 0;
    QCOMPARE(m_map->GetChangeLog().ReadNext(position, type, key), 1);
    QCOMPARE(key, 4u);
    QCOMPARE(m_map->ItemOfChange(2, key), &m_map->At(4));
}

void tst_ItemOfChange::isFoundForChangesOfAnyAge()
{
    m_map->SetChangeLogSize(2000);
    for (unsigned int key = 0; key < 2000; ++key) {
        set(key, 1);
    }
    for (unsigned int key = 0; key < 2000; ++key) {
        QCOMPARE(m_map->ItemOfChange(key, key), &m_map->At(key));
    }
}

void tst_ItemOfChange::changeSomething(QRandomGenerator& random)
{
    const unsigned int key = random.bounded(40u);
    const int number = random.bounded(5);
    switch (random.bounded(60)) {
    case 0:
        m_map->Clear(nullptr);
        break;
    case 1:
        m_map->SetMap({{key, NumberItem(key, number)}, {key + 1, NumberItem(key + 1, number)}}, nullptr);
        break;
    case 2:
        m_map->SetMap(m_map->data(), nullptr);
        break;
    case 3:
        m_map->SetChangeLogSize(static_cast<unsigned int>(random.bounded(1, 400)));
        break;
    case 4:
        m_map->DetachContent();
        break;
    case 5:
    case 6:
    case 7:
    case 8:
    case 9:
    case 10:
        m_map->EraseAt(key, nullptr);
        break;
    default:
        set(key, number);
        break;
    }
}

bool tst_ItemOfChange::readersAreGivenWhatAtGives() const
{
    const auto& log = m_map->GetChangeLog();
    const std::uint64_t first = log.NextNumber() - std::min<std::uint64_t>(log.NextNumber(), 300);
    for (std::uint64_t number = first; number < log.NextNumber(); ++number) {
        std::uint64_t position = number;
        char type = 0;
        unsigned int key = 0;
        if (log.ReadNext(position, type, key) != 1 || type != valueitemmap::ChangeSet) {
            continue;
        }
        if (m_map->ItemOfChange(number, key) != (m_map->Contains(key) ? &m_map->At(key) : nullptr)) {
            return false;
        }
    }
    return true;
}

void tst_ItemOfChange::isAlwaysWhatAtGives()
{
    QRandomGenerator random(1);
    for (int step = 0; step < 20'000; ++step) {
        changeSomething(random);
        if (step % 16 == 0) {
            QVERIFY(readersAreGivenWhatAtGives());
        }
    }
}

QTEST_GUILESS_MAIN(tst_ItemOfChange)
#include "tst_itemofchange.moc"
