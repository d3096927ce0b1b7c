#include <recorder/service/statusmapping.h>

#include <QTest>

using namespace ZelkoRecorder;
using ZelkoCommon::ServiceStatus;

Q_DECLARE_METATYPE(ZelkoRecorder::StoreStatus)
Q_DECLARE_METATYPE(ZelkoCommon::ServiceStatus)

class TestStatusMapping : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void saysHowAnOperationEnded_data();
    void saysHowAnOperationEnded();
};

void TestStatusMapping::saysHowAnOperationEnded_data()
{
    QTest::addColumn<StoreStatus>("ofStore");
    QTest::addColumn<ServiceStatus>("ofService");
    using S = StoreStatus;
    using W = ServiceStatus;
    QTest::newRow("done") << S::Done << W::None;
    QTest::newRow("no such record") << S::UnknownRecord << W::NoSuchRecord;
    QTest::newRow("no such entry") << S::UnknownEntry << W::NoSuchEntry;
    QTest::newRow("in use") << S::InUse << W::RecordBusy;
    QTest::newRow("of the wrong kind") << S::NotAllowed << W::NotSupported;
    QTest::newRow("damaged") << S::Damaged << W::DamagedRecord;
    QTest::newRow("too long") << S::TooLong << W::BadArgument;
    QTest::newRow("too many") << S::TooMany << W::LimitReached;
    QTest::newRow("ranges that are none") << S::BadRange << W::BadArgument;
    QTest::newRow("a folder that is not allowed") << S::BadFolder << W::TargetNotAllowed;
    QTest::newRow("there already") << S::Exists << W::TargetExists;
    QTest::newRow("no room") << S::NoSpace << W::DiskFull;
    QTest::newRow("the disk failed") << S::DiskRefused << W::DiskFailed;
    QTest::newRow("the disk failed twice") << S::Uncertain << W::NotDurable;
    QTest::newRow("given up") << S::Cancelled << W::InternalError;
    QTest::newRow("the recorder ends") << S::Ending << W::ShuttingDown;
}

void TestStatusMapping::saysHowAnOperationEnded()
{
    QFETCH(StoreStatus, ofStore);
    QFETCH(ServiceStatus, ofService);
    QCOMPARE(serviceStatus(ofStore), ofService);
    const bool isOfEntry = ofStore == StoreStatus::UnknownEntry;
    QCOMPARE(serviceStatus(ofStore, ServiceStatus::NoSuchExport), isOfEntry ? ServiceStatus::NoSuchExport : ofService);
}

QTEST_GUILESS_MAIN(TestStatusMapping)
#include "tst_statusmapping.moc"
