#include <recorder/store/recordedsources.h>

#include <storedrecord.h>

#include <QTemporaryDir>
#include <QTest>

#include <sys/stat.h>

using namespace ZelkoRecorder;
using namespace ZelkoTest;

class TestRecordedSources : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { m_folder = std::make_unique<QTemporaryDir>(); }
    void remembersWhatWasRecorded();
    void keepsOtherLinesOutOfAccount();
    void knowsNothingWhereItsFileIsNone_data();
    void knowsNothingWhereItsFileIsNone();
    void reportsADiskThatRefuses();
    void forgetsTheOldestOfVeryMany();

private:
    QString path() const { return m_folder->filePath(QStringLiteral(".recorded-sources")); }
    RecordedSources sources() const { return RecordedSources(m_folder->path()); }

    std::unique_ptr<QTemporaryDir> m_folder;
};

void TestRecordedSources::remembersWhatWasRecorded()
{
    RecordedSources first = sources();
    QVERIFY(!first.contains(QStringLiteral("a")));
    QVERIFY(first.add(QStringLiteral("a")));
    QVERIFY(first.add(QStringLiteral("two\nlines")));
    QVERIFY(first.contains(QStringLiteral("a")));
    const RecordedSources second = sources();
    QVERIFY(second.contains(QStringLiteral("a")));
    QVERIFY(second.contains(QStringLiteral("two\nlines")));
    QVERIFY(!second.contains(QStringLiteral("b")));
    const QByteArray file = readBytes(path());
    QVERIFY(first.add(QStringLiteral("a")));
    QCOMPARE(readBytes(path()), file);
}

void TestRecordedSources::keepsOtherLinesOutOfAccount()
{
    QVERIFY(sources().add(QStringLiteral("a")));
    const QByteArray good = readBytes(path());
    QVERIFY(writeBytes(path(), QByteArray("\0\xff\n", 3) + QByteArray(64, 'z') + '\n' + good + good.left(20)));
    RecordedSources damaged = sources();
    QVERIFY(damaged.contains(QStringLiteral("a")));
    QVERIFY(damaged.add(QStringLiteral("b")));
    QVERIFY(readBytes(path()).startsWith(good));
    QCOMPARE(readBytes(path()).size(), 2 * good.size());
}

void TestRecordedSources::knowsNothingWhereItsFileIsNone_data()
{
    QTest::addColumn<bool>("pipe");
    QTest::newRow("a pipe") << true;
    QTest::newRow("a folder") << false;
}

void TestRecordedSources::knowsNothingWhereItsFileIsNone()
{
    QFETCH(const bool, pipe);
    QVERIFY(pipe ? mkfifo(QFile::encodeName(path()).constData(), 0600) == 0 : QDir().mkdir(path()));
    QTest::ignoreMessage(QtWarningMsg, QRegularExpression(QStringLiteral("is not known: .*recorded-sources")));
    QVERIFY(!sources().contains(QStringLiteral("a")));
}

void TestRecordedSources::reportsADiskThatRefuses()
{
    RecordedSources gone(m_folder->filePath(QStringLiteral("nowhere")));
    QVERIFY(!gone.add(QStringLiteral("a")));
}

void TestRecordedSources::forgetsTheOldestOfVeryMany()
{
    QByteArray lines;
    for (qsizetype i = 0; i < RecordedSources::maximumCount; ++i) {
        lines += QByteArray::number(i).rightJustified(64, '0') + '\n';
    }
    QVERIFY(writeBytes(path(), lines));
    QVERIFY(sources().add(QStringLiteral("a")));
    QCOMPARE(readBytes(path()).size(), RecordedSources::maximumCount * 65);
    QVERIFY(sources().contains(QStringLiteral("a")));
    QVERIFY(readBytes(path()).startsWith(QByteArray("1").rightJustified(64, '0')));
}

QTEST_GUILESS_MAIN(TestRecordedSources)
#include "tst_recordedsources.moc"
