#include <recorder/served/mailbox.h>

#include <patience.h>

#include <QTest>
#include <QThread>

#include <thread>

using namespace ZelkoRecorder;

class TestMailbox : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void runsWhatOtherThreadsPostInOrder();
    void runsNothingAtOnce();
    void takesWhatAFunctionPosts();
    void forgetsWhatWaitsWhenItGoes();
};

void TestMailbox::runsWhatOtherThreadsPostInOrder()
{
    constexpr int count = 2000;
    Mailbox mailbox;
    std::vector<int> ran;
    std::thread poster([&] {
        for (int i = 0; i < count; ++i) {
            mailbox.post([&ran, i] {
                QCOMPARE(QThread::currentThread(), qApp->thread());
                ran.push_back(i);
            });
        }
    });
    QTRY_COMPARE_WITH_TIMEOUT(ran.size(), std::size_t{count}, patience);
    poster.join();
    QVERIFY(std::is_sorted(ran.begin(), ran.end()));
}

void TestMailbox::runsNothingAtOnce()
{
    Mailbox mailbox;
    bool ran = false;
    mailbox.post([&] { ran = true; });
    QVERIFY(!ran);
    QTRY_VERIFY_WITH_TIMEOUT(ran, patience);
}

void TestMailbox::takesWhatAFunctionPosts()
{
    Mailbox mailbox;
    int depth = 0;
    std::function<void()> again = [&] {
        if (++depth < 5) {
            mailbox.post(again);
        }
    };
    mailbox.post(again);
    QTRY_COMPARE_WITH_TIMEOUT(depth, 5, patience);
}

void TestMailbox::forgetsWhatWaitsWhenItGoes()
{
    const auto alive = std::make_shared<int>();
    bool ran = false;
    {
        Mailbox mailbox;
        mailbox.post([&ran, alive] { ran = true; });
    }
    QCoreApplication::processEvents();
    QVERIFY(!ran);
    QCOMPARE(alive.use_count(), 1L);
}

QTEST_GUILESS_MAIN(TestMailbox)
#include "tst_mailbox.moc"
