#include <recorder/served/foreignedits.h>

#include <QTest>

#include <thread>

using namespace ZelkoRecorder;

namespace {

const QString id = QStringLiteral("R1");
const EditQueue::Entry entry{commentEdit(QStringLiteral("Neu")), [](StoreStatus) {}, {}};

} // namespace

class TestForeignEdits : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void refusesWhatNobodyRecords();
    void passesEditsToWhoRecords();
    void passesNothingOnceTheRecordingHasEnded();
    void letsThoseWaitWhoComeAtTheLastStep();
    void letsTheLastOneRecordThatBegan();
    void keepsTheQueueOfARecordingThatIsGone();
    void mayBeAskedByAnyThread();
};

void TestForeignEdits::refusesWhatNobodyRecords()
{
    ForeignEdits edits;
    QVERIFY(!edits.post(id, entry));
    edits.end(id); // of which it knows nothing
    QVERIFY(!edits.post(id, entry));
}

void TestForeignEdits::passesEditsToWhoRecords()
{
    ForeignEdits edits;
    const auto first = std::make_shared<EditQueue>();
    const auto second = std::make_shared<EditQueue>();
    edits.begin(id, first);
    edits.begin(QStringLiteral("R2"), second);
    QVERIFY(edits.post(QStringLiteral("R2"), entry));
    QVERIFY(first->take().empty());
    const auto passed = second->take();
    QCOMPARE(passed.size(), std::size_t{1});
    ZELKO_XML::ZELKO_RecordData record;
    QCOMPARE(passed.front().edit(record), StoreStatus::Done);
    QCOMPARE(record.GetRecordName(), QStringLiteral("Neu"));
}

void TestForeignEdits::passesNothingOnceTheRecordingHasEnded()
{
    ForeignEdits edits;
    const auto queue = std::make_shared<EditQueue>();
    edits.begin(id, queue);
    edits.end(id);
    QVERIFY(!edits.post(id, entry));
    QVERIFY(queue->take().empty());
}

void TestForeignEdits::letsThoseWaitWhoComeAtTheLastStep()
{
    ForeignEdits edits;
    const auto queue = std::make_shared<EditQueue>();
    edits.begin(id, queue);
    queue->close();
    QVERIFY(!edits.post(id, entry));
    int over = 0;
    QVERIFY(edits.post(id, {entry.edit, entry.answer, [&] { ++over; }}));
    QCOMPARE(over, 0);
    queue->end();
    QCOMPARE(over, 1);
}

void TestForeignEdits::letsTheLastOneRecordThatBegan()
{
    ForeignEdits edits;
    const auto before = std::make_shared<EditQueue>();
    const auto now = std::make_shared<EditQueue>();
    edits.begin(id, before);
    edits.begin(id, now);
    QVERIFY(edits.post(id, entry));
    QVERIFY(before->take().empty());
    QCOMPARE(now->take().size(), std::size_t{1});
}

void TestForeignEdits::keepsTheQueueOfARecordingThatIsGone()
{
    ForeignEdits edits;
    auto queue = std::make_shared<EditQueue>();
    const std::weak_ptr<EditQueue> watched = queue;
    edits.begin(id, queue);
    queue.reset();
    QVERIFY(edits.post(id, entry));
    edits.end(id);
    QVERIFY(watched.expired());
}

// Whatever is taken is in the queue: posts of one thread while the other one begins and ends.
void TestForeignEdits::mayBeAskedByAnyThread()
{
    ForeignEdits edits;
    const auto queue = std::make_shared<EditQueue>();
    std::size_t taken = 0;
    std::thread client([&] {
        for (int i = 0; i < 5000; ++i) {
            taken += edits.post(id, entry) ? std::size_t{1} : std::size_t{0};
        }
    });
    for (int i = 0; i < 5000; ++i) {
        edits.begin(id, queue);
        edits.end(id);
    }
    client.join();
    QCOMPARE(queue->take().size(), taken);
}

QTEST_GUILESS_MAIN(TestForeignEdits)
#include "tst_foreignedits.moc"
