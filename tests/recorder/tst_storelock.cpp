#include <recorder/store/storelock.h>

#include <storedrecord.h>

#include <QTemporaryDir>
#include <QTest>

using namespace ZelkoRecorder;

class TestStoreLock : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void keepsOthersOutUntilItEnds();
    void refusesAFolderThatCannotBe();
};

void TestStoreLock::keepsOthersOutUntilItEnds()
{
    const QTemporaryDir folder;
    const QString store = folder.filePath(QStringLiteral("store"));
    QString error;
    auto first = std::make_unique<StoreLock>();
    QVERIFY2(first->acquire(store, &error), qPrintable(error));
    StoreLock second;
    QVERIFY(!second.acquire(store, &error));
    QVERIFY(error.contains(store));
    first.reset();
    StoreLock third;
    QVERIFY(third.acquire(store, &error));
}

void TestStoreLock::refusesAFolderThatCannotBe()
{
    const QTemporaryDir folder;
    QVERIFY(ZelkoTest::writeBytes(folder.filePath(QStringLiteral("file")), "x"));
    StoreLock lock;
    QString error;
    QVERIFY(!lock.acquire(folder.filePath(QStringLiteral("file/store")), &error));
    QVERIFY(!error.isEmpty());
}

QTEST_GUILESS_MAIN(TestStoreLock)
#include "tst_storelock.moc"
