#include <recorder/source/regularfile.h>

#include <sigmfpair.h>

#include <QTemporaryDir>
#include <QTest>

#include <sys/stat.h>

using namespace ZelkoRecorder;
using namespace ZelkoTest;

class TestRegularFile : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void opensAFileUnderItsName();
    void followsALinkToAFile();
    void refusesWhatIsNoRegularFile_data();
    void refusesWhatIsNoRegularFile();

private:
    QTemporaryDir m_folder;
    QString m_error;
};

void TestRegularFile::opensAFileUnderItsName()
{
    const QString path = m_folder.filePath(QStringLiteral("file"));
    QVERIFY(writeFile(path, "some bytes"));
    const auto file = openRegularFile(path, &m_error);
    QVERIFY2(file, qPrintable(m_error));
    QCOMPARE(file->fileName(), path);
    QCOMPARE(file->size(), 10);
    QCOMPARE(file->readAll(), QByteArray("some bytes"));
    QVERIFY(file->seek(5));
    QCOMPARE(file->readAll(), QByteArray("bytes"));
}

void TestRegularFile::followsALinkToAFile()
{
    const QString path = m_folder.filePath(QStringLiteral("target"));
    QVERIFY(writeFile(path, "x"));
    QVERIFY(QFile::link(path, m_folder.filePath(QStringLiteral("link"))));
    const auto file = openRegularFile(m_folder.filePath(QStringLiteral("link")), &m_error);
    QVERIFY2(file, qPrintable(m_error));
    QCOMPARE(file->readAll(), QByteArray("x"));
}

void TestRegularFile::refusesWhatIsNoRegularFile_data()
{
    QTest::addColumn<QString>("path");
    QTest::addColumn<QString>("because");
    const QString pipe = m_folder.filePath(QStringLiteral("pipe"));
    QCOMPARE(mkfifo(QFile::encodeName(pipe).constData(), 0600), 0);
    const QString link = m_folder.filePath(QStringLiteral("link to a pipe"));
    QVERIFY(QFile::link(pipe, link));
    QTest::newRow("a pipe") << pipe << "is not a file";
    QTest::newRow("a link to a pipe") << link << "is not a file";
    QTest::newRow("a folder") << m_folder.path() << "is not a file";
    QTest::newRow("a device") << "/dev/zero"
                              << "is not a file";
    QTest::newRow("nothing") << m_folder.filePath(QStringLiteral("nothing")) << "cannot be read";
    QTest::newRow("no name") << QString() << "cannot be read";
}

void TestRegularFile::refusesWhatIsNoRegularFile()
{
    QFETCH(const QString, path);
    QFETCH(const QString, because);
    QVERIFY(!openRegularFile(path, &m_error));
    QVERIFY2(m_error.contains(because), qPrintable(m_error));
}

QTEST_APPLESS_MAIN(TestRegularFile)
#include "tst_regularfile.moc"
