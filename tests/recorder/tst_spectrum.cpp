#include <recorder/service/samplevalues.h>
#include <recorder/service/spectrum.h>

#include <QByteArray>
#include <QTest>
#include <QtEndian>

#include <algorithm>
#include <cmath>
#include <complex>
#include <limits>
#include <numbers>

using namespace ZelkoRecorder;

namespace {

constexpr int order = 8;
constexpr std::size_t length = std::size_t{1} << order;

// Frames of a tone in bin `bin` at `amplitude` of full scale.
QByteArray tone(SpectrumSamples samples, int bin, double amplitude)
{
    QByteArray bytes;
    for (std::size_t i = 0; i < length; ++i) {
        const double phase = 2 * std::numbers::pi * bin * static_cast<double>(i) / static_cast<double>(length);
        const double parts[] = {amplitude * std::cos(phase), amplitude * std::sin(phase)};
        for (int part = 0; part < (samples == SpectrumSamples::Real16 ? 1 : 2); ++part) {
            char number[4];
            if (samples == SpectrumSamples::IQFloat) {
                qToLittleEndian(static_cast<float>(parts[part]), number);
                bytes.append(number, 4);
            } else if (samples == SpectrumSamples::IQ8) {
                bytes.append(static_cast<char>(std::lround(parts[part] * 127)));
            } else {
                qToLittleEndian(static_cast<qint16>(std::lround(parts[part] * 32767)), number);
                bytes.append(number, 2);
            }
        }
    }
    return bytes;
}

using Values = std::vector<std::complex<float>>;

// `count` values from the middle of a signal that is silent but for a tone in bin 20 at full scale, which lasts from
// `first` on for `duration` of them.
Values burst(std::size_t count, std::size_t first, std::size_t duration)
{
    Values values(count);
    for (std::size_t i = first; i < first + duration; ++i) {
        const double phase = 2 * std::numbers::pi * 20 * static_cast<double>(i) / static_cast<double>(length);
        values[i] = {static_cast<float>(std::cos(phase)), static_cast<float>(std::sin(phase))};
    }
    return values;
}

std::size_t strongest(const std::vector<float>& levels)
{
    return static_cast<std::size_t>(std::max_element(levels.begin(), levels.end()) - levels.begin());
}

} // namespace

Q_DECLARE_METATYPE(ZelkoRecorder::SpectrumSamples)
Q_DECLARE_METATYPE(ZelkoRecorder::SpectrumWindow)

class TestSpectrum : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void findsATone_data();
    void findsATone();
    void seesSilence();
    void keepsTheStrongestOfEachBin();
    void overlooksPowersThatAreNone();
    void seesShortBurstsWhereverTheyAre_data();
    void seesShortBurstsWhereverTheyAre();
};

void TestSpectrum::findsATone_data()
{
    QTest::addColumn<SpectrumSamples>("samples");
    QTest::addColumn<SpectrumWindow>("window");
    QTest::addColumn<int>("bin");
    QTest::addColumn<int>("expected");
    using S = SpectrumSamples;
    using W = SpectrumWindow;
    constexpr int half = length / 2;
    QTest::newRow("above the centre") << S::IQ16 << W::Hann << 20 << half + 20;
    QTest::newRow("below the centre") << S::IQ16 << W::Hann << -20 << half - 20;
    QTest::newRow("at the centre") << S::IQ16 << W::Rectangular << 0 << half;
    QTest::newRow("at the lower end") << S::IQ16 << W::Rectangular << -half << 0;
    QTest::newRow("through a Hamming window") << S::IQ16 << W::Hamming << 7 << half + 7;
    QTest::newRow("through a Blackman window") << S::IQ16 << W::Blackman << 7 << half + 7;
    QTest::newRow("through a flat top window") << S::IQ16 << W::FlatTop << 7 << half + 7;
    QTest::newRow("in 8 bits") << S::IQ8 << W::Hann << 20 << half + 20;
    QTest::newRow("in numbers with a point") << S::IQFloat << W::Hann << 20 << half + 20;
    QTest::newRow("in real samples") << S::Real16 << W::Hann << 20 << 20;
}

// A tone at a tenth of full scale has -20 dB, whatever it is seen through.
void TestSpectrum::findsATone()
{
    QFETCH(SpectrumSamples, samples);
    QFETCH(SpectrumWindow, window);
    QFETCH(int, bin);
    QFETCH(int, expected);
    const QByteArray frames = tone(samples, bin, 0.1);
    const SampleValues format(samples, static_cast<std::size_t>(frames.size()) / length);
    Values values(length);
    format.read(frames.constData(), length, values.data());
    Spectrum spectrum(samples == SpectrumSamples::Real16 ? Spectrum::Kind::Real : Spectrum::Kind::Complex, order,
                      window);
    QCOMPARE(spectrum.length(), length);
    spectrum.clear();
    spectrum.add(values.data());
    const auto& levels = spectrum.levels();
    QCOMPARE(levels.size(), samples == SpectrumSamples::Real16 ? length / 2 : length);
    QCOMPARE(levels.size(), spectrum.bins());
    const std::size_t where = strongest(levels);
    QVERIFY2(std::abs(static_cast<int>(where) - expected) <= 0, qPrintable(QString::number(where)));
    QVERIFY2(std::abs(levels[where] + 20) < 0.2, qPrintable(QString::number(static_cast<double>(levels[where]))));
    const std::size_t far = (where + length / 4) % levels.size();
    QVERIFY(levels[far] < levels[where] - 30);
}

void TestSpectrum::seesSilence()
{
    Spectrum spectrum(Spectrum::Kind::Complex, order, SpectrumWindow::Hann);
    const auto isSilent = [&] {
        const auto& levels = spectrum.levels();
        return std::all_of(levels.begin(), levels.end(), [](float level) { return level == Spectrum::lowestLevel; });
    };
    spectrum.clear();
    QVERIFY(isSilent());
    spectrum.add(Values(length).data());
    QVERIFY(isSilent());
}

void TestSpectrum::keepsTheStrongestOfEachBin()
{
    constexpr std::size_t half = length / 2;
    Spectrum spectrum(Spectrum::Kind::Complex, order, SpectrumWindow::Rectangular);
    Values quiet = burst(length, 0, length);
    for (auto& value : quiet) {
        value *= 0.1F;
    }
    const Values constant(length, 0.01F);
    spectrum.clear();
    for (const Values& values : {quiet, burst(length, 0, length), quiet, constant}) {
        spectrum.add(values.data());
    }
    QVERIFY(std::abs(spectrum.levels()[half + 20]) < 0.1F);
    QVERIFY(std::abs(spectrum.levels()[half] + 40) < 0.1F);
    spectrum.clear(); // whatever was heard before is forgotten
    spectrum.add(constant.data());
    QVERIFY(spectrum.levels()[half + 20] < -100);
    QVERIFY(std::abs(spectrum.levels()[half] + 40) < 0.1F);
}

// Numbers whose squares no number can hold.
void TestSpectrum::overlooksPowersThatAreNone()
{
    Spectrum spectrum(Spectrum::Kind::Complex, order, SpectrumWindow::Hann);
    Values huge(length, std::numeric_limits<float>::max());
    huge[7] = -std::numeric_limits<float>::max();
    spectrum.clear();
    spectrum.add(huge.data());
    spectrum.add(burst(length, 0, length).data());
    for (const float level : spectrum.levels()) {
        QVERIFY(!std::isnan(level));
    }
}

void TestSpectrum::seesShortBurstsWhereverTheyAre_data()
{
    QTest::addColumn<SpectrumWindow>("window");
    QTest::newRow("without a window") << SpectrumWindow::Rectangular;
    QTest::newRow("through a Hann window") << SpectrumWindow::Hann;
    QTest::newRow("through a Hamming window") << SpectrumWindow::Hamming;
    QTest::newRow("through a Blackman window") << SpectrumWindow::Blackman;
    QTest::newRow("through a flat top window") << SpectrumWindow::FlatTop;
}

// A tone at full scale that lasts for a quarter of a spectrum has -12 dB where all of a spectrum counts the same.
void TestSpectrum::seesShortBurstsWhereverTheyAre()
{
    QFETCH(SpectrumWindow, window);
    constexpr std::size_t count = 4 * length;
    Spectrum spectrum(Spectrum::Kind::Complex, order, window);
    for (std::size_t first = length; first < 2 * length; first += length / 16) {
        const Values values = burst(count, first, length / 4);
        spectrum.clear();
        for (std::size_t at = 0; at + length <= count; at += spectrum.step()) {
            spectrum.add(values.data() + at);
        }
        const float level = spectrum.levels()[length / 2 + 20];
        QVERIFY2(level > -27, qPrintable(QStringLiteral("%1 dB at %2").arg(level).arg(first)));
    }
}

QTEST_GUILESS_MAIN(TestSpectrum)
#include "tst_spectrum.moc"
