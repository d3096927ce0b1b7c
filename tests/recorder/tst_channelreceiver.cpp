#include <recorder/service/channelreceiver.h>

#include <frames.h>
#include <patience.h>
#include <storedrecord.h>

#include <QTcpSocket>
#include <QTemporaryDir>
#include <QTest>
#include <QUdpSocket>

#include <future>

using namespace ZelkoRecorder;
using namespace ZelkoTest;
using Kind = FlowSocket::Kind;
using Status = ZELKO_XML::ZELKO_RecordData::RecordStatus;

// What comes through real sockets on its way to the disk.
class TestChannelReceiver : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup() { m_receiver.reset(); }
    void recordsDatagrams();
    void recordsAStreamInPieces();
    void tellsWhatHappensInItsOrder();
    void takesNoFrameWithoutSamplesForData();
    void takesNoDatagramThatIsNoFrame();
    void takesFramesOfItsStreamOnly();
    void knowsTheSampleRateOfFramesThatDoNot();
    void endsWhereAStreamBreaksItsForm();
    void endsWithTheLastFrame();
    void makesEditsWhileItRecords();
    void isBornWithEarlyEdits();
    void closesWithoutARecord();
    void tellsWhenTheDiskRefuses();
    void closesTheRecordWhenItGoes();

private:
    void begin(Kind kind, quint64 sampleRate = 0);
    void note(const QString& event)
    {
        const std::lock_guard lock(m_mutex);
        if (m_log.isEmpty() || m_log.constLast() != event) { // states of the record come as often as they like
            m_log << event;
        }
    }
    QStringList log()
    {
        const std::lock_guard lock(m_mutex);
        return m_log;
    }
    bool isClosed() { return !log().isEmpty() && log().constLast() == "closed"; }
    void writeDatagram(const QByteArray& datagram)
    {
        m_datagrams.writeDatagram(datagram, QHostAddress::LocalHost, m_receiver->port());
    }
    void sendDatagram(quint32 number);
    void writeStream(const QByteArray& bytes);
    qint64 storedBytes() const
    {
        qint64 bytes = 0;
        const auto content = contentOf(m_folder->path());
        for (auto file = content.cbegin(); file != content.cend(); ++file) {
            bytes += file.key().endsWith(".dat") ? file->size() : 0;
        }
        return bytes;
    }
    RecordPointer closedRecord();

    std::unique_ptr<QTemporaryDir> m_folder;
    std::unique_ptr<DeviceClock> m_clock;
    std::mutex m_mutex;
    QStringList m_log;
    QString m_recordID; // written before "closed" is noted
    QUdpSocket m_datagrams;
    QTcpSocket m_stream;
    std::unique_ptr<ChannelReceiver> m_receiver;
};

void TestChannelReceiver::init()
{
    m_folder = std::make_unique<QTemporaryDir>();
    m_clock = std::make_unique<DeviceClock>(m_folder->path());
    m_log.clear();
    m_stream.abort();
}

void TestChannelReceiver::begin(Kind kind, quint64 sampleRate)
{
    QString error;
    auto socket = FlowSocket::open(kind, QStringLiteral("127.0.0.1"), 0, "127.0.0.1", &error);
    QVERIFY2(socket, qPrintable(error));
    ChannelReceiver::Listener listener;
    listener.born = [this](const QString&) { note(storedBytes() == 0 ? "born" : "born too late"); };
    listener.changed = [this](const RecordPointer&) { note("changed"); };
    listener.dataCame = [this] { note("data came"); };
    listener.dataEnded = [this] { note("data ended"); };
    listener.diskRefused = [this](const QString&) { note("disk refused"); };
    listener.closed = [this](const QString& id) {
        m_recordID = id;
        note("closed");
    };
    ZELKO_XML::ZELKO_RecordData birth;
    birth.SetRecordName(QStringLiteral("Kanal"));
    birth.SetDataFormat(ZELKO_XML::ZELKO_RecordData::DataFormat::IQ16);
    m_receiver = std::make_unique<ChannelReceiver>(std::move(socket), ChannelReceiver::Flow{7, sampleRate},
                                                   DeviceStore(m_folder->path()), *m_clock, birth, std::move(listener));
}

// A datagram may be lost, and one that comes twice is left out: each is sent until its samples are there.
void TestChannelReceiver::sendDatagram(quint32 number)
{
    const qint64 before = storedBytes();
    const auto isStored = [&] {
        writeDatagram(wire(frameOf(number)));
        return storedBytes() > before;
    };
    QTRY_VERIFY_WITH_TIMEOUT(isStored(), patience);
}

void TestChannelReceiver::writeStream(const QByteArray& bytes)
{
    if (m_stream.state() == QTcpSocket::UnconnectedState) {
        m_stream.connectToHost(QHostAddress::LocalHost, m_receiver->port());
    }
    m_stream.write(bytes);
    QTRY_COMPARE_WITH_TIMEOUT(m_stream.bytesToWrite(), 0, patience);
}

// The record that it leaves when it is closed; null if there is none.
RecordPointer TestChannelReceiver::closedRecord()
{
    m_receiver->close();
    [this] { QTRY_VERIFY_WITH_TIMEOUT(isClosed(), patience); }();
    QString error;
    return m_recordID.isEmpty() ? nullptr : DeviceStore(m_folder->path()).read(m_recordID, &error);
}

void TestChannelReceiver::recordsDatagrams()
{
    begin(Kind::Datagrams);
    for (const quint32 number : {0U, 1U, 2U}) {
        sendDatagram(number);
    }
    const RecordPointer record = closedRecord();
    QVERIFY(record);
    QCOMPARE(record->GetRecordStatus(), Status::Finished);
    QCOMPARE(record->GetSize(), 1200U);
    const QString samples = m_recordID + '/' + m_recordID + ".dat";
    QCOMPARE(contentOf(m_folder->path()).value(samples),
             samplesOf(frameOf(0)) + samplesOf(frameOf(1)) + samplesOf(frameOf(2)));
}

void TestChannelReceiver::recordsAStreamInPieces()
{
    begin(Kind::Stream);
    QByteArray all;
    for (quint32 number = 0; number < 20; ++number) {
        all += wire(frameOf(number));
    }
    constexpr qsizetype piece = 333; // never a whole frame
    for (qsizetype at = 0; at < all.size(); at += piece) {
        writeStream(all.mid(at, piece));
    }
    QTRY_COMPARE_WITH_TIMEOUT(storedBytes(), 20 * 400, patience);
    const RecordPointer record = closedRecord();
    QVERIFY(record);
    QCOMPARE(record->GetSize(), 20U * 400);
    QCOMPARE(record->GetStopTime(), 12'000'000U);
}

void TestChannelReceiver::tellsWhatHappensInItsOrder()
{
    begin(Kind::Stream);
    writeStream(wire(frameOf(0)));
    QTRY_COMPARE_WITH_TIMEOUT(log(), QStringList({"born", "changed", "data came"}), patience);
    m_stream.disconnectFromHost();
    QTRY_COMPARE_WITH_TIMEOUT(log().constLast(), QStringLiteral("data ended"), patience);
    QVERIFY(closedRecord());
    QCOMPARE(log(), QStringList({"born", "changed", "data came", "data ended", "changed", "closed"}));
}

// Nothing is recorded of it.
void TestChannelReceiver::takesNoFrameWithoutSamplesForData()
{
    begin(Kind::Stream);
    writeStream(wire(frameOf(0, 0)) + wire(frameOf(1, 399)));
    writeStream(wire(frameOf(2)));
    QTRY_COMPARE_WITH_TIMEOUT(log(), QStringList({"born", "changed", "data came"}), patience);
    m_stream.disconnectFromHost();
    QTRY_COMPARE_WITH_TIMEOUT(log().constLast(), QStringLiteral("data ended"), patience);
    QCOMPARE(closedRecord()->GetSize(), 400U);
}

void TestChannelReceiver::takesNoDatagramThatIsNoFrame()
{
    begin(Kind::Datagrams);
    writeDatagram("no frame at all");
    writeDatagram(wire(frameOf(0)).chopped(1));
    writeDatagram(wire(frameOf(0)) + "x");
    sendDatagram(0);
    writeDatagram(QByteArray());
    sendDatagram(1);
    QCOMPARE(closedRecord()->GetSize(), 800U);
    QVERIFY(!log().contains("data ended"));
}

void TestChannelReceiver::takesFramesOfItsStreamOnly()
{
    begin(Kind::Stream);
    ChannelFrame other = frameOf(0, 40);
    other.stream = 8;
    writeStream(wire(other) + wire(frameOf(0)) + wire(other) + wire(frameOf(1)));
    QTRY_COMPARE_WITH_TIMEOUT(storedBytes(), 800, patience);
    QCOMPARE(closedRecord()->GetSize(), 800U);
}

void TestChannelReceiver::knowsTheSampleRateOfFramesThatDoNot()
{
    begin(Kind::Stream, 200);
    ChannelFrame frame = frameOf(0);
    frame.sampleRate = 0;
    writeStream(wire(frame));
    QTRY_COMPARE_WITH_TIMEOUT(storedBytes(), 400, patience);
    const RecordPointer record = closedRecord();
    QCOMPARE(record->GetStopTime() - record->GetStartTime(), 500'000U); // 100 samples
}

void TestChannelReceiver::endsWhereAStreamBreaksItsForm()
{
    begin(Kind::Stream);
    writeStream(wire(frameOf(0)) + QByteArray(100, 'x') + wire(frameOf(1)));
    QTRY_VERIFY_WITH_TIMEOUT(log().contains("data ended"), patience);
    QCOMPARE(closedRecord()->GetSize(), 400U);
}

void TestChannelReceiver::endsWithTheLastFrame()
{
    begin(Kind::Stream);
    ChannelFrame last = frameOf(1);
    last.isLast = true;
    writeStream(wire(frameOf(0)) + wire(last) + wire(frameOf(2)));
    QTRY_VERIFY_WITH_TIMEOUT(log().contains("data ended"), patience);
    QCOMPARE(closedRecord()->GetSize(), 800U);
}

void TestChannelReceiver::makesEditsWhileItRecords()
{
    begin(Kind::Datagrams);
    sendDatagram(0);
    std::promise<StoreStatus> answer;
    QVERIFY(m_receiver->edits()->post(commentEdit("Neu"), [&](StoreStatus status) { answer.set_value(status); }));
    QCOMPARE(answer.get_future().get(), StoreStatus::Done);
    QVERIFY(!isClosed());
    QCOMPARE(closedRecord()->GetRecordName(), QStringLiteral("Neu"));
    QVERIFY(!m_receiver->edits()->post(commentEdit("Spaeter"), {}));
}

void TestChannelReceiver::isBornWithEarlyEdits()
{
    begin(Kind::Datagrams);
    std::promise<StoreStatus> answer;
    QVERIFY(m_receiver->edits()->post(commentEdit("Neu"), [&](StoreStatus status) { answer.set_value(status); }));
    QCOMPARE(answer.get_future().get(), StoreStatus::Done);
    sendDatagram(0);
    QCOMPARE(closedRecord()->GetRecordName(), QStringLiteral("Neu"));
}

void TestChannelReceiver::closesWithoutARecord()
{
    begin(Kind::Datagrams);
    m_receiver->close();
    m_receiver->close();
    QVERIFY(!closedRecord());
    QCOMPARE(log(), QStringList("closed"));
}

void TestChannelReceiver::tellsWhenTheDiskRefuses()
{
    begin(Kind::Stream);
    QVERIFY(m_folder->remove());
    QVERIFY(writeBytes(m_folder->path(), "a file in place of the folder"));
    writeStream(wire(frameOf(0)) + wire(frameOf(1)));
    QTRY_VERIFY_WITH_TIMEOUT(log().contains("disk refused"), patience);
    QVERIFY(!closedRecord());
    QCOMPARE(log().count("disk refused"), 1);
    QVERIFY(QFile::remove(m_folder->path()));
}

void TestChannelReceiver::closesTheRecordWhenItGoes()
{
    begin(Kind::Datagrams);
    sendDatagram(0);
    m_receiver.reset();
    QVERIFY(isClosed());
    QString error;
    const RecordPointer record = DeviceStore(m_folder->path()).read(m_recordID, &error);
    QVERIFY2(record, qPrintable(error));
    QCOMPARE(record->GetRecordStatus(), Status::Finished);
    QCOMPARE(record->GetSize(), 400U);
}

QTEST_GUILESS_MAIN(TestChannelReceiver)
#include "tst_channelreceiver.moc"
