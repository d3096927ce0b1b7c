#include "smallitemmap.h"

#include <QTest>

namespace {

using Log = ChangeLogTemplate<char, unsigned int>;

} // namespace

// The map is the only writer of its log, so the log is written through one here: change number n sets key n.
class tst_ChangeLogTemplate : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void isEmptyAtFirst();
    void givesChangesInOrder();
    void leavesOutParametersAloneWithoutAChange();
    void hasACursorPerReader();
    void tellsAReaderThatFellBehind();
    void readsTheOldestThatIsKept_data();
    void readsTheOldestThatIsKept();
    void startsALateReaderWithALoss();
    void answersNothingBeyondItsEnd_data();
    void answersNothingBeyondItsEnd();
    void keepsEverythingWhenItGrows();
    void keepsTheOldestWhenItShrinks();
    void readsOnBehindAGap();
    void isReadThroughAGapOfAnyKind_data();
    void isReadThroughAGapOfAnyKind();
    void countsOnWithoutAnyCapacity();
    void refusesACapacityThatIsTooLarge_data();
    void refusesACapacityThatIsTooLarge();
    void staysAsItIsForTheSameCapacity();

private:
    void change(unsigned int count)
    {
        for (unsigned int i = 0; i < count; ++i) {
            const auto next = static_cast<unsigned int>(log().NextNumber());
            m_map->SetAt(next, NumberItem(next, 1), nullptr);
        }
    }
    const Log& log() const { return m_map->GetChangeLog(); }
    QStringList read(std::uint64_t position) const { return readLog(log(), position); }

    std::unique_ptr<NumberItemMap> m_map;
};

namespace {

QStringList sets(unsigned int first, unsigned int count)
{
    QStringList result;
    for (unsigned int i = first; i < first + count; ++i) {
        result << QStringLiteral("1 %1").arg(i);
    }
    return result;
}

} // namespace

void tst_ChangeLogTemplate::init()
{
    m_map = std::make_unique<NumberItemMap>();
}

void tst_ChangeLogTemplate::isEmptyAtFirst()
{
    QCOMPARE(log().Capacity(), std::size_t{100});
    QCOMPARE(log().Size(), std::size_t{0});
    QCOMPARE(log().NextNumber(), std::uint64_t{0});
    QCOMPARE(read(0), QStringList());
}

void tst_ChangeLogTemplate::givesChangesInOrder()
{
    change(3);
    m_map->EraseAt(1, nullptr);
    m_map->Clear(nullptr);
    std::uint64_t position = 0;
    const unsigned int none = NumberItemMap::GetInvalidKey();
    QCOMPARE(readLog(log(), position), sets(0, 3) + QStringList({"2 1", QStringLiteral("3 %1").arg(none)}));
    QCOMPARE(position, std::uint64_t{5});
    QCOMPARE(readLog(log(), position), QStringList());
    QCOMPARE(position, std::uint64_t{5});
}

void tst_ChangeLogTemplate::leavesOutParametersAloneWithoutAChange()
{
    change(1);
    char type = 77;
    unsigned int key = 88;
    std::uint64_t position = 1;
    QCOMPARE(int{log().ReadNext(position, type, key)}, 0);
    QCOMPARE(int{type}, 77);
    QCOMPARE(key, 88u);
    position = 0;
    QCOMPARE(int{log().ReadNext(position, type, key)}, 1);
    QCOMPARE(int{type}, 1);
    QCOMPARE(key, 0u);
    QCOMPARE(position, std::uint64_t{1});
}

void tst_ChangeLogTemplate::hasACursorPerReader()
{
    std::uint64_t one = 0;
    std::uint64_t other = 0;
    change(2);
    QCOMPARE(readLog(log(), one), sets(0, 2));
    change(1);
    QCOMPARE(readLog(log(), one), sets(2, 1));
    QCOMPARE(readLog(log(), other), sets(0, 3));
}

void tst_ChangeLogTemplate::tellsAReaderThatFellBehind()
{
    change(101);
    std::uint64_t position = 0;
    char type = 0;
    unsigned int key = 0;
    QCOMPARE(int{log().ReadNext(position, type, key)}, -1);
    QCOMPARE(position, std::uint64_t{101});
    QCOMPARE(int{log().ReadNext(position, type, key)}, 0);
    QCOMPARE(position, std::uint64_t{101});
    change(1);
    QCOMPARE(readLog(log(), position), sets(101, 1));
}

void tst_ChangeLogTemplate::readsTheOldestThatIsKept_data()
{
    QTest::addColumn<unsigned int>("changes");
    QTest::addColumn<unsigned int>("oldest");
    QTest::newRow("full to the last place") << 100u << 0u;
    QTest::newRow("one dropped") << 101u << 1u;
    QTest::newRow("gone round more than once") << 250u << 150u;
}

void tst_ChangeLogTemplate::readsTheOldestThatIsKept()
{
    QFETCH(unsigned int, changes);
    QFETCH(unsigned int, oldest);
    change(changes);
    QCOMPARE(read(oldest), sets(oldest, 100));
    QCOMPARE(read(oldest + 37), sets(oldest + 37, 63));
    QCOMPARE(read(changes - 1), sets(changes - 1, 1));
    if (oldest > 0) {
        QCOMPARE(read(oldest - 1), QStringList({"lost"}));
    }
}

void tst_ChangeLogTemplate::startsALateReaderWithALoss()
{
    m_map->SetChangeLogSize(2);
    change(3);
    std::uint64_t position = 0;
    QCOMPARE(readLog(log(), position), QStringList({"lost"}));
    QCOMPARE(position, std::uint64_t{3});
}

void tst_ChangeLogTemplate::answersNothingBeyondItsEnd_data()
{
    QTest::addColumn<quint64>("position");
    QTest::newRow("at the next number") << quint64{5};
    QTest::newRow("one further") << quint64{6};
    QTest::newRow("at the end of all numbers") << ~quint64{0};
}

void tst_ChangeLogTemplate::answersNothingBeyondItsEnd()
{
    QFETCH(quint64, position);
    change(5);
    std::uint64_t cursor = position;
    QCOMPARE(readLog(log(), cursor), QStringList());
    QCOMPARE(cursor, std::uint64_t{position});
}

void tst_ChangeLogTemplate::keepsEverythingWhenItGrows()
{
    change(150);
    m_map->SetChangeLogSize(250);
    QCOMPARE(log().Capacity(), std::size_t{250});
    QCOMPARE(read(50), sets(50, 100));
    QCOMPARE(read(49), QStringList({"lost"}));
    change(150);
    QCOMPARE(read(50), sets(50, 250));
    change(1);
    QCOMPARE(read(50), QStringList({"lost"}));
    QCOMPARE(read(51), sets(51, 250));
}

void tst_ChangeLogTemplate::keepsTheOldestWhenItShrinks()
{
    change(100);
    m_map->SetChangeLogSize(10);
    QCOMPARE(log().Capacity(), std::size_t{10});
    QCOMPARE(log().Size(), std::size_t{10});
    QCOMPARE(log().NextNumber(), std::uint64_t{100});
    QCOMPARE(read(0), sets(0, 10));
    for (const std::uint64_t start : {std::uint64_t{10}, std::uint64_t{55}, std::uint64_t{99}}) {
        std::uint64_t position = start;
        QCOMPARE(readLog(log(), position), QStringList());
        QCOMPARE(position, start);
    }
}

void tst_ChangeLogTemplate::readsOnBehindAGap()
{
    change(100);
    m_map->SetChangeLogSize(10);
    change(1);
    char type = 0;
    unsigned int key = 0;
    std::uint64_t position = 97;
    QCOMPARE(int{log().ReadNext(position, type, key)}, 1);
    QCOMPARE(key, 100u);
    QCOMPARE(position, std::uint64_t{98});
    QCOMPARE(readLog(log(), position), QStringList({"1 100", "1 100", "1 100"}));
    QCOMPARE(position, std::uint64_t{101});
    QCOMPARE(read(0), QStringList({"lost"}));
    QCOMPARE(read(9).first(), QStringLiteral("1 9"));
    QCOMPARE(read(9).size(), 1 + 91);
    change(9);
    QCOMPARE(read(99), QStringList({"lost"}));
    QCOMPARE(read(100), sets(100, 10));
    change(1);
    QCOMPARE(read(100), QStringList({"lost"}));
    QCOMPARE(read(101), sets(101, 10));
}

void tst_ChangeLogTemplate::isReadThroughAGapOfAnyKind_data()
{
    QTest::addColumn<unsigned int>("kept");
    QTest::addColumn<unsigned int>("later");
    for (unsigned int kept : {1u, 2u, 7u}) {
        for (unsigned int later : {1u, 3u, 12u, 40u}) {
            QTest::addRow("%u kept, %u later", kept, later) << kept << later;
        }
    }
}

// Each position must give what a walk over all changes that are kept gives.
void tst_ChangeLogTemplate::isReadThroughAGapOfAnyKind()
{
    QFETCH(unsigned int, kept);
    QFETCH(unsigned int, later);
    change(20);
    m_map->SetChangeLogSize(kept);
    m_map->SetChangeLogSize(10);
    change(later);
    std::vector<unsigned int> expected;
    for (unsigned int i = 0; i < kept; ++i) {
        expected.push_back(i);
    }
    for (unsigned int i = 20; i < 20 + later; ++i) {
        expected.push_back(i);
    }
    expected.erase(expected.begin(), expected.end() - std::min<std::ptrdiff_t>(10, std::ssize(expected)));
    for (unsigned int start = 0; start < 20 + later; ++start) {
        std::uint64_t position = start;
        char type = 0;
        unsigned int key = 0;
        const signed char answer = log().ReadNext(position, type, key);
        if (start < expected.front()) {
            QCOMPARE(int{answer}, -1);
            QCOMPARE(position, std::uint64_t{20 + later});
        } else {
            QCOMPARE(int{answer}, 1);
            QCOMPARE(key, *std::find_if(expected.begin(), expected.end(), [&](unsigned int n) { return n >= start; }));
            QCOMPARE(position, std::uint64_t{start + 1});
        }
    }
}

void tst_ChangeLogTemplate::countsOnWithoutAnyCapacity()
{
    m_map->SetChangeLogSize(0);
    change(5);
    QCOMPARE(log().NextNumber(), std::uint64_t{5});
    QCOMPARE(log().Size(), std::size_t{0});
    std::uint64_t position = 0;
    QCOMPARE(readLog(log(), position), QStringList());
    QCOMPARE(position, std::uint64_t{0});
    m_map->SetChangeLogSize(10);
    QCOMPARE(readLog(log(), position), QStringList());
    change(1);
    QCOMPARE(readLog(log(), position), QStringList({"lost"}));
    QCOMPARE(position, std::uint64_t{6});
}

void tst_ChangeLogTemplate::refusesACapacityThatIsTooLarge_data()
{
    QTest::addColumn<unsigned int>("capacity");
    QTest::newRow("the largest number") << ~0u;
    QTest::newRow("2 GiB of numbers") << 0x80000000u / 16;
}

void tst_ChangeLogTemplate::refusesACapacityThatIsTooLarge()
{
    QFETCH(unsigned int, capacity);
    change(3);
    try {
        m_map->SetChangeLogSize(capacity);
        QFAIL("was not refused");
    } catch (const std::length_error& error) {
        QCOMPARE(error.what(), "circular_buffer");
    }
    QCOMPARE(log().Capacity(), std::size_t{100});
    QCOMPARE(read(0), sets(0, 3));
    QVERIFY_EXCEPTION_THROWN(Log{capacity}, std::length_error);
    QCOMPARE(Log{17}.Capacity(), std::size_t{17});
}

void tst_ChangeLogTemplate::staysAsItIsForTheSameCapacity()
{
    change(120);
    m_map->SetChangeLogSize(100);
    QCOMPARE(read(20), sets(20, 100));
}

QTEST_GUILESS_MAIN(tst_ChangeLogTemplate)
#include "tst_changelogtemplate.moc"
