#include <recorder/service/spectrum.h>

#include <QByteArray>
#include <QTest>
#include <QtEndian>

#include <algorithm>
#include <cmath>
#include <cstring>
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
    void takesTheFirstChannelOnly();
    void overlooksNumbersThatAreNone();
    void knowsWhichFormatsHaveOne();
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
    Spectrum spectrum(samples, order, window, static_cast<std::size_t>(frames.size()) / length);
    QCOMPARE(spectrum.bytes(), static_cast<std::size_t>(frames.size()));
    const auto& levels = spectrum.levels(frames.constData());
    QCOMPARE(levels.size(), samples == SpectrumSamples::Real16 ? length / 2 : length);
    const std::size_t where = strongest(levels);
    QVERIFY2(std::abs(static_cast<int>(where) - expected) <= 0, qPrintable(QString::number(where)));
    QVERIFY2(std::abs(levels[where] + 20) < 0.2, qPrintable(QString::number(static_cast<double>(levels[where]))));
    const std::size_t far = (where + length / 4) % levels.size();
    QVERIFY(levels[far] < levels[where] - 30);
}

void TestSpectrum::seesSilence()
{
    const QByteArray frames(4 * length, '\0');
    Spectrum spectrum(SpectrumSamples::IQ16, order, SpectrumWindow::Hann, 4);
    const auto& levels = spectrum.levels(frames.constData());
    QVERIFY(std::all_of(levels.begin(), levels.end(), [](float level) { return level == Spectrum::lowestLevel; }));
}

void TestSpectrum::takesTheFirstChannelOnly()
{
    const QByteArray first = tone(SpectrumSamples::IQ16, 20, 0.1);
    const QByteArray second = tone(SpectrumSamples::IQ16, -50, 1);
    QByteArray frames;
    for (qsizetype i = 0; i < first.size(); i += 4) {
        frames += first.mid(i, 4) + second.mid(i, 4);
    }
    Spectrum spectrum(SpectrumSamples::IQ16, order, SpectrumWindow::Hann, 8);
    QCOMPARE(strongest(spectrum.levels(frames.constData())), length / 2 + 20);
}

void TestSpectrum::overlooksNumbersThatAreNone()
{
    QByteArray frames = tone(SpectrumSamples::IQFloat, 20, 0.1);
    constexpr quint32 notANumber = 0x7fc00000;
    qToLittleEndian(notANumber, frames.data() + 40);
    Spectrum spectrum(SpectrumSamples::IQFloat, order, SpectrumWindow::Hann, 8);
    const auto& levels = spectrum.levels(frames.constData());
    QVERIFY(std::all_of(levels.begin(), levels.end(), [](float level) { return std::isfinite(level); }));
    QCOMPARE(strongest(levels), length / 2 + 20);
}

void TestSpectrum::knowsWhichFormatsHaveOne()
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

QTEST_GUILESS_MAIN(TestSpectrum)
#include "tst_spectrum.moc"
