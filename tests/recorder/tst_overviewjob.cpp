#include <recorder/service/overviewjob.h>

#include <storedrecord.h>

#include <QTemporaryDir>
#include <QTest>
#include <QtEndian>

using namespace ZelkoRecorder;
using namespace ZelkoTest;
using ZelkoCommon::ServiceStatus;

Q_DECLARE_METATYPE(ZelkoCommon::ServiceStatus)

namespace {

template <typename T>
T at(const QByteArray& datagram, qsizetype offset)
{
    return qFromLittleEndian<T>(datagram.constData() + offset);
}

OverviewWish wishOf(int fftLength, qint64 lines, qint64 start = 0, qint64 stop = 0)
{
    OverviewWish wish;
    wish.device = "D1";
    wish.record = "r1";
    wish.fftLength = fftLength;
    wish.lineCount = lines;
    wish.start = start;
    wish.stop = stop;
    return wish;
}

} // namespace

// The record has 1000 samples of 4 bytes at 1000 samples a second, from second 10 on.
class TestOverviewJob : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void sendsLinesEvenlyOverTheTime_data();
    void sendsLinesEvenlyOverTheTime();
    void saysWhatALineIs();
    void cutsLongLinesIntoDatagrams();
    void refusesAWish_data();
    void refusesAWish();
    void refusesRecordsWithoutASpectrum();
    void refusesARecordWithoutSamples();
    void stopsWhenNobodyTakesItsLines();

private:
    QList<QByteArray> datagramsOf(const OverviewWish& wish);

    std::unique_ptr<QTemporaryDir> m_folder;
};

void TestOverviewJob::init()
{
    m_folder = std::make_unique<QTemporaryDir>();
    QVERIFY(storeRecord(m_folder->path(), finishedRecord("r1"), 4000));
}

QList<QByteArray> TestOverviewJob::datagramsOf(const OverviewWish& wish)
{
    OverviewJob job(DeviceStore(m_folder->path()), finishedRecord("r1"), wish);
    QList<QByteArray> result;
    if (job.status() == ServiceStatus::None) {
        job.run([&](const QByteArray& datagram) {
            result.append(datagram);
            return true;
        });
    }
    return result;
}

void TestOverviewJob::sendsLinesEvenlyOverTheTime_data()
{
    QTest::addColumn<int>("fftLength");
    QTest::addColumn<qint64>("lines");
    QTest::addColumn<qint64>("start");
    QTest::addColumn<qint64>("stop");
    QTest::addColumn<QList<quint64>>("times");
    using Times = QList<quint64>;
    const qint64 whole = 0;
    QTest::newRow("one line") << 256 << qint64{1} << whole << whole << Times{10'000'000};
    QTest::newRow("as many as fit") << 256 << qint64{0} << whole << whole << Times{10'000'000, 10'372'000, 10'744'000};
    QTest::newRow("lines that overlap") << 512 << qint64{3} << whole << whole
                                        << Times{10'000'000, 10'244'000, 10'488'000};
    QTest::newRow("a part of the time") << 64 << qint64{2} << qint64{10'500'000} << qint64{10'600'000}
                                        << Times{10'500'000, 10'536'000};
    QTest::newRow("a part that reaches over the ends")
        << 512 << qint64{2} << qint64{1} << qint64{99'000'000} << Times{10'000'000, 10'488'000};
}

void TestOverviewJob::sendsLinesEvenlyOverTheTime()
{
    QFETCH(int, fftLength);
    QFETCH(qint64, lines);
    QFETCH(qint64, start);
    QFETCH(qint64, stop);
    QFETCH(QList<quint64>, times);
    QList<quint64> sent;
    for (const QByteArray& datagram : datagramsOf(wishOf(fftLength, lines, start, stop))) {
        sent.append(at<quint64>(datagram, 32));
    }
    QCOMPARE(sent, times);
}

void TestOverviewJob::saysWhatALineIs()
{
    const auto datagrams = datagramsOf(wishOf(64, 2));
    QCOMPARE(datagrams.size(), 2);
    const QByteArray& last = datagrams.last();
    QCOMPARE(last.size(), qsizetype{60 + 2 * 64});
    QCOMPARE(last.left(8).toHex(), QByteArray("5a4f564c01000100"));
    QCOMPARE(at<quint16>(datagrams.first(), 6), quint16{0});
    QCOMPARE(at<quint64>(last, 8), ZelkoCommon::overviewCookie("D1", "r1"));
    QCOMPARE(at<quint32>(last, 16), 1U);
    QCOMPARE(at<quint32>(last, 20), 2U);
    QCOMPARE(at<quint32>(last, 24), 0U);
    QCOMPARE(at<quint32>(last, 28), 64U);
    QCOMPARE(at<quint64>(last, 40), 145'000'000U);
    QCOMPARE(at<quint64>(last, 48), 1000U);
    QCOMPARE(at<quint16>(last, 56), quint16{64});
    // All samples are the same: there is a level at the centre, and next to nothing elsewhere.
    QVERIFY(at<qint16>(last, 60 + 2 * 32) > -2000);
    QVERIFY(at<qint16>(last, 60) < -10'000);
}

void TestOverviewJob::cutsLongLinesIntoDatagrams()
{
    ZELKO_XML::ZELKO_RecordData record = finishedRecord("r1");
    record.SetIndexEntry({indexEntry(10'000'000, 0), indexEntry(14'096'000, 16'384)});
    record.SetStopTime(14'096'000);
    record.SetSize(16'384);
    record.SetStopPosition(16'384);
    QVERIFY(storeRecord(m_folder->path(), record, 16'384));
    OverviewJob job(DeviceStore(m_folder->path()), record, wishOf(2048, 1));
    QList<quint32> firstBins;
    QList<quint16> flags;
    QVERIFY(job.run([&](const QByteArray& datagram) {
        firstBins.append(at<quint32>(datagram, 24));
        flags.append(at<quint16>(datagram, 6));
        return true;
    }));
    QCOMPARE(firstBins, QList<quint32>({0, 512, 1024, 1536}));
    QCOMPARE(flags, QList<quint16>({0, 0, 0, 1}));
}

void TestOverviewJob::refusesAWish_data()
{
    QTest::addColumn<OverviewWish>("wish");
    QTest::addColumn<ServiceStatus>("status");
    QTest::newRow("spectra that are too short") << wishOf(8, 1) << ServiceStatus::BadArgument;
    QTest::newRow("spectra that are too long") << wishOf(131072, 1) << ServiceStatus::BadArgument;
    QTest::newRow("spectra of a length that is no power of two") << wishOf(1000, 1) << ServiceStatus::BadArgument;
    QTest::newRow("spectra of no length") << wishOf(0, 1) << ServiceStatus::BadArgument;
    QTest::newRow("spectra of less than no length") << wishOf(-16, 1) << ServiceStatus::BadArgument;
    QTest::newRow("fewer lines than none") << wishOf(256, -1) << ServiceStatus::BadArgument;
    QTest::newRow("more lines than anybody needs") << wishOf(256, 100'001) << ServiceStatus::BadArgument;
    QTest::newRow("a time backwards") << wishOf(256, 1, 11'000'000, 10'000'000) << ServiceStatus::BadArgument;
    QTest::newRow("a time below zero") << wishOf(256, 1, -1, 10'000'000) << ServiceStatus::BadArgument;
    QTest::newRow("a time with too few samples") << wishOf(256, 1, 10'000'000, 10'100'000) << ServiceStatus::NoSamples;
    QTest::newRow("a time behind the record") << wishOf(256, 1, 20'000'000, 30'000'000) << ServiceStatus::NoSamples;
    QTest::newRow("spectra that are longer than the record") << wishOf(1024, 1) << ServiceStatus::NoSamples;
}

void TestOverviewJob::refusesAWish()
{
    QFETCH(OverviewWish, wish);
    QFETCH(ServiceStatus, status);
    QCOMPARE(OverviewJob(DeviceStore(m_folder->path()), finishedRecord("r1"), wish).status(), status);
}

void TestOverviewJob::refusesRecordsWithoutASpectrum()
{
    ZELKO_XML::ZELKO_RecordData record = finishedRecord("r1");
    record.SetDataFormat(ZELKO_XML::ZELKO_RecordData::DataFormat::Text);
    QCOMPARE(OverviewJob(DeviceStore(m_folder->path()), record, wishOf(256, 1)).status(), ServiceStatus::NotSupported);
}

void TestOverviewJob::refusesARecordWithoutSamples()
{
    const OverviewJob gone(DeviceStore(m_folder->path()), finishedRecord("r9"), wishOf(256, 1));
    QCOMPARE(gone.status(), ServiceStatus::DamagedRecord);
    QVERIFY(writeBytes(m_folder->filePath("r1/r1.dat"), QByteArray(100, 's')));
    const OverviewJob cut(DeviceStore(m_folder->path()), finishedRecord("r1"), wishOf(256, 1));
    QCOMPARE(cut.status(), ServiceStatus::NoSamples);
}

void TestOverviewJob::stopsWhenNobodyTakesItsLines()
{
    OverviewJob job(DeviceStore(m_folder->path()), finishedRecord("r1"), wishOf(64, 10));
    int lines = 0;
    QVERIFY(!job.run([&](const QByteArray&) { return ++lines < 3; }));
    QCOMPARE(lines, 3);
}

QTEST_GUILESS_MAIN(TestOverviewJob)
#include "tst_overviewjob.moc"
