#include <recorder/store/bytetransfer.h>

#include <filesizelimit.h>
#include <samplebytes.h>
#include <storedrecord.h>

#include <QTemporaryDir>
#include <QTest>

using namespace ZelkoRecorder;
using namespace ZelkoTest;

namespace {

constexpr qsizetype sourceBytes = 3'500'000; // some parts and a piece of one

} // namespace

class TestByteTransfer : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void movesBytes_data();
    void movesBytes();
    void appendsOnePieceBehindTheOther();
    void tellsHowFarItIs();
    void givesUpWhenToldSo();
    void noticesASourceThatIsTooShort();
    void noticesAFullDisk();
    void knowsWhetherThereIsRoom();

private:
    std::unique_ptr<QTemporaryDir> m_folder;
    QByteArray m_bytes;
    QFile m_source;
    QFile m_target;
};

void TestByteTransfer::init()
{
    m_source.close();
    m_target.close();
    m_folder = std::make_unique<QTemporaryDir>();
    m_bytes = sampleBytes(sourceBytes);
    m_source.setFileName(m_folder->filePath(QStringLiteral("source")));
    m_target.setFileName(m_folder->filePath(QStringLiteral("target")));
    QVERIFY(writeBytes(m_source.fileName(), m_bytes));
    QVERIFY(m_source.open(QIODevice::ReadOnly));
    QVERIFY(m_target.open(QIODevice::WriteOnly | QIODevice::Unbuffered));
}

void TestByteTransfer::movesBytes_data()
{
    QTest::addColumn<quint64>("offset");
    QTest::addColumn<quint64>("size");
    QTest::newRow("all of them") << quint64{0} << quint64{sourceBytes};
    QTest::newRow("none") << quint64{5} << quint64{0};
    QTest::newRow("one from the middle") << quint64{2'000'000} << quint64{1};
    QTest::newRow("exactly one part") << quint64{1} << quint64{1024 * 1024};
    QTest::newRow("up to the last") << quint64{100} << quint64{sourceBytes - 100};
}

void TestByteTransfer::movesBytes()
{
    QFETCH(const quint64, offset);
    QFETCH(const quint64, size);
    ByteTransfer transfer;
    QCOMPARE(transfer.append(m_source, offset, size, m_target), StoreStatus::Done);
    QVERIFY(ByteTransfer::flush(m_target));
    QCOMPARE(transfer.moved(), size);
    QVERIFY(readBytes(m_target.fileName()) ==
            m_bytes.mid(static_cast<qsizetype>(offset), static_cast<qsizetype>(size)));
}

void TestByteTransfer::appendsOnePieceBehindTheOther()
{
    ByteTransfer transfer;
    QCOMPARE(transfer.append(m_source, 3'000'000, 10, m_target), StoreStatus::Done);
    QCOMPARE(transfer.append(m_source, 0, 5, m_target), StoreStatus::Done);
    QCOMPARE(readBytes(m_target.fileName()), m_bytes.mid(3'000'000, 10) + m_bytes.left(5));
    QCOMPARE(transfer.moved(), quint64{15});
}

void TestByteTransfer::tellsHowFarItIs()
{
    QList<quint64> told;
    ByteTransfer transfer([&told](quint64 moved) {
        told.append(moved);
        return true;
    });
    QCOMPARE(transfer.append(m_source, 0, 2'100'000, m_target), StoreStatus::Done);
    QCOMPARE(told, (QList<quint64>{0, 1'048'576, 2'097'152, 2'100'000}));
}

void TestByteTransfer::givesUpWhenToldSo()
{
    ByteTransfer transfer([](quint64 moved) { return moved < 2'000'000; });
    QCOMPARE(transfer.append(m_source, 0, sourceBytes, m_target), StoreStatus::Cancelled);
    QCOMPARE(transfer.moved(), quint64{2'097'152});
    QVERIFY(readBytes(m_target.fileName()) == m_bytes.left(2'097'152));
}

void TestByteTransfer::noticesASourceThatIsTooShort()
{
    ByteTransfer transfer;
    QCOMPARE(transfer.append(m_source, 1, sourceBytes, m_target), StoreStatus::Damaged);
    QCOMPARE(transfer.append(m_source, ~quint64{0}, 1, m_target), StoreStatus::Damaged);
}

void TestByteTransfer::noticesAFullDisk()
{
    const FileSizeLimit limit(1'500'000);
    ByteTransfer transfer;
    QCOMPARE(transfer.append(m_source, 0, sourceBytes, m_target), StoreStatus::NoSpace);
}

void TestByteTransfer::knowsWhetherThereIsRoom()
{
    QVERIFY(ByteTransfer::hasRoomFor(1, m_folder->path()));
    QVERIFY(!ByteTransfer::hasRoomFor(quint64{1} << 60, m_folder->path()));
    QVERIFY(!ByteTransfer::hasRoomFor(~quint64{0}, m_folder->path()));
    QVERIFY(!ByteTransfer::hasRoomFor(1, m_folder->filePath(QStringLiteral("nowhere"))));
}

QTEST_GUILESS_MAIN(TestByteTransfer)
#include "tst_bytetransfer.moc"
