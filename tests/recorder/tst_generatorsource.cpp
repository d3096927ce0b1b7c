#include <recorder/source/generatorsource.h>

#include <QTest>
#include <QtEndian>

#include <cmath>
#include <complex>
#include <numbers>

using namespace ZelkoRecorder;
using Samples = QVector<std::complex<double>>;

namespace {

GeneratorParameters parsed(const QString& text)
{
    QString error;
    const auto parameters = GeneratorParameters::parse(text, &error);
    if (!parameters) {
        qFatal("%s", qPrintable(error));
    }
    return *parameters;
}

QByteArray bytesOf(SignalSource& source, qint64 frames)
{
    const int size = source.description().format.bytesPerFrame();
    QByteArray bytes(frames * size, '\0');
    bytes.truncate(source.read(bytes.data(), frames) * size);
    return bytes;
}

QByteArray bytesOf(const QString& text, qint64 frames)
{
    GeneratorSource source(parsed(text));
    return bytesOf(source, frames);
}

/// The samples with full scale as 1.
Samples samplesOf(const QString& text, qint64 frames)
{
    const QByteArray bytes = bytesOf(text, frames);
    Samples samples;
    for (qsizetype at = 0; at < bytes.size(); at += 4) {
        const auto i = qFromLittleEndian<qint16>(bytes.constData() + at);
        const auto q = qFromLittleEndian<qint16>(bytes.constData() + at + 2);
        samples.append(std::complex<double>(i / 32767.0, q / 32767.0));
    }
    return samples;
}

/// One line of the discrete Fourier transform, at any frequency: a lone carrier there gives its amplitude.
std::complex<double> line(const Samples& samples, double frequency, double rate)
{
    std::complex<double> sum;
    for (qsizetype n = 0; n < samples.size(); ++n) {
        const double angle = -2 * std::numbers::pi * std::fmod(frequency / rate * static_cast<double>(n), 1.0);
        sum += samples[n] * std::polar(1.0, angle);
    }
    return sum / static_cast<double>(samples.size());
}

double decibel(double power)
{
    return 10 * std::log10(power);
}

double powerOf(const Samples& samples)
{
    double sum = 0;
    for (const std::complex<double>& sample : samples) {
        sum += std::norm(sample);
    }
    return sum / static_cast<double>(samples.size());
}

/// What is left when the carrier at `frequency` is taken out.
Samples withoutLine(Samples samples, double frequency, double rate)
{
    const std::complex<double> found = line(samples, frequency, rate);
    for (qsizetype n = 0; n < samples.size(); ++n) {
        const double angle = 2 * std::numbers::pi * std::fmod(frequency / rate * static_cast<double>(n), 1.0);
        samples[n] -= found * std::polar(1.0, angle);
    }
    return samples;
}

/// Frequency from each sample to the next, in Hz.
QVector<double> momentaryFrequencies(const Samples& samples, double rate)
{
    QVector<double> frequencies;
    for (qsizetype n = 1; n < samples.size(); ++n) {
        frequencies.append(std::arg(samples[n] * std::conj(samples[n - 1])) * rate / (2 * std::numbers::pi));
    }
    return frequencies;
}

} // namespace

class TestGeneratorSource : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void describesItself();
    void endlessSourceHasNoLength();
    void endsAfterItsFrames();
    void writesLittleEndianInPhaseFirst();
    void carrierStandsAtItsOffset_data();
    void carrierStandsAtItsOffset();
    void carrierHoldsItsFrequencyForAnHour();
    void fmSwingsAroundItsOffset();
    void burstsKeepTheirTimes();
    void burstMarksAreBounded();
    void noiseHasItsPower_data();
    void noiseHasItsPower();
    void noiseIsAddedToTheCarrier();
    void clipsInsteadOfWrapping();
    void sameSeedGivesTheSameBytes();
    void dividingReadsChangesNothing_data();
    void dividingReadsChangesNothing();
};

void TestGeneratorSource::describesItself()
{
    const GeneratorSource source(parsed(QStringLiteral(
        "carrier,rate=48000,seconds=1.5,frequency=100000000,bandwidth=30000,start=2020-01-01T00:00:00.000001Z")));
    const SourceDescription& description = source.description();
    QCOMPARE(description.format, (SampleFormat{SampleType::ComplexInt16, 1}));
    QCOMPARE(description.format.bytesPerFrame(), 4);
    QCOMPARE(description.sampleRate, quint64{48'000});
    QCOMPARE(description.bandwidth, quint64{30'000});
    QCOMPARE(description.centreFrequency(), quint64{100'000'000});
    QCOMPARE(description.startTime(), quint64{1'577'836'800'000'001});
    QCOMPARE(description.totalFrames, qint64{72'000});
    QCOMPARE(description.name, QStringLiteral("Carrier"));
    QVERIFY(description.marks.isEmpty());
    QVERIFY(source.errorText().isEmpty());
}

void TestGeneratorSource::endlessSourceHasNoLength()
{
    GeneratorSource source(parsed(QStringLiteral("bursts")));
    QCOMPARE(source.description().totalFrames, qint64{-1});
    QCOMPARE(source.description().bandwidth, quint64{48'000});
    QVERIFY(source.description().marks.isEmpty());
    QCOMPARE(bytesOf(source, 100'000).size(), 400'000);
}

void TestGeneratorSource::endsAfterItsFrames()
{
    GeneratorSource source(parsed(QStringLiteral("noise,rate=1000,seconds=0.1")));
    QCOMPARE(bytesOf(source, 0).size(), 0);
    char untouched = 'x';
    QCOMPARE(source.read(&untouched, -5), qint64{0});
    QCOMPARE(untouched, 'x');
    QCOMPARE(bytesOf(source, 70).size(), 280);
    QCOMPARE(bytesOf(source, 70).size(), 120);
    QCOMPARE(bytesOf(source, 70).size(), 0);
    QCOMPARE(bytesOf(source, 70).size(), 0);
    QVERIFY(source.errorText().isEmpty());
}

void TestGeneratorSource::writesLittleEndianInPhaseFirst()
{
    // A quarter of a turn per frame.
    QCOMPARE(bytesOf(QStringLiteral("carrier,level=0,rate=4000,offset=1000"), 4).toHex(' '),
             QByteArray("ff 7f 00 00 00 00 ff 7f 01 80 00 00 00 00 01 80"));
}

void TestGeneratorSource::carrierStandsAtItsOffset_data()
{
    QTest::addColumn<double>("offset");
    QTest::addColumn<double>("level");
    QTest::newRow("at the centre") << 0.0 << -12.0;
    QTest::newRow("above the centre") << 1234.5 << -12.0;
    QTest::newRow("below the centre") << -7000.25 << -12.0;
    QTest::newRow("at the upper edge") << 24000.0 << -12.0;
    QTest::newRow("at the lower edge") << -24000.0 << -12.0;
    QTest::newRow("a hair beside the centre") << 0.125 << -12.0;
    QTest::newRow("at full scale") << 3000.0 << 0.0;
    QTest::newRow("weak") << 3000.0 << -40.0;
}

void TestGeneratorSource::carrierStandsAtItsOffset()
{
    QFETCH(const double, offset);
    QFETCH(const double, level);
    constexpr double rate = 48'000;
    const QString text = QStringLiteral("carrier,offset=%1,level=%2").arg(offset).arg(level);
    const Samples samples = samplesOf(text, 8 * 48'000);

    QVERIFY(std::abs(decibel(std::norm(line(samples, offset, rate))) - level) < 0.02);
    // Half a line's width to either side the amplitude falls to 2/pi, equally: the line stands where it should.
    const double lower = std::abs(line(samples, offset - 0.0625, rate));
    const double upper = std::abs(line(samples, offset + 0.0625, rate));
    QVERIFY(std::abs(lower / upper - 1) < 0.01);
    // What is left is the rounding to 16 bits.
    QVERIFY(decibel(powerOf(withoutLine(samples, offset, rate))) < -90);
}

void TestGeneratorSource::carrierHoldsItsFrequencyForAnHour()
{
    GeneratorSource source(parsed(QStringLiteral("carrier,level=0,rate=1000,offset=0.125,seconds=7200")));
    QByteArray bytes = bytesOf(source, 3'600'001);
    // 0.125 Hz for 3600 s are 450 whole turns: the frame an hour later equals the first.
    QCOMPARE(bytes.right(4).toHex(), bytes.left(4).toHex());
}

void TestGeneratorSource::fmSwingsAroundItsOffset()
{
    constexpr double rate = 48'000;
    const Samples samples =
        samplesOf(QStringLiteral("fm,offset=-4000,deviation=3000,modulation=100,level=-3"), 48'000 + 1);
    const QVector<double> frequencies = momentaryFrequencies(samples, rate);
    const auto [lowest, highest] = std::minmax_element(frequencies.begin(), frequencies.end());
    QVERIFY(std::abs(*highest - -1000) < 10);
    QVERIFY(std::abs(*lowest - -7000) < 10);
    const double sum = std::accumulate(frequencies.begin(), frequencies.end(), 0.0);
    QVERIFY(std::abs(sum / static_cast<double>(frequencies.size()) - -4000) < 1);

    // The swing itself is a tone of the modulating frequency, with the deviation as its amplitude.
    Samples swing;
    for (const double frequency : frequencies) {
        swing.append(std::complex<double>(frequency + 4000, 0));
    }
    QVERIFY(std::abs(2 * std::abs(line(swing, 100, rate)) - 3000) < 5);
    QVERIFY(2 * std::abs(line(swing, 200, rate)) < 5);
    QVERIFY(std::abs(decibel(powerOf(samples)) - -3) < 0.02);
}

void TestGeneratorSource::burstsKeepTheirTimes()
{
    const QString text = QStringLiteral("bursts,rate=1000,burst=20,period=50,level=0,seconds=0.11");
    const Samples samples = samplesOf(text, 1'000);
    QString onAndOff;
    for (const std::complex<double>& sample : samples) {
        onAndOff += std::abs(sample) > 0.99 ? u'#' : std::abs(sample) == 0 ? u'.' : u'?';
    }
    const QString on(20, u'#');
    const QString off(30, u'.');
    QCOMPARE(onAndOff, on + off + on + off + on.left(10));

    const GeneratorSource source(parsed(text));
    const QVector<SourceMark> expected{
        {0, 20, QStringLiteral("Burst 1")}, {50, 20, QStringLiteral("Burst 2")}, {100, 10, QStringLiteral("Burst 3")}};
    QCOMPARE(source.description().marks, expected);
}

void TestGeneratorSource::burstMarksAreBounded()
{
    const GeneratorSource source(parsed(QStringLiteral("bursts,burst=0.01,period=0.01,rate=1e7,seconds=86400")));
    QCOMPARE(source.description().marks.size(), 1'000);
}

void TestGeneratorSource::noiseHasItsPower_data()
{
    QTest::addColumn<double>("level");
    QTest::newRow("loud") << -15.0;
    QTest::newRow("usual") << -40.0;
    QTest::newRow("faint") << -60.0;
}

void TestGeneratorSource::noiseHasItsPower()
{
    QFETCH(const double, level);
    const Samples samples = samplesOf(QStringLiteral("noise,level=%1").arg(level), 100'000);
    QVERIFY(std::abs(decibel(powerOf(samples)) - level) < 0.1);
    // Flat: no line of it stands out by much, wherever one looks.
    for (double frequency = -23'000; frequency < 24'000; frequency += 1'000) {
        QVERIFY(decibel(std::norm(line(samples, frequency, 48'000))) < level - 35);
    }
}

void TestGeneratorSource::noiseIsAddedToTheCarrier()
{
    const Samples samples = samplesOf(QStringLiteral("carrier,level=-10,offset=1000,noise=-30"), 96'000);
    QVERIFY(std::abs(decibel(std::norm(line(samples, 1'000, 48'000))) - -10) < 0.02);
    QVERIFY(std::abs(decibel(powerOf(withoutLine(samples, 1'000, 48'000))) - -30) < 0.1);
}

void TestGeneratorSource::clipsInsteadOfWrapping()
{
    const Samples samples = samplesOf(QStringLiteral("carrier,level=0,offset=0,noise=-20"), 10'000);
    // I is full scale plus noise: half of it must clip, and none of it may turn negative.
    qsizetype clipped = 0;
    for (const std::complex<double>& sample : samples) {
        QVERIFY(sample.real() > 0.5 && sample.real() <= 1);
        clipped += sample.real() == 1;
    }
    QVERIFY(clipped > 4'000 && clipped < 6'000);
}

void TestGeneratorSource::sameSeedGivesTheSameBytes()
{
    const QString fm = QStringLiteral("fm,noise=-50,seed=%1");
    QCOMPARE(bytesOf(fm.arg(5), 1'000), bytesOf(fm.arg(5), 1'000));
    QVERIFY(bytesOf(fm.arg(5), 1'000) != bytesOf(fm.arg(6), 1'000));
}

void TestGeneratorSource::dividingReadsChangesNothing_data()
{
    QTest::addColumn<QString>("text");
    QTest::newRow("carrier") << "carrier,offset=777.7";
    QTest::newRow("fm with noise") << "fm,noise=-40";
    QTest::newRow("bursts") << "bursts,burst=3,period=7,offset=100";
    QTest::newRow("noise") << "noise";
}

void TestGeneratorSource::dividingReadsChangesNothing()
{
    QFETCH(const QString, text);
    GeneratorSource source(parsed(text + QStringLiteral(",seconds=0.2")));
    QByteArray divided;
    for (qint64 frames = 1;; frames = frames * 3 % 101) {
        const QByteArray part = bytesOf(source, frames);
        if (part.isEmpty()) {
            break;
        }
        divided += part;
    }
    QCOMPARE(divided.size(), 9'600 * 4);
    QCOMPARE(divided, bytesOf(text, 9'600));
}

QTEST_APPLESS_MAIN(TestGeneratorSource)
#include "tst_generatorsource.moc"
