#include "programs.h"
#include "sigmfpair.h"

#include <QDir>
#include <QProcess>
#include <QTest>

namespace {

constexpr int patience = 240'000;

// One second of a signal.
bool writeCapture(const QString& stem)
{
    ZelkoTest::SigmfPair pair;
    pair.samples = QByteArray(4000, 'x');
    pair.addHash();
    return pair.write(stem);
}

struct Ending
{
    int exitCode;
    QString text;
};

Ending runDemo(const QTemporaryDir& folder, const QString& capture)
{
    QProcess demo;
    demo.setProcessChannelMode(QProcess::MergedChannels);
    demo.start(programPath("zelko-demo"), {QStringLiteral("--pictures"), folder.filePath(QStringLiteral("pictures")),
                                           QStringLiteral("--record"), capture});
    const bool ended = demo.waitForFinished(patience) && demo.exitStatus() == QProcess::NormalExit;
    return {ended ? demo.exitCode() : -1, QString::fromUtf8(demo.readAll())};
}

} // namespace

class TestZelkoDemo : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void seesTheCaptureThatItRecords()
    {
        const QTemporaryDir folder;
        const QString stem = folder.filePath(QStringLiteral("pass"));
        QVERIFY(writeCapture(stem));
        const Ending ending = runDemo(folder, stem + QLatin1String(".sigmf-data"));
        QVERIFY2(ending.exitCode == 0, qPrintable(ending.text));
        QCOMPARE(QDir(folder.filePath(QStringLiteral("pictures"))).entryList(QDir::Files),
                 QStringList({QStringLiteral("01-growing-record.png"), QStringLiteral("02-finished-records.png"),
                              QStringLiteral("03-recorder-killed.png"), QStringLiteral("04-restored-list.png"),
                              QStringLiteral("05-rename.png"), QStringLiteral("06-renamed.png"),
                              QStringLiteral("07-comments.png"), QStringLiteral("08-bookmarks.png"),
                              QStringLiteral("09-copy.png"), QStringLiteral("10-spectrum.png"),
                              QStringLiteral("11-not-deletable.png"), QStringLiteral("12-delete.png"),
                              QStringLiteral("13-deleted.png")}));
    }

    void refusesACaptureThatCannotBeRecorded()
    {
        const QTemporaryDir folder;
        const QString stem = folder.filePath(QStringLiteral("pass"));
        QVERIFY(writeCapture(stem));
        QVERIFY(ZelkoTest::writeFile(stem + QLatin1String(".sigmf-data"), QByteArray(4000, 'y')));
        const Ending ending = runDemo(folder, stem + QLatin1String(".sigmf-meta"));
        QCOMPARE(ending.exitCode, 1);
        QVERIFY2(ending.text.contains(QStringLiteral("SHA-512")), qPrintable(ending.text));
    }
};

QTEST_GUILESS_MAIN(TestZelkoDemo)
#include "tst_zelkodemo.moc"
