#include <reportcore/durablefile.h>

#include <filesizelimit.h>
#include <foldersyncs.h>

#include <QTemporaryDir>
#include <QtTest>

#include <csignal>
#include <optional>

#include <sys/resource.h>

using namespace REPORTGENERATOR;
using namespace ZelkoTest;

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
    void putsTheOldFileBackWhenTheFolderIsNotSynced();
    void takesANewFileAwayWhenTheFolderIsNotSynced();
    void leavesTheNewFileWhenTheOldOneCannotBePutBack();
    void makesEachMissingFolderDurable();
    void takesAFolderAwayThatIsNotDurable();

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

void DurableFileTest::putsTheOldFileBackWhenTheFolderIsNotSynced()
{
    const QTemporaryDir folder;
    const QString file = folder.filePath(QStringLiteral("file"));
    QVERIFY(writeDurably(file, "old"));
    QByteArray atSync;
    const FolderSyncs disk(folder.path(), [&] { return atSync = contentOf(file), true; });
    QVERIFY(!writeDurably(file, "new"));
    QCOMPARE(atSync, QByteArray("new"));
    QCOMPARE(contentOf(file), QByteArray("old"));
    QCOMPARE(QDir(folder.path()).entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot),
             QStringList{QStringLiteral("file")});
}

void DurableFileTest::takesANewFileAwayWhenTheFolderIsNotSynced()
{
    const FolderSyncs disk(m_folder.path());
    QVERIFY(!writeDurably(path("not synced"), "new"));
    QCOMPARE(disk.folders(), QStringList{m_folder.path()});
    QVERIFY(!QFile::exists(path("not synced")));
}

void DurableFileTest::leavesTheNewFileWhenTheOldOneCannotBePutBack()
{
    QVERIFY(writeDurably(path("stuck"), "old"));
    std::optional<FileSizeLimit> full;
    const FolderSyncs disk(m_folder.path(), [&] { return full.emplace(1), true; });
    const bool written = writeDurably(path("stuck"), "new");
    full.reset();
    QVERIFY(!written);
    QCOMPARE(contentOf(path("stuck")), QByteArray("new"));
}

void DurableFileTest::makesEachMissingFolderDurable()
{
    const FolderSyncs disk;
    QVERIFY(makeFolderDurably(path("a/b/c")));
    QVERIFY(QFileInfo(path("a/b/c")).isDir());
    QCOMPARE(disk.folders(), (QStringList{m_folder.path(), path("a"), path("a/b")}));
    QVERIFY(makeFolderDurably(path("a/b/c")));
    QCOMPARE(disk.folders().size(), 3);
    QVERIFY(writeDurably(path("a/file"), "x"));
    QVERIFY(!makeFolderDurably(path("a/file/b")));
}

void DurableFileTest::takesAFolderAwayThatIsNotDurable()
{
    const FolderSyncs disk(m_folder.path());
    QVERIFY(!makeFolderDurably(path("d/e")));
    QVERIFY(!QFileInfo::exists(path("d")));
}

QTEST_APPLESS_MAIN(DurableFileTest)
#include "tst_durablefile.moc"
