#include <recorder/service/framerecording.h>

#include <frames.h>
#include <loglines.h>
#include <storedrecord.h>

#include <recorder/store/storedfiles.h>

#include <QTemporaryDir>
#include <QTest>

#include <sys/stat.h>

using namespace ZelkoRecorder;
using namespace ZelkoTest;
using ZELKO_XML::ZELKO_RecordData;

class TestFrameRecording : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void makesOneRecordOfItsFrames();
    void isBornWithTheFirstSamples();
    void leavesOutWhatCameLateOrTwice();
    void marksAGap();
    void marksANewTuning();
    void countsOnBeyondTheLargestNumber();
    void endsWhereItsSamplesEnd();
    void takesTheDataRateFromTheFrames();
    void keepsItsIndexSmallWhateverChanges_data();
    void keepsItsIndexSmallWhateverChanges();
    void notesAChangeThatStays();
    void leavesOutPartsOfSamples();
    void isNotLedAstrayByOneFrame_data();
    void isNotLedAstrayByOneFrame();
    void followsASourceThatBeginsAnew_data();
    void followsASourceThatBeginsAnew();
    void keepsWhatComesBehindALongHole_data();
    void keepsWhatComesBehindALongHole();
    void leavesOutStrangersInTheEnd();
    void endsAtItsLimitBehindALongHole();
    void isNamedAfterTheTimeOfTheDevice();
    void isBornWithEarlyEdits();
    void takesEditsWhileItIsRecorded();
    void takesTheEditsThatWaitAtItsEnd();
    void tellsWhoComesAtItsLastStepWhenThatIsOver();
    void answersEditsOfNoRecord();
    void refusesWhatTheDiskRefuses();
    void endsAtItsLimit_data();
    void endsAtItsLimit();
    void keepsTheLastSamplesOfALoop();
    void keepsAShortLoopWhole();

private:
    bool take(const ChannelFrame& frame)
    {
        const QByteArray samples = samplesOf(frame);
        QString error;
        return m_recording->take(frame, {samples.constData(), static_cast<std::size_t>(samples.size())}, &error);
    }
    static ChannelFrame twoHoursLater(ChannelFrame frame)
    {
        frame.time += 7'200'000'000;
        return frame;
    }
    static QByteArray samplesOfFrames(const QList<quint32>& numbers)
    {
        QByteArray samples;
        for (const quint32 number : numbers) {
            samples += samplesOf(frameOf(number));
        }
        return samples;
    }
    QByteArray samplesIn(const RecordPointer& record) const
    {
        return readBytes(sampleFilePath(m_store->recordFolder(record->GetRecordID()), *record));
    }
    void beginLoop(quint64 bytes);
    bool rename(const QString& name)
    {
        return m_edits->post(commentEdit(name), [this](StoreStatus status) { m_answers << status; });
    }
    RecordPointer finished()
    {
        return m_recording->finish(*m_edits) ? DeviceStore(m_folder->path()).read(m_recording->recordID(), &m_error)
                                             : nullptr;
    }
    QStringList indexOf(const RecordPointer& record) const
    {
        QStringList entries;
        for (const auto& entry : std::as_const(*record).GetIndexEntry()) {
            entries << QStringLiteral("%1@%2").arg(entry.GetTimestamp() / 1000).arg(entry.GetRecordOffset());
        }
        return entries;
    }

    std::unique_ptr<QTemporaryDir> m_folder;
    std::unique_ptr<DeviceStore> m_store;
    std::unique_ptr<DeviceClock> m_clock;
    std::unique_ptr<EditQueue> m_edits;
    std::unique_ptr<FrameRecording> m_recording;
    QStringList m_born;
    RecordPointers m_told;
    QList<StoreStatus> m_answers;
    QString m_error;
};

void TestFrameRecording::init()
{
    m_folder = std::make_unique<QTemporaryDir>();
    m_store = std::make_unique<DeviceStore>(m_folder->path());
    m_clock = std::make_unique<DeviceClock>(m_folder->path(), [] { return qint64{946'684'800'000'000}; });
    m_edits = std::make_unique<EditQueue>();
    m_born.clear();
    m_told.clear();
    m_answers.clear();
    ZELKO_RecordData birth;
    birth.SetRecordName("Aufnahme");
    birth.SetDataFormat(ZELKO_RecordData::DataFormat::IQ16);
    m_recording = std::make_unique<FrameRecording>(
        *m_store, *m_clock, birth, [this](const QString& id) { m_born << id; },
        [this](const RecordPointer& record) { m_told << record; });
}

void TestFrameRecording::makesOneRecordOfItsFrames()
{
    for (quint32 number = 0; number < 30; ++number) {
        QVERIFY(take(frameOf(number)));
    }
    const RecordPointer record = finished();
    QVERIFY2(record, qPrintable(m_error));
    QCOMPARE(m_born, QStringList{record->GetRecordID()});
    QCOMPARE(record->GetRecordStatus(), ZELKO_RecordData::RecordStatus::Finished);
    QCOMPARE(record->GetSize(), 12'000U);
    QCOMPARE(record->GetStartTime(), 10'000'000U);
    QCOMPARE(record->GetStopTime(), 13'000'000U);
    QCOMPARE(m_recording->lostFrames(), 0U);
    QVERIFY(m_told.size() >= 2);
    QCOMPARE(m_told.first()->GetRecordStatus(), ZELKO_RecordData::RecordStatus::Recording);
    QVERIFY(*m_told.last() == *record);
}

void TestFrameRecording::isBornWithTheFirstSamples()
{
    QVERIFY(take(frameOf(0, 0)));
    QVERIFY(m_born.isEmpty());
    QVERIFY(m_recording->finish(*m_edits));
    QVERIFY(m_recording->recordID().isEmpty());
    QVERIFY(contentOf(m_folder->path()).isEmpty());
}

void TestFrameRecording::leavesOutWhatCameLateOrTwice()
{
    ChannelFrame back = frameOf(3);
    back.time = 9'000'000;
    for (const ChannelFrame& frame : {frameOf(1), frameOf(2), frameOf(1), frameOf(2), frameOf(0), back, frameOf(3)}) {
        QVERIFY(take(frame));
    }
    const RecordPointer record = finished();
    QCOMPARE(record->GetSize(), 1200U);
    QCOMPARE(m_recording->refusedFrames(), 4U);
    QCOMPARE(m_recording->lostFrames(), 0U);
}

void TestFrameRecording::marksAGap()
{
    QVERIFY(take(frameOf(0)));
    QVERIFY(take(frameOf(4)));
    const RecordPointer record = finished();
    QCOMPARE(m_recording->lostFrames(), 3U);
    QCOMPARE(indexOf(record), QStringList({"10000@0", "10100@400", "10400@400", "10500@800"}));
}

void TestFrameRecording::marksANewTuning()
{
    ChannelFrame tuned = frameOf(1);
    tuned.centreFrequency = 433'000'000;
    QVERIFY(take(frameOf(0)));
    QVERIFY(take(tuned));
    const RecordPointer record = finished();
    const auto& index = std::as_const(*record).GetIndexEntry();
    QCOMPARE(indexOf(record), QStringList({"10000@0", "10100@400", "10200@800"}));
    QCOMPARE(index.at(0).GetTunerFrequency(), 145'000'000U);
    QCOMPARE(index.at(1).GetTunerFrequency(), 433'000'000U);
}

void TestFrameRecording::countsOnBeyondTheLargestNumber()
{
    ChannelFrame last = frameOf(0);
    last.number = 0xffffffff;
    ChannelFrame next = frameOf(1);
    next.number = 0;
    QVERIFY(take(last));
    QVERIFY(take(next));
    QCOMPARE(finished()->GetSize(), 800U);
    QCOMPARE(m_recording->lostFrames(), 0U);
}

void TestFrameRecording::endsWhereItsSamplesEnd()
{
    ChannelFrame frame = frameOf(0);
    frame.sampleRate = 0; // nobody knows how long it is
    QVERIFY(take(frame));
    QCOMPARE(finished()->GetStopTime(), 10'000'000U);
}

void TestFrameRecording::takesTheDataRateFromTheFrames()
{
    QVERIFY(take(frameOf(0)));
    QCOMPARE(finished()->GetDataRate(), ZELKO_RecordData::DataRate::UpTo16kB);
}

void TestFrameRecording::keepsItsIndexSmallWhateverChanges_data()
{
    QTest::addColumn<quint32>("bytes");
    QTest::addColumn<quint32>("step");
    QTest::addColumn<quint64>("retuned");
    QTest::addColumn<bool>("told");
    QTest::newRow("another frequency with each frame of a millisecond") << 4U << 1U << quint64{1} << true;
    QTest::newRow("another frequency each second") << 4000U << 1U << quint64{1} << true;
    QTest::newRow("a gap before each frame of a second") << 4000U << 2U << quint64{0} << false;
}

// Each row alone would make an entry or two of each frame.
void TestFrameRecording::keepsItsIndexSmallWhateverChanges()
{
    QFETCH(quint32, bytes);
    QFETCH(quint32, step);
    QFETCH(quint64, retuned);
    constexpr quint32 frames = 4000;
    QFETCH(bool, told);
    const LogLines log;
    for (quint32 i = 0; i < frames; ++i) {
        ChannelFrame frame = frameOf(i * step, bytes);
        frame.centreFrequency += i * retuned;
        QVERIFY(take(frame));
    }
    QTest::failOnWarning(QRegularExpression(".*")); // told once
    const RecordPointer record = finished();
    QVERIFY2(record, qPrintable(m_error));
    QCOMPARE(record->GetSize(), quint64{frames} * bytes);
    QCOMPARE(log.lines().filter("changes too fast").size(), told ? 1 : 0);
    const auto& index = std::as_const(*record).GetIndexEntry();
    QVERIFY(index.size() >= 4);
    QVERIFY(index.size() <= FrameRecording::maximumIndexEntries + 2);
    QCOMPARE(index.constLast().GetRecordOffset(), record->GetSize());
}

// One that came too fast for an entry of its own gets it as soon as there may be one.
void TestFrameRecording::notesAChangeThatStays()
{
    for (quint32 number = 0; number < 100; ++number) {
        ChannelFrame frame = frameOf(number, 40);
        frame.centreFrequency = number == 0 ? 1 : 2;
        QVERIFY(take(frame));
    }
    const RecordPointer record = finished();
    const auto& index = std::as_const(*record).GetIndexEntry();
    QCOMPARE(index.at(0).GetTunerFrequency(), 1U);
    QCOMPARE(index.at(1).GetTunerFrequency(), 2U);
    QCOMPARE(index.at(1).GetTimestamp() - index.at(0).GetTimestamp(), FrameRecording::shortestChangeInterval);
}

void TestFrameRecording::leavesOutPartsOfSamples()
{
    QVERIFY(take(frameOf(0)));
    QVERIFY(take(frameOf(1, 399)));
    QVERIFY(take(frameOf(2)));
    QCOMPARE(finished()->GetSize(), 800U);
    QCOMPARE(m_recording->refusedFrames(), 1U);
}

void TestFrameRecording::isNotLedAstrayByOneFrame_data()
{
    QTest::addColumn<quint32>("number");
    QTest::addColumn<quint64>("time");
    QTest::newRow("dated far ahead") << 3U << ChannelFrame::latestTime;
    QTest::newRow("far ahead in number") << 0x70000000U << quint64{10'300'000};
    QTest::newRow("far back in number, later in time") << 0xa0000000U << quint64{10'300'000};
    QTest::newRow("dated long ago") << 3U << quint64{0};
}

void TestFrameRecording::isNotLedAstrayByOneFrame()
{
    QFETCH(quint32, number);
    QFETCH(quint64, time);
    ChannelFrame astray = frameOf(3);
    astray.number = number;
    astray.time = time;
    for (const ChannelFrame& frame : {frameOf(0), frameOf(1), frameOf(2), astray, frameOf(3), frameOf(4)}) {
        QVERIFY(take(frame));
    }
    QCOMPARE(finished()->GetSize(), 2000U);
    QCOMPARE(m_recording->refusedFrames(), 1U);
    QCOMPARE(m_recording->lostFrames(), 0U);
}

void TestFrameRecording::followsASourceThatBeginsAnew_data()
{
    QTest::addColumn<quint32>("number");
    QTest::addColumn<quint64>("time");
    QTest::newRow("after a frame dated far ahead") << 0U << ChannelFrame::latestTime;
    QTest::newRow("after one with a number far ahead") << 0x70000000U << quint64{10'000'000};
    QTest::newRow("with numbers that begin again") << 1000U << quint64{10'000'000};
}

// What is not believed at first is not lost for that.
void TestFrameRecording::followsASourceThatBeginsAnew()
{
    QFETCH(quint32, number);
    QFETCH(quint64, time);
    ChannelFrame first = frameOf(0);
    first.number = number;
    first.time = time;
    QVERIFY(take(first));
    for (quint32 i = 1; i <= 20; ++i) {
        QVERIFY(take(frameOf(i)));
    }
    const RecordPointer record = finished();
    QCOMPARE(m_recording->refusedFrames(), 0U);
    QCOMPARE(record->GetSize(), 21U * 400);
    QCOMPARE(samplesIn(record),
             samplesOfFrames({first.number, 1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15, 16, 17, 18, 19, 20}));
}

void TestFrameRecording::keepsWhatComesBehindALongHole_data()
{
    QTest::addColumn<quint32>("frames");
    QTest::newRow("one frame") << 1U;
    QTest::newRow("less than are believed at once") << 3U;
    QTest::newRow("as many as are believed at once") << 4U;
    QTest::newRow("more than that") << 5U;
}

// The source leaves out a number there.
void TestFrameRecording::keepsWhatComesBehindALongHole()
{
    QFETCH(const quint32, frames);
    QVERIFY(take(frameOf(0)));
    QVERIFY(take(frameOf(1)));
    QList<quint32> numbers{0, 1};
    for (quint32 i = 0; i < frames; ++i) {
        numbers.append(3 + i);
        QVERIFY(take(twoHoursLater(frameOf(3 + i))));
    }
    const RecordPointer record = finished();
    QCOMPARE(m_recording->refusedFrames(), 0U);
    QCOMPARE(samplesIn(record), samplesOfFrames(numbers));
    const quint32 end = 7'210'300 + frames * 100;
    QCOMPARE(indexOf(record), (QStringList{"10000@0", "10200@800", "7210300@800",
                                           QStringLiteral("%1@%2").arg(end).arg((2 + frames) * 400)}));
    QCOMPARE(record->GetStopTime(), quint64{end} * 1000);
}

void TestFrameRecording::leavesOutStrangersInTheEnd()
{
    QVERIFY(take(frameOf(0)));
    for (const quint32 number : {2'000'000'000U, 2'000'000'001U}) {
        ChannelFrame stranger = frameOf(1);
        stranger.number = number;
        QVERIFY(take(stranger));
    }
    QCOMPARE(finished()->GetSize(), 400U);
    QCOMPARE(m_recording->refusedFrames(), 2U);
}

void TestFrameRecording::endsAtItsLimitBehindALongHole()
{
    m_recording->limitTo(1000);
    QVERIFY(take(frameOf(0)));
    for (const quint32 number : {2U, 3U, 4U, 5U}) {
        QVERIFY(!m_recording->isFull());
        QVERIFY(take(twoHoursLater(frameOf(number))));
    }
    QVERIFY(m_recording->isFull());
    const RecordPointer record = finished();
    QCOMPARE(record->GetSize(), 1000U);
    QCOMPARE(record->GetStopTime(), 7'210'350'000U);
}

void TestFrameRecording::isNamedAfterTheTimeOfTheDevice()
{
    QVERIFY(take(frameOf(0)));
    QVERIFY(m_recording->recordID().startsWith("20000101-000000000-"));
}

void TestFrameRecording::isBornWithEarlyEdits()
{
    QVERIFY(rename("Neu"));
    m_recording->makeEdits(*m_edits);
    QCOMPARE(m_answers, QList{StoreStatus::Done});
    QVERIFY(take(frameOf(0)));
    QCOMPARE(m_store->read(m_recording->recordID(), &m_error)->GetRecordName(), "Neu");
}

void TestFrameRecording::takesEditsWhileItIsRecorded()
{
    QVERIFY(take(frameOf(0)));
    QVERIFY(rename("Neu"));
    m_recording->makeEdits(*m_edits);
    QCOMPARE(m_answers, QList{StoreStatus::Done});
    QCOMPARE(m_told.last()->GetRecordName(), "Neu");
    QCOMPARE(m_store->read(m_recording->recordID(), &m_error)->GetRecordName(), "Neu");
    QVERIFY(take(frameOf(1)));
    QCOMPARE(finished()->GetSize(), 800U);
}

void TestFrameRecording::takesTheEditsThatWaitAtItsEnd()
{
    QVERIFY(take(frameOf(0)));
    QVERIFY(rename("Neu"));
    const RecordPointer record = finished();
    QCOMPARE(record->GetRecordName(), "Neu");
    QCOMPARE(m_answers, QList{StoreStatus::Done});
    QVERIFY(!rename("Zu spaet"));
}

void TestFrameRecording::tellsWhoComesAtItsLastStepWhenThatIsOver()
{
    QVERIFY(take(frameOf(0)));
    bool isAtRest = false;
    const auto over = [&] {
        const RecordPointer record = DeviceStore(m_folder->path()).read(m_recording->recordID(), &m_error);
        isAtRest = record && DeviceStore::mayDelete(*record);
    };
    const auto unexpected = [](StoreStatus) { QFAIL("it was made"); };
    QVERIFY(m_edits->post(commentEdit("Neu"), [&](StoreStatus) {
        QVERIFY(m_edits->post({commentEdit("Zu spaet"), unexpected, over}));
    }));
    QCOMPARE(finished()->GetRecordName(), "Neu");
    QVERIFY(isAtRest);
}

void TestFrameRecording::answersEditsOfNoRecord()
{
    QVERIFY(rename("Neu"));
    QVERIFY(m_recording->finish(*m_edits));
    QCOMPARE(m_answers, QList{StoreStatus::UnknownRecord});
    QVERIFY(!m_edits->post({commentEdit("Zu spaet"), {}, [] {}}));
}

void TestFrameRecording::refusesWhatTheDiskRefuses()
{
    QVERIFY(m_folder->remove());
    QVERIFY(writeBytes(m_folder->path(), "a file in place of the folder"));
    QVERIFY(!take(frameOf(0)));
    QVERIFY(m_recording->recordID().isEmpty());
    QVERIFY(rename("Neu"));
    m_recording->makeEdits(*m_edits);
    QVERIFY(m_answers.isEmpty());
    QVERIFY(m_recording->finish(*m_edits));
    QVERIFY(QFile::remove(m_folder->path()));
}

void TestFrameRecording::endsAtItsLimit_data()
{
    QTest::addColumn<quint64>("limit");
    QTest::addColumn<quint64>("bytes");
    QTest::addColumn<bool>("isFull");
    QTest::newRow("more than comes") << quint64{2000} << quint64{1200} << false;
    QTest::newRow("at the end of a frame") << quint64{800} << quint64{800} << true;
    QTest::newRow("within a frame") << quint64{1000} << quint64{1000} << true;
    QTest::newRow("within a sample") << quint64{1003} << quint64{1000} << true;
    QTest::newRow("within the first frame") << quint64{100} << quint64{100} << true;
}

void TestFrameRecording::endsAtItsLimit()
{
    QFETCH(const quint64, limit);
    QFETCH(const quint64, bytes);
    m_recording->limitTo(limit);
    for (const quint32 number : {0U, 1U, 2U}) {
        QVERIFY(take(frameOf(number)));
    }
    QTEST(m_recording->isFull(), "isFull");
    const RecordPointer record = finished();
    QVERIFY2(record, qPrintable(m_error));
    QCOMPARE(quint64{record->GetSize()}, bytes);
    QCOMPARE(quint64{record->GetStopTime()}, 10'000'000 + bytes / 4 * 1000);
    QCOMPARE(m_recording->refusedFrames(), 0U);
}

void TestFrameRecording::beginLoop(quint64 bytes)
{
    ZELKO_RecordData birth;
    birth.SetRecordName("Schleife");
    birth.SetDataFormat(ZELKO_RecordData::DataFormat::IQ16);
    birth.SetRecordingLoopSize(bytes);
    m_recording = std::make_unique<FrameRecording>(
        *m_store, *m_clock, birth, [](const QString&) {}, [this](const RecordPointer& told) { m_told << told; });
}

// Frames of a tenth of a second, an entry of the index each second.
void TestFrameRecording::keepsTheLastSamplesOfALoop()
{
    beginLoop(100'000);
    for (quint32 number = 0; number < 1000; ++number) {
        QVERIFY(take(frameOf(number)));
    }
    QCOMPARE(m_told.constFirst()->GetRecordStatus(), ZELKO_RecordData::RecordStatus::LoopRecording);
    const RecordPointer record = finished();
    QVERIFY2(record, qPrintable(m_error));
    QCOMPARE(record->GetRecordStatus(), ZELKO_RecordData::RecordStatus::Finished);
    QCOMPARE(quint64{record->GetStopPosition()}, 400'000U);
    QCOMPARE(quint64{record->GetStartPosition()}, 300'000U);
    QCOMPARE(quint64{record->GetStartTime()}, 85'000'000U);
    QCOMPARE(indexOf(record).constFirst(), QStringLiteral("85000@300000"));
    const QString path = sampleFilePath(m_store->recordFolder(record->GetRecordID()), *record);
    struct stat file = {};
    QCOMPARE(::stat(qPrintable(path), &file), 0);
    QVERIFY2(file.st_blocks * 512 < 200'000, qPrintable(QString::number(file.st_blocks)));
    QCOMPARE(readBytes(path).mid(300'000, 400), samplesOf(frameOf(750)));
}

void TestFrameRecording::keepsAShortLoopWhole()
{
    beginLoop(100'000);
    QVERIFY(take(frameOf(0)));
    const RecordPointer record = finished();
    QVERIFY2(record, qPrintable(m_error));
    QCOMPARE(quint64{record->GetStartPosition()}, 0U);
    QCOMPARE(quint64{record->GetSize()}, 400U);
    QCOMPARE(quint64{record->GetRecordingLoopSize()}, 100'000U);
}

QTEST_GUILESS_MAIN(TestFrameRecording)
#include "tst_framerecording.moc"
