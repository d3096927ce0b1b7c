#include "framestream.h"
#include "frametext.h"
#include "testrecords.h"
#include "treedigest.h"

#include <recorder/link/treelinkserver.h>

#include <valuecore/tree.h>
#include <valuecore/valuetypes.h>
#include <zelkobase/connection/treemirror.h>
#include <zelkobase/maps/itemmaptypes.h>
#include <zelkobase/maps/recorditemmap.h>
#include <zelkobase/orb/orb.h>
#include <zelkoidl/treelink.hh>

#include <QSignalSpy>
#include <QtTest>

#include <future>
#include <mutex>

using namespace ZelkoRecorder;
using namespace std::chrono_literals;
using zelko::recordmap::RecordItemMap;
using zelko::recordmap::RecordMapData;

namespace {

const QString root = QStringLiteral("/SubSystems/north");

// A client by hand: keeps what it is sent, and takes it only when it is let.
class Client final : public POA_ZelkoTreeLink::Subscriber, public PortableServer::RefCountServantBase
{
public:
    void deliver(ZelkoTreeLink::SessionId, CORBA::ULong number, const ZelkoTreeLink::Batch& commands,
                 ZelkoTreeLink::Checksum check) override
    {
        const std::lock_guard lock(m_mutex);
        const std::string bytes(reinterpret_cast<const char*>(commands.get_buffer()), commands.length());
        if (number != m_batches++ || ZelkoCommon::link::checksum(bytes) != check) {
            m_bytes += "out of order, or damaged";
        }
        m_bytes += bytes;
    }
    std::string take()
    {
        const std::lock_guard lock(m_mutex);
        return std::exchange(m_bytes, {});
    }

private:
    std::mutex m_mutex;
    std::string m_bytes;
    CORBA::ULong m_batches = 0;
};

// Calls of a client wait for the thread of the tree, which is this one.
template <typename Call>
auto elsewhere(Call call)
{
    auto result = std::async(std::launch::async, call);
    while (result.wait_for(0ms) != std::future_status::ready) {
        QCoreApplication::processEvents(QEventLoop::AllEvents, 10);
    }
    return result.get();
}

struct Fixture
{
    explicit Fixture(const TreeLinkServerOptions& options = {}, TreeLinkServer::Authenticate authenticate = {})
        : server(
              orb, tree, options,
              [](const LinkUser& user, const ValueBase& value) {
                  return user.name == "operator" && value.GetName() != "Locked";
              },
              std::move(authenticate))
    {
        const CORBA::Object_var object = orb.remoteObject("127.0.0.1", orb.port(), ZelkoTreeLink::OBJECT_KEY);
        remote = ZelkoTreeLink::TreeServer::_unchecked_narrow(object);
        client = new Client;
        owner = client;
        const PortableServer::ObjectId_var id = orb.rootPoa()->activate_object(client);
        reference = client->_this();
    }

    ZelkoTreeLink::SessionId attach(const char* user = "operator",
                                    CORBA::ULong version = ZelkoTreeLink::PROTOCOL_VERSION)
    {
        return elsewhere([&] { return remote->attach(version, {user, "secret"}, reference); });
    }

    // Empty when it went well, otherwise the text of the refusal.
    QString refusalOfAttach(const char* user, CORBA::ULong version = ZelkoTreeLink::PROTOCOL_VERSION)
    {
        try {
            attach(user, version);
        } catch (const ZelkoTreeLink::Refused& refused) {
            return describe(refused);
        }
        return {};
    }

    QString write(ZelkoTreeLink::SessionId session, const std::string& bytes, std::uint64_t damage = 0)
    {
        return elsewhere([&] { return call(session, bytes, damage); });
    }

    // The same while the thread of the tree is busy.
    QString writeToBusyTree(ZelkoTreeLink::SessionId session, const std::string& bytes)
    {
        return std::async(std::launch::async, [&] { return call(session, bytes, 0); }).get();
    }

    QString call(ZelkoTreeLink::SessionId session, const std::string& bytes, std::uint64_t damage)
    {
        ZelkoTreeLink::Batch batch;
        batch.length(static_cast<CORBA::ULong>(bytes.size()));
        std::copy(bytes.begin(), bytes.end(), batch.get_buffer());
        try {
            remote->write(session, batch, ZelkoCommon::link::checksum(bytes) + damage);
        } catch (const ZelkoTreeLink::Refused& refused) {
            return describe(refused);
        }
        return {};
    }

    // What a client that applies all it was sent has.
    QStringList received()
    {
        stream += client->take();
        Tree copy;
        ZelkoCommon::TreeMirror mirror(&copy, root, nullptr, {});
        mirror.append(stream);
        return mirror.apply(1h) == ZelkoCommon::TreeMirror::Progress::Idle ? treeList(copy, root)
                                                                           : QStringList("malformed");
    }

    static QString describe(const ZelkoTreeLink::Refused& refused)
    {
        return QStringLiteral("%1: %2")
            .arg(int(refused.reason))
            .arg(QString::fromUtf8(static_cast<const char*>(refused.text)));
    }

    ZelkoCommon::Orb orb{{}};
    Tree tree;
    Value<int>* number = tree.Emplace("/A", std::make_unique<Value<int>>("Number")); // handle 2
    Value<int>* locked = tree.Emplace("/A", std::make_unique<Value<int>>("Locked")); // handle 3
    TreeLinkServer server;
    ZelkoTreeLink::TreeServer_var remote;
    Client* client = nullptr;
    PortableServer::ServantBase_var owner;
    ZelkoTreeLink::Subscriber_var reference;
    std::string stream;
};

std::string setInt(int value)
{
    Value<int> source;
    std::string commands;
    Value<int>::CommandSet(&source, value, false, nullptr).AddCommandString(commands);
    return commands;
}

} // namespace

class TestTreeLinkServer : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void givesTheStateAndThenEachChange();
    void aStateWithAFrameLargerThanTheBacklogComesToAnEnd();
    void refusesAnotherVersion();
    void refusesWhoIsNotKnown();
    void saysWhyNobodyIsAdmittedNow();
    void tellsWhatAUserIs();
    void takesEverybodyForAViewerWithoutAnAuthenticator();
    void knowsNobodyByASessionThatEnded();
    void refusesWhoCannotBeCalledBack();
    void refusesMoreClientsThanItTakes();
    void refusesMoreClientsOfOneHostThanItTakes();
    void takesAClientAgainWhenOneLeft();
    void dropsAClientOfWhichNothingIsHeard();
    void keepsAClientThatIsHeard();
    void executesWritesInTheNameOfTheClient();
    void tellsAWriteToTheOtherClientsOnly();
    void refusesAndCorrectsWhatMayNotBeWritten();
    void manyRefusedWritesToALargeMapMakeOneState();
    void refusesWritesOfAUserWithoutRights();
    void doesTheRestOfABatchOfWhichAPartIsRefused();
    void endsASessionThatWritesWhatCannotBeRead();
    void carriesOutAWriteThatComesInPieces();
    void keepsNothingOfALongWriteThatMayNotBe();
    void tellsAValueAsItIsToWhoAsks();
    void doesNothingOfADamagedBatch_data();
    void doesNothingOfADamagedBatch();
    void passesOverWritesToWhatIsGone();
    void refusesWhatIsTooMuchToWaitForTheThreadOfTheTree();
    void letsAWriteOfAnySizeWaitAlone();
    void refusesSessionsThatItDoesNotKnow();
    void ignoresTheEndOfASessionThatItDoesNotKnow();
};

void TestTreeLinkServer::givesTheStateAndThenEachChange()
{
    Fixture f;
    f.number->SetValue(1, nullptr);
    f.attach();
    QTRY_COMPARE(f.received(), treeList(f.tree));
    f.number->SetValue(2, nullptr);
    f.tree.Remove("/A/Locked");
    f.tree.Emplace("/B", std::make_unique<Value<int>>("New"));
    QTRY_COMPARE(f.received(), treeList(f.tree));
    QCOMPARE(f.server.sessionCount(), 1);
    QCOMPARE(f.server.backlogBytes(), std::size_t{0});
    QCOMPARE(f.server.restartCount(), 0);
}

// While the frame waited, each change went beyond the bound, and the state began again.
void TestTreeLinkServer::aStateWithAFrameLargerThanTheBacklogComesToAnEnd()
{
    TreeLinkServerOptions options;
    options.maxBacklogBytes = 100000;
    Fixture f(options);
    auto* const large = f.tree.Emplace("/A", std::make_unique<Value<QString>>("Large"));
    large->SetValue(QString(2000000, 'x'), nullptr);
    f.attach();
    QTimer changes;
    constexpr int fewerThanTheBound = 500; // all of them together, for the day on which the client gets no time to run
    connect(&changes, &QTimer::timeout, this,
            [&] { f.number->SetValue(std::min(f.number->GetValue() + 1, fewerThanTheBound), nullptr); });
    changes.start(0);
    QTRY_VERIFY(frameTexts(f.stream += f.client->take()).contains("end"));
    changes.stop();
    QVERIFY(f.number->GetValue() > 1); // some came in the middle
    QCOMPARE(f.server.restartCount(), 0);
    QTRY_COMPARE(f.received(), treeList(f.tree));
}

void TestTreeLinkServer::refusesAnotherVersion()
{
    Fixture f;
    QCOMPARE(f.refusalOfAttach("operator", ZelkoTreeLink::PROTOCOL_VERSION - 1),
             "0: it speaks another version of the link");
    QCOMPARE(f.server.sessionCount(), 0);
}

void TestTreeLinkServer::refusesWhoIsNotKnown()
{
    using Outcome = LinkAdmission::Outcome;
    Fixture f({}, [](const QString& user, const QString& password, const std::string&) {
        const bool known = user == QStringLiteral("Jürgen") && password == "secret";
        return LinkAdmission{known ? Outcome::Admitted : Outcome::Denied};
    });
    QCOMPARE(f.refusalOfAttach("operator"), "1: access is denied: user or password are wrong");
    QCOMPARE(f.refusalOfAttach("J\xc3\xbcrgen"), QString());
}

void TestTreeLinkServer::saysWhyNobodyIsAdmittedNow()
{
    auto outcome = LinkAdmission::Outcome::TooManyTries;
    Fixture f({}, [&](const QString&, const QString&, const std::string&) { return LinkAdmission{outcome}; });
    QCOMPARE(f.refusalOfAttach("operator"),
             "1: access is denied for a while, as too many wrong passwords came from here");
    outcome = LinkAdmission::Outcome::Busy;
    QCOMPARE(f.refusalOfAttach("operator"), "6: it has too many passwords to check");
    QCOMPARE(f.server.sessionCount(), 0);
}

void TestTreeLinkServer::tellsWhatAUserIs()
{
    auto admission = LinkAdmission{LinkAdmission::Outcome::Admitted};
    Fixture f({}, [&](const QString&, const QString&, const std::string&) { return admission; });
    for (const auto role : ZelkoCommon::allRoles) {
        admission.role = role;
        const auto session = f.attach("anna");
        QCOMPARE(int{f.remote->roleOf(session)}, static_cast<int>(role)); // they stand in the same order
        QCOMPARE(f.server.users()(session), (LinkUser{"anna", role}));
    }
}

void TestTreeLinkServer::takesEverybodyForAViewerWithoutAnAuthenticator()
{
    Fixture f;
    QCOMPARE(int{f.remote->roleOf(f.attach("administrator"))}, int{ZelkoTreeLink::ROLE_VIEWER});
}

void TestTreeLinkServer::knowsNobodyByASessionThatEnded()
{
    auto f = std::make_unique<Fixture>();
    const auto first = f->attach();
    const auto second = f->attach();
    const auto users = f->server.users();
    QTRY_COMPARE(f->server.sessionCount(), 2);
    f->remote->detach(first);
    QTRY_COMPARE(f->server.sessionCount(), 1);
    QVERIFY(!users(first));
    QVERIFY_EXCEPTION_THROWN(f->remote->roleOf(first), ZelkoTreeLink::Refused);
    QVERIFY(!users(0));
    QVERIFY(users(second));
    f.reset();
    QVERIFY(!users(second));
}

void TestTreeLinkServer::refusesWhoCannotBeCalledBack()
{
    Fixture f;
    f.reference = ZelkoTreeLink::Subscriber::_nil();
    QCOMPARE(f.refusalOfAttach("operator"), "1: there is nobody to call back");
}

void TestTreeLinkServer::refusesMoreClientsThanItTakes()
{
    TreeLinkServerOptions options;
    options.maxSessions = 2;
    Fixture f(options);
    f.attach();
    f.attach();
    QCOMPARE(f.refusalOfAttach("operator"), "2: it has as many clients as it takes");
    QTRY_COMPARE(f.server.sessionCount(), 2);
}

void TestTreeLinkServer::refusesMoreClientsOfOneHostThanItTakes()
{
    TreeLinkServerOptions options;
    options.maxSessionsPerPeer = 2;
    Fixture f(options);
    f.attach();
    const auto second = f.attach();
    QCOMPARE(f.refusalOfAttach("operator"), "2: it has as many clients as it takes");
    f.remote->detach(second);
    QTRY_COMPARE(f.server.sessionCount(), 1);
    QCOMPARE(f.refusalOfAttach("operator"), QString());
}

void TestTreeLinkServer::takesAClientAgainWhenOneLeft()
{
    TreeLinkServerOptions options;
    options.maxSessions = 1;
    Fixture f(options);
    QSignalSpy closed(&f.server, &TreeLinkServer::sessionClosed);
    const auto session = f.attach();
    f.remote->detach(session);
    QTRY_COMPARE(closed.size(), 1);
    QCOMPARE(closed.takeFirst(), (QVariantList{"operator", "the client left"}));
    QCOMPARE(f.refusalOfAttach("operator"), QString());
}

void TestTreeLinkServer::dropsAClientOfWhichNothingIsHeard()
{
    TreeLinkServerOptions options;
    options.maxSilence = 100ms;
    Fixture f(options);
    QSignalSpy closed(&f.server, &TreeLinkServer::sessionClosed);
    const auto session = f.attach();
    QTRY_COMPARE(closed.size(), 1);
    QCOMPARE(closed.takeFirst(), (QVariantList{"operator", "nothing was heard of the client"}));
    QCOMPARE(f.write(session, {}), "3: it does not know this session any more");
}

void TestTreeLinkServer::keepsAClientThatIsHeard()
{
    TreeLinkServerOptions options;
    options.maxSilence = 1500ms;
    Fixture f(options);
    QSignalSpy closed(&f.server, &TreeLinkServer::sessionClosed);
    const auto heard = f.attach();
    const auto silent = f.attach();
    QString refusal;
    const auto closedMeanwhile = [&] {
        refusal += f.write(heard, {});
        return closed.size();
    };
    QTRY_COMPARE(closedMeanwhile(), 1);
    QCOMPARE(refusal, QString());
    QCOMPARE(f.server.sessionCount(), 1);
    QVERIFY(f.write(silent, {}).startsWith("3: "));
}

void TestTreeLinkServer::executesWritesInTheNameOfTheClient()
{
    Fixture f;
    const auto session = f.attach();
    QTRY_COMPARE(f.received(), treeList(f.tree));
    const std::size_t bytesBefore = f.stream.size();
    QCOMPARE(f.write(session, FrameStream().commands(2, setInt(5) + setInt(6)).bytes()), QString());
    QCOMPARE(f.number->GetValue(), 6);
    f.locked->SetValue(1, nullptr); // so that there is something to wait for
    QTRY_VERIFY(f.received().join(' ') != "malformed" && f.stream.size() > bytesBefore);
    QCOMPARE(f.stream.size() - bytesBefore, FrameStream().commands(3, setInt(1)).bytes().size());
}

void TestTreeLinkServer::tellsAWriteToTheOtherClientsOnly()
{
    Fixture f;
    auto* const other = new Client;
    const PortableServer::ServantBase_var guard(other);
    const PortableServer::ObjectId_var id = f.orb.rootPoa()->activate_object(other);
    const ZelkoTreeLink::Subscriber_var reference = other->_this();
    const auto session = f.attach();
    elsewhere([&] { return f.remote->attach(ZelkoTreeLink::PROTOCOL_VERSION, {"", ""}, reference); });
    std::string state;
    QTRY_VERIFY(frameTexts(state += other->take()).endsWith("end"));
    QTRY_COMPARE(f.received(), treeList(f.tree));
    const std::size_t bytesBefore = f.stream.size();
    QCOMPARE(f.write(session, FrameStream().commands(2, setInt(5)).bytes()), QString());
    std::string told;
    QTRY_VERIFY(!(told += other->take()).empty());
    QCOMPARE(told, FrameStream().commands(2, setInt(5)).bytes());
    f.received();
    QCOMPARE(f.stream.size(), bytesBefore);
}

void TestTreeLinkServer::refusesAndCorrectsWhatMayNotBeWritten()
{
    Fixture f;
    const auto session = f.attach();
    QTRY_COMPARE(f.received(), treeList(f.tree));
    const std::size_t bytesBefore = f.stream.size();
    QCOMPARE(f.write(session, FrameStream().commands(3, setInt(5)).bytes()),
             "4: user \"operator\" may not write /A/Locked");
    QCOMPARE(f.locked->GetValue(), 0);
    QTRY_VERIFY(!f.received().isEmpty() && f.stream.size() > bytesBefore);
    QCOMPARE(f.stream.substr(bytesBefore), FrameStream().state(3, *f.locked).bytes());
}

// Nine bytes for each, and the whole map was made and waited as often.
void TestTreeLinkServer::manyRefusedWritesToALargeMapMakeOneState()
{
    zelko::registerItemMapTypes();
    Fixture f;
    auto* const map = f.tree.Emplace("/B", std::make_unique<RecordItemMap>("Locked", TValueState::Open)); // handle 5
    for (int i = 0; i < 3000; ++i) {
        map->Add(RecordMapData(makeRecord(QString::number(i))), nullptr);
    }
    const auto session = f.attach();
    QTRY_COMPARE(f.received(), treeList(f.tree));
    FrameStream writes;
    for (int i = 0; i < 5000; ++i) {
        writes.commands(5, {});
    }
    QCOMPARE(f.write(session, writes.bytes()), "4: user \"operator\" may not write /B/Locked");
    QVERIFY(f.server.backlogBytes() < 1024 * 1024);
    QTRY_COMPARE(frameTexts(f.stream += f.client->take()).count("end"), 2);
    QCOMPARE(f.received(), treeList(f.tree));
    QCOMPARE(f.server.backlogBytes(), std::size_t{0});
}

void TestTreeLinkServer::refusesWritesOfAUserWithoutRights()
{
    Fixture f;
    QSignalSpy refused(&f.server, &TreeLinkServer::writeRefused);
    const auto session = f.attach("");
    QCOMPARE(f.write(session, FrameStream().commands(2, setInt(5)).bytes()), "4: user \"\" may not write /A/Number");
    QCOMPARE(f.number->GetValue(), 0);
    QCOMPARE(refused, (QList<QVariantList>{{"", "user \"\" may not write /A/Number"}}));
}

void TestTreeLinkServer::doesTheRestOfABatchOfWhichAPartIsRefused()
{
    Fixture f;
    const auto session = f.attach();
    QVERIFY(f.write(session, FrameStream().commands(3, setInt(5)).commands(2, setInt(6)).bytes()).startsWith("4: "));
    QCOMPARE(f.locked->GetValue(), 0);
    QCOMPARE(f.number->GetValue(), 6);
}

void TestTreeLinkServer::doesNothingOfADamagedBatch_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<int>("damage");
    const auto row = [](const char* name, const FrameStream& stream, int damage) {
        QTest::newRow(name) << QByteArray::fromStdString(stream.bytes()) << damage;
    };
    const auto good = [] { return FrameStream().commands(2, setInt(5)); };
    row("a checksum that does not fit", good(), 1);
    row("half a command behind a whole one", good().commands(2, setInt(6).substr(0, 4)), 0);
    row("a command that is none", good().commands(2, "999;"), 0);
    row("a frame that clients do not send", good().ready(), 0);
    QTest::newRow("garbage") << QByteArray("\x7f") << 0;
}

void TestTreeLinkServer::doesNothingOfADamagedBatch()
{
    QFETCH(QByteArray, bytes);
    QFETCH(int, damage);
    Fixture f;
    const auto session = f.attach();
    QVERIFY(f.write(session, bytes.toStdString(), static_cast<std::uint64_t>(damage)).startsWith("5: "));
    QCOMPARE(f.number->GetValue(), 0);
}

void TestTreeLinkServer::endsASessionThatWritesWhatCannotBeRead()
{
    Fixture f;
    QSignalSpy closed(&f.server, &TreeLinkServer::sessionClosed);
    const auto session = f.attach();
    QVERIFY(f.write(session, FrameStream().commands(2, "?").bytes()).startsWith("5: "));
    QCOMPARE(closed, (QList<QVariantList>{{"operator", "the client wrote what cannot be read"}}));
    QCOMPARE(f.write(session, FrameStream().commands(2, setInt(5)).bytes()),
             "3: it does not know this session any more");
}

void TestTreeLinkServer::carriesOutAWriteThatComesInPieces()
{
    Fixture f;
    const auto session = f.attach();
    const std::string frames = FrameStream().commands(2, setInt(5)).commands(2, setInt(6)).bytes();
    const std::size_t inTheSecond = frames.size() - 3;
    QCOMPARE(f.write(session, frames.substr(0, inTheSecond)), QString());
    QCOMPARE(f.number->GetValue(), 5);
    QCOMPARE(f.write(session, {}), QString()); // a sign of life in between
    QCOMPARE(f.write(session, frames.substr(inTheSecond)), QString());
    QCOMPARE(f.number->GetValue(), 6);
}

void TestTreeLinkServer::keepsNothingOfALongWriteThatMayNotBe()
{
    Fixture f;
    const auto session = f.attach();
    const std::string refused = FrameStream().commands(3, setInt(5)).bytes();
    const std::string allowed = FrameStream().commands(2, setInt(6)).bytes();
    QVERIFY(f.write(session, refused.substr(0, 10)).startsWith("4: "));
    QCOMPARE(f.write(session, refused.substr(10, 2)), QString());
    QCOMPARE(f.write(session, refused.substr(12) + allowed), QString());
    QCOMPARE(f.locked->GetValue(), 0);
    QCOMPARE(f.number->GetValue(), 6);
}

void TestTreeLinkServer::tellsAValueAsItIsToWhoAsks()
{
    Fixture f;
    const auto session = f.attach();
    QTRY_COMPARE(f.received(), treeList(f.tree));
    const std::size_t bytesBefore = f.stream.size();
    QCOMPARE(f.write(session, FrameStream().commands(2, {}).bytes()), QString());
    QTRY_VERIFY(!f.received().isEmpty() && f.stream.size() > bytesBefore);
    QCOMPARE(f.stream.substr(bytesBefore), FrameStream().state(2, *f.number).bytes());
}

void TestTreeLinkServer::passesOverWritesToWhatIsGone()
{
    Fixture f;
    const auto session = f.attach();
    f.tree.Remove("/A/Locked");
    QCOMPARE(f.write(session, FrameStream().commands(3, setInt(5)).commands(99, "?").commands(2, setInt(6)).bytes()),
             QString());
    QCOMPARE(f.number->GetValue(), 6);
}

void TestTreeLinkServer::refusesWhatIsTooMuchToWaitForTheThreadOfTheTree()
{
    TreeLinkServerOptions options;
    options.writeTimeout = 1ms;
    options.maxWaitingWriteBytes = 1000; // three small writes
    Fixture f(options);
    const auto session = f.attach();
    const auto other = f.attach();
    for (int i = 1; i <= 3; ++i) {
        QCOMPARE(f.writeToBusyTree(session, FrameStream().commands(2, setInt(i)).bytes()), QString());
    }
    QCOMPARE(f.writeToBusyTree(session, FrameStream().commands(2, setInt(4)).bytes()),
             "6: it has not come yet to what was written before");
    QCOMPARE(f.writeToBusyTree(session, {}), QString()); // a sign of life waits for nobody
    QCOMPARE(f.number->GetValue(), 0);
    QTRY_COMPARE(f.number->GetValue(), 3);
    QCOMPARE(f.writeToBusyTree(other, FrameStream().commands(2, setInt(5)).bytes()), QString());
    QCOMPARE(f.writeToBusyTree(session, FrameStream().commands(2, setInt(6)).bytes()), QString());
    QTRY_COMPARE(f.number->GetValue(), 6);
}

void TestTreeLinkServer::letsAWriteOfAnySizeWaitAlone()
{
    TreeLinkServerOptions options;
    options.writeTimeout = 1ms;
    options.maxWaitingWriteBytes = 10;
    Fixture f(options);
    const auto session = f.attach();
    QCOMPARE(f.writeToBusyTree(session, FrameStream().commands(2, setInt(1)).bytes()), QString());
    QVERIFY(f.writeToBusyTree(session, FrameStream().commands(2, setInt(2)).bytes()).startsWith("6: "));
    QTRY_COMPARE(f.number->GetValue(), 1);
    QCOMPARE(f.writeToBusyTree(session, FrameStream().commands(2, setInt(2)).bytes()), QString());
    QTRY_COMPARE(f.number->GetValue(), 2);
}

void TestTreeLinkServer::refusesSessionsThatItDoesNotKnow()
{
    Fixture f;
    const auto session = f.attach();
    QCOMPARE(f.write(session + 1, FrameStream().commands(2, setInt(5)).bytes()),
             "3: it does not know this session any more");
    QCOMPARE(f.number->GetValue(), 0);
}

void TestTreeLinkServer::ignoresTheEndOfASessionThatItDoesNotKnow()
{
    Fixture f;
    const auto session = f.attach();
    f.remote->detach(session + 1);
    QCOMPARE(f.write(session, {}), QString());
    QTRY_COMPARE(f.server.sessionCount(), 1);
}

QTEST_GUILESS_MAIN(TestTreeLinkServer)
#include "tst_treelinkserver.moc"
