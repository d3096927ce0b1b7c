#include "ownrecorderconsole.h"
#include "recorderclient.h"
#include "replaybarhands.h"
#include "turns.h"

#include <console/channel/recordingsettings.h>
#include <console/channel/workchannelpanel.h>
#include <console/hands/dialoganswer.h>
#include <console/replay/replaycontrols.h>
#include <console/replay/replaydeck.h>

#include <zelkoguibase/bookmarks/bookmarkmodel.h>
#include <zelkoguibase/replaybar/replaybarwidget.h>

#include <QLineEdit>
#include <QMessageBox>
#include <QPushButton>
#include <QSignalSpy>
#include <QToolButton>

#include <csignal>
#include <optional>

using namespace ZelkoConsole;
using namespace Qt::StringLiterals;
using Model = ZelkoCommon::AbstractRecordListModel;
using ZelkoGUI::BookmarkModel;

namespace {

const QString lengthy = u"Long"_s; // an hour
const QStringList oneChannel{u"Channel 1=generator:fm,rate=48000,frequency=145500000,bandwidth=12500"_s};

/// A console whose recorder has a channel and a record of an hour.
struct Console : OwnRecorderConsole
{
    explicit Console(ZelkoCommon::Orb& orb)
        : OwnRecorderConsole(orb, ZelkoTest::hourLongRecord(lengthy), oneChannel)
    {}

    bool isReady() const
    {
        return QTest::qWaitFor([this] { return panel().recordButton()->isEnabled() && rowOf(lengthy) >= 0; }, patience);
    }
    ReplayDeck& deck() const { return *window.replay(); }
    const WorkChannelPanel& panel() const { return *deck().panel(); }
    QString state() const { return panel().stateText(); }
    VCReplayBar& bar() const { return *deck().bar()->findChild<VCReplayBar*>(u"ZelkoReplayBar"_s); }
    double position() const { return bar().GetMarker(VCReplayBar::PositionMarker)->GetPosition(); }
    QToolButton& play() const { return *deck().controls()->playButton(); }

    /// Has the record of an hour shown, and ready to be replayed.
    bool choose()
    {
        operatorhands::clickRow(table(), rowOf(lengthy));
        return QTest::qWaitFor([this] { return play().isEnabled() && bar().GetRecordingStart() > 0; }, patience);
    }
    BookmarkModel& bookmarks() const { return *deck().bookmarks(); }
    bool isUnsent() const
    {
        return bookmarks().getSynchState() == BookmarkModel::SynchLocalChange && bookmarks().entryCount() == 1;
    }

    /// Sets one where the position is.
    void bookmark() const
    {
        bar().setFocus();
        QTest::keyClick(&bar(), Qt::Key_Insert);
        QVERIFY(isUnsent());
    }
    qsizetype storedBookmarks() const
    {
        const auto record = records().getRecordData(lengthy);
        return record ? std::as_const(*record).GetBookmarkEntry().size() : 0;
    }
    QString statusOf(const QString& name) const
    {
        const QAbstractItemModel& model = *table().model();
        const auto found = model.match(model.index(0, Model::NameColumn), Qt::DisplayRole, name, 1, Qt::MatchExactly);
        return found.isEmpty() ? QString() : found.constFirst().siblingAtColumn(Model::StatusColumn).data().toString();
    }
};

void click(QWidget& widget)
{
    QTest::mouseClick(&widget, Qt::LeftButton);
}

void send(QWidget* question)
{
    const auto& box = *qobject_cast<QMessageBox*>(question);
    for (QAbstractButton* const button : box.buttons()) {
        if (box.buttonRole(button) == QMessageBox::AcceptRole) {
            return QTest::mouseClick(button, Qt::LeftButton);
        }
    }
}

} // namespace

// A console on the recorder as it is built.
class TestReplayConsole : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { m_orb = std::make_unique<ZelkoCommon::Orb>(ZelkoCommon::OrbOptions()); }
    void cleanupTestCase() { m_orb.reset(); }
    void recordsUnderTheNameThatIsTyped();
    void replaysTheRecordThatIsSelected();
    void replaysFromWhereItsOperatorPutThePosition();
    void storesTheBookmarksThatAreSent();
    void sendsBookmarksThatWouldBeLost();
    void staysWithBookmarksThatTheRecorderRefuses();
    void bringsUnsentBookmarksBackAfterARecorderThatDied();
    void leavesTheChannelAloneForAViewer();

private:
    std::unique_ptr<ZelkoCommon::Orb> m_orb;
};

void TestReplayConsole::recordsUnderTheNameThatIsTyped()
{
    Console console(*m_orb);
    QVERIFY(console.isReady());
    operatorhands::type(*console.panel().settings()->name(), u"By hand"_s);
    click(*console.panel().recordButton());
    QTRY_COMPARE_WITH_TIMEOUT(console.state(), u"Recording"_s, patience);
    QTRY_COMPARE_WITH_TIMEOUT(console.statusOf(u"By hand"_s), u"recording"_s, patience);
    click(*console.panel().stopButton());
    QTRY_COMPARE_WITH_TIMEOUT(console.state(), u"Stopped"_s, patience);
    QTRY_COMPARE_WITH_TIMEOUT(console.statusOf(u"By hand"_s), u"finished"_s, patience);
}

void TestReplayConsole::replaysTheRecordThatIsSelected()
{
    Console console(*m_orb);
    QVERIFY(console.isReady());
    QVERIFY(console.choose());
    const double begin = console.bar().GetRecordingStart();
    QCOMPARE(console.position(), begin);
    click(console.play());
    QTRY_COMPARE_WITH_TIMEOUT(console.state(), u"Replaying"_s, patience);
    QTRY_VERIFY_WITH_TIMEOUT(console.position() > begin, patience);
    click(*console.deck().controls()->pauseButton());
    QTRY_COMPARE_WITH_TIMEOUT(console.state(), u"Replay paused"_s, patience);
    const double held = console.position();
    click(console.play());
    QTRY_COMPARE_WITH_TIMEOUT(console.state(), u"Replaying"_s, patience);
    QTRY_VERIFY_WITH_TIMEOUT(console.position() > held, patience);
    click(*console.deck().controls()->stopButton());
    QTRY_COMPARE_WITH_TIMEOUT(console.state(), u"Stopped"_s, patience);
}

// A whole tenth of the hour lies between where the operator has it and where the other client leaves it.
void TestReplayConsole::replaysFromWhereItsOperatorPutThePosition()
{
    Console console(*m_orb);
    QVERIFY(console.isReady());
    QVERIFY(console.choose());
    const double begin = console.bar().GetRecordingStart();
    console.bar().setFocus();
    QTest::keyClick(&console.bar(), Qt::Key_PageUp);
    const double own = console.position();
    QVERIFY(own > begin);
    ZelkoTest::RecorderClient other(*m_orb, console.port(), console.operatorOfRecorder());
    QTRY_COMPARE_WITH_TIMEOUT(other.channelIds().size(), 1, patience);
    const ZelkoTest::ShownChannel channel = other.channel(other.channelIds().constFirst());
    QTRY_COMPARE_WITH_TIMEOUT(channel.position(), own, patience);
    other.write(channel.find<Value<double>>("CurrentReplayPosition"), begin);
    QTRY_COMPARE_WITH_TIMEOUT(console.position(), begin, patience);
    click(console.play());
    QTRY_COMPARE_WITH_TIMEOUT(console.state(), u"Replaying"_s, patience);
    QTRY_VERIFY_WITH_TIMEOUT(console.position() > own, patience);
}

void TestReplayConsole::storesTheBookmarksThatAreSent()
{
    Console console(*m_orb);
    QVERIFY(console.isReady());
    QVERIFY(console.choose());
    console.bookmark();
    click(*console.deck().bar()->findChild<QToolButton*>(u"ApplyBookmarks"_s));
    QTRY_COMPARE_WITH_TIMEOUT(console.storedBookmarks(), 1, patience);
    QTRY_COMPARE_WITH_TIMEOUT(console.deck().bookmarks()->getSynchState(), BookmarkModel::SynchInSync, patience);
    QCOMPARE(console.deck().bookmarks()->entryCount(), 1);
}

void TestReplayConsole::sendsBookmarksThatWouldBeLost()
{
    Console console(*m_orb);
    QVERIFY(console.isReady());
    QVERIFY(console.choose());
    console.bookmark();
    const DialogAnswer answer(send);
    console.table().setFocus();
    console.table().clearSelection();
    QTRY_VERIFY_WITH_TIMEOUT(console.bar().GetRecordingStart() == 0, patience);
    QVERIFY(answer.wasGiven());
    QCOMPARE(console.storedBookmarks(), 1); // before it went on
}

void TestReplayConsole::staysWithBookmarksThatTheRecorderRefuses()
{
    Console console(*m_orb);
    QVERIFY(console.isReady());
    QVERIFY(console.choose());
    console.bookmark();
    ZELKO_XML::BookmarkEntry tooLong = console.bookmarks().entry(0);
    tooLong.SetBookmark(QString(20'000, u'x'));
    QVERIFY(console.bookmarks().changeEntry(0, tooLong));
    console.deck().setSendLimit(std::chrono::milliseconds(300));
    QString said;
    std::optional<DialogAnswer> second;
    const DialogAnswer first([&](QWidget* question) {
        second.emplace([&said](QWidget* box) { said = qobject_cast<QMessageBox*>(box)->text(); });
        send(question);
    });
    QVERIFY(!console.window.close());
    QCOMPARE(said, u"The recorder has not taken the bookmarks. They are still there, and not sent."_s);
    QVERIFY(console.isUnsent());
    QCOMPARE(console.storedBookmarks(), 0);
    console.bookmarks().sl_reset(); // or it asks again
}

void TestReplayConsole::bringsUnsentBookmarksBackAfterARecorderThatDied()
{
    Console console(*m_orb);
    QVERIFY(console.isReady());
    QVERIFY(console.choose());
    console.bookmark();
    QCOMPARE(::kill(static_cast<pid_t>(console.session.recorder()->processId()), SIGKILL), 0);
    QTRY_COMPARE_WITH_TIMEOUT(console.bookmarks().entryCount(), 0, patience);
    QTRY_VERIFY_WITH_TIMEOUT(console.isUnsent(), patience);
    QVERIFY(console.isReady());
    click(*console.deck().bar()->findChild<QToolButton*>(u"ApplyBookmarks"_s));
    QTRY_COMPARE_WITH_TIMEOUT(console.storedBookmarks(), 1, patience);
}

void TestReplayConsole::leavesTheChannelAloneForAViewer()
{
    Console console(*m_orb);
    QVERIFY(console.isReady());
    const QSignalSpy refused(&console.session, &Session::writeRefused);
    QVERIFY(console.user.switchTo(u"viewer"_s));
    QTRY_VERIFY_WITH_TIMEOUT(console.deck().bookmarks()->readOnly() && console.state() == u"Stopped"_s &&
                                 console.rowOf(lengthy) >= 0,
                             patience);
    operatorhands::clickRow(console.table(), console.rowOf(lengthy));
    QTRY_VERIFY_WITH_TIMEOUT(console.bar().GetRecordingStart() > 0, patience);
    QVERIFY(!console.play().isEnabled());
    QVERIFY(!console.panel().recordButton()->isEnabled());
    QVERIFY(console.user.switchTo(u"operator"_s)); // what was refused before would be told by then
    QTRY_VERIFY_WITH_TIMEOUT(console.panel().recordButton()->isEnabled(), patience);
    QCOMPARE(refused.size(), 0);
}

QTEST_MAIN(TestReplayConsole)
#include "tst_replayconsole.moc"
