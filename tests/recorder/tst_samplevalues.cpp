#include <recorder/service/samplevalues.h>

#include <QByteArray>
#include <QTest>
#include <QtEndian>

#include <limits>
#include <vector>

using namespace ZelkoRecorder;

Q_DECLARE_METATYPE(ZelkoRecorder::SpectrumSamples)

namespace {

using Numbers = QList<float>;

template <typename Number>
QByteArray bytes(const QList<Number>& list)
{
    QByteArray bytes(list.size() * static_cast<qsizetype>(sizeof(Number)), '\0');
    qToLittleEndian<Number>(list.constData(), list.size(), bytes.data());
    return bytes;
}

// As many as there are weights.
Numbers read(SpectrumSamples samples, const char* bytes, const std::vector<float>& weights)
{
    Numbers numbers(static_cast<qsizetype>(weights.size()));
    readWeighted(samples, bytes, weights, numbers.data());
    return numbers;
}

} // namespace

class TestSampleValues : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void readsNumbers_data();
    void readsNumbers();
    void multipliesEachWithItsWeight();
    void readsWhereverTheyBegin();
    void knowsHowSamplesLookLike_data();
    void knowsHowSamplesLookLike();
    void knowsWhichFormatsHaveASpectrum();
};

void TestSampleValues::readsNumbers_data()
{
    QTest::addColumn<SpectrumSamples>("samples");
    QTest::addColumn<QByteArray>("written");
    QTest::addColumn<Numbers>("numbers");
    using S = SpectrumSamples;
    using Float = std::numeric_limits<float>;
    QTest::newRow("of 16 bits") << S::IQ16 << bytes<qint16>({16384, -32768, 0, 1}) << Numbers{16384, -32768, 0, 1};
    QTest::newRow("of 8 bits") << S::IQ8 << bytes<qint8>({64, -128, 0, 1}) << Numbers{64, -128, 0, 1};
    QTest::newRow("that are real") << S::Real16 << bytes<qint16>({16384, -32768}) << Numbers{16384, -32768};
    QTest::newRow("with a point") << S::IQFloat << bytes<float>({0.25F, -3, 0, 1e-30F})
                                  << Numbers{0.25F, -3, 0, 1e-30F};
    QTest::newRow("that are none") << S::IQFloat << bytes<float>({Float::quiet_NaN(), 1, Float::infinity(), 2})
                                   << Numbers{0, 1, 0, 2};
    QTest::newRow("that are less than all")
        << S::IQFloat << bytes<float>({-Float::infinity(), Float::max()}) << Numbers{0, Float::max()};
}

// Often enough that a compiler which takes several at once does so, and some more.
void TestSampleValues::readsNumbers()
{
    QFETCH(const SpectrumSamples, samples);
    QFETCH(const QByteArray, written);
    QFETCH(const Numbers, numbers);
    constexpr qsizetype times = 11;
    const std::vector<float> weights(static_cast<std::size_t>(numbers.size() * times), 1);
    const Numbers all = read(samples, written.repeated(times).constData(), weights);
    for (qsizetype i = 0; i < all.size(); ++i) {
        QCOMPARE(all.at(i), numbers.at(i % numbers.size()));
    }
}

void TestSampleValues::multipliesEachWithItsWeight()
{
    const QByteArray written = bytes<qint16>({10, 20, 30, -40});
    QCOMPARE(read(SpectrumSamples::IQ16, written.constData(), {1, 0.5F, 0, 2}), Numbers({10, 10, 0, -80}));
}

void TestSampleValues::readsWhereverTheyBegin()
{
    const QByteArray written = "x" + bytes<float>({0.5F, 0.25F, -1, -2});
    QCOMPARE(read(SpectrumSamples::IQFloat, written.constData() + 1, {1, 1, 1, 1}), Numbers({0.5F, 0.25F, -1, -2}));
}

void TestSampleValues::knowsHowSamplesLookLike_data()
{
    QTest::addColumn<SpectrumSamples>("samples");
    QTest::addColumn<std::size_t>("bytes");
    QTest::addColumn<std::size_t>("numbers");
    QTest::addColumn<float>("greatest");
    using S = SpectrumSamples;
    QTest::newRow("IQ of 16 bits") << S::IQ16 << std::size_t{4} << std::size_t{2} << 32768.0F;
    QTest::newRow("IQ of 8 bits") << S::IQ8 << std::size_t{2} << std::size_t{2} << 128.0F;
    QTest::newRow("real ones of 16 bits") << S::Real16 << std::size_t{2} << std::size_t{1} << 32768.0F;
    QTest::newRow("IQ with a point") << S::IQFloat << std::size_t{8} << std::size_t{2} << 1.0F;
}

void TestSampleValues::knowsHowSamplesLookLike()
{
    QFETCH(const SpectrumSamples, samples);
    QTEST(bytesOf(samples), "bytes");
    QTEST(numbersOf(samples), "numbers");
    QTEST(fullScale(samples), "greatest");
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
