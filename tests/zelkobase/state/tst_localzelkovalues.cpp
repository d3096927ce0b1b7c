#include <zelkobase/state/localzelkovalues.h>

#include <zelkobase/state/ccoconnectionstates.h>

#include <QTest>

using namespace Qt::StringLiterals;
using ZelkoCommon::LocalZelkoValues;

class TestLocalZelkoValues : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void cleanup() { Tree::Instance()->Remove(u"/ZELKO"_s); }

    void areOnTheTree();
    void keepApartFromTheSubSystem();
    void areSharedBySubSystem();
    void stayWhenTheObjectGoes();
    void areNullOnceTheyAreTakenAway();
};

void TestLocalZelkoValues::areOnTheTree()
{
    const LocalZelkoValues values(u"north"_s);
    QCOMPARE(values.valueDeviceId()->GetValue(), QString());
    QCOMPARE(values.valueAvailableDevices()->GetValue(), QString());
    QCOMPARE(values.valueCCOConnectionResult()->GetValue(), QString());
    QCOMPARE(values.valueWaterfallTimestamp()->GetValue(), 0.0);
    auto& state = *values.valueCCOConnectionState();
    for (const int key : {CorbaCommon::ccoFailed, CorbaCommon::ccoConnected, CorbaCommon::ccoConnecting,
                          CorbaCommon::ccoNotConnected}) {
        QVERIFY(state.SetCurrentKey(key, nullptr));
        QCOMPARE(state.GetCurrentIndex(), key);
        QVERIFY(!state.GetCurrentName().isEmpty());
    }
}

void TestLocalZelkoValues::keepApartFromTheSubSystem()
{
    const LocalZelkoValues values(u"north"_s);
    QCOMPARE(values.subSystem(), u"north"_s);
    QCOMPARE(values.basePath(), u"/SubSystems/north"_s);
    QCOMPARE(values.valueDeviceId()->GetPathName(), u"/ZELKO/Local/SubSystems/north/DeviceID"_s);
    QVERIFY(!Tree::Instance()->GetItem(u"/SubSystems"_s));
}

void TestLocalZelkoValues::areSharedBySubSystem()
{
    const LocalZelkoValues values(u"north"_s);
    values.valueDeviceId()->SetValue(u"A1"_s, nullptr);
    QCOMPARE(LocalZelkoValues(u"north"_s).valueDeviceId().get(), values.valueDeviceId().get());
    QCOMPARE(LocalZelkoValues(u"north"_s).valueDeviceId()->GetValue(), u"A1"_s);
    QCOMPARE(LocalZelkoValues(u"south"_s).valueDeviceId()->GetValue(), QString());
}

void TestLocalZelkoValues::stayWhenTheObjectGoes()
{
    {
        const LocalZelkoValues values(u"north"_s);
        values.valueWaterfallTimestamp()->SetValue(1700000000000000.0, nullptr);
    }
    QCOMPARE(LocalZelkoValues(u"north"_s).valueWaterfallTimestamp()->GetValue(), 1700000000000000.0);
}

void TestLocalZelkoValues::areNullOnceTheyAreTakenAway()
{
    const LocalZelkoValues values(u"north"_s);
    Tree::Instance()->Remove(u"/ZELKO/Local"_s);
    QVERIFY(!values.valueDeviceId());
    QVERIFY(!values.valueCCOConnectionState());
}

QTEST_GUILESS_MAIN(TestLocalZelkoValues)
#include "tst_localzelkovalues.moc"
