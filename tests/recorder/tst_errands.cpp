#include <recorder/service/errands.h>

#include <QTest>

#include <thread>

using namespace ZelkoRecorder;
using namespace std::chrono_literals;

namespace {

// Endless where an answer is to come, short where none is.
constexpr std::chrono::milliseconds patient = 60s;
constexpr std::chrono::milliseconds impatient = 20ms;

// What a question asked on another thread ends with.
std::future<QString> askElsewhere(Errands& errands, std::function<void(const Reply<int>&)> question)
{
    return std::async(std::launch::async, [&errands, question = std::move(question)]() -> QString {
        try {
            return QString::number(errands.askFor<int>(question));
        } catch (Errands::Failure failure) {
            constexpr const char* names[] = {"going down", "not begun", "no answer"};
            return QString::fromLatin1(names[static_cast<int>(failure)]);
        }
    });
}

} // namespace

class TestErrands : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void answersOnItsOwnThread();
    void wakesItsThreadOnceForManyQuestions();
    void takesTheFirstAnswerOnly();
    void takesAnAnswerThatComesLaterFromAnotherThread();
    void givesUpWhatItDoesNotComeTo();
    void saysWhenAnAnswerMayStillCome();
    void tellsThoseThatWaitWhenItCloses();
    void refusesQuestionsOnceItIsClosed();
    void tellsWhenAReplyIsLost();
};

void TestErrands::answersOnItsOwnThread()
{
    std::promise<void> woken;
    Errands errands([&] { woken.set_value(); }, patient);
    std::thread::id where;
    auto answer = askElsewhere(errands, [&](const Reply<int>& reply) {
        where = std::this_thread::get_id();
        reply(42);
    });
    woken.get_future().wait();
    errands.run();
    QCOMPARE(answer.get(), QStringLiteral("42"));
    QVERIFY(where == std::this_thread::get_id());
}

void TestErrands::wakesItsThreadOnceForManyQuestions()
{
    int wakeUps = 0;
    Errands errands([&] { ++wakeUps; }, impatient);
    for (int i = 0; i < 3; ++i) {
        QVERIFY_EXCEPTION_THROWN(errands.ask<int>([] { return 1; }), Errands::Failure); // nobody comes to it
    }
    QCOMPARE(wakeUps, 1);
}

void TestErrands::takesTheFirstAnswerOnly()
{
    std::promise<void> woken;
    Errands errands([&] { woken.set_value(); }, patient);
    auto answer = askElsewhere(errands, [](const Reply<int>& reply) {
        reply(1);
        reply(2);
    });
    woken.get_future().wait();
    errands.run();
    QCOMPARE(answer.get(), QStringLiteral("1"));
}

void TestErrands::takesAnAnswerThatComesLaterFromAnotherThread()
{
    std::promise<void> woken;
    Errands errands([&] { woken.set_value(); }, patient);
    std::optional<Reply<int>> kept;
    auto answer = askElsewhere(errands, [&](const Reply<int>& reply) { kept = reply; });
    woken.get_future().wait();
    errands.run();
    std::thread([&] { (*kept)(7); }).join();
    QCOMPARE(answer.get(), QStringLiteral("7"));
}

void TestErrands::givesUpWhatItDoesNotComeTo()
{
    bool begun = false;
    Errands errands([] {}, impatient);
    auto answer = askElsewhere(errands, [&](const Reply<int>&) { begun = true; });
    QCOMPARE(answer.get(), QStringLiteral("not begun"));
    errands.run();
    QVERIFY(!begun);
}

// Where the machine stalls the question is not begun in time, and that is said: then it is asked again.
void TestErrands::saysWhenAnAnswerMayStillCome()
{
    std::optional<Reply<int>> kept;
    for (int attempt = 0; attempt < 20 && !kept; ++attempt) {
        std::promise<void> woken;
        Errands errands([&] { woken.set_value(); }, 500ms);
        auto answer = askElsewhere(errands, [&](const Reply<int>& reply) { kept = reply; });
        woken.get_future().wait();
        errands.run();
        QCOMPARE(answer.get(), kept ? QStringLiteral("no answer") : QStringLiteral("not begun"));
    }
    QVERIFY(kept);
    (*kept)(1); // nobody waits any more; nothing happens
}

void TestErrands::tellsThoseThatWaitWhenItCloses()
{
    std::promise<void> woken;
    Errands errands([&] { woken.set_value(); }, patient);
    auto answer = askElsewhere(errands, [](const Reply<int>& reply) { reply(1); });
    woken.get_future().wait();
    errands.close();
    QCOMPARE(answer.get(), QStringLiteral("going down"));
}

void TestErrands::refusesQuestionsOnceItIsClosed()
{
    Errands errands([] { QFAIL("nobody is to be woken"); }, patient);
    errands.close();
    QCOMPARE(askElsewhere(errands, [](const Reply<int>& reply) { reply(1); }).get(), QStringLiteral("going down"));
}

void TestErrands::tellsWhenAReplyIsLost()
{
    std::promise<void> woken;
    Errands errands([&] { woken.set_value(); }, patient);
    auto answer = askElsewhere(errands, [](const Reply<int>&) {});
    woken.get_future().wait();
    errands.run();
    QCOMPARE(answer.get(), QStringLiteral("going down"));
}

QTEST_GUILESS_MAIN(TestErrands)
#include "tst_errands.moc"
