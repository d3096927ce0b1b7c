#include <actiontest.h>
#include <bookmarkbar.h>
#include <bookmarkedrecord.h>
#include <handtimer.h>
#include <recorderclient.h>

#include <zelkoguibase/bookmarks/bookmarkmodel.h>

#include <QAbstractItemModelTester>

#include <optional>

using namespace ZelkoTest;
using ZelkoCommon::Role;
using ZelkoGUI::BookmarkModel;
using Entries = BookmarkModel::Entries;
using Controller = ActionSite::Controller;

namespace {

const QString record = QStringLiteral("R1");

/// Another operator, with a tree of his own. Calls of one process are made in the name of one of its sessions, so that
/// he must not be a different one from whom the application works for.
class OtherOperator
{
public:
    OtherOperator(ZelkoCommon::Orb& orb, quint16 port)
        : m_data(std::make_shared<ZelkoCommon::ServerConnectionData>(orb, &m_tree, site(port)))
        , m_handler(std::make_shared<ZelkoGUI::ZelkoGuiToServerCorbaHandler>(m_data))
        , m_admin(m_handler)
    {
        m_handler->setLimit(std::chrono::seconds(60)); // a loaded machine is no failure
    }

    bool isReady() const { return values().isLoaded(); }
    bool store(const Entries& bookmarks)
    {
        return m_admin.addBookmarkEntries(ActionSite::device(), record, bookmarks) == 0;
    }

    /// What he sees.
    QStringList bookmarks() const
    {
        const auto data = values().record(record);
        return data ? bookmarkTexts(std::as_const(*data).GetBookmarkEntry()) : QStringList();
    }

private:
    static std::shared_ptr<ZelkoCommon::ZelkoConfiguration> site(quint16 port)
    {
        auto configuration = std::make_shared<ZelkoCommon::ZelkoConfiguration>();
        configuration->AddSubSystem(
            {ActionSite::subSystem(), QStringLiteral("127.0.0.1"), port, {}, TestUsers::credentials(Role::Operator)});
        return configuration;
    }
    RecorderValues values() const
    {
        return {m_tree, ZelkoCommon::ZelkoConfiguration::MakeRootPath(ActionSite::subSystem()), ActionSite::device()};
    }

    mutable Tree m_tree;
    std::shared_ptr<ZelkoCommon::ServerConnectionData> m_data;
    std::shared_ptr<ZelkoGUI::ZelkoGuiToServerCorbaHandler> m_handler;
    ZelkoGUI::GuiToServerAdminCorbaHandler m_admin;
};

} // namespace

/// The way of a bookmark from the bar through the model to the disk of a real recorder, and back.
class TestRecorderBookmarks : public ActionTest
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { openOrb(); }
    void cleanupTestCase() { closeOrb(); }
    void init();
    void cleanup();
    void aDraggedBookmarkArrivesInTheStore();
    void whatAnotherClientStoresIsAnExternalChange();
    void bothMayEditAtOnce();
    void aViewerKeepsHisListToHimself();
    void aRecorderIsKilledBetweenSendingAndTheAnswer_data();
    void aRecorderIsKilledBetweenSendingAndTheAnswer();

private:
    void showRecordAs(Role role);
    void changeTheName();
    QStringList shown() const { return bookmarkTexts(m_model->entries()); }
    QStringList stored() const
    {
        const auto data = m_site->stored(record);
        return bookmarkTexts(std::as_const(data).GetBookmarkEntry());
    }
    QStringList inTheList() const
    {
        const auto data = m_site->row(record);
        return bookmarkTexts(std::as_const(data).GetBookmarkEntry());
    }

    HandTimer m_timer;
    std::unique_ptr<BookmarkModel> m_model;
    std::optional<QAbstractItemModelTester> m_tester;
};

void TestRecorderBookmarks::init()
{
    makeSite();
    QVERIFY(storeRecord(m_site->deviceFolder(), recordWithBookmarks(record, 90), 4000));
    QVERIFY(m_site->start());
}

void TestRecorderBookmarks::cleanup()
{
    m_tester.reset();
    m_model.reset();
    leaveSite();
}

void TestRecorderBookmarks::showRecordAs(Role role)
{
    connectAs(role);
    m_model = std::make_unique<BookmarkModel>(false);
    m_tester.emplace(m_model.get(), QAbstractItemModelTester::FailureReportingMode::QtTest);
    m_model->setSingleShot(m_timer.singleShot());
    Controller& controller = m_site->controller();
    connect(m_model.get(), &BookmarkModel::si_updateBookmarks, &controller, &Controller::sl_setBookmarkEntries);
    m_model->setRecord(record, controller.recordListModel(), false, ActionSite::device());
    QCOMPARE(shown(), textsOfTwo);
    QCOMPARE(m_model->getSynchState(), BookmarkModel::SynchInSync);
}

// Of the record, on the disk, and has an operator tell the recorder to read it.
void TestRecorderBookmarks::changeTheName()
{
    auto data = m_site->stored(record);
    data.SetRecordName(QStringLiteral("a new name"));
    QVERIFY(data.SaveXml(m_site->recordFolder(record) + QLatin1Char('/') + ZELKO_XML::metaDataFileName));
    RecorderClient client(*m_orb, m_site->recorder().port(), Role::Operator);
    QTRY_VERIFY_WITH_TIMEOUT(client.isConnected() && client.values().isLoaded(), patience);
    client.write(client.values().command<Value<QString>>("SyncOneRecord"), record);
    QTRY_COMPARE_WITH_TIMEOUT(m_site->row(record).GetRecordName(), data.GetRecordName(), patience);
}

void TestRecorderBookmarks::aDraggedBookmarkArrivesInTheStore()
{
    showRecordAs(Role::Operator);
    OtherOperator other(*m_orb, m_site->recorder().port());
    QTRY_VERIFY_WITH_TIMEOUT(other.isReady(), patience);
    BookmarkBar bar;
    m_model->connectVCReplayBar(&bar.bar);
    bar.press(10);
    bar.moveTo(40);
    bar.release(40);
    QCOMPARE(stored(), textsOfTwo);
    m_model->sl_synchronize();
    const QStringList sorted{"20000000 b", "40000000 a"};
    QCOMPARE(stored(), sorted);
    QTRY_COMPARE_WITH_TIMEOUT(shown(), sorted, patience);
    QCOMPARE(bar.bookmarks(), sorted);
    QCOMPARE(m_model->getSynchState(), BookmarkModel::SynchPending);
    m_timer.advance(BookmarkModel::UnlockDelay);
    QCOMPARE(m_model->getSynchState(), BookmarkModel::SynchInSync);
    QTRY_COMPARE_WITH_TIMEOUT(other.bookmarks(), sorted, patience);
}

void TestRecorderBookmarks::whatAnotherClientStoresIsAnExternalChange()
{
    showRecordAs(Role::Operator);
    OtherOperator other(*m_orb, m_site->recorder().port());
    QTRY_VERIFY_WITH_TIMEOUT(other.isReady(), patience);
    QVERIFY(other.store({bookmarkAt(5, QStringLiteral("other"))}));
    QTRY_COMPARE_WITH_TIMEOUT(m_model->getSynchState(), BookmarkModel::SynchExternalChange, patience);
    QCOMPARE(shown(), textsOfTwo);
    m_model->sl_reset();
    QCOMPARE(shown(), QStringList{"5000000 other"});
    QCOMPARE(m_model->getSynchState(), BookmarkModel::SynchInSync);
}

// Who sends last is the one whose list stands.
void TestRecorderBookmarks::bothMayEditAtOnce()
{
    showRecordAs(Role::Operator);
    OtherOperator other(*m_orb, m_site->recorder().port());
    QTRY_VERIFY_WITH_TIMEOUT(other.isReady(), patience);
    QVERIFY(m_model->removeEntry(0));
    QVERIFY(other.store({bookmarkAt(5, QStringLiteral("other"))}));
    QTRY_COMPARE_WITH_TIMEOUT(inTheList(), QStringList{"5000000 other"}, patience);
    QCOMPARE(m_model->getSynchState(), BookmarkModel::SynchLocalChange);
    QCOMPARE(shown(), QStringList{"20000000 b"});
    m_model->sl_synchronize();
    QCOMPARE(stored(), QStringList{"20000000 b"});
    QTRY_COMPARE_WITH_TIMEOUT(other.bookmarks(), QStringList{"20000000 b"}, patience);
    QTRY_COMPARE_WITH_TIMEOUT(inTheList(), QStringList{"20000000 b"}, patience);
    m_timer.advance(BookmarkModel::UnlockDelay);
    QCOMPARE(m_model->getSynchState(), BookmarkModel::SynchInSync);
    QCOMPARE(shown(), QStringList{"20000000 b"});
}

// The recorder refuses the list, so no answer comes; the next change of the record shows that they differ.
void TestRecorderBookmarks::aViewerKeepsHisListToHimself()
{
    showRecordAs(Role::Viewer);
    QVERIFY(m_model->removeEntry(0));
    m_model->sl_synchronize();
    QCOMPARE(stored(), textsOfTwo);
    m_timer.advance(BookmarkModel::UnlockDelay);
    QCOMPARE(shown(), QStringList{"20000000 b"});
    QCOMPARE(m_model->getSynchState(), BookmarkModel::SynchInSync);
    changeTheName();
    QTRY_COMPARE_WITH_TIMEOUT(m_model->getSynchState(), BookmarkModel::SynchExternalChange, patience);
    QCOMPARE(shown(), QStringList{"20000000 b"});
}

void TestRecorderBookmarks::aRecorderIsKilledBetweenSendingAndTheAnswer_data()
{
    QTest::addColumn<bool>("isTaken");
    QTest::newRow("before it has the list") << false;
    QTest::newRow("when it has the list on disk") << true;
}

// What it had before or what was sent, and never a part; the model shows it locked until it is reset.
void TestRecorderBookmarks::aRecorderIsKilledBetweenSendingAndTheAnswer()
{
    QFETCH(const bool, isTaken);
    showRecordAs(Role::Operator);
    QVERIFY(m_model->removeEntry(0));
    if (!isTaken) {
        m_site->recorder().kill();
    }
    m_model->sl_synchronize();
    m_site->recorder().kill();
    const QStringList whole = isTaken ? QStringList{"20000000 b"} : textsOfTwo;
    QCOMPARE(stored(), whole);
    QTRY_COMPARE_WITH_TIMEOUT(m_model->getSynchState(), BookmarkModel::SynchNoRecord, patience);
    QCOMPARE(m_model->rowCount(), 1);
    m_timer.advance(BookmarkModel::UnlockDelay);
    QCOMPARE(m_model->getSynchState(), BookmarkModel::SynchNoRecord);
    QVERIFY(m_site->start());
    QTRY_COMPARE_WITH_TIMEOUT(m_model->getSynchState(), BookmarkModel::SynchPending, patience);
    QCOMPARE(shown(), whole);
    m_model->sl_reset();
    QCOMPARE(m_model->getSynchState(), BookmarkModel::SynchInSync);
    QCOMPARE(shown(), whole);
    QCOMPARE(stored(), whole);
}

QTEST_MAIN(TestRecorderBookmarks)
#include "tst_recorderbookmarks.moc"
