#include <recorder/store/exportfolders.h>

#include <readonlyfolder.h>
#include <storedrecord.h>

#include <QTemporaryDir>
#include <QTest>

using namespace ZelkoRecorder;
using namespace ZelkoTest;

class TestExportFolders : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void opensFoldersBelowThoseAllowed_data();
    void opensFoldersBelowThoseAllowed();
    void refusesOtherPaths_data();
    void refusesOtherPaths();
    void refusesEverythingWithoutFolders();
    void followsNoLinks();
    void mayItselfBeALink();
    void reportsWhatTheDiskRefuses();
    void staysTheFolderThatWasOpened();
    void removesLinksAndNotWhatTheyLeadTo();

private:
    StoreStatus open(const QString& path) { return ExportFolders({m_allowed}).open(path, &m_opened); }
    static bool link(const QString& target, const QString& name) { return QFile::link(target, name); }

    std::unique_ptr<QTemporaryDir> m_folder;
    QString m_allowed;
    OpenFolder m_opened;
};

void TestExportFolders::init()
{
    m_opened = OpenFolder();
    m_folder = std::make_unique<QTemporaryDir>();
    m_allowed = m_folder->filePath(QStringLiteral("allowed"));
    QVERIFY(QDir().mkpath(m_allowed + QStringLiteral("/there")));
    QVERIFY(QDir().mkpath(m_folder->filePath(QStringLiteral("other"))));
}

void TestExportFolders::opensFoldersBelowThoseAllowed_data()
{
    QTest::addColumn<QString>("below");
    QTest::newRow("the folder itself") << QString();
    QTest::newRow("with a slash at its end") << QStringLiteral("/");
    QTest::newRow("one that is there") << QStringLiteral("/there");
    QTest::newRow("one that is to be made") << QStringLiteral("/there/new/newer");
    QTest::newRow("with slashes too many") << QStringLiteral("//there///new/");
    QTest::newRow("with blanks and letters of the world") << QStringLiteral("/Šibenik 東京");
    QTest::newRow("with dots in its name") << QStringLiteral("/a..b/...");
}

void TestExportFolders::opensFoldersBelowThoseAllowed()
{
    QFETCH(const QString, below);
    QCOMPARE(open(m_allowed + below), StoreStatus::Done);
    QVERIFY(writeBytes(m_opened.path() + QStringLiteral("/file"), "x"));
    QCOMPARE(readBytes(m_allowed + below + QStringLiteral("/file")), QByteArray("x"));
}

void TestExportFolders::refusesOtherPaths_data()
{
    QTest::addColumn<QString>("path");
    QTest::newRow("nothing") << QString();
    QTest::newRow("the root") << QStringLiteral("/");
    QTest::newRow("another folder") << QStringLiteral("%1/other");
    QTest::newRow("the folder above") << QStringLiteral("%1");
    QTest::newRow("one whose name begins alike") << QStringLiteral("%1/allowed-not");
    QTest::newRow("a relative one") << QStringLiteral("allowed");
    QTest::newRow("over the folder above") << QStringLiteral("%1/allowed/../other");
    QTest::newRow("over the folder above and back") << QStringLiteral("%1/other/../allowed");
    QTest::newRow("over the folder itself") << QStringLiteral("%1/allowed/./there");
    QTest::newRow("with what separates the parts of an ID") << QStringLiteral("%1/allowed/a@b");
    QTest::newRow("with a null character") << QStringLiteral("%1/allowed/a") + QChar(u'\0');
    QTest::newRow("very long") << QStringLiteral("%1/allowed/") + QString(5000, QLatin1Char('a'));
}

void TestExportFolders::refusesOtherPaths()
{
    QFETCH(const QString, path);
    QCOMPARE(open(path.contains(QLatin1String("%1")) ? path.arg(m_folder->path()) : path), StoreStatus::BadFolder);
    QVERIFY(!m_opened.isOpen());
    QCOMPARE(QDir(m_folder->path()).entryList(QDir::Dirs | QDir::NoDotAndDotDot),
             (QStringList{QStringLiteral("allowed"), QStringLiteral("other")}));
}

void TestExportFolders::refusesEverythingWithoutFolders()
{
    QVERIFY(ExportFolders().isEmpty());
    QCOMPARE(ExportFolders().open(m_allowed, &m_opened), StoreStatus::BadFolder);
}

void TestExportFolders::followsNoLinks()
{
    QVERIFY(link(m_folder->filePath(QStringLiteral("other")), m_allowed + QStringLiteral("/out")));
    QVERIFY(link(m_folder->filePath(QStringLiteral("nowhere")), m_allowed + QStringLiteral("/lost")));
    QCOMPARE(open(m_allowed + QStringLiteral("/out")), StoreStatus::BadFolder);
    QCOMPARE(open(m_allowed + QStringLiteral("/out/new")), StoreStatus::BadFolder);
    QCOMPARE(open(m_allowed + QStringLiteral("/lost/new")), StoreStatus::BadFolder);
    QVERIFY(QDir(m_folder->filePath(QStringLiteral("other"))).isEmpty());
    QVERIFY(writeBytes(m_allowed + QStringLiteral("/file"), "x"));
    QCOMPARE(open(m_allowed + QStringLiteral("/file")), StoreStatus::BadFolder);
}

void TestExportFolders::mayItselfBeALink()
{
    const QString alias = m_folder->filePath(QStringLiteral("alias"));
    QVERIFY(link(m_allowed, alias));
    QCOMPARE(ExportFolders({alias}).open(alias + QStringLiteral("/there"), &m_opened), StoreStatus::Done);
    QCOMPARE(ExportFolders({alias}).open(m_allowed, &m_opened), StoreStatus::BadFolder);
}

void TestExportFolders::reportsWhatTheDiskRefuses()
{
    QVERIFY(QDir(m_allowed + QStringLiteral("/there")).removeRecursively());
    const ReadOnlyFolder readOnly(m_allowed);
    QCOMPARE(open(m_allowed + QStringLiteral("/new")), StoreStatus::DiskRefused);
}

void TestExportFolders::staysTheFolderThatWasOpened()
{
    QCOMPARE(open(m_allowed + QStringLiteral("/there")), StoreStatus::Done);
    QVERIFY(QDir().rename(m_allowed + QStringLiteral("/there"), m_allowed + QStringLiteral("/moved")));
    QVERIFY(link(m_folder->filePath(QStringLiteral("other")), m_allowed + QStringLiteral("/there")));
    QVERIFY(writeBytes(m_opened.path() + QStringLiteral("/file"), "x"));
    QVERIFY(QFile::exists(m_allowed + QStringLiteral("/moved/file")));
    QVERIFY(QDir(m_folder->filePath(QStringLiteral("other"))).isEmpty());
}

void TestExportFolders::removesLinksAndNotWhatTheyLeadTo()
{
    const QString kept = m_folder->filePath(QStringLiteral("other/kept"));
    QVERIFY(writeBytes(kept, "x"));
    QVERIFY(link(m_folder->filePath(QStringLiteral("other")), m_allowed + QStringLiteral("/out")));
    QVERIFY(link(m_folder->filePath(QStringLiteral("other")), m_allowed + QStringLiteral("/there/out")));
    QCOMPARE(open(m_allowed), StoreStatus::Done);
    m_opened.remove(QStringLiteral("out"));
    m_opened.remove(QStringLiteral("there"));
    m_opened.remove(QStringLiteral("nowhere"));
    QVERIFY(QDir(m_allowed).isEmpty());
    QVERIFY(QFile::exists(kept));
}

QTEST_GUILESS_MAIN(TestExportFolders)
#include "tst_exportfolders.moc"
