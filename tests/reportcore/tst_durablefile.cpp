#include <reportcore/durablefile.h>

#include <QTemporaryDir>
#include <QtTest>

#include <csignal>

#include <sys/resource.h>

using namespace REPORTGENERATOR;

namespace {

QByteArray contentOf(const QString& path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("unreadable");
}

} // namespace

class DurableFileTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { QVERIFY(m_folder.isValid()); }
    void writesANewFile();
    void replacesAnOldFileWhole();
    void leavesNothingElseInTheFolder();
    void failsInAFolderThatIsMissing();
    void keepsTheOldFileWhenTheDiskIsFull();
    void failsOnAFolderOfThatName();
    void syncsOnlyFolders();

private:
    QString path(const char* name) const { return m_folder.filePath(QLatin1String(name)); }

    QTemporaryDir m_folder;
};

void DurableFileTest::writesANewFile()
{
    QVERIFY(writeDurably(path("new"), "bytes"));
    QCOMPARE(contentOf(path("new")), QByteArray("bytes"));
}

void DurableFileTest::replacesAnOldFileWhole()
{
    QVERIFY(writeDurably(path("twice"), "a long first text"));
    QVERIFY(writeDurably(path("twice"), "short"));
    QCOMPARE(contentOf(path("twice")), QByteArray("short"));
}

void DurableFileTest::leavesNothingElseInTheFolder()
{
    const QTemporaryDir folder;
    QVERIFY(writeDurably(folder.filePath(QStringLiteral("only")), "x"));
    QCOMPARE(QDir(folder.path()).entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot),
             QStringList{QStringLiteral("only")});
}

void DurableFileTest::failsInAFolderThatIsMissing()
{
    QVERIFY(!writeDurably(path("missing/file"), "x"));
    QVERIFY(!QFile::exists(path("missing")));
}

void DurableFileTest::keepsTheOldFileWhenTheDiskIsFull()
{
    QVERIFY(writeDurably(path("kept"), "old"));
    // A limit on the size of files fails a write as a full disk does, for root as well.
    rlimit before{};
    QCOMPARE(getrlimit(RLIMIT_FSIZE, &before), 0);
    const auto oldHandler = std::signal(SIGXFSZ, SIG_IGN);
    const rlimit tight{1024, before.rlim_max};
    QCOMPARE(setrlimit(RLIMIT_FSIZE, &tight), 0);
    const bool written = writeDurably(path("kept"), QByteArray(100'000, 'x'));
    setrlimit(RLIMIT_FSIZE, &before);
    std::signal(SIGXFSZ, oldHandler);
    QVERIFY(!written);
    QCOMPARE(contentOf(path("kept")), QByteArray("old"));
}

void DurableFileTest::failsOnAFolderOfThatName()
{
    QVERIFY(QDir(m_folder.path()).mkdir(QStringLiteral("folder")));
    QVERIFY(!writeDurably(path("folder"), "x"));
    QVERIFY(QFileInfo(path("folder")).isDir());
}

void DurableFileTest::syncsOnlyFolders()
{
    QVERIFY(syncFolder(m_folder.path()));
    QVERIFY(!syncFolder(path("missing")));
    QVERIFY(writeDurably(path("file"), "x"));
    QVERIFY(!syncFolder(path("file")));
}

QTEST_APPLESS_MAIN(DurableFileTest)
#include "tst_durablefile.moc"
