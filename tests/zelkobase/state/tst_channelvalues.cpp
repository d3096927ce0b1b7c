#include <zelkobase/state/channelvalues.h>

#include "channelbranch.h"
#include "statesite.h"

#include <zelkobase/data/zelko_recorddata.h>
#include <zelkobase/state/localzelkovalues.h>

#include <QTest>

using namespace Qt::StringLiterals;
using ZELKO_XML::ZELKO_RecordData;
using ZelkoCommon::ChannelValues;

namespace {

/// A client that is connected to north, and the values of its channel C1.
struct Setting
{
    const StateSite site{{u"north"_s}};
    const ChannelBranch channel{u"north"_s, u"C1"_s};
    ChannelValues values{ZelkoCommon::LocalZelkoValues(u"north"_s), site.data};
};

ZELKO_RecordData record()
{
    ZELKO_RecordData result;
    result.SetRecordID(u"R1"_s);
    result.SetRecordName(u"tower"_s);
    result.SetSize(4096);
    result.SetStartTime(1700000000000001);
    result.SetStopTime(1700000090000002);
    result.SetStartPosition(16);
    result.SetStopPosition(4080);
    result.SetRecordingLoopSize(1024);
    result.SetRecordStatus(ZELKO_RecordData::RecordStatus::Finished);
    result.SetDataRate(ZELKO_RecordData::DataRate::UpTo4MB);
    result.SetDataFormat(ZELKO_RecordData::DataFormat::IQ16);
    result.SetDeletable(true);
    return result;
}

/// The contents of the values by their names, as texts.
QStringList contents(const ChannelBranch& channel, const QStringList& names)
{
    QStringList result;
    for (const QString& name : names) {
        const auto* const value = Tree::Instance()->Find<ValueBase>(u"/SubSystems/north/ZELKO/Channel/C1/"_s + name);
        result.append(name + u'=' + (value ? value->GetStringValue() : u"missing"_s));
    }
    return channel.value<QString>("RecordID") ? result : QStringList();
}

const QStringList recordNames{u"FileSize"_s,     u"StartTime"_s,   u"StopTime"_s,     u"StartPosition"_s,
                              u"StopPosition"_s, u"LoopSize"_s,    u"RecordStatus"_s, u"ReplayDataRateClass"_s,
                              u"DataFormat"_s,   u"IsDeletable"_s, u"RecordID"_s};

} // namespace

class TestChannelValues : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void haveNoChannelAtFirst();
    void areThoseOfTheChannel();
    void areThoseOfTheChannelOfADevice();
    void areMissing_data();
    void areMissing();
    void areFoundWhenTheyCome();
    void areFoundAgain();
    void areLetGoOf();
    void changeWithTheChannel();
    void goToTheRecorder();
    void goToTheRecorderOnceThereIsAConnection();
    void takeARecord();
    void forgetARecord();
    void leaveTheNameOfTheNextRecording();
    void foldErrorCodes();
};

void TestChannelValues::haveNoChannelAtFirst()
{
    Setting setting;
    setting.channel.putAll();
    QVERIFY(!setting.values.valuesExist());
    setting.values.init(u"A1"_s, QString());
    QVERIFY(!setting.values.valuesExist());
    setting.values.resetRecordDataValues();
    setting.values.setRecordDataToValues(record());
    setting.values.setErrorCodeOptimization(true);
    QVERIFY(!setting.values.valueRecordId());
}

void TestChannelValues::areThoseOfTheChannel()
{
    Setting setting;
    setting.channel.putAll();
    setting.values.init(QString(), u"C1"_s);
    QVERIFY(setting.values.valuesExist());
    const ChannelBranch& channel = setting.channel;
    QCOMPARE(setting.values.valueRecordingState().get(), channel.selection("AllRecordReplayModes"));
    QCOMPARE(setting.values.valueReplayState().get(), channel.selection("ReplayMode"));
    QCOMPARE(setting.values.valueGUIRecordReplayState().get(), channel.selection("RecordReplayModes"));
    QCOMPARE(setting.values.valueErrorCode().get(), channel.value<QString>("ErrorCode"));
    QCOMPARE(setting.values.valueRecordFlag().get(), channel.value<bool>("RecordFlag"));
    QCOMPARE(setting.values.valueReplayFlag().get(), channel.value<bool>("ReplayFlag"));
    QCOMPARE(setting.values.valueDeviceId().get(), channel.value<QString>("DeviceID"));
    QCOMPARE(setting.values.valueRecordName().get(), channel.value<QString>("RecordName"));
    QCOMPARE(setting.values.valueRecordTimeout().get(), channel.value<int>("RecordTimeout"));
    QCOMPARE(setting.values.valueFileSizeInKB().get(), channel.value<int>("FileSizeInKB"));
    QCOMPARE(setting.values.valueDefaultDataRateClass().get(), channel.value<QString>("DataRateClass"));
    QCOMPARE(setting.values.valueCurrentReplayPosition().get(), channel.value<double>("CurrentReplayPosition"));
    QCOMPARE(setting.values.valueRecordId().get(), channel.value<QString>("RecordID"));
}

void TestChannelValues::areThoseOfTheChannelOfADevice()
{
    Setting setting;
    setting.channel.putAll();
    setting.values.init(u"A1"_s, u"C1"_s);
    QVERIFY(!setting.values.valuesExist());
    const ChannelBranch other(u"north"_s, u"A1/C1"_s);
    other.putAll();
    QVERIFY(setting.values.valuesExist());
    QCOMPARE(setting.values.valueRecordId().get(), other.value<QString>("RecordID"));
}

void TestChannelValues::areMissing_data()
{
    QTest::addColumn<QString>("missing");
    for (const QString& name : ChannelBranch::names()) {
        QTest::newRow(qPrintable(name)) << name;
    }
}

void TestChannelValues::areMissing()
{
    QFETCH(QString, missing);
    Setting setting;
    setting.channel.putAll();
    setting.values.init(QString(), u"C1"_s);
    QVERIFY(setting.values.valuesExist());
    setting.channel.remove(missing);
    QVERIFY(!setting.values.valuesExist());
    setting.channel.put(missing);
    QVERIFY(setting.values.valuesExist());
}

void TestChannelValues::areFoundWhenTheyCome()
{
    Setting setting;
    setting.values.init(QString(), u"C1"_s);
    QVERIFY(!setting.values.valuesExist());
    setting.channel.putAll();
    QVERIFY(setting.values.valuesExist());
    QVERIFY(setting.values.valueErrorCode());
}

void TestChannelValues::areFoundAgain()
{
    Setting setting;
    setting.channel.putAll();
    setting.values.init(QString(), u"C1"_s);
    setting.channel.removeAll();
    QVERIFY(!setting.values.valuesExist());
    QVERIFY(!setting.values.valueErrorCode());
    setting.channel.putAll();
    QVERIFY(setting.values.valuesExist());
}

void TestChannelValues::areLetGoOf()
{
    Setting setting;
    setting.channel.putAll();
    setting.values.init(QString(), u"C1"_s);
    setting.values.resetValues();
    QVERIFY(!setting.values.valueErrorCode());
    QVERIFY(!setting.values.valuesExist());
    setting.site.client->take();
    setting.channel.value<QString>("RecordName")->SetValue(u"tower"_s, nullptr);
    QCOMPARE(setting.site.client->take(), QStringList());
}

void TestChannelValues::changeWithTheChannel()
{
    Setting setting;
    setting.channel.putAll();
    setting.values.init(QString(), u"C1"_s);
    const ChannelBranch other(u"north"_s, u"C2"_s);
    other.putAll();
    setting.values.init(QString(), u"C2"_s);
    QCOMPARE(setting.values.valueRecordId().get(), other.value<QString>("RecordID"));
    setting.values.init(QString(), u"C3"_s);
    QVERIFY(!setting.values.valuesExist());
    QVERIFY(!setting.values.valueRecordId());
}

void TestChannelValues::goToTheRecorder()
{
    Setting setting;
    setting.channel.putAll();
    setting.values.init(QString(), u"C1"_s);
    QCOMPARE(setting.site.client->take().size(), ChannelBranch::names().size());
    setting.values.valuesExist();
    QCOMPARE(setting.site.client->take(), QStringList()); // each was added once
    setting.values.valueRecordName()->SetValue(u"tower"_s, nullptr);
    setting.values.valueRecordingState()->SetCurrentKey(0, nullptr);
    QCOMPARE(setting.site.client->take(), (QStringList{u"RecordName=tower"_s, u"AllRecordReplayModes=state 0"_s}));
}

void TestChannelValues::goToTheRecorderOnceThereIsAConnection()
{
    Setting setting;
    setting.site.data->setConnected(u"north"_s, false);
    setting.channel.putAll();
    setting.values.init(QString(), u"C1"_s);
    QVERIFY(setting.values.valuesExist());
    QCOMPARE(setting.site.client->take(), QStringList());
    setting.site.data->setConnected(u"north"_s, true);
    QVERIFY(setting.values.valuesExist());
    QCOMPARE(setting.site.client->take().size(), ChannelBranch::names().size());
}

void TestChannelValues::takeARecord()
{
    Setting setting;
    setting.channel.putAll();
    setting.values.init(QString(), u"C1"_s);
    setting.site.client->take();
    setting.values.setRecordDataToValues(record());
    const QStringList expected{u"FileSize=4096"_s,
                               u"StartTime=1700000000000001"_s,
                               u"StopTime=1700000090000002"_s,
                               u"StartPosition=16"_s,
                               u"StopPosition=4080"_s,
                               u"LoopSize=1024"_s,
                               u"RecordStatus=Finished"_s,
                               u"ReplayDataRateClass=UpTo4MB"_s,
                               u"DataFormat=IQ16"_s,
                               u"IsDeletable=true"_s,
                               u"RecordID=R1"_s};
    QCOMPARE(contents(setting.channel, recordNames), expected);
    QCOMPARE(setting.site.client->take(), expected);
}

void TestChannelValues::forgetARecord()
{
    Setting setting;
    setting.channel.putAll();
    setting.values.init(QString(), u"C1"_s);
    const QStringList before = contents(setting.channel, recordNames);
    setting.values.setRecordDataToValues(record());
    setting.values.resetRecordDataValues();
    QCOMPARE(contents(setting.channel, recordNames), before);
}

void TestChannelValues::leaveTheNameOfTheNextRecording()
{
    Setting setting;
    setting.channel.putAll();
    setting.values.init(QString(), u"C1"_s);
    setting.values.valueRecordName()->SetValue(u"next"_s, nullptr);
    setting.values.setRecordDataToValues(record());
    QCOMPARE(setting.values.valueRecordName()->GetValue(), u"next"_s);
    setting.values.resetRecordDataValues();
    QCOMPARE(setting.values.valueRecordName()->GetValue(), u"next"_s);
}

void TestChannelValues::foldErrorCodes()
{
    Setting setting;
    setting.channel.putAll();
    setting.values.init(QString(), u"C1"_s);
    setting.site.client->take();
    setting.values.setErrorCodeOptimization(true);
    setting.values.valueErrorCode()->SetValue(u"E1"_s, nullptr);
    setting.values.valueErrorCode()->SetValue(u"E2"_s, nullptr);
    setting.values.setErrorCodeOptimization(false);
    QCOMPARE(setting.site.client->take(), QStringList{u"ErrorCode=E2"_s});
    setting.values.valueErrorCode()->SetValue(u"E3"_s, nullptr);
    QCOMPARE(setting.site.client->take(), QStringList{u"ErrorCode=E3"_s});
}

QTEST_GUILESS_MAIN(TestChannelValues)
#include "tst_channelvalues.moc"
