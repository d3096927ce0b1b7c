#include <recorder/store/recordwriter.h>

#include <filesizelimit.h>
#include <storedrecord.h>

#include <QTemporaryDir>
#include <QTest>

using namespace ZelkoRecorder;
using namespace ZelkoTest;
using ZELKO_XML::ZELKO_RecordData;

class TestRecordWriter : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void givesBirthToARecordThatIsBeingRecorded();
    void refusesAnIdThatIsTaken();
    void leavesARecordingOfTheSameIdAlone();
    void refusesAStoreThatIsGone();
    void countsSamplesFromTheStepOn();
    void leavesARecordThatCanBeClosedAtTheLastStep();
    void cutsAtTheLastEntryWhenItFinishes();
    void keepsTheStepBeforeWhenItCannotFinish();
    void reportsAFolderThatWent();

private:
    static ZELKO_RecordData birth()
    {
        ZELKO_RecordData record = finishedRecord(QStringLiteral("R1"));
        record.SetSize(0);
        record.SetStopPosition(0);
        record.SetStopTime(record.GetStartTime());
        record.SetIndexEntry({indexEntry(10'000'000, 0)});
        return record;
    }
    RecordPointer stored() const
    {
        QString error;
        return m_store->read(QStringLiteral("R1"), &error);
    }

    std::unique_ptr<QTemporaryDir> m_folder;
    std::unique_ptr<DeviceStore> m_store;
    QString m_error;
};

void TestRecordWriter::init()
{
    m_folder = std::make_unique<QTemporaryDir>();
    m_store = std::make_unique<DeviceStore>(m_folder->path());
}

void TestRecordWriter::givesBirthToARecordThatIsBeingRecorded()
{
    const auto writer = RecordWriter::create(*m_store, birth(), &m_error);
    QVERIFY2(writer, qPrintable(m_error));
    QCOMPARE(contentOf(m_folder->path()).keys(),
             (QStringList{QStringLiteral(".recording-R1"), QStringLiteral("R1/R1.dat"),
                          QStringLiteral("R1/RecordData.xml")}));
    QVERIFY(*stored() == *writer->saved());
    QCOMPARE(stored()->GetRecordStatus(), ZELKO_RecordData::RecordStatus::Recording);
    QVERIFY(stored()->IsFinishedSet() && !stored()->GetFinished());
    QVERIFY(!stored()->GetDeletable());
    QCOMPARE(stored()->GetSize(), quint64{0});
}

void TestRecordWriter::refusesAnIdThatIsTaken()
{
    QVERIFY(storeRecord(m_folder->path(), finishedRecord(QStringLiteral("R1")), 4000));
    const auto before = contentOf(m_folder->path());
    QVERIFY(!RecordWriter::create(*m_store, birth(), &m_error));
    QVERIFY(m_error.contains(QLatin1String("R1")));
    QCOMPARE(contentOf(m_folder->path()), before);
}

void TestRecordWriter::leavesARecordingOfTheSameIdAlone()
{
    const auto writer = RecordWriter::create(*m_store, birth(), &m_error);
    QVERIFY2(writer, qPrintable(m_error));
    const auto before = contentOf(m_folder->path());
    QVERIFY(!RecordWriter::create(*m_store, birth(), &m_error));
    QCOMPARE(contentOf(m_folder->path()), before);
}

void TestRecordWriter::refusesAStoreThatIsGone()
{
    QVERIFY(writeBytes(m_folder->filePath(QStringLiteral("file")), "x"));
    const DeviceStore store(m_folder->filePath(QStringLiteral("file")));
    QVERIFY(!RecordWriter::create(store, birth(), &m_error));
}

void TestRecordWriter::countsSamplesFromTheStepOn()
{
    const auto writer = RecordWriter::create(*m_store, birth(), &m_error);
    QVERIFY(writer->append("abcdefgh", 8));
    QCOMPARE(stored()->GetSize(), quint64{0});
    writer->record().AppendIndexEntry(indexEntry(10'500'000, 8));
    QVERIFY(writer->step());
    QVERIFY(*stored() == *writer->saved());
    QCOMPARE(stored()->GetSize(), quint64{8});
    QCOMPARE(stored()->GetStopPosition(), quint64{8});
    QCOMPARE(stored()->GetStopTime(), quint64{10'500'000});
    QCOMPARE(readBytes(m_folder->filePath(QStringLiteral("R1/R1.dat"))), QByteArray("abcdefgh"));
}

void TestRecordWriter::leavesARecordThatCanBeClosedAtTheLastStep()
{
    {
        const auto writer = RecordWriter::create(*m_store, birth(), &m_error);
        QVERIFY(writer->append("abcd", 4));
        writer->record().AppendIndexEntry(indexEntry(10'500'000, 4));
        QVERIFY(writer->step());
        QVERIFY(writer->append("efgh", 4)); // and here it dies
    }
    const RecordPointer record = m_store->readAtRest(QStringLiteral("R1"), &m_error);
    QVERIFY(record);
    QCOMPARE(record->GetSize(), quint64{4});
    QCOMPARE(record->GetRecordStatus(), ZELKO_RecordData::RecordStatus::Finished);
    QVERIFY(record->GetDeletable());
    QCOMPARE(readBytes(m_folder->filePath(QStringLiteral("R1/R1.dat"))), QByteArray("abcd"));
    QVERIFY(!m_store->marks().isSet(QStringLiteral("R1")));
}

void TestRecordWriter::cutsAtTheLastEntryWhenItFinishes()
{
    const auto writer = RecordWriter::create(*m_store, birth(), &m_error);
    QVERIFY(writer->append("abcdefgh", 8));
    writer->record().AppendIndexEntry(indexEntry(10'500'000, 4));
    QVERIFY(writer->finish());
    QCOMPARE(readBytes(m_folder->filePath(QStringLiteral("R1/R1.dat"))), QByteArray("abcd"));
    QVERIFY(*stored() == *writer->saved());
    QCOMPARE(stored()->GetRecordStatus(), ZELKO_RecordData::RecordStatus::Finished);
    QVERIFY(stored()->GetFinished());
    QVERIFY(stored()->GetDeletable());
    QCOMPARE(stored()->GetSize(), quint64{4});
    QVERIFY(!m_store->marks().isSet(QStringLiteral("R1")));
}

void TestRecordWriter::keepsTheStepBeforeWhenItCannotFinish()
{
    const auto writer = RecordWriter::create(*m_store, birth(), &m_error);
    QVERIFY(writer->append("abcd", 4));
    writer->record().AppendIndexEntry(indexEntry(10'500'000, 4));
    QVERIFY(writer->step());
    QVERIFY(writer->append("efgh", 4));
    writer->record().AppendIndexEntry(indexEntry(10'700'000, 8));
    {
        const FileSizeLimit full(100); // less than the metadata needs
        QVERIFY(!writer->finish());
    }
    ZELKO_RecordData onDisk = *stored();
    QCOMPARE(onDisk.GetSize(), quint64{4});
    onDisk.SetRecordStatus(ZELKO_RecordData::RecordStatus::Damaged);
    QVERIFY(*writer->saved() == onDisk);
    const RecordPointer closed = m_store->readAtRest(QStringLiteral("R1"), &m_error);
    QVERIFY2(closed, qPrintable(m_error));
    QCOMPARE(closed->GetRecordStatus(), ZELKO_RecordData::RecordStatus::Finished);
    QVERIFY(closed->GetDeletable());
    QCOMPARE(closed->GetSize(), quint64{4});
}

void TestRecordWriter::reportsAFolderThatWent()
{
    const auto writer = RecordWriter::create(*m_store, birth(), &m_error);
    QVERIFY(QDir(m_folder->filePath(QStringLiteral("R1"))).removeRecursively());
    QVERIFY(!writer->step());
    QVERIFY(!writer->finish());
    QCOMPARE(writer->saved()->GetRecordStatus(), ZELKO_RecordData::RecordStatus::Damaged);
    QVERIFY(!QFile::exists(m_folder->filePath(QStringLiteral("R1"))));
}

QTEST_GUILESS_MAIN(TestRecordWriter)
#include "tst_recordwriter.moc"
