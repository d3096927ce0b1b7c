#include <recorder/store/recording.h>

#include <countingsource.h>
#include <filesizelimit.h>
#include <storedrecord.h>

#include <QTemporaryDir>
#include <QTest>

#include <optional>
#include <thread>

using namespace ZelkoRecorder;
using namespace ZelkoTest;
using namespace std::chrono_literals;
using ZELKO_XML::IndexEntry;
using ZELKO_XML::ZELKO_RecordData;

namespace {

// Time passes only while somebody waits.
class ManualClock : public RecordingClock
{
public:
    TimePoint now() override { return TimePoint(m_elapsed); }
    void wait(const std::stop_token&, std::chrono::milliseconds time) override { m_elapsed += time; }
    std::chrono::milliseconds elapsed() const { return m_elapsed; }

private:
    std::chrono::milliseconds m_elapsed{0};
};

// Notes when how many frames had been read.
class TimedSource : public CountingSource
{
public:
    TimedSource(const SourceDescription& description, const ManualClock& clock)
        : CountingSource(description)
        , m_clock(clock)
    {}

    qint64 read(char* buffer, qint64 frames) override
    {
        const qint64 count = CountingSource::read(buffer, frames);
        m_frames += count;
        m_reads.append({m_clock.elapsed(), m_frames});
        return count;
    }

    const QVector<std::pair<std::chrono::milliseconds, qint64>>& reads() const { return m_reads; }

private:
    const ManualClock& m_clock;
    qint64 m_frames = 0;
    QVector<std::pair<std::chrono::milliseconds, qint64>> m_reads;
};

} // namespace

class TestRecording : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void recordsTheWholeSignal();
    void tellsEachDurableStateInOrder();
    void writesAnIndexEntryAtEachNewTuning();
    void turnsMarksIntoBookmarks();
    void thinsALongIndex();
    void keepsWhatCameBeforeAFailure();
    void isNeverFinishedWhenTheDiskDoesNotTakeItsEnd_data();
    void isNeverFinishedWhenTheDiskDoesNotTakeItsEnd();
    void keepsTimeWithTheSignal();
    void endsAtOnceWhenAsked();
    void wakesFromAWaitWhenAsked();
    void endsWhenTheRecordIsTakenAway();
    void makesEditsDurableBeforeItAnswers();
    void answersEditsThatCameBeforeItsEnd();
    void tellsWhoComesAtItsLastStepWhenThatIsOver();
    void keepsAnEditFromSpoilingTheRecord();
    void goesOnWhenTheDiskDoesNotTakeAnEdit();
    void answersEditsOfARecordThatIsNeverBorn();
    void describesASignalAtItsBirth();

private:
    static RecordingPace fast()
    {
        RecordingPace pace;
        pace.speed = 0;
        pace.stepInterval = std::chrono::milliseconds(0);
        return pace;
    }
    bool run(SignalSource& source, const RecordingPace& pace, const std::stop_token& stop = {});
    QVector<std::pair<int, quint64>> told() const
    {
        QVector<std::pair<int, quint64>> result;
        for (const RecordPointer& record : m_told) {
            result.append({static_cast<int>(record->GetRecordStatus()), record->GetSize()});
        }
        return result;
    }
    static QVector<quint64> offsets(const ZELKO_RecordData& record)
    {
        QVector<quint64> result;
        for (const IndexEntry& entry : record.GetIndexEntry()) {
            result.append(entry.GetRecordOffset());
        }
        return result;
    }

    std::unique_ptr<QTemporaryDir> m_folder;
    RecordPointers m_told;
    std::function<void()> m_onTold;
    std::unique_ptr<EditQueue> m_edits;
    std::unique_ptr<ManualClock> m_clock;
    QString m_error;
    bool m_complete = false;
};

void TestRecording::init()
{
    m_folder = std::make_unique<QTemporaryDir>();
    m_told.clear();
    m_onTold = {};
    m_edits = std::make_unique<EditQueue>();
    m_clock.reset();
    m_error.clear();
}

bool TestRecording::run(SignalSource& source, const RecordingPace& pace, const std::stop_token& stop)
{
    const DeviceStore store(m_folder->path());
    ZELKO_RecordData birth = recordOf(source.description(), 10'000'000);
    birth.SetRecordID(QStringLiteral("R1"));
    const auto tell = [this, &store](const RecordPointer& record) {
        QString error;
        const RecordPointer stored = store.read(QStringLiteral("R1"), &error);
        if (stored) { // what is told is on disk already
            if (record->GetRecordStatus() == ZELKO_RecordData::RecordStatus::Damaged) {
                stored->SetRecordStatus(ZELKO_RecordData::RecordStatus::Damaged);
            }
            QVERIFY(*stored == *record);
        }
        m_told.append(record);
        if (m_onTold) {
            m_onTold();
        }
    };
    RecordingClock& clock = m_clock ? *m_clock : RecordingClock::steady();
    Recording recording(store, source, birth, pace, tell, clock);
    recording.takeEditsFrom(*m_edits);
    const bool recorded = recording.run(stop, &m_error);
    m_complete = recording.isComplete();
    return recorded;
}

void TestRecording::recordsTheWholeSignal()
{
    CountingSource source(CountingSource::signal(2500));
    QVERIFY2(run(source, fast()), qPrintable(m_error));
    QVERIFY(m_complete);
    QCOMPARE(readBytes(m_folder->filePath(QStringLiteral("R1/R1.dat"))), CountingSource::bytes(2500));
    const ZELKO_RecordData& record = *m_told.constLast();
    QCOMPARE(record.GetRecordStatus(), ZELKO_RecordData::RecordStatus::Finished);
    QCOMPARE(record.GetSize(), quint64{10'000});
    QCOMPARE(record.GetStartTime(), quint64{10'000'000});
    QCOMPARE(record.GetStopTime(), quint64{12'500'000});
    QCOMPARE(offsets(record), (QVector<quint64>{0, 4000, 8000, 10'000}));
}

void TestRecording::tellsEachDurableStateInOrder()
{
    CountingSource source(CountingSource::signal(2500));
    QVERIFY(run(source, fast()));
    QCOMPARE(told(), (QVector<std::pair<int, quint64>>{{2, 0}, {2, 4000}, {2, 8000}, {5, 10'000}}));
}

void TestRecording::writesAnIndexEntryAtEachNewTuning()
{
    SourceDescription signal = CountingSource::signal(2000);
    signal.segments = {{0, 100, 5'000'000}, {300, 200, 0}, {1500, 300, 60'000'000}};
    CountingSource source(signal);
    QVERIFY(run(source, fast()));
    QVector<std::pair<quint64, quint64>> entries;
    for (const IndexEntry& entry : std::as_const(*m_told.constLast()).GetIndexEntry()) {
        entries.append({entry.GetTimestamp(), entry.GetTunerFrequency()});
    }
    QCOMPARE(entries, (QVector<std::pair<quint64, quint64>>{
                          {5'000'000, 100}, {5'300'000, 200}, {6'000'000, 200}, {60'000'000, 300}, {60'500'000, 300}}));
    QCOMPARE(m_told.constLast()->GetStartTime(), quint64{5'000'000});
}

void TestRecording::turnsMarksIntoBookmarks()
{
    SourceDescription signal = CountingSource::signal(2000);
    signal.marks = {
        {0, -1, QStringLiteral("begin")}, {500, 10, QStringLiteral("call")}, {3000, -1, QStringLiteral("never")}};
    CountingSource source(signal);
    QVERIFY(run(source, fast()));
    QStringList bookmarks;
    for (const auto& bookmark : std::as_const(*m_told.constLast()).GetBookmarkEntry()) {
        bookmarks.append(QStringLiteral("%1 %2").arg(bookmark.GetTimestamp()).arg(bookmark.GetBookmark()));
    }
    QCOMPARE(bookmarks, (QStringList{QStringLiteral("10000000 begin"), QStringLiteral("10500000 call")}));
}

void TestRecording::thinsALongIndex()
{
    RecordingPace pace = fast();
    pace.maximumIndexEntries = 4;
    CountingSource source(CountingSource::signal(20'000));
    QVERIFY(run(source, pace));
    const QVector<quint64> kept = offsets(*m_told.constLast());
    QVERIFY2(kept.size() <= 5, qPrintable(QString::number(kept.size())));
    QCOMPARE(kept.constFirst(), quint64{0});
    QCOMPARE(kept.constLast(), quint64{80'000});
    QVERIFY(std::is_sorted(kept.cbegin(), kept.cend()));
}

void TestRecording::keepsWhatCameBeforeAFailure()
{
    CountingSource source(CountingSource::signal(5000), 1700);
    QVERIFY(!run(source, fast()));
    QVERIFY(!m_complete);
    QCOMPARE(m_error, QStringLiteral("the cable broke"));
    QCOMPARE(m_told.constLast()->GetRecordStatus(), ZELKO_RecordData::RecordStatus::Finished);
    QCOMPARE(readBytes(m_folder->filePath(QStringLiteral("R1/R1.dat"))), CountingSource::bytes(1700));
}

void TestRecording::isNeverFinishedWhenTheDiskDoesNotTakeItsEnd_data()
{
    QTest::addColumn<qint64>("frames");
    QTest::addColumn<bool>("folderGoes");
    QTest::addColumn<QString>("error");
    const QString end = QStringLiteral("the disk does not take the end of the record");
    QTest::newRow("a full disk under the samples") << qint64{2500} << false << "the disk takes no more";
    QTest::newRow("a full disk under the last metadata") << qint64{2000} << false << end;
    QTest::newRow("a folder that went") << qint64{2500} << true << end;
}

void TestRecording::isNeverFinishedWhenTheDiskDoesNotTakeItsEnd()
{
    QFETCH(const qint64, frames);
    QFETCH(const bool, folderGoes);
    std::optional<FileSizeLimit> full;
    m_onTold = [&] {
        if (m_told.size() == 3 && folderGoes) {
            QDir(m_folder->filePath(QStringLiteral("R1"))).removeRecursively();
        } else if (m_told.size() == 3) {
            full.emplace(100);
        }
    };
    CountingSource source(CountingSource::signal(frames));
    const bool recorded = run(source, fast());
    full.reset();
    QVERIFY(!recorded && !m_complete);
    QTEST(m_error, "error");
    QCOMPARE(told(), (QVector<std::pair<int, quint64>>{{2, 0}, {2, 4000}, {2, 8000}, {8, 8000}}));
    if (!folderGoes) {
        const RecordPointer closed = DeviceStore(m_folder->path()).readAtRest(QStringLiteral("R1"), &m_error);
        QVERIFY2(closed, qPrintable(m_error));
        QCOMPARE(closed->GetRecordStatus(), ZELKO_RecordData::RecordStatus::Finished);
        QCOMPARE(readBytes(m_folder->filePath(QStringLiteral("R1/R1.dat"))), CountingSource::bytes(2000));
    }
}

void TestRecording::keepsTimeWithTheSignal()
{
    RecordingPace pace;
    pace.speed = 4;
    m_clock = std::make_unique<ManualClock>();
    TimedSource source(CountingSource::signal(2000), *m_clock); // 2 s of signal
    QVERIFY(run(source, pace));
    QCOMPARE(m_told.constLast()->GetSize(), quint64{8000});
    for (const auto& [time, frames] : source.reads()) {
        QVERIFY2(frames <= 4 * time.count(), qPrintable(QString::number(time.count())));
    }
    QVERIFY(m_clock->elapsed() < 550ms);
    QVERIFY(source.reads().size() > 10 && source.reads().size() < 100); // neither at once nor frame by frame
}

void TestRecording::endsAtOnceWhenAsked()
{
    RecordingPace pace;
    pace.speed = 0.001;
    m_clock = std::make_unique<ManualClock>();
    CountingSource source(CountingSource::signal(-1));
    std::stop_source stop;
    m_onTold = [&] { stop.request_stop(); };
    QVERIFY2(run(source, pace, stop.get_token()), qPrintable(m_error));
    QVERIFY(!m_complete);
    QCOMPARE(m_clock->elapsed(), 0ms);
    QCOMPARE(told(), (QVector<std::pair<int, quint64>>{{2, 0}, {5, 0}}));
}

// It would come back tomorrow.
void TestRecording::wakesFromAWaitWhenAsked()
{
    std::stop_source stop;
    std::thread asker([&] { stop.request_stop(); });
    RecordingClock::steady().wait(stop.get_token(), 24h);
    asker.join();
    QVERIFY(stop.stop_requested());
}

void TestRecording::endsWhenTheRecordIsTakenAway()
{
    CountingSource source(CountingSource::signal(-1));
    m_onTold = [&] { QDir(m_folder->filePath(QStringLiteral("R1"))).removeRecursively(); };
    QVERIFY(!run(source, fast()));
    QVERIFY(!m_error.isEmpty());
    QVERIFY(!QFile::exists(m_folder->filePath(QStringLiteral("R1"))));
}

void TestRecording::makesEditsDurableBeforeItAnswers()
{
    CountingSource source(CountingSource::signal(2500));
    QStringList storedNames;
    const auto note = [&](StoreStatus status) {
        QString error;
        QCOMPARE(status, StoreStatus::Done);
        storedNames.append(DeviceStore(m_folder->path()).read(QStringLiteral("R1"), &error)->GetRecordName());
    };
    m_onTold = [&] {
        if (m_told.size() == 1) {
            QVERIFY(m_edits->post(commentEdit(QStringLiteral("Harbour")), note));
        }
    };
    QVERIFY(run(source, fast()));
    QCOMPARE(storedNames, QStringList{QStringLiteral("Harbour")});
    QCOMPARE(m_told.constLast()->GetRecordName(), QStringLiteral("Harbour"));
    QCOMPARE(readBytes(m_folder->filePath(QStringLiteral("R1/R1.dat"))), CountingSource::bytes(2500));
    QCOMPARE(offsets(*m_told.constLast()), (QVector<quint64>{0, 4000, 8000, 10'000}));
}

void TestRecording::answersEditsThatCameBeforeItsEnd()
{
    CountingSource source(CountingSource::signal(2500));
    int answered = 0;
    m_onTold = [&] {
        if (m_told.constLast()->GetSize() == 8000) { // the last state but that of the end
            m_edits->post(commentEdit(QStringLiteral("late")), [&](StoreStatus status) {
                QCOMPARE(status, StoreStatus::Done);
                ++answered;
            });
        }
    };
    QVERIFY(run(source, fast()));
    QVERIFY(answered > 0);
    QCOMPARE(m_told.constLast()->GetRecordName(), QStringLiteral("late"));
    QVERIFY(!m_edits->post(commentEdit(QStringLiteral("too late")), {}));
}

// Whoever is answered asks for the next edit at once, so that the last one comes when no more are made.
void TestRecording::tellsWhoComesAtItsLastStepWhenThatIsOver()
{
    CountingSource source(CountingSource::signal(2500));
    int answered = 0;
    QList<bool> restAtTheEnd;
    const auto over = [&] {
        QString error;
        const RecordPointer record = DeviceStore(m_folder->path()).read(QStringLiteral("R1"), &error);
        restAtTheEnd.append(record && DeviceStore::mayDelete(*record));
    };
    std::function<void()> postNext = [&] {
        const auto answer = [&](StoreStatus) {
            ++answered;
            postNext();
        };
        QVERIFY(m_edits->post({commentEdit(QString::number(answered)), answer, over}));
    };
    m_onTold = [&] {
        if (m_told.size() == 1) {
            postNext();
        }
    };
    QVERIFY(run(source, fast()));
    QCOMPARE(restAtTheEnd, QList<bool>{true});
    QVERIFY(answered > 0);
    QCOMPARE(m_told.constLast()->GetRecordName(), QString::number(answered - 1));
}

void TestRecording::keepsAnEditFromSpoilingTheRecord()
{
    CountingSource source(CountingSource::signal(2500));
    QList<StoreStatus> statuses;
    m_onTold = [&] {
        if (m_told.size() > 1) {
            return;
        }
        const auto note = [&](StoreStatus status) { statuses.append(status); };
        m_edits->post(commentEdit(QString(longestRecordName + 1, QLatin1Char('x'))), note);
        m_edits->post(historyRemoval(1), note);
        m_edits->post(deletableEdit(true), note);
    };
    QVERIFY(run(source, fast()));
    QCOMPARE(statuses, (QList<StoreStatus>{StoreStatus::TooLong, StoreStatus::UnknownEntry, StoreStatus::InUse}));
    QCOMPARE(m_told.constLast()->GetRecordName(), m_told.constFirst()->GetRecordName());
}

void TestRecording::goesOnWhenTheDiskDoesNotTakeAnEdit()
{
    CountingSource source(CountingSource::signal(2500));
    QList<StoreStatus> statuses;
    m_onTold = [&] {
        if (m_told.size() > 1) {
            return;
        }
        ZELKO_XML::BookmarkEntry bookmark;
        bookmark.SetTimestamp(1);
        bookmark.SetBookmark(QString(4000, QLatin1Char('x')));
        m_edits->post(bookmarksEdit(QVector<ZELKO_XML::BookmarkEntry>(10, bookmark)),
                      [&](StoreStatus status) { statuses.append(status); });
    };
    {
        const FileSizeLimit limit(20'000);
        QVERIFY2(run(source, fast()), qPrintable(m_error));
    }
    QCOMPARE(statuses, QList<StoreStatus>{StoreStatus::DiskRefused});
    QVERIFY(std::as_const(*m_told.constLast()).GetBookmarkEntry().isEmpty());
    QVERIFY(m_complete);
}

void TestRecording::answersEditsOfARecordThatIsNeverBorn()
{
    QVERIFY(QDir(m_folder->path()).mkdir(QStringLiteral("R1")));
    CountingSource source(CountingSource::signal(2500));
    QList<StoreStatus> statuses;
    m_edits->post(commentEdit(QString()), [&](StoreStatus status) { statuses.append(status); });
    QVERIFY(!run(source, fast()));
    QCOMPARE(statuses, QList<StoreStatus>{StoreStatus::UnknownRecord});
}

void TestRecording::describesASignalAtItsBirth()
{
    SourceDescription signal = CountingSource::signal(10, 48'000);
    ZELKO_RecordData record = recordOf(signal, 77);
    QCOMPARE(record.GetRecordName(), QStringLiteral("Counting"));
    QCOMPARE(record.GetStartTime(), quint64{77});
    QCOMPARE(record.GetDataFormat(), ZELKO_RecordData::DataFormat::IQ16);
    QCOMPARE(record.GetDataRate(), ZELKO_RecordData::DataRate::UpTo256kB);
    signal.segments[0].startTime = 5;
    signal.format.type = SampleType::ComplexFloat32;
    record = recordOf(signal, 77);
    QCOMPARE(record.GetStartTime(), quint64{5});
    QCOMPARE(static_cast<int>(record.GetDataFormat()), 21);
}

QTEST_GUILESS_MAIN(TestRecording)
#include "tst_recording.moc"
