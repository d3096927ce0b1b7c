#include <recorder/store/recordingmarks.h>

#include <storedrecord.h>

#include <QTemporaryDir>
#include <QTest>

using namespace ZelkoRecorder;
using namespace ZelkoTest;

namespace {

const QString id = QStringLiteral("R1");

} // namespace

class TestRecordingMarks : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { m_folder = std::make_unique<QTemporaryDir>(); }
    void outlivesWhoSetIt();
    void isSetOnlyOnce();
    void isNoPartOfTheRecord();
    void clearsWhatIsNotThere();
    void forgetsOrphansOnly();
    void reportsAFolderThatIsGone();

private:
    RecordingMarks marks() const { return RecordingMarks(m_folder->path()); }

    std::unique_ptr<QTemporaryDir> m_folder;
};

void TestRecordingMarks::outlivesWhoSetIt()
{
    QVERIFY(!marks().isSet(id));
    QVERIFY(marks().set(id));
    QVERIFY(marks().isSet(id));
    QVERIFY(!marks().isSet(QStringLiteral("R2")));
    marks().clear(id);
    QVERIFY(!marks().isSet(id));
}

void TestRecordingMarks::isSetOnlyOnce()
{
    QVERIFY(marks().set(id));
    QVERIFY(!marks().set(id));
    QVERIFY(marks().isSet(id));
}

// Whoever copies the folder of a record copies no mark.
void TestRecordingMarks::isNoPartOfTheRecord()
{
    QVERIFY(storeRecord(m_folder->path(), unfinishedRecord(id), 4000));
    const auto before = contentOf(m_folder->filePath(id));
    QVERIFY(marks().set(id));
    QCOMPARE(contentOf(m_folder->filePath(id)), before);
}

void TestRecordingMarks::clearsWhatIsNotThere()
{
    QVERIFY(marks().set(QStringLiteral("R2")));
    marks().clear(id);
    QVERIFY(marks().isSet(QStringLiteral("R2")));
}

void TestRecordingMarks::forgetsOrphansOnly()
{
    QVERIFY(storeRecord(m_folder->path(), unfinishedRecord(id), 4000));
    QVERIFY(writeBytes(m_folder->filePath(QStringLiteral("recording-R3")), "x"));
    QVERIFY(marks().set(id));
    QVERIFY(marks().set(QStringLiteral("R2")));
    auto content = contentOf(m_folder->path());
    marks().clearOrphans();
    content.remove(QStringLiteral(".recording-R2"));
    QCOMPARE(contentOf(m_folder->path()), content);
}

void TestRecordingMarks::reportsAFolderThatIsGone()
{
    const RecordingMarks nowhere(m_folder->filePath(QStringLiteral("none")));
    QVERIFY(!nowhere.set(id));
    QVERIFY(!nowhere.isSet(id));
    nowhere.clearOrphans();
    QVERIFY(!QFileInfo::exists(m_folder->filePath(QStringLiteral("none"))));
}

QTEST_GUILESS_MAIN(TestRecordingMarks)
#include "tst_recordingmarks.moc"
