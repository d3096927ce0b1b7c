#include <zelkobase/orb/calldeadline.h>
#include <zelkobase/orb/orb.h>

#include "calllog.h"

#include <QElapsedTimer>
#include <QTcpServer>
#include <QtTest>

#include <future>

using namespace ZelkoCommon;
using namespace std::chrono_literals;

namespace {

constexpr auto forever = 60s;

// A limit that no test waits for.
OrbOptions patient()
{
    OrbOptions options;
    options.callTimeout = forever;
    return options;
}

// A port at which calls are taken and never answered.
class Silence
{
public:
    Silence() { m_server.listen(QHostAddress::LocalHost); }

    /// Whether a call ends before the limits of the process.
    bool endsCalls(const Orb& orb) const
    {
        QElapsedTimer timer;
        timer.start();
        const CORBA::Object_var object = orb.remoteObject("127.0.0.1", m_server.serverPort(), "Test");
        try {
            return object->_non_existent() && false;
        } catch (const CORBA::SystemException&) {
            return !timer.hasExpired(std::chrono::milliseconds(forever / 2).count());
        }
    }

private:
    QTcpServer m_server;
};

// Whether somebody answers a call over the wire in time; that the object is not there is an answer.
bool isAnswered(const Orb& orb)
{
    const CORBA::Object_var object = orb.remoteObject(overTheWire, orb.port(), "Test");
    try {
        return object->_non_existent();
    } catch (const CORBA::SystemException&) {
        return false;
    }
}

} // namespace

class TestCallDeadline : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void endsACall();
    void endsAllCallsTogether();
    void endsWithItsScope();
    void cannotBeLengthenedByAnInnerOne();
    void isShortenedByAnInnerOneUntilThatEnds();
    void doesNotBotherOtherThreads();
};

void TestCallDeadline::endsACall()
{
    const Silence silence;
    const Orb orb(patient());
    const CallDeadline deadline(100ms);
    QVERIFY(silence.endsCalls(orb));
}

void TestCallDeadline::endsAllCallsTogether()
{
    const Silence silence;
    const Orb orb(patient());
    const CallDeadline deadline(100ms);
    for (int i = 0; i < 3; ++i) {
        QVERIFY(silence.endsCalls(orb));
    }
}

void TestCallDeadline::endsWithItsScope()
{
    const Orb orb(patient());
    QVERIFY(isAnswered(orb));
    {
        const CallDeadline deadline(0ms);
        QVERIFY(!isAnswered(orb));
    }
    QVERIFY(isAnswered(orb));
}

void TestCallDeadline::cannotBeLengthenedByAnInnerOne()
{
    const Orb orb(patient());
    const CallDeadline outer(0ms);
    {
        const CallDeadline inner(forever);
        QVERIFY(!isAnswered(orb));
    }
    QVERIFY(!isAnswered(orb));
}

void TestCallDeadline::isShortenedByAnInnerOneUntilThatEnds()
{
    const Orb orb(patient());
    const CallDeadline outer(forever);
    {
        const CallDeadline inner(0ms);
        QVERIFY(!isAnswered(orb));
    }
    QVERIFY(isAnswered(orb));
}

void TestCallDeadline::doesNotBotherOtherThreads()
{
    const Orb orb(patient());
    const CallDeadline deadline(0ms);
    QVERIFY(std::async(std::launch::async, [&] { return isAnswered(orb); }).get());
    QVERIFY(!isAnswered(orb));
}

QTEST_GUILESS_MAIN(TestCallDeadline)
#include "tst_calldeadline.moc"
