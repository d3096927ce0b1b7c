#include <actiontest.h>
#include <channelsignallog.h>
#include <recorderclient.h>

#include <zelkobase/orb/corbatext.h>
#include <zelkobase/service/serviceaddress.h>
#include <zelkobase/state/channelvalues.h>
#include <zelkobase/state/localzelkovalues.h>
#include <zelkoguibase/state/zelkochannelmodel.h>
#include <zelkoidl/recorderservice.hh>

using namespace ZelkoTest;
using namespace Qt::StringLiterals;
using ZelkoCommon::Role;
using ZelkoGUI::ZelkoChannelModel;
using Record = ZELKO_XML::ZELKO_RecordData;
using Status = Record::RecordStatus;

namespace {

const QString brief = u"Brief"_s;  // 1 s
const QString lengthy = u"Long"_s; // an hour

enum RecordingKey { StartRequested = 0, Normal = 1, Continuous = 2, StopRequested = 3, Stopped = 4 };

const QStringList endByItself{"recording stopping", "recording stopped"};

} // namespace

/// The model of a channel, as the library has it, against a real recorder with a channel of its own, and another client
/// of the same channel.
class TestRecorderChannelModel : public ActionTest
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { openOrb(); }
    void cleanupTestCase() { closeOrb(); }
    void init();
    void cleanup();
    void hasNoChannelUntilItIsTold();
    void missesAChannelThatIsNotThere();
    void followsWhetherTheChannelMayRecord();
    void recordsUnderAName();
    void sendsNothingToStopWhatIsStopped();
    void hearsOfAnotherClientsRecording();
    void recordsInALoop();
    void recordsNoLongerThanItsTime();
    void recordsNoMoreThanItsSize();
    void replaysHoldsAndGoesOn();
    void replaysARecordToItsEnd();
    void tellsAnotherClientWhatIsToBeReplayed();
    void tellsWhatWentWrong();
    void saysTheReplayAgain();
    void losesItsChannelWithTheRecorderAndFindsItAgain_data();
    void losesItsChannelWithTheRecorderAndFindsItAgain();
    void tellsOfItsConnection();

private:
    bool serve() { return m_site->start({u"--channel"_s, u"Own=generator:fm,rate=8000"_s}); }
    void takeUp();
    // Through the service, as the manager of a channel would.
    void setRecordFlag(bool canRecord) const;
    // The model's signals, in order, since it was told to forget them.
    const QStringList& heard() { return m_heard += m_log->take(); }
    void forget()
    {
        heard();
        m_heard.clear();
    }
    ShownChannel shown() const { return m_other->channel(m_channel); }
    // As everybody sees it, and not as it was written here.
    bool isReplay(const QString& state) const { return shown().replay() == state; }
    double position() const { return m_model->channelValues()->valueCurrentReplayPosition()->GetValue(); }
    std::shared_ptr<Record> record(const QString& id) const { return ActionSite::values().record(id); }
    bool isFinished(const QString& id) const { return record(id) && record(id)->GetRecordStatus() == Status::Finished; }
    void waitForSamples()
    {
        QTRY_VERIFY_WITH_TIMEOUT(!m_model->recordID().isEmpty() && shown().number("FileSize") > 0, patience);
    }
    void choose(const QString& id)
    {
        m_model->setDeviceID(ActionSite::device());
        m_model->setRecordData(*record(id));
    }

    Value<QString>* m_channelId = nullptr;
    std::unique_ptr<ZelkoCommon::LocalZelkoValues> m_local;
    std::unique_ptr<RecorderClient> m_other;
    std::unique_ptr<ZelkoChannelModel> m_model;
    std::unique_ptr<ChannelSignalLog> m_log;
    QStringList m_heard;
    QString m_channel;
};

void TestRecorderChannelModel::init()
{
    makeSite();
    QVERIFY(storeRecord(m_site->deviceFolder(), finishedRecord(brief), 4000));
    QVERIFY(storeRecord(m_site->deviceFolder(), hourLongRecord(lengthy), 4000));
    QVERIFY(serve());
    m_channelId = Tree::Instance()->Emplace(u"/Window"_s, std::make_unique<Value<QString>>(u"Channel"_s));
    m_local = std::make_unique<ZelkoCommon::LocalZelkoValues>(ActionSite::subSystem());
    m_site->connectAs(Role::Operator);
    m_model = std::make_unique<ZelkoChannelModel>(*m_local, u"/Window/Channel"_s, m_site->connection());
    m_log = std::make_unique<ChannelSignalLog>(*m_model);
    QCOMPARE(m_model->channelState(), ZelkoGlobal::ChannelDisconnected);
    m_other = std::make_unique<RecorderClient>(*m_orb, m_site->recorder().port());
    QTRY_VERIFY_WITH_TIMEOUT(m_other->channelIds().size() == 1, patience);
    m_channel = m_other->channelIds().constFirst();
    QTRY_VERIFY_WITH_TIMEOUT(m_site->isReady() && shown().isThere(), patience);
}

void TestRecorderChannelModel::cleanup()
{
    m_log.reset();
    m_model.reset();
    m_other.reset();
    m_heard.clear();
    leaveSite();
    m_local.reset();
    Tree::Instance()->Remove(u"/Window"_s);
    Tree::Instance()->Remove(u"/ZELKO"_s);
}

void TestRecorderChannelModel::takeUp()
{
    m_channelId->SetValue(m_channel, nullptr);
    QVERIFY(m_model->isReady());
    forget();
}

void TestRecorderChannelModel::setRecordFlag(bool canRecord) const
{
    const CORBA::Object_var object =
        m_orb->reference(ZelkoCommon::serviceReference({u"127.0.0.1"_s}, m_site->recorder().port()));
    const auto entry = QD_ZLK::IF_ZLK_c_ZLK_var(QD_ZLK::IF_ZLK_c_ZLK::_unchecked_narrow(object));
    const QD_ZLK::IF_ZLK_c_Chan_var channel = entry->getZelkoChannelInterface(ZelkoCommon::toCorba(m_channel));
    channel->setRecordFlag(canRecord);
}

void TestRecorderChannelModel::hasNoChannelUntilItIsTold()
{
    QCOMPARE(heard(), (QStringList{"state 3"}));
    QCOMPARE(m_model->channelState(), ZelkoGlobal::ChannelValuesMissing);
    QVERIFY(!m_model->isReady() && m_model->isStopped());
    QCOMPARE(m_model->getRecordingMode(), -1);
    forget();
    m_channelId->SetValue(m_channel, nullptr);
    QCOMPARE(heard(), (QStringList{"reconnected 0", "state 0"}));
    QVERIFY(m_model->isReady() && m_model->isStopped());
    QVERIFY(!m_model->isRecording() && !m_model->isReplaying() && !m_model->isPaused());
    QVERIFY(m_model->supportsRecording() && m_model->supportsXGReplay());
    QCOMPARE(m_model->getRecordingMode(), int{Stopped});
    QVERIFY(m_model->getDataRateClass() != -1);
    QCOMPARE(m_model->recordID(), QString());
}

void TestRecorderChannelModel::missesAChannelThatIsNotThere()
{
    takeUp();
    m_channelId->SetValue(u"nobody"_s, nullptr);
    QCOMPARE(heard(), (QStringList{"state 3"}));
    QCOMPARE(m_model->channelState(), ZelkoGlobal::ChannelValuesMissing);
    m_model->startRecording();
    m_channelId->SetValue(QString(), nullptr);
    QCOMPARE(heard(), (QStringList{"state 3"})); // nothing is said of a channel that is let go of
    QCOMPARE(m_model->channelState(), ZelkoGlobal::ChannelNotSet);
    QCOMPARE(m_model->channelId(), QString());
    forget();
    m_channelId->SetValue(m_channel, nullptr);
    QCOMPARE(heard(), (QStringList{"reconnected 0", "state 0"}));
    QCOMPARE(shown().recording(), u"stopped"_s);
}

void TestRecorderChannelModel::followsWhetherTheChannelMayRecord()
{
    takeUp();
    setRecordFlag(false);
    QTRY_COMPARE_WITH_TIMEOUT(heard(), (QStringList{"state 1"}), patience);
    QVERIFY(!m_model->isReady() && !m_model->supportsRecording());
    m_model->startRecording();
    QTRY_COMPARE_WITH_TIMEOUT(shown().error(), u"the channel was not registered for this"_s, patience);
    QTRY_COMPARE_WITH_TIMEOUT(
        heard(), (QStringList{"state 1", "error the channel was not registered for this", "recording stopped"}),
        patience);
    forget();
    setRecordFlag(true);
    QTRY_COMPARE_WITH_TIMEOUT(heard(), (QStringList{"state 0"}), patience);
    QVERIFY(m_model->isReady() && m_model->supportsRecording());
}

void TestRecorderChannelModel::recordsUnderAName()
{
    takeUp();
    m_model->setDeviceID(ActionSite::device());
    m_model->setRecordingName(u"Morning"_s);
    m_model->startRecording();
    QVERIFY(m_model->isRecording() && !m_model->isStopped()); // from the request on
    QCOMPARE(m_model->getRecordingMode(), int{StartRequested});
    QTRY_COMPARE_WITH_TIMEOUT(heard(), (QStringList{"recording normal"}), patience);
    QCOMPARE(m_model->getRecordingMode(), int{Normal});
    waitForSamples();
    const QString id = m_model->recordID();
    m_model->stopRecording();
    QVERIFY(!m_model->isRecording() && m_model->isStopped()); // from the request on
    QTRY_COMPARE_WITH_TIMEOUT(heard(), (QStringList{"recording normal", "recording stopped"}), patience);
    QTRY_VERIFY_WITH_TIMEOUT(isFinished(id), patience);
    QCOMPARE(record(id)->GetRecordName(), u"Morning"_s);
    QVERIFY(record(id)->GetSize() > 0);
    QCOMPARE(m_model->recordID(), id);
}

void TestRecorderChannelModel::sendsNothingToStopWhatIsStopped()
{
    takeUp();
    const ChoiceLog log(shown().recordingState());
    m_model->stopRecording();
    m_model->setRecordingName(u"behind it"_s);
    QTRY_COMPARE_WITH_TIMEOUT(shown().text("RecordName"), u"behind it"_s, patience);
    QCOMPARE(log.names(), QStringList());
}

void TestRecorderChannelModel::hearsOfAnotherClientsRecording()
{
    takeUp();
    m_other->select(shown().recordingState(), StartRequested);
    QTRY_COMPARE_WITH_TIMEOUT(heard(), (QStringList{"recording normal"}), patience);
    QVERIFY(m_model->isRecording());
    waitForSamples();
    m_other->select(shown().recordingState(), StopRequested);
    QTRY_COMPARE_WITH_TIMEOUT(heard(), QStringList("recording normal") + endByItself, patience);
    QVERIFY(m_model->isStopped());
}

void TestRecorderChannelModel::recordsInALoop()
{
    takeUp();
    m_model->setFileSize(16);
    m_model->channelValues()->valueRecordingState()->SetCurrentKey(Continuous, m_model.get());
    QTRY_COMPARE_WITH_TIMEOUT(heard(), (QStringList{"recording continuous"}), patience);
    QVERIFY(m_model->isRecording());
    QCOMPARE(m_model->getRecordingMode(), int{Continuous});
    QTRY_VERIFY_WITH_TIMEOUT(shown().number("StartPosition") > 0, patience); // the eldest have gone
    const QString id = m_model->recordID();
    m_model->stopRecording();
    QTRY_COMPARE_WITH_TIMEOUT(heard(), (QStringList{"recording continuous", "recording stopped"}), patience);
    QTRY_VERIFY_WITH_TIMEOUT(isFinished(id), patience);
    QCOMPARE(record(id)->GetRecordingLoopSize(), quint64{16 * 1024});
    QVERIFY(record(id)->GetStartPosition() > 0);
}

void TestRecorderChannelModel::recordsNoLongerThanItsTime()
{
    takeUp();
    m_model->setRecordingTimeout(1);
    m_model->startRecording();
    QTRY_COMPARE_WITH_TIMEOUT(heard(), QStringList("recording normal") + endByItself, patience);
    QTRY_VERIFY_WITH_TIMEOUT(isFinished(m_model->recordID()), patience);
}

void TestRecorderChannelModel::recordsNoMoreThanItsSize()
{
    takeUp();
    m_model->setFileSize(2);
    m_model->startRecording();
    QTRY_COMPARE_WITH_TIMEOUT(heard(), QStringList("recording normal") + endByItself, patience);
    QTRY_VERIFY_WITH_TIMEOUT(isFinished(m_model->recordID()), patience);
    QCOMPARE(record(m_model->recordID())->GetSize(), 2048U);
}

void TestRecorderChannelModel::replaysHoldsAndGoesOn()
{
    takeUp();
    choose(lengthy);
    m_model->setReplayRunning();
    QVERIFY(m_model->isReplaying());
    QTRY_COMPARE_WITH_TIMEOUT(heard(), (QStringList{"replay running"}), patience);
    QTRY_VERIFY_WITH_TIMEOUT(position() > 10'000'000.0, patience);
    forget();
    m_model->setReplayPaused();
    QVERIFY(m_model->isPaused() && !m_model->isReplaying());
    QTRY_COMPARE_WITH_TIMEOUT(heard(), (QStringList{"replay pausing", "replay paused"}), patience);
    QTRY_VERIFY_WITH_TIMEOUT(isReplay(u"paused"_s) && shown().position() == position(), patience);
    const double held = position();
    m_model->setReplayRunning();
    QTRY_VERIFY_WITH_TIMEOUT(position() > held && isReplay(u"running"_s), patience);
    QVERIFY(m_model->isReplaying() && !m_model->isPaused());
    forget();
    m_model->setReplayIdle();
    QTRY_COMPARE_WITH_TIMEOUT(heard(), (QStringList{"replay stopping", "replay stopped"}), patience);
    QVERIFY(!m_model->isReplaying() && !m_model->isPaused());
    QTRY_VERIFY_WITH_TIMEOUT(isFinished(lengthy), patience);
}

void TestRecorderChannelModel::replaysARecordToItsEnd()
{
    takeUp();
    choose(brief);
    m_model->setReplayRunning();
    QTRY_COMPARE_WITH_TIMEOUT(heard(), (QStringList{"replay running", "replay stopping", "replay stopped"}), patience);
    QTRY_COMPARE_WITH_TIMEOUT(position(), 11'000'000.0, patience);
}

void TestRecorderChannelModel::tellsAnotherClientWhatIsToBeReplayed()
{
    takeUp();
    choose(lengthy);
    QTRY_COMPARE_WITH_TIMEOUT(shown().text("RecordID"), lengthy, patience);
    QCOMPARE(shown().text("DeviceID"), ActionSite::device());
    QCOMPARE(shown().number("StartTime"), 10'000'000);
    QCOMPARE(shown().number("StopTime"), 3'610'000'000);
    QCOMPARE(shown().text("RecordStatus"), u"Finished"_s);
    m_model->setRecordData(Record());
    QTRY_COMPARE_WITH_TIMEOUT(shown().text("RecordID"), QString(), patience);
    QCOMPARE(shown().number("StopTime"), 0);
    choose(lengthy);
    m_model->setDeviceID(u"Another"_s); // which has none of this record
    QTRY_COMPARE_WITH_TIMEOUT(shown().text("DeviceID"), u"Another"_s, patience);
    QCOMPARE(m_model->recordID(), QString());
}

void TestRecorderChannelModel::tellsWhatWentWrong()
{
    takeUp();
    choose(lengthy);
    Record missing = *record(lengthy);
    missing.SetRecordID(u"Gone"_s);
    m_model->setRecordData(missing);
    m_model->setReplayRunning();
    QTRY_VERIFY_WITH_TIMEOUT(heard().contains("error there is no such record"), patience);
    QTRY_COMPARE_WITH_TIMEOUT(heard().constLast(), u"replay stopped"_s, patience);
    forget();
    choose(brief);
    m_model->setReplayRunning(); // which empties the error, of which nothing is heard
    QTRY_COMPARE_WITH_TIMEOUT(heard(), (QStringList{"replay running", "replay stopping", "replay stopped"}), patience);
    QCOMPARE(shown().error(), QString());
}

void TestRecorderChannelModel::saysTheReplayAgain()
{
    takeUp();
    m_model->synchronize(u"ZelkoChannel"_s);
    QCOMPARE(heard(), (QStringList{"replay stopped"}));
    choose(lengthy);
    m_model->setReplayRunning();
    QTRY_COMPARE_WITH_TIMEOUT(heard(), (QStringList{"replay stopped", "replay running"}), patience);
    forget();
    m_model->synchronize(ActionSite::device());
    QCOMPARE(heard(), (QStringList{"replay running"}));
}

void TestRecorderChannelModel::losesItsChannelWithTheRecorderAndFindsItAgain_data()
{
    QTest::addColumn<bool>("records");
    QTest::addColumn<bool>("mayRecord"); // after that
    QTest::newRow("at rest") << false << true;
    QTest::newRow("while it records") << true << true;
    QTest::newRow("when it may not record any more") << false << false;
}

void TestRecorderChannelModel::losesItsChannelWithTheRecorderAndFindsItAgain()
{
    QFETCH(const bool, records);
    QFETCH(const bool, mayRecord);
    takeUp();
    QString id;
    if (records) {
        m_model->startRecording();
        waitForSamples();
        id = m_model->recordID();
    }
    forget();
    m_site->recorder().kill();
    QTRY_COMPARE_WITH_TIMEOUT(heard(), (QStringList{"state 4"}), patience);
    QCOMPARE(m_model->channelState(), ZelkoGlobal::ChannelDisconnected);
    QCOMPARE(m_model->channelId(), QString());
    QVERIFY(!m_model->isRecording() && m_model->isStopped());
    QCOMPARE(m_model->getRecordingMode(), -1);
    forget();
    QVERIFY(serve());
    QTRY_COMPARE_WITH_TIMEOUT(heard(), (QStringList{"state 3"}), patience); // until it is told to take it up again
    QTRY_VERIFY_WITH_TIMEOUT(m_site->isReady(), patience);
    forget();
    setRecordFlag(mayRecord);
    QTRY_VERIFY_WITH_TIMEOUT(shown().isThere() && shown().find<Value<bool>>("RecordFlag")->GetValue() == mayRecord,
                             patience);
    m_model->resetChannel(QString());
    QTRY_VERIFY_WITH_TIMEOUT(m_model->supportsRecording() == mayRecord, patience);
    QVERIFY(heard().startsWith(u"reconnected 0"_s));
    QCOMPARE(heard().constLast(), mayRecord ? u"state 0"_s : u"state 1"_s);
    QCOMPARE(m_model->channelId(), m_channel);
    QCOMPARE(m_model->getRecordingMode(), int{Stopped});
    if (records) {
        QTRY_VERIFY_WITH_TIMEOUT(isFinished(id), patience);
    }
}

void TestRecorderChannelModel::tellsOfItsConnection()
{
    m_local->valueCCOConnectionResult()->SetValue(u"fine"_s, nullptr);
    m_local->valueCCOConnectionState()->SetCurrentKey(CorbaCommon::ccoConnected, nullptr);
    QVERIFY(heard().contains(u"connection 2 fine"_s));
    QCOMPARE(m_model->getCCOConnectionState(), int{CorbaCommon::ccoConnected});
    QCOMPARE(m_model->getCCOConnectionResult(), u"fine"_s);
}

QTEST_MAIN(TestRecorderChannelModel)
#include "tst_recorderchannelmodel.moc"
