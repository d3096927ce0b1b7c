#include <recorder/source/gaussiannoise.h>

#include <QTest>
#include <QVector>

#include <cmath>

using ZelkoRecorder::GaussianNoise;

namespace {

QVector<float> numbers(quint64 seed, int count)
{
    GaussianNoise noise(seed);
    QVector<float> result;
    for (int index = 0; index < count; ++index) {
        result.append(noise.next());
    }
    return result;
}

double meanOfProducts(const QVector<float>& left, qsizetype lag)
{
    double sum = 0;
    for (qsizetype index = lag; index < left.size(); ++index) {
        sum += static_cast<double>(left[index]) * static_cast<double>(left[index - lag]);
    }
    return sum / static_cast<double>(left.size() - lag);
}

double share(const QVector<float>& values, float limit)
{
    const auto within = std::count_if(values.begin(), values.end(), [limit](float v) { return std::abs(v) < limit; });
    return static_cast<double>(within) / static_cast<double>(values.size());
}

} // namespace

class TestGaussianNoise : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void looksNormal_data();
    void looksNormal();
    void repeatsItselfForASeedOnly();
};

void TestGaussianNoise::looksNormal_data()
{
    QTest::addColumn<quint64>("seed");
    QTest::newRow("seed zero") << quint64{0};
    QTest::newRow("seed one") << quint64{1};
    QTest::newRow("largest seed") << ~quint64{0};
}

void TestGaussianNoise::looksNormal()
{
    QFETCH(const quint64, seed);
    const QVector<float> values = numbers(seed, 200'000);
    const double mean = std::accumulate(values.begin(), values.end(), 0.0) / static_cast<double>(values.size());
    QVERIFY2(std::abs(mean) < 0.01, qPrintable(QString::number(mean)));
    QVERIFY(std::abs(meanOfProducts(values, 0) - 1) < 0.01);
    QVERIFY(std::abs(meanOfProducts(values, 1)) < 0.01);
    QVERIFY(std::abs(meanOfProducts(values, 2)) < 0.01);
    QVERIFY(std::abs(share(values, 1) - 0.683) < 0.02);
    QVERIFY(std::abs(share(values, 2) - 0.954) < 0.02);
    QCOMPARE(share(values, 3.5F), 1.0);
}

void TestGaussianNoise::repeatsItselfForASeedOnly()
{
    QCOMPARE(numbers(7, 100), numbers(7, 100));
    QVERIFY(numbers(7, 100) != numbers(8, 100));
}

QTEST_APPLESS_MAIN(TestGaussianNoise)
#include "tst_gaussiannoise.moc"
