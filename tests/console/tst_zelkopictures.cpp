#include "programs.h"

#include <QDir>
#include <QProcess>
#include <QTemporaryDir>
#include <QTest>

namespace {

constexpr int patience = 60'000;
constexpr int wrongUsage = 2;

struct Ending
{
    int exitCode;
    QString text;
};

Ending runPictures(const QTemporaryDir& folder, const QStringList& arguments)
{
    QProcess pictures;
    pictures.setProcessChannelMode(QProcess::MergedChannels);
    pictures.setWorkingDirectory(folder.path());
    pictures.start(programPath("zelko-pictures"), arguments);
    const bool ended = pictures.waitForFinished(patience) && pictures.exitStatus() == QProcess::NormalExit;
    return {ended ? pictures.exitCode() : -1, QString::fromUtf8(pictures.readAll())};
}

} // namespace

class TestZelkoPictures : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void paintsNothingThatItIsNotAskedFor_data()
    {
        QTest::addColumn<QStringList>("arguments");
        QTest::addColumn<int>("exitCode");
        QTest::addColumn<QString>("text");
        const QString usage = QStringLiteral("DIR [NAME]");
        QTest::newRow("asked how to use it") << QStringList{"--help"} << 0 << usage;
        QTest::newRow("without a folder") << QStringList() << wrongUsage << usage;
        QTest::newRow("too much") << QStringList{"a", "replay", "b"} << wrongUsage << usage;
        QTest::newRow("an option for a folder") << QStringList{"--pictures"} << wrongUsage << usage;
        QTest::newRow("an option for a name") << QStringList{"a", "-replay"} << wrongUsage << usage;
        QTest::newRow("a name that is none") << QStringList{"a", "nothing"} << wrongUsage << QStringLiteral("nothing");
    }

    void paintsNothingThatItIsNotAskedFor()
    {
        QFETCH(QStringList, arguments);
        QFETCH(QString, text);
        const QTemporaryDir folder;
        const Ending ending = runPictures(folder, arguments);
        QTEST(ending.exitCode, "exitCode");
        QVERIFY2(ending.text.contains(text), qPrintable(ending.text));
        QCOMPARE(QDir(folder.path()).entryList(QDir::AllEntries | QDir::NoDotAndDotDot), QStringList());
    }
};

QTEST_GUILESS_MAIN(TestZelkoPictures)
#include "tst_zelkopictures.moc"
