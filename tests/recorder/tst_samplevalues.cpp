#include <recorder/service/samplevalues.h>

#include <QByteArray>
#include <QTest>
#include <QtEndian>

#include <limits>
#include <vector>

using namespace ZelkoRecorder;

Q_DECLARE_METATYPE(ZelkoRecorder::SpectrumSamples)

namespace {

using Values = std::vector<std::complex<float>>;

template <typename Number>
QByteArray numbers(const QList<Number>& list)
{
    QByteArray bytes(list.size() * static_cast<qsizetype>(sizeof(Number)), '\0');
    qToLittleEndian<Number>(list.constData(), list.size(), bytes.data());
    return bytes;
}

} // namespace

Q_DECLARE_METATYPE(Values)

class TestSampleValues : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void readsSamples_data();
    void readsSamples();
    void takesTheFirstChannelOnly();
    void readsFramesWhereverTheyBegin();
    void knowsWhichFormatsHaveASpectrum();
};

void TestSampleValues::readsSamples_data()
{
    QTest::addColumn<SpectrumSamples>("samples");
    QTest::addColumn<QByteArray>("frames");
    QTest::addColumn<Values>("values");
    using S = SpectrumSamples;
    using Float = std::numeric_limits<float>;
    QTest::newRow("of 16 bits") << S::IQ16 << numbers<qint16>({16384, -32768, 0, 1})
                                << Values{{0.5F, -1}, {0, 1 / 32768.0F}};
    QTest::newRow("of 8 bits") << S::IQ8 << numbers<qint8>({64, -128, 0, 1}) << Values{{0.5F, -1}, {0, 1 / 128.0F}};
    QTest::newRow("that are real") << S::Real16 << numbers<qint16>({16384, -32768}) << Values{{0.5F, 0}, {-1, 0}};
    QTest::newRow("with a point") << S::IQFloat << numbers<float>({0.25F, -3, 0, 1e-30F})
                                  << Values{{0.25F, -3}, {0, 1e-30F}};
    QTest::newRow("that are no numbers") << S::IQFloat << numbers<float>({Float::quiet_NaN(), 1, Float::infinity(), 2})
                                         << Values{{0, 1}, {0, 2}};
    QTest::newRow("that are less than all numbers")
        << S::IQFloat << numbers<float>({-Float::infinity(), Float::max(), -Float::quiet_NaN(), Float::lowest()})
        << Values{{0, Float::max()}, {0, Float::lowest()}};
}

// Often enough that a compiler which takes several at once does so.
void TestSampleValues::readsSamples()
{
    QFETCH(SpectrumSamples, samples);
    QFETCH(QByteArray, frames);
    QFETCH(Values, values);
    constexpr std::size_t times = 11;
    const auto bytesPerFrame = static_cast<std::size_t>(frames.size()) / values.size();
    Values read(values.size() * times);
    SampleValues(samples, bytesPerFrame).read(frames.repeated(times).constData(), read.size(), read.data());
    for (std::size_t i = 0; i < read.size(); ++i) {
        QCOMPARE(read[i].real(), values[i % values.size()].real());
        QCOMPARE(read[i].imag(), values[i % values.size()].imag());
    }
}

void TestSampleValues::takesTheFirstChannelOnly()
{
    const QByteArray frames = numbers<qint16>({16384, 8192, 9, 9, -16384, -8192, 9, 9});
    Values read(2);
    SampleValues(SpectrumSamples::IQ16, 8).read(frames.constData(), read.size(), read.data());
    QVERIFY(read == Values({{0.5F, 0.25F}, {-0.5F, -0.25F}}));
}

void TestSampleValues::readsFramesWhereverTheyBegin()
{
    const QByteArray frames = "x" + numbers<float>({0.5F, 0.25F, -1, -2});
    Values read(2);
    SampleValues(SpectrumSamples::IQFloat, 8).read(frames.constData() + 1, read.size(), read.data());
    QVERIFY(read == Values({{0.5F, 0.25F}, {-1, -2}}));
}

void TestSampleValues::knowsWhichFormatsHaveASpectrum()
{
    using Format = ZELKO_XML::ZELKO_RecordData::DataFormat;
    QVERIFY(spectrumSamples(Format::IQ16) == SpectrumSamples::IQ16);
    QVERIFY(spectrumSamples(Format::IQ32) == SpectrumSamples::IQFloat);
    QVERIFY(spectrumSamples(Format::IQFloat) == SpectrumSamples::IQFloat);
    QVERIFY(spectrumSamples(Format::IQ8) == SpectrumSamples::IQ8);
    QVERIFY(spectrumSamples(Format::Real16) == SpectrumSamples::Real16);
    QVERIFY(spectrumSamples(Format::Audio16) == SpectrumSamples::Real16);
    QVERIFY(!spectrumSamples(Format::Text));
    QVERIFY(!spectrumSamples(Format::Symbols));
}

QTEST_GUILESS_MAIN(TestSampleValues)
#include "tst_samplevalues.moc"
