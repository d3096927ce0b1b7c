#include <recorder/service/overviewjob.h>

#include <storedrecord.h>

#include <QTemporaryDir>
#include <QTest>
#include <QtEndian>

#include <algorithm>
#include <atomic>
#include <cmath>
#include <numbers>
#include <thread>

using namespace ZelkoRecorder;
using namespace ZelkoTest;
using ZelkoCommon::OverviewPiece;
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

// Frames of silence, with a tone in bin 20 of 256 at full scale from `first` on for `duration` frames.
QByteArray burst(qsizetype frames, qsizetype first, qsizetype duration)
{
    QByteArray bytes(4 * frames, '\0');
    for (qsizetype i = first; i < first + duration; ++i) {
        const double phase = 2 * std::numbers::pi * 20 * static_cast<double>(i) / 256;
        qToLittleEndian(static_cast<qint16>(32767 * std::cos(phase)), bytes.data() + 4 * i);
        qToLittleEndian(static_cast<qint16>(32767 * std::sin(phase)), bytes.data() + 4 * i + 2);
    }
    return bytes;
}

// As finishedRecord, but with so many frames.
ZELKO_XML::ZELKO_RecordData recordOf(quint64 frames)
{
    ZELKO_XML::ZELKO_RecordData record = finishedRecord("r1");
    const quint64 stop = 10'000'000 + frames * 1000;
    record.SetIndexEntry({indexEntry(10'000'000, 0), indexEntry(stop, 4 * frames)});
    record.SetStopTime(stop);
    record.SetSize(4 * frames);
    record.SetStopPosition(4 * frames);
    return record;
}

qsizetype strongest(const OverviewPiece& piece)
{
    return std::max_element(piece.levels.cbegin(), piece.levels.cend()) - piece.levels.cbegin();
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
    void showsAShortBurst_data();
    void showsAShortBurst();
    void looksAtEverySample();
    void saysOfALineWhatItsFirstSampleIs();
    void refusesAWish_data();
    void refusesAWish();
    void refusesRecordsWithoutASpectrum();
    void refusesARecordWithoutSamples();
    void stopsWhenNobodyTakesItsLines();
    void stopsInTheMiddleOfALine();

private:
    QList<QByteArray> datagramsOf(const OverviewWish& wish);
    QList<OverviewPiece> linesOfLongRecord(const QByteArray& samples, const OverviewWish& wish);

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
    QTest::newRow("as many as fit") << 256 << qint64{0} << whole << whole << Times{10'000'000, 10'333'000, 10'666'000};
    QTest::newRow("lines of several spectra") << 64 << qint64{2} << whole << whole << Times{10'000'000, 10'500'000};
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
    const ZELKO_XML::ZELKO_RecordData record = recordOf(4096);
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

// Lines of 512 bins at most, so that each of them is one piece.
QList<OverviewPiece> TestOverviewJob::linesOfLongRecord(const QByteArray& samples, const OverviewWish& wish)
{
    if (!writeBytes(m_folder->filePath("r1/r1.dat"), samples)) {
        return {};
    }
    const auto record = recordOf(static_cast<quint64>(samples.size() / 4));
    OverviewJob job(DeviceStore(m_folder->path()), record, wish);
    QList<OverviewPiece> result;
    const bool isDone = job.run([&](const QByteArray& datagram) {
        result.append(ZelkoCommon::overviewPiece(datagram).value_or(OverviewPiece()));
        return true;
    });
    return isDone ? result : QList<OverviewPiece>();
}

void TestOverviewJob::showsAShortBurst_data()
{
    QTest::addColumn<qsizetype>("first");
    QTest::addColumn<qsizetype>("line");
    QTest::newRow("in the middle of a line") << qsizetype{150'000} << qsizetype{1};
    QTest::newRow("in the first samples") << qsizetype{0} << qsizetype{0};
    QTest::newRow("at the beginning of a line") << qsizetype{200'000} << qsizetype{2};
    QTest::newRow("at the end of a line") << qsizetype{199'500} << qsizetype{1};
    QTest::newRow("in the last samples") << qsizetype{399'500} << qsizetype{3};
}

// Lines of 100'000 samples, and a burst of 500.
void TestOverviewJob::showsAShortBurst()
{
    QFETCH(qsizetype, first);
    QFETCH(qsizetype, line);
    OverviewWish wish = wishOf(256, 4);
    wish.window = SpectrumWindow::Hann;
    const QList<OverviewPiece> lines = linesOfLongRecord(burst(400'000, first, 500), wish);
    QCOMPARE(lines.size(), 4);
    for (qsizetype i = 0; i < lines.size(); ++i) {
        const OverviewPiece& piece = lines.at(i);
        QCOMPARE(piece.time, 10'000'000 + static_cast<quint64>(i) * 100'000'000);
        QCOMPARE(strongest(piece) == 128 + 20 && piece.levels.at(128 + 20) > -300, i == line);
    }
}

// Wherever a burst is that a spectrum can take, one sees it; lines and spectra fit nowhere.
void TestOverviewJob::looksAtEverySample()
{
    for (qsizetype first = 0; first + 100 <= 10'007; first += 61) {
        int lines = 0;
        for (const OverviewPiece& piece : linesOfLongRecord(burst(10'007, first, 100), wishOf(256, 3))) {
            lines += strongest(piece) == 128 + 20 && piece.levels.at(128 + 20) > -1500 ? 1 : 0;
        }
        QVERIFY2(lines == 1 || lines == 2, qPrintable(QString::number(first)));
    }
}

// The receiver is tuned anew in the first line, with another rate and after a gap.
void TestOverviewJob::saysOfALineWhatItsFirstSampleIs()
{
    ZELKO_XML::ZELKO_RecordData record = finishedRecord("r1");
    ZELKO_XML::IndexEntry tuned = indexEntry(60'000'000, 400, 7'000'000);
    tuned.SetSampleRate(2000);
    ZELKO_XML::IndexEntry end = indexEntry(60'450'000, 4000, 7'000'000);
    end.SetSampleRate(2000);
    record.SetIndexEntry({indexEntry(10'000'000, 0), tuned, end});
    record.SetStopTime(60'450'000);
    OverviewJob job(DeviceStore(m_folder->path()), record, wishOf(64, 2));
    QList<OverviewPiece> lines;
    QVERIFY(job.run([&](const QByteArray& datagram) {
        lines.append(ZelkoCommon::overviewPiece(datagram).value_or(OverviewPiece()));
        return true;
    }));
    QCOMPARE(lines.size(), 2);
    QCOMPARE(lines.at(0).time, 10'000'000U);
    QCOMPARE(lines.at(0).centreFrequency, 145'000'000U);
    QCOMPARE(lines.at(0).span, 1000U);
    QCOMPARE(lines.at(1).time, 60'200'000U); // 400 samples behind
    QCOMPARE(lines.at(1).centreFrequency, 7'000'000U);
    QCOMPARE(lines.at(1).span, 2000U);
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

// A line of 1 TiB, which would take as long as this test may.
void TestOverviewJob::stopsInTheMiddleOfALine()
{
    constexpr quint64 frames = quint64{1} << 38;
    QVERIFY(QFile::resize(m_folder->filePath("r1/r1.dat"), qint64{4} * frames));
    OverviewJob job(DeviceStore(m_folder->path()), recordOf(frames), wishOf(4096, 1));
    QCOMPARE(job.status(), ServiceStatus::None);
    std::atomic<bool> hasBegun = false;
    bool isDone = true;
    int datagrams = 0;
    std::jthread thread([&](const std::stop_token& stop) {
        hasBegun = true;
        isDone = job.run([&](const QByteArray&) { return ++datagrams > 0; }, stop);
    });
    QTRY_VERIFY_WITH_TIMEOUT(hasBegun, 30000);
    thread.request_stop();
    thread.join();
    QVERIFY(!isDone);
    QCOMPARE(datagrams, 0);
}

QTEST_GUILESS_MAIN(TestOverviewJob)
#include "tst_overviewjob.moc"
