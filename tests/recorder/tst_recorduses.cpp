#include <recorder/store/recorduses.h>

#include <QTest>

#include <atomic>
#include <thread>
#include <vector>

using namespace ZelkoRecorder;
using Kind = RecordUses::Kind;

class TestRecordUses : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void lastsAsLongAsItsHandle();
    void mayEndBeforeAUse();
    void allowsOneUseBesideAnother();
    void refusesADeletionOfWhatIsUsed_data();
    void refusesADeletionOfWhatIsUsed();
    void refusesUsesOfWhatIsDeleted();
    void tellsRecordsApart();
    void deletesNothingThatAnotherThreadUses();
};

void TestRecordUses::lastsAsLongAsItsHandle()
{
    RecordUses uses;
    RecordUses::Handle use = uses.begin(QStringLiteral("R1"), Kind::Copy);
    QVERIFY(!uses.begin(QStringLiteral("R1"), Kind::Deletion));
    use.reset();
    QVERIFY(uses.begin(QStringLiteral("R1"), Kind::Deletion));
}

void TestRecordUses::mayEndBeforeAUse()
{
    auto uses = std::make_unique<RecordUses>();
    RecordUses::Handle use = uses->begin(QStringLiteral("R1"), Kind::Copy);
    uses.reset();
    use.reset();
}

void TestRecordUses::allowsOneUseBesideAnother()
{
    RecordUses uses;
    RecordUses::Handle first = uses.begin(QStringLiteral("R1"), Kind::Copy);
    RecordUses::Handle second = uses.begin(QStringLiteral("R1"), Kind::Copy);
    RecordUses::Handle third = uses.begin(QStringLiteral("R1"), Kind::Replay);
    QVERIFY(first && second && third);
    for (RecordUses::Handle* const use : {&first, &second, &third}) {
        QVERIFY(!uses.begin(QStringLiteral("R1"), Kind::Deletion)); // as long as one of them is left
        use->reset();
    }
    QVERIFY(uses.begin(QStringLiteral("R1"), Kind::Deletion));
}

void TestRecordUses::refusesADeletionOfWhatIsUsed_data()
{
    QTest::addColumn<int>("kind");
    QTest::newRow("recorded") << static_cast<int>(Kind::Recording);
    QTest::newRow("replayed") << static_cast<int>(Kind::Replay);
    QTest::newRow("copied") << static_cast<int>(Kind::Copy);
    QTest::newRow("exported") << static_cast<int>(Kind::Export);
    QTest::newRow("deleted already") << static_cast<int>(Kind::Deletion);
}

void TestRecordUses::refusesADeletionOfWhatIsUsed()
{
    QFETCH(const int, kind);
    RecordUses uses;
    RecordUses::Handle use = uses.begin(QStringLiteral("R1"), static_cast<Kind>(kind));
    QVERIFY(!uses.begin(QStringLiteral("R1"), Kind::Deletion));
    use.reset();
    QVERIFY(uses.begin(QStringLiteral("R1"), Kind::Deletion));
}

void TestRecordUses::refusesUsesOfWhatIsDeleted()
{
    RecordUses uses;
    RecordUses::Handle deletion = uses.begin(QStringLiteral("R1"), Kind::Deletion);
    for (const Kind kind : {Kind::Recording, Kind::Replay, Kind::Copy, Kind::Export}) {
        QVERIFY(!uses.begin(QStringLiteral("R1"), kind));
    }
    deletion.reset();
    QVERIFY(uses.begin(QStringLiteral("R1"), Kind::Copy));
}

void TestRecordUses::tellsRecordsApart()
{
    RecordUses uses;
    const RecordUses::Handle use = uses.begin(QStringLiteral("R1"), Kind::Copy);
    QVERIFY(uses.begin(QStringLiteral("R2"), Kind::Deletion));
}

void TestRecordUses::deletesNothingThatAnotherThreadUses()
{
    RecordUses uses;
    std::atomic<int> inside = 0;
    std::atomic<bool> met = false;
    const auto work = [&](Kind kind) {
        for (int i = 0; i < 20'000; ++i) {
            if (const RecordUses::Handle use = uses.begin(QStringLiteral("R1"), kind)) {
                met = met || inside.fetch_add(1) != 0;
                inside.fetch_sub(1);
            }
        }
    };
    std::thread user([&] { work(Kind::Deletion); });
    work(Kind::Deletion);
    user.join();
    QVERIFY(!met);
    QVERIFY(uses.begin(QStringLiteral("R1"), Kind::Deletion));
}

QTEST_GUILESS_MAIN(TestRecordUses)
#include "tst_recorduses.moc"
