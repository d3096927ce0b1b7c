#include "rawgiop.h"
#include "servicerecorder.h"

#include <recorder/store/preparedrecords.h>

#include <zelkobase/orb/corbacall.h>
#include <zelkobase/service/recorderservice.h>

#include <QTcpSocket>
#include <QtTest>

using namespace ZelkoRecorder;
using namespace ZelkoTest;
using namespace std::chrono_literals;
using ZelkoCommon::fromCorba;
using ZelkoCommon::RecorderService;

namespace {

constexpr int recordCount = 100'000;

ServiceHost::Options oneListAndNobodyWaits()
{
    ServiceHost::Options options;
    options.lists = {.atOnce = 1, .atOncePerHost = 1, .waitingPerHost = 0};
    return options;
}

// Asks for all records and takes no more of the answer than its beginning.
std::unique_ptr<QTcpSocket> slowReader(quint16 port)
{
    auto socket = std::make_unique<QTcpSocket>();
    socket->setReadBufferSize(1);
    socket->connectToHost("127.0.0.1", port);
    if (!socket->waitForConnected()) {
        return nullptr;
    }
    socket->write(giop::requestMessage(entryKey, {"getAllRecords", giop::string("D1")}));
    socket->flush();
    return socket;
}

} // namespace

/// Lists of all records of a device that has many of them.
class TestRecordLists : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void aClientGetsAHundredThousandRecordsAtOnce();
    void aListKeepsItsPlaceUntilItIsSent();
    void aRecorderEndsThoughAListIsNotTaken();

private:
    // What a client is told that asks for the list; empty when it gets it.
    QString answer(int* count = nullptr) const;

    std::unique_ptr<ServiceRecorder> m_recorder;
};

void TestRecordLists::initTestCase()
{
    m_recorder = std::make_unique<ServiceRecorder>(ServiceRecorder::Fill(), oneListAndNobodyWaits());
    QTRY_VERIFY_WITH_TIMEOUT(m_recorder->isLoaded(), patience);
    const PreparedRecords prepared("D1", recordCount);
    auto* const map = m_recorder->values("D1").map();
    for (int i = 0; i < recordCount; ++i) {
        map->Add(zelko::recordmap::RecordMapData(std::make_shared<ZELKO_XML::ZELKO_RecordData>(prepared.record(i))),
                 nullptr);
    }
}

QString TestRecordLists::answer(int* count) const
{
    return onCallerThread([&] {
        RecorderService service([this] { return ZelkoCommon::ServiceAddress{{}, "127.1", m_recorder->orb.port()}; });
        service.setLimit(60s);
        service.ask([&](QD_ZLK::IF_ZLK_c_ZLK_ptr entry) -> unsigned long {
            const QD_ZLK::RecordInfoSeq_var records = entry->getAllRecords("D1");
            if (count) {
                *count = static_cast<int>(records->length());
            }
            return 0;
        });
        return service.lastErrorText();
    });
}

void TestRecordLists::aClientGetsAHundredThousandRecordsAtOnce()
{
    int count = 0;
    QCOMPARE(answer(&count), QString());
    QCOMPARE(count, recordCount);
}

void TestRecordLists::aListKeepsItsPlaceUntilItIsSent()
{
    const auto slow = slowReader(m_recorder->orb.port());
    QVERIFY(slow);
    QTRY_VERIFY_WITH_TIMEOUT(slow->bytesAvailable() > 0, patience);
    const QString refusal = answer();
    QVERIFY2(refusal.contains("too many lists"), qPrintable(refusal));
    slow->abort();
    QTRY_COMPARE_WITH_TIMEOUT(answer(), QString(), patience);
}

void TestRecordLists::aRecorderEndsThoughAListIsNotTaken()
{
    const auto slow = slowReader(m_recorder->orb.port());
    QVERIFY(slow);
    QTRY_VERIFY_WITH_TIMEOUT(slow->bytesAvailable() > 0, patience);
    m_recorder.reset();
    QCOMPARE(slow->state(), QAbstractSocket::ConnectedState); // its end was not read yet
}

QTEST_GUILESS_MAIN(TestRecordLists)
#include "tst_recordlists.moc"
