#include <recorder/service/samplefile.h>

#include <storedrecord.h>

#include <QTemporaryDir>
#include <QTest>
#include <QtEndian>

using namespace ZelkoRecorder;
using namespace ZelkoTest;

namespace {

constexpr std::size_t bytesPerFrame = 4;
constexpr std::size_t frameCount = 100'000; // several blocks, the last of which is not full

// Frame i has the two halves of the number i, which tell frames apart.
QByteArray countingFrames()
{
    QByteArray bytes(frameCount * bytesPerFrame, '\0');
    for (quint32 i = 0; i < frameCount; ++i) {
        qToLittleEndian(i, bytes.data() + i * bytesPerFrame);
    }
    return bytes;
}

quint32 frameOf(std::complex<float> value)
{
    const auto low = static_cast<quint16>(static_cast<qint16>(value.real() * 32768));
    const auto high = static_cast<quint16>(static_cast<qint16>(value.imag() * 32768));
    return low | static_cast<quint32>(high) << 16;
}

} // namespace

class TestSampleFile : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void init();
    void readsWhateverIsAskedFor_data();
    void readsWhateverIsAskedFor();
    void hasNothingBehindItsEnd();
    void readsWhatHasGrown();
    void stopsBeforeTheNextBlock();
    void keepsWhatItHasReadWhenStopped();
    void readsFramesThatAreLargerThanABlock();
    void hasNothingWithoutAFile();

private:
    bool hasFrames(std::size_t first, std::size_t count);

    QTemporaryDir m_folder;
    std::unique_ptr<SampleFile> m_file;
};

void TestSampleFile::initTestCase()
{
    QVERIFY(writeBytes(m_folder.filePath("samples"), countingFrames()));
}

void TestSampleFile::init()
{
    m_file =
        std::make_unique<SampleFile>(m_folder.filePath("samples"), SampleValues(SpectrumSamples::IQ16, bytesPerFrame));
    QVERIFY(m_file->open());
    QCOMPARE(m_file->size(), quint64{frameCount * bytesPerFrame});
}

bool TestSampleFile::hasFrames(std::size_t first, std::size_t count)
{
    const auto* const values = m_file->values(first * bytesPerFrame, count);
    for (std::size_t i = 0; values != nullptr && i < count; ++i) {
        if (frameOf(values[i]) != first + i) {
            return false;
        }
    }
    return values != nullptr;
}

void TestSampleFile::readsWhateverIsAskedFor_data()
{
    using Ranges = QList<std::pair<std::size_t, std::size_t>>;
    QTest::addColumn<Ranges>("ranges");
    QTest::newRow("all at once") << Ranges{{0, frameCount}};
    QTest::newRow("frame by frame") << Ranges{{0, 1}, {1, 1}, {2, 1}};
    QTest::newRow("what overlaps") << Ranges{{10, 40'000}, {20'010, 40'000}, {40'010, 40'000}};
    QTest::newRow("what does not follow") << Ranges{{5, 100}, {90'000, 100}, {50'000, 5}};
    QTest::newRow("the same again") << Ranges{{5, 100}, {5, 100}, {5, 90'000}, {5, 10}};
    QTest::newRow("what came before") << Ranges{{70'000, 100}, {69'999, 100}, {0, 100}};
    QTest::newRow("what lies across blocks") << Ranges{{32'767, 2}, {65'535, 2}, {98'303, 2}};
    QTest::newRow("the very last") << Ranges{{frameCount - 1, 1}};
}

void TestSampleFile::readsWhateverIsAskedFor()
{
    using Ranges = QList<std::pair<std::size_t, std::size_t>>;
    QFETCH(const Ranges, ranges);
    for (const auto& [first, count] : ranges) {
        QVERIFY(hasFrames(first, count));
    }
}

void TestSampleFile::hasNothingBehindItsEnd()
{
    QVERIFY(!hasFrames(frameCount - 1, 2));
    QVERIFY(!hasFrames(frameCount, 1));
    QVERIFY(!hasFrames(2 * frameCount, 1));
    QVERIFY(hasFrames(frameCount - 2, 2)); // it works on
}

// A record that is being recorded: half a frame is none as yet.
void TestSampleFile::readsWhatHasGrown()
{
    const QString path = m_folder.filePath("growing");
    QVERIFY(writeBytes(path, countingFrames().left(10 * bytesPerFrame + 3)));
    m_file = std::make_unique<SampleFile>(path, SampleValues(SpectrumSamples::IQ16, bytesPerFrame));
    QVERIFY(m_file->open());
    QVERIFY(hasFrames(0, 10));
    QVERIFY(!hasFrames(0, 11));
    QVERIFY(writeBytes(path, countingFrames()));
    QVERIFY(hasFrames(0, 11));
    QVERIFY(hasFrames(5, 50'000));
}

void TestSampleFile::stopsBeforeTheNextBlock()
{
    std::stop_source source;
    QVERIFY(m_file->values(0, 10, source.get_token()) != nullptr);
    source.request_stop();
    QVERIFY(m_file->values(0, frameCount, source.get_token()) == nullptr);
}

void TestSampleFile::keepsWhatItHasReadWhenStopped()
{
    std::stop_source source;
    source.request_stop();
    QVERIFY(m_file->values(0, 10, source.get_token()) == nullptr);
    QVERIFY(hasFrames(0, frameCount));
}

void TestSampleFile::readsFramesThatAreLargerThanABlock()
{
    constexpr std::size_t large = SampleFile::blockSize + 4;
    QByteArray bytes(3 * large, '\0');
    for (quint32 i = 0; i < 3; ++i) {
        qToLittleEndian(i, bytes.data() + i * large);
    }
    QVERIFY(writeBytes(m_folder.filePath("large"), bytes));
    SampleFile file(m_folder.filePath("large"), SampleValues(SpectrumSamples::IQ16, large));
    QVERIFY(file.open());
    const auto* const values = file.values(large, 2);
    QVERIFY(values != nullptr);
    QCOMPARE(frameOf(values[0]), 1U);
    QCOMPARE(frameOf(values[1]), 2U);
}

void TestSampleFile::hasNothingWithoutAFile()
{
    SampleFile file(m_folder.filePath("none"), SampleValues(SpectrumSamples::IQ16, bytesPerFrame));
    QVERIFY(!file.open());
}

QTEST_GUILESS_MAIN(TestSampleFile)
#include "tst_samplefile.moc"
