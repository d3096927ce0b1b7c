#include "patience.h"

#include <zelkobase/connection/linkframe.h>
#include <zelkobase/connection/linksubscriber_p.h>
#include <zelkobase/orb/orb.h>

#include <QtTest>

#include <atomic>
#include <thread>

using namespace ZelkoCommon;
using namespace std::chrono_literals;

namespace {

const QString outOfTurn = QStringLiteral("no such session, or a batch out of turn");

struct Fixture
{
    explicit Fixture(std::size_t maxBytes = 1000, std::chrono::milliseconds limit = 60s)
        : queue(std::make_shared<LinkQueue>([] {}, maxBytes))
        , subscriber(new LinkSubscriber(queue, queue->open(), limit))
        , owner(subscriber)
    {}

    // Empty when the batch is taken, otherwise why it is not.
    QString deliver(ZelkoTreeLink::SessionId session, CORBA::ULong number, const std::string& bytes)
    {
        ZelkoTreeLink::Batch batch;
        batch.length(static_cast<CORBA::ULong>(bytes.size()));
        std::copy(bytes.begin(), bytes.end(), batch.get_buffer());
        try {
            subscriber->deliver(session, number, batch, link::checksum(bytes));
        } catch (const ZelkoTreeLink::Refused& refused) {
            return QString::fromUtf8(static_cast<const char*>(refused.text));
        }
        return {};
    }

    QString take()
    {
        const auto entry = queue->take();
        return entry ? QString::fromStdString(std::get<LinkQueue::Batch>(*entry).bytes) : QString();
    }

    std::shared_ptr<LinkQueue> queue;
    LinkSubscriber* subscriber;
    PortableServer::ServantBase_var owner;
};

} // namespace

class TestLinkSubscriber : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void takesTheBatchesOfItsSessionInOrder();
    void refusesWhatIsDamaged();
    void keepsABatchThatIsEarlierThanItsSession();
    void holdsFewCallsThatAreEarlierThanTheSession();
    void holdsNoCallWhenThereWillBeNoSession();
    void refusesABatchWhileTheOneBeforeWaits();

private:
    const Orb m_orb{{}};
};

void TestLinkSubscriber::takesTheBatchesOfItsSessionInOrder()
{
    Fixture f;
    f.subscriber->setSession(7);
    QCOMPARE(f.deliver(8, 0, "of another session"), outOfTurn);
    QCOMPARE(f.deliver(7, 1, "too early"), outOfTurn);
    QCOMPARE(f.deliver(7, 0, "a"), QString());
    QCOMPARE(f.deliver(7, 0, "again"), outOfTurn);
    QCOMPARE(f.deliver(7, 1, "b"), QString());
    QCOMPARE(f.take(), "a");
    QCOMPARE(f.take(), "b");
    QCOMPARE(f.take(), QString());
}

void TestLinkSubscriber::refusesWhatIsDamaged()
{
    Fixture f;
    f.subscriber->setSession(7);
    ZelkoTreeLink::Batch batch;
    batch.length(1);
    batch[0] = 'a';
    QVERIFY_EXCEPTION_THROWN(f.subscriber->deliver(7, 0, batch, link::checksum("b")), ZelkoTreeLink::Refused);
    QCOMPARE(f.take(), QString());
}

void TestLinkSubscriber::keepsABatchThatIsEarlierThanItsSession()
{
    Fixture f;
    QString answer = "none yet";
    std::thread call([&] { answer = f.deliver(7, 0, "a"); });
    f.subscriber->setSession(7);
    call.join();
    QCOMPARE(answer, QString());
    QCOMPARE(f.take(), "a");
}

// A stranger may call as well, and each call that waits holds a thread of the ORB.
void TestLinkSubscriber::holdsFewCallsThatAreEarlierThanTheSession()
{
    constexpr int count = 20;
    Fixture f;
    std::atomic<int> refused = 0;
    std::vector<std::thread> calls;
    for (int i = 0; i < count; ++i) {
        calls.emplace_back([&] { refused += f.deliver(7, 0, "a").isEmpty() ? 0 : 1; });
    }
    QTRY_COMPARE_WITH_TIMEOUT(refused.load(), count - 2, patience);
    f.subscriber->setSession(7);
    for (std::thread& call : calls) {
        call.join();
    }
    QCOMPARE(refused.load(), count - 1); // of two batches with one number one is taken
    QCOMPARE(f.take(), "a");
}

void TestLinkSubscriber::holdsNoCallWhenThereWillBeNoSession()
{
    Fixture f;
    QString answer;
    std::thread call([&] { answer = f.deliver(7, 0, "a"); });
    f.subscriber->end();
    call.join();
    QCOMPARE(answer, outOfTurn);
    f.subscriber->setSession(7);
    QCOMPARE(f.deliver(7, 0, "a"), outOfTurn);
}

void TestLinkSubscriber::refusesABatchWhileTheOneBeforeWaits()
{
    Fixture f(1, 5s);
    f.subscriber->setSession(7);
    QCOMPARE(f.deliver(7, 0, "a"), QString());
    QString answer;
    std::thread call([&] { answer = f.deliver(7, 1, "b"); });
    std::atomic<bool> refused = true;
    std::thread next([&] {
        for (int i = 0; i < 1000 && refused; ++i) {
            refused = f.deliver(7, 2, "c") == outOfTurn;
        }
    });
    next.join();
    QVERIFY(refused);
    QCOMPARE(f.take(), "a");
    call.join();
    QCOMPARE(answer, QString());
    QCOMPARE(f.take(), "b");
    QCOMPARE(f.deliver(7, 2, "c"), QString());
}

QTEST_GUILESS_MAIN(TestLinkSubscriber)
#include "tst_linksubscriber.moc"
