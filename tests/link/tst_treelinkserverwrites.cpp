#include "frametext.h"
#include "linkserverfixture.h"
#include "patience.h"
#include "testrecords.h"

#include <zelkobase/maps/itemmaptypes.h>
#include <zelkobase/maps/recorditemmap.h>

#include <QSignalSpy>
#include <QtTest>

using namespace ZelkoTest;
using zelko::recordmap::RecordItemMap;
using zelko::recordmap::RecordMapData;

namespace {

const QString notInTime = QStringLiteral("6: it does not come to what is written");
const QString tooMuch = QStringLiteral("6: it has not come yet to what was written before");

} // namespace

// What becomes of the writes of clients.
class TestTreeLinkServerWrites : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void executesWritesInTheNameOfTheClient();
    void tellsAWriteToTheOtherClientsOnly();
    void refusesAndCorrectsWhatMayNotBeWritten();
    void manyRefusedWritesToALargeMapMakeOneState();
    void refusesWritesOfAUserWithoutRights();
    void tellsOfEachValueThatWasRefusedInABatch();
    void doesTheRestOfABatchOfWhichAPartIsRefused();
    void doesNothingOfADamagedBatch_data();
    void doesNothingOfADamagedBatch();
    void endsASessionThatWritesWhatCannotBeRead();
    void carriesOutAWriteThatComesInPieces();
    void keepsNothingOfALongWriteThatMayNotBe();
    void tellsAValueAsItIsToWhoAsks();
    void passesOverWritesToWhatIsGone();
    void doesNothingOfAWriteThatItDidNotComeToInTime();
    void refusesWhatIsTooMuchToWaitForTheThreadOfTheTree();
    void letsAWriteOfAnySizeWaitAlone();
};

void TestTreeLinkServerWrites::executesWritesInTheNameOfTheClient()
{
    LinkServerFixture f;
    const auto session = f.attach();
    QTRY_COMPARE_WITH_TIMEOUT(f.received(), treeList(f.tree), patience);
    const std::size_t bytesBefore = f.stream.size();
    QCOMPARE(f.write(session, FrameStream().commands(2, setInt(5) + setInt(6)).bytes()), QString());
    QCOMPARE(f.number->GetValue(), 6);
    f.locked->SetValue(1, nullptr); // so that there is something to wait for
    QTRY_VERIFY_WITH_TIMEOUT(f.received().join(' ') != "malformed" && f.stream.size() > bytesBefore, patience);
    QCOMPARE(f.stream.size() - bytesBefore, FrameStream().commands(3, setInt(1)).bytes().size());
}

void TestTreeLinkServerWrites::tellsAWriteToTheOtherClientsOnly()
{
    LinkServerFixture f;
    auto* const other = new LinkServerClient;
    const PortableServer::ServantBase_var guard(other);
    const PortableServer::ObjectId_var id = f.orb.rootPoa()->activate_object(other);
    const ZelkoTreeLink::Subscriber_var reference = other->_this();
    const auto session = f.attach();
    elsewhere([&] { return f.remote->attach(ZelkoTreeLink::PROTOCOL_VERSION, {"", ""}, reference); });
    std::string state;
    QTRY_VERIFY_WITH_TIMEOUT(frameTexts(state += other->take()).endsWith("end"), patience);
    QTRY_COMPARE_WITH_TIMEOUT(f.received(), treeList(f.tree), patience);
    const std::size_t bytesBefore = f.stream.size();
    QCOMPARE(f.write(session, FrameStream().commands(2, setInt(5)).bytes()), QString());
    std::string told;
    QTRY_VERIFY_WITH_TIMEOUT(!(told += other->take()).empty(), patience);
    QCOMPARE(told, FrameStream().commands(2, setInt(5)).bytes());
    f.received();
    QCOMPARE(f.stream.size(), bytesBefore);
}

void TestTreeLinkServerWrites::refusesAndCorrectsWhatMayNotBeWritten()
{
    LinkServerFixture f;
    const auto session = f.attach();
    QTRY_COMPARE_WITH_TIMEOUT(f.received(), treeList(f.tree), patience);
    const std::size_t bytesBefore = f.stream.size();
    QCOMPARE(f.write(session, FrameStream().commands(3, setInt(5)).bytes()),
             "4: user \"operator\" may not write /A/Locked");
    QCOMPARE(f.locked->GetValue(), 0);
    QTRY_VERIFY_WITH_TIMEOUT(!f.received().isEmpty() && f.stream.size() > bytesBefore, patience);
    QCOMPARE(f.stream.substr(bytesBefore), FrameStream().state(3, *f.locked).bytes());
}

// Nine bytes for each, and the whole map was made and waited as often.
void TestTreeLinkServerWrites::manyRefusedWritesToALargeMapMakeOneState()
{
    zelko::registerItemMapTypes();
    LinkServerFixture f;
    auto* const map = f.tree.Emplace("/B", std::make_unique<RecordItemMap>("Locked", TValueState::Open)); // handle 5
    for (int i = 0; i < 3000; ++i) {
        map->Add(RecordMapData(makeRecord(QString::number(i))), nullptr);
    }
    const auto session = f.attach();
    QTRY_COMPARE_WITH_TIMEOUT(f.received(), treeList(f.tree), patience);
    FrameStream writes;
    for (int i = 0; i < 5000; ++i) {
        writes.commands(5, {});
    }
    QCOMPARE(f.write(session, writes.bytes()), "4: user \"operator\" may not write /B/Locked");
    QVERIFY(f.server.backlogBytes() < 1024 * 1024);
    QTRY_COMPARE_WITH_TIMEOUT(frameTexts(f.stream += f.client->take()).count("end"), 2, patience);
    QCOMPARE(f.received(), treeList(f.tree));
    QCOMPARE(f.server.backlogBytes(), std::size_t{0});
}

void TestTreeLinkServerWrites::refusesWritesOfAUserWithoutRights()
{
    LinkServerFixture f;
    QSignalSpy refused(&f.server, &TreeLinkServer::writeRefused);
    const auto session = f.attach("");
    QCOMPARE(f.write(session, FrameStream().commands(2, setInt(5)).bytes()), "4: user \"\" may not write /A/Number");
    QCOMPARE(f.number->GetValue(), 0);
    QCOMPARE(refused, (QList<QVariantList>{{"", "user \"\" may not write /A/Number"}}));
}

void TestTreeLinkServerWrites::tellsOfEachValueThatWasRefusedInABatch()
{
    LinkServerFixture f;
    QSignalSpy refused(&f.server, &TreeLinkServer::writeRefused);
    const auto session = f.attach("");
    const auto batch = FrameStream().commands(2, setInt(5)).commands(3, setInt(6)).commands(2, setInt(7)).bytes();
    QVERIFY(f.write(session, batch).startsWith("4: "));
    QCOMPARE(refused, (QList<QVariantList>{{"", "user \"\" may not write /A/Number"},
                                           {"", "user \"\" may not write /A/Locked"}}));
}

void TestTreeLinkServerWrites::doesTheRestOfABatchOfWhichAPartIsRefused()
{
    LinkServerFixture f;
    const auto session = f.attach();
    QVERIFY(f.write(session, FrameStream().commands(3, setInt(5)).commands(2, setInt(6)).bytes()).startsWith("4: "));
    QCOMPARE(f.locked->GetValue(), 0);
    QCOMPARE(f.number->GetValue(), 6);
}

void TestTreeLinkServerWrites::doesNothingOfADamagedBatch_data()
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

void TestTreeLinkServerWrites::doesNothingOfADamagedBatch()
{
    QFETCH(QByteArray, bytes);
    QFETCH(int, damage);
    LinkServerFixture f;
    const auto session = f.attach();
    QVERIFY(f.write(session, bytes.toStdString(), static_cast<std::uint64_t>(damage)).startsWith("5: "));
    QCOMPARE(f.number->GetValue(), 0);
}

void TestTreeLinkServerWrites::endsASessionThatWritesWhatCannotBeRead()
{
    LinkServerFixture f;
    QSignalSpy closed(&f.server, &TreeLinkServer::sessionClosed);
    const auto session = f.attach();
    QVERIFY(f.write(session, FrameStream().commands(2, "?").bytes()).startsWith("5: "));
    QCOMPARE(closed, (QList<QVariantList>{{"operator", "the client wrote what cannot be read"}}));
    QCOMPARE(f.write(session, FrameStream().commands(2, setInt(5)).bytes()),
             "3: it does not know this session any more");
}

void TestTreeLinkServerWrites::carriesOutAWriteThatComesInPieces()
{
    LinkServerFixture f;
    const auto session = f.attach();
    const std::string frames = FrameStream().commands(2, setInt(5)).commands(2, setInt(6)).bytes();
    const std::size_t inTheSecond = frames.size() - 3;
    QCOMPARE(f.write(session, frames.substr(0, inTheSecond)), QString());
    QCOMPARE(f.number->GetValue(), 5);
    QCOMPARE(f.write(session, {}), QString()); // a sign of life in between
    QCOMPARE(f.write(session, frames.substr(inTheSecond)), QString());
    QCOMPARE(f.number->GetValue(), 6);
}

void TestTreeLinkServerWrites::keepsNothingOfALongWriteThatMayNotBe()
{
    LinkServerFixture f;
    const auto session = f.attach();
    const std::string refused = FrameStream().commands(3, setInt(5)).bytes();
    const std::string allowed = FrameStream().commands(2, setInt(6)).bytes();
    QVERIFY(f.write(session, refused.substr(0, 10)).startsWith("4: "));
    QCOMPARE(f.write(session, refused.substr(10, 2)), QString());
    QCOMPARE(f.write(session, refused.substr(12) + allowed), QString());
    QCOMPARE(f.locked->GetValue(), 0);
    QCOMPARE(f.number->GetValue(), 6);
}

void TestTreeLinkServerWrites::tellsAValueAsItIsToWhoAsks()
{
    LinkServerFixture f;
    const auto session = f.attach();
    QTRY_COMPARE_WITH_TIMEOUT(f.received(), treeList(f.tree), patience);
    const std::size_t bytesBefore = f.stream.size();
    QCOMPARE(f.write(session, FrameStream().commands(2, {}).bytes()), QString());
    QTRY_VERIFY_WITH_TIMEOUT(!f.received().isEmpty() && f.stream.size() > bytesBefore, patience);
    QCOMPARE(f.stream.substr(bytesBefore), FrameStream().state(2, *f.number).bytes());
}

void TestTreeLinkServerWrites::passesOverWritesToWhatIsGone()
{
    LinkServerFixture f;
    const auto session = f.attach();
    f.tree.Remove("/A/Locked");
    QCOMPARE(f.write(session, FrameStream().commands(3, setInt(5)).commands(99, "?").commands(2, setInt(6)).bytes()),
             QString());
    QCOMPARE(f.number->GetValue(), 6);
}

// Whether anybody may write it was not even looked at.
void TestTreeLinkServerWrites::doesNothingOfAWriteThatItDidNotComeToInTime()
{
    TreeLinkServerOptions options;
    options.writeTimeout = 1ms;
    LinkServerFixture f(options);
    QSignalSpy refused(&f.server, &TreeLinkServer::writeRefused);
    const auto session = f.attach();
    const auto viewer = f.attach("");
    QTRY_COMPARE_WITH_TIMEOUT(f.server.sessionCount(), 2, patience);
    QCOMPARE(f.writeToBusyTree(session, FrameStream().commands(2, setInt(1)).bytes()), notInTime);
    QCOMPARE(f.writeToBusyTree(viewer, FrameStream().commands(2, setInt(2)).bytes()), notInTime);
    QCOMPARE(f.writeUntilTaken(session, FrameStream().commands(2, setInt(3)).bytes()), QString());
    QCOMPARE(f.number->GetValue(), 3);
    QVERIFY(f.writeUntilTaken(viewer, FrameStream().commands(2, setInt(4)).bytes()).startsWith("4: "));
    QCOMPARE(refused.size(), 1);
}

void TestTreeLinkServerWrites::refusesWhatIsTooMuchToWaitForTheThreadOfTheTree()
{
    TreeLinkServerOptions options;
    options.writeTimeout = 1ms;
    options.maxWaitingWriteBytes = 1000; // three small writes
    LinkServerFixture f(options);
    const auto session = f.attach();
    const auto other = f.attach();
    for (int i = 1; i <= 3; ++i) {
        QCOMPARE(f.writeToBusyTree(session, FrameStream().commands(2, setInt(i)).bytes()), notInTime);
    }
    QCOMPARE(f.writeToBusyTree(session, FrameStream().commands(2, setInt(4)).bytes()), tooMuch);
    QCOMPARE(f.writeToBusyTree(session, {}), QString()); // a sign of life waits for nobody
    QCOMPARE(f.writeToBusyTree(other, FrameStream().commands(2, setInt(5)).bytes()), notInTime);
    QCOMPARE(f.writeUntilTaken(session, FrameStream().commands(2, setInt(6)).bytes()), QString());
    QCOMPARE(f.number->GetValue(), 6);
}

void TestTreeLinkServerWrites::letsAWriteOfAnySizeWaitAlone()
{
    TreeLinkServerOptions options;
    options.writeTimeout = 1ms;
    options.maxWaitingWriteBytes = 10;
    LinkServerFixture f(options);
    const auto session = f.attach();
    QCOMPARE(f.writeToBusyTree(session, FrameStream().commands(2, setInt(1)).bytes()), notInTime);
    QCOMPARE(f.writeToBusyTree(session, FrameStream().commands(2, setInt(2)).bytes()), tooMuch);
    QCOMPARE(f.writeUntilTaken(session, FrameStream().commands(2, setInt(2)).bytes()), QString());
    QCOMPARE(f.number->GetValue(), 2);
}

QTEST_GUILESS_MAIN(TestTreeLinkServerWrites)
#include "tst_treelinkserverwrites.moc"
