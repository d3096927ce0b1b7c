#include <zelkobase/connection/framequeue.h>

#include <QtTest>

using ZelkoCommon::FrameQueue;

namespace {

FrameQueue::SharedFrame frame(const char* text)
{
    return std::make_shared<const std::string>(text);
}

QStringList takeAll(FrameQueue& queue)
{
    QStringList batches;
    while (!queue.isEmpty()) {
        batches << QString::fromStdString(queue.takeBatch());
    }
    return batches;
}

} // namespace

class TestFrameQueue : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void batchesWholeFramesAsFarAsTheyFit();
    void cutsAFrameThatIsLargerThanABatch();
    void dropsWhatWasNotBegun();
    void clearsWhatWasBegunToo();
    void tellsChangesFromState();
};

void TestFrameQueue::batchesWholeFramesAsFarAsTheyFit()
{
    FrameQueue queue(10);
    QVERIFY(queue.isEmpty());
    QCOMPARE(queue.takeBatch(), std::string());
    queue.append(frame("aaaa"));
    queue.append(frame("bbbbbb"));
    queue.append(frame("c"));
    QCOMPARE(queue.bytes(), std::size_t{11});
    QCOMPARE(takeAll(queue), (QStringList{"aaaabbbbbb", "c"}));
}

void TestFrameQueue::cutsAFrameThatIsLargerThanABatch()
{
    FrameQueue queue(4);
    queue.append(frame("ab"));
    queue.append(frame("0123456789"));
    queue.append(frame("xy"));
    QCOMPARE(takeAll(queue), (QStringList{"ab", "0123", "4567", "89xy"}));
}

void TestFrameQueue::dropsWhatWasNotBegun()
{
    FrameQueue queue(4);
    queue.append(frame("0123456789"));
    queue.append(frame("x"));
    QCOMPARE(queue.takeBatch(), std::string("0123"));
    queue.drop();
    QCOMPARE(queue.bytes(), std::size_t{6});
    queue.append(frame("y"));
    QCOMPARE(takeAll(queue), (QStringList{"4567", "89y"}));
    queue.append(frame("z"));
    queue.drop();
    QVERIFY(queue.isEmpty());
}

void TestFrameQueue::clearsWhatWasBegunToo()
{
    FrameQueue queue(4);
    queue.append(frame("0123456789"));
    QCOMPARE(queue.takeBatch(), std::string("0123"));
    queue.clear();
    QVERIFY(queue.isEmpty());
    queue.append(frame("new"));
    QCOMPARE(takeAll(queue), QStringList{"new"});
}

void TestFrameQueue::tellsChangesFromState()
{
    FrameQueue queue(4);
    queue.append(frame("change"));
    queue.append(frame("state"), FrameQueue::Kind::State);
    queue.append(frame("more"));
    QCOMPARE(queue.changeBytes(), std::size_t{10});
    QCOMPARE(queue.takeBatch(), std::string("chan"));
    QCOMPARE(queue.changeBytes(), std::size_t{6});
    QCOMPARE(queue.takeBatch(), std::string("ge"));
    QCOMPARE(queue.takeBatch(), std::string("stat"));
    QCOMPARE(queue.bytes(), std::size_t{5});
    QCOMPARE(queue.changeBytes(), std::size_t{4});
    queue.drop();
    QCOMPARE(queue.bytes(), std::size_t{1});
    QCOMPARE(queue.changeBytes(), std::size_t{0});
}

QTEST_APPLESS_MAIN(TestFrameQueue)
#include "tst_framequeue.moc"
