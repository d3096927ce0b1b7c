#include "patience.h"
#include "recorderstart.h"

#include <console/session/storefolder.h>

#include <QFile>
#include <QTest>

using namespace ZelkoConsole;

namespace {} // namespace

class TestStoreFolder : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void takesTheFolderThatIsAskedFor()
    {
        const QTemporaryDir folder;
        const QString wanted = folder.filePath(QStringLiteral("above/store"));
        const StoreFolder store(wanted);
        QCOMPARE(store.path(), wanted);
    }

    void takesAnotherOneBesideAConsoleThatRuns()
    {
        const QTemporaryDir folder;
        const QString wanted = folder.filePath(QStringLiteral("store"));
        auto first = std::make_unique<StoreFolder>(wanted);
        const StoreFolder second(wanted);
        const StoreFolder third(wanted);
        QCOMPARE(second.path(), wanted + QLatin1String("-2"));
        QCOMPARE(third.path(), wanted + QLatin1String("-3"));
        first.reset();
        const StoreFolder next(wanted);
        QCOMPARE(next.path(), wanted);
    }

    void takesTheFolderOfAConsoleThatWasKilled()
    {
        const QTemporaryDir folder;
        const QString wanted = folder.filePath(QStringLiteral("store"));
        QFile lock(wanted + QLatin1String(".lock"));
        QVERIFY(lock.open(QIODevice::WriteOnly));
        constexpr int noProcess = 0x7ffffffe; // beyond the largest ID that a process can have
        QVERIFY(lock.write(QByteArray::number(noProcess) + "\nzelko-console\n" + QSysInfo::machineHostName().toUtf8() +
                           "\n") > 0);
        lock.close();
        QCOMPARE(StoreFolder(wanted).path(), wanted);
    }

    void takesTheFolderAsItIsWhereNoLockCanBeKept()
    {
        QCOMPARE(StoreFolder(QStringLiteral("/proc/nothing/store")).path(), QStringLiteral("/proc/nothing/store"));
    }

    void letsTwoRecordersServeSideBySide()
    {
        const QTemporaryDir folder;
        auto options = recorderStart(folder);
        const StoreFolder first(options.storeFolder);
        const StoreFolder second(options.storeFolder);
        options.storeFolder = first.path();
        EmbeddedRecorder recorder(options);
        options.storeFolder = second.path();
        EmbeddedRecorder beside(options);
        recorder.start();
        beside.start();
        QTRY_COMPARE_WITH_TIMEOUT(recorder.state(), EmbeddedRecorder::State::Running, patience);
        QTRY_COMPARE_WITH_TIMEOUT(beside.state(), EmbeddedRecorder::State::Running, patience);
    }
};

QTEST_GUILESS_MAIN(TestStoreFolder)
#include "tst_storefolder.moc"
