#include <zelkoguibase/state/zelkochannelmodel.h>

#include "channelsetting.h"
#include "testrecords.h"
#include "updatecounter.h"

#include <zelkobase/data/datarateusage.h>

#include <QtTest>

#include <limits>

using namespace Qt::StringLiterals;

class TestChannelRequests : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void startsARecording();
    void stopsARecording_data();
    void stopsARecording();
    void sendsNothingWithoutARecordingState();
    void steersTheReplay_data();
    void steersTheReplay();
    void sendsWhatItWrites();
    void writesSettings();
    void limitsTheTimeout();
    void writesNothingWithoutAChannel();
    void setsADevice();
    void setsARecord();
    void setsARecordWithoutData();
    void readsTheDataRateClass_data();
    void readsTheDataRateClass();
    void synchronizes();
    void synchronizesWithTheChannelItself();
    void doesNotSynchronizeWithoutAChannel();
    void writesTheAvailableDevices();
};

void TestChannelRequests::startsARecording()
{
    UpdateCounter others; // outlives the value
    ChannelSetting setting;
    setting.takeUpChannel();
    auto& state = *setting.channel.selection("AllRecordReplayModes");
    state.AddObserver(&others);
    setting.model.startRecording();
    QCOMPARE(state.GetCurrentKey(), 0);
    QCOMPARE(others.take(), std::vector{TChangeCode::ValueChanged});
    QVERIFY(setting.model.isRecording());
    QCOMPARE(setting.log.take(), QStringList());
}

void TestChannelRequests::stopsARecording_data()
{
    QTest::addColumn<int>("before");
    QTest::addColumn<int>("after");
    QTest::addColumn<int>("notifications");
    QTest::newRow("start requested") << 0 << 3 << 1;
    QTest::newRow("recording") << 1 << 3 << 1;
    QTest::newRow("continuous recording") << 2 << 3 << 1;
    QTest::newRow("stopping") << 3 << 3 << 0;
    QTest::newRow("stopped") << 4 << 4 << 0;
}

void TestChannelRequests::stopsARecording()
{
    QFETCH(int, before);
    ChannelSetting setting;
    setting.takeUpChannel();
    auto& state = *setting.channel.selection("AllRecordReplayModes");
    state.SetCurrentKey(before, nullptr);
    setting.log.take();
    setting.site.client->take();
    setting.model.stopRecording();
    QTEST(state.GetCurrentKey(), "after");
    QTEST(int(setting.site.client->take().size()), "notifications");
    QCOMPARE(setting.log.take(), QStringList());
}

void TestChannelRequests::sendsNothingWithoutARecordingState()
{
    ChannelSetting setting;
    setting.takeUpChannel();
    setting.channel.remove(u"AllRecordReplayModes"_s);
    setting.site.client->take();
    setting.model.startRecording();
    setting.model.stopRecording();
    QCOMPARE(setting.site.client->take(), QStringList());
    QVERIFY(setting.model.isStopped());
}

void TestChannelRequests::steersTheReplay_data()
{
    QTest::addColumn<int>("wish");
    QTest::newRow("idle") << 0;
    QTest::newRow("paused") << 2;
    QTest::newRow("running") << 4;
}

void TestChannelRequests::steersTheReplay()
{
    QFETCH(int, wish);
    ChannelSetting setting;
    setting.takeUpChannel();
    auto& state = *setting.channel.selection("ReplayMode");
    state.SetCurrentKey(1, nullptr);
    setting.site.client->take();
    if (wish == 0) {
        setting.model.setReplayIdle();
    } else if (wish == 2) {
        setting.model.setReplayPaused();
    } else {
        setting.model.setReplayRunning();
    }
    QCOMPARE(state.GetCurrentKey(), wish);
    QCOMPARE(setting.site.client->take(), QStringList{u"ReplayMode=state %1"_s.arg(wish)});
    QCOMPARE(setting.log.take(), QStringList());
}

void TestChannelRequests::sendsWhatItWrites()
{
    ChannelSetting setting;
    setting.takeUpChannel();
    setting.site.client->take();
    setting.model.setRecordingName(u"tower"_s);
    setting.model.setRecordingTimeout(60);
    setting.model.setFileSize(2000);
    setting.model.startRecording();
    QCOMPARE(setting.site.client->take(), texts("RecordName=tower, RecordTimeout=60, FileSizeInKB=2000, "
                                                "AllRecordReplayModes=state 0"));
}

void TestChannelRequests::writesSettings()
{
    ChannelSetting setting;
    setting.takeUpChannel();
    setting.model.setFileSize(2000);
    setting.model.setRecordingName(u"tower"_s);
    setting.model.setRecordingTimeout(60);
    QCOMPARE(setting.channel.value<int>("FileSizeInKB")->GetValue(), 2000);
    QCOMPARE(setting.channel.value<QString>("RecordName")->GetValue(), u"tower"_s);
    QCOMPARE(setting.channel.value<int>("RecordTimeout")->GetValue(), 60);
    QCOMPARE(setting.log.take(), QStringList());
}

void TestChannelRequests::limitsTheTimeout()
{
    ChannelSetting setting;
    setting.takeUpChannel();
    setting.model.setRecordingTimeout(std::numeric_limits<unsigned int>::max());
    QCOMPARE(setting.channel.value<int>("RecordTimeout")->GetValue(), std::numeric_limits<int>::max());
}

void TestChannelRequests::writesNothingWithoutAChannel()
{
    ChannelSetting setting;
    setting.takeUpChannel();
    setting.model.setChannelId(QString(), QString());
    setting.site.client->take();
    setting.model.startRecording();
    setting.model.stopRecording();
    setting.model.setReplayRunning();
    setting.model.setFileSize(2000);
    setting.model.setRecordingName(u"tower"_s);
    setting.model.setRecordingTimeout(60);
    setting.model.setDeviceID(u"A1"_s);
    setting.model.setRecordData(*makeRecord(u"R1"_s));
    QCOMPARE(setting.site.client->take(), QStringList());
    QCOMPARE(setting.channel.value<QString>("RecordName")->GetValue(), QString());
}

void TestChannelRequests::setsADevice()
{
    ChannelSetting setting;
    setting.takeUpChannel();
    const auto& recordId = *setting.channel.value<QString>("RecordID");
    setting.model.setDeviceID(u"A1"_s);
    setting.model.setRecordData(*makeRecord(u"R1"_s));
    setting.model.setDeviceID(u"A1"_s);
    QCOMPARE(recordId.GetValue(), u"R1"_s);
    QCOMPARE(setting.channel.value<QString>("DeviceID")->GetValue(), u"A1"_s);
    setting.model.setDeviceID(u"A2"_s);
    QCOMPARE(recordId.GetValue(), QString());
    QCOMPARE(setting.channel.value<qint64>("StartTime")->GetValue(), 0);
    QCOMPARE(setting.channel.value<QString>("DeviceID")->GetValue(), u"A2"_s);
}

void TestChannelRequests::setsARecord()
{
    ChannelSetting setting;
    setting.takeUpChannel();
    setting.model.setRecordData(*makeRecord(u"R1"_s, 5, 4096));
    QCOMPARE(setting.model.recordID(), u"R1"_s);
    QCOMPARE(setting.channel.value<qint64>("StartTime")->GetValue(), 1700000000000000);
    QCOMPARE(setting.channel.value<qint64>("FileSize")->GetValue(), 4096);
}

void TestChannelRequests::setsARecordWithoutData()
{
    ChannelSetting setting;
    setting.takeUpChannel();
    setting.model.setRecordData(*makeRecord(u"R1"_s, 5, 4096));
    setting.model.setRecordData(ZELKO_XML::ZELKO_RecordData());
    QCOMPARE(setting.model.recordID(), QString());
    QCOMPARE(setting.channel.value<qint64>("FileSize")->GetValue(), 0);
}

void TestChannelRequests::readsTheDataRateClass_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<int>("expected");
    for (const QString& name : ZELKO_XML::ZELKO_RecordData::GetDataRates()) {
        QTest::newRow(qPrintable(name)) << name << static_cast<int>(ZELKO_XML::DataRateUsage::NameToDataRate(name));
    }
    QTest::newRow("a class that is not known") << u"UpTo3kB"_s << -1;
    QTest::newRow("none") << QString() << -1;
}

void TestChannelRequests::readsTheDataRateClass()
{
    QFETCH(QString, name);
    ChannelSetting setting;
    setting.takeUpChannel();
    setting.channel.value<QString>("DataRateClass")->SetValue(name, nullptr);
    QTEST(setting.model.getDataRateClass(), "expected");
}

void TestChannelRequests::synchronizes()
{
    ChannelSetting setting;
    setting.takeUpChannel();
    setting.model.setRecordData(*makeRecord(u"R1"_s));
    setting.model.synchronize(u"A1"_s);
    QCOMPARE(setting.log.take(), texts("replay stopped"));
    setting.model.setDeviceID(u"A1"_s); // the one that it has taken up
    QCOMPARE(setting.model.recordID(), u"R1"_s);
    setting.model.synchronize(u"A2"_s);
    setting.model.setDeviceID(u"A1"_s); // the other one was not taken up
    QCOMPARE(setting.model.recordID(), u"R1"_s);
}

void TestChannelRequests::synchronizesWithTheChannelItself()
{
    ChannelSetting setting;
    setting.takeUpChannel();
    setting.model.setRecordData(*makeRecord(u"R1"_s));
    setting.model.synchronize(u"ZelkoChannel"_s);
    QCOMPARE(setting.log.take(), texts("replay stopped"));
    setting.model.setDeviceID(QString()); // no other one than before
    QCOMPARE(setting.model.recordID(), u"R1"_s);
    setting.model.setDeviceID(u"ZelkoChannel"_s);
    QCOMPARE(setting.model.recordID(), QString());
}

void TestChannelRequests::doesNotSynchronizeWithoutAChannel()
{
    ChannelSetting setting;
    setting.model.synchronize(u"A1"_s);
    QCOMPARE(setting.log.take(), QStringList());
}

void TestChannelRequests::writesTheAvailableDevices()
{
    UpdateCounter others; // outlives the value
    ChannelSetting setting;
    setting.local.valueAvailableDevices()->AddObserver(&others);
    setting.model.sl_setAvailableDevices({u"A1"_s, u"A2"_s});
    QCOMPARE(setting.local.valueAvailableDevices()->GetValue(), u"A1@A2"_s);
    setting.model.sl_setAvailableDevices({});
    QCOMPARE(setting.local.valueAvailableDevices()->GetValue(), QString());
    QCOMPARE(others.take().size(), std::size_t(2));
    Tree::Instance()->Remove(u"/ZELKO/Local"_s);
    setting.model.sl_setAvailableDevices({u"A1"_s});
    QVERIFY(!setting.local.valueAvailableDevices());
}

QTEST_GUILESS_MAIN(TestChannelRequests)
#include "tst_channelrequests.moc"
