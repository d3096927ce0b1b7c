#include <recorder/source/generatorparameters.h>

#include <QTest>

using ZelkoRecorder::GeneratorParameters;
using Kind = GeneratorParameters::Kind;

Q_DECLARE_METATYPE(Kind)

class TestGeneratorParameters : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void kindAloneTakesDefaults_data();
    void kindAloneTakesDefaults();
    void readsEveryKey();
    void acceptsTheEdgesOfRanges_data();
    void acceptsTheEdgesOfRanges();
    void refusesAndNamesTheKey_data();
    void refusesAndNamesTheKey();
    void framesAreAtLeastOne();
};

void TestGeneratorParameters::kindAloneTakesDefaults_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<Kind>("kind");
    QTest::addColumn<QString>("name");
    QTest::newRow("carrier") << "carrier" << Kind::Carrier << "Carrier";
    QTest::newRow("fm") << "fm" << Kind::Fm << "FM";
    QTest::newRow("bursts") << "bursts" << Kind::Bursts << "Bursts";
    QTest::newRow("noise") << " noise " << Kind::Noise << "Noise";
}

void TestGeneratorParameters::kindAloneTakesDefaults()
{
    QFETCH(const QString, text);
    QString error;
    const std::optional<GeneratorParameters> parameters = GeneratorParameters::parse(text, &error);
    QVERIFY2(parameters, qPrintable(error));
    QVERIFY(error.isEmpty());
    QTEST(parameters->kind, "kind");
    QTEST(parameters->displayName(), "name");
    QCOMPARE(parameters->sampleRate, quint64{48'000});
    QCOMPARE(parameters->centreFrequency, quint64{145'000'000});
    QCOMPARE(parameters->startTime, quint64{0});
    QVERIFY(!parameters->seconds && !parameters->bandwidth && !parameters->noiseLevel);
}

void TestGeneratorParameters::readsEveryKey()
{
    const auto fm = GeneratorParameters::parse(
        QStringLiteral("fm,rate=96000,seconds=2.5,frequency=446006250,bandwidth=12500,seed=9,level=-6,offset=-1500.5,"
                       "noise=-50,deviation=2500,modulation=400, name = Channel 1 ,start=1970-01-01T00:00:01.5Z"),
        nullptr);
    QVERIFY(fm);
    QCOMPARE(fm->sampleRate, quint64{96'000});
    QCOMPARE(fm->seconds, std::optional<double>(2.5));
    QCOMPARE(fm->centreFrequency, quint64{446'006'250});
    QCOMPARE(fm->bandwidth, std::optional<quint64>(12'500));
    QCOMPARE(fm->seed, quint64{9});
    QCOMPARE(fm->level, -6.0);
    QCOMPARE(fm->offset, -1500.5);
    QCOMPARE(fm->noiseLevel, std::optional<double>(-50));
    QCOMPARE(fm->deviation, 2500.0);
    QCOMPARE(fm->modulation, 400.0);
    QCOMPARE(fm->displayName(), QStringLiteral("Channel 1"));
    QCOMPARE(fm->startTime, quint64{1'500'000});

    const auto bursts = GeneratorParameters::parse(QStringLiteral("bursts,burst=20,period=50"), nullptr);
    QVERIFY(bursts);
    QCOMPARE(bursts->burstMilliseconds, 20.0);
    QCOMPARE(bursts->periodMilliseconds, 50.0);
}

void TestGeneratorParameters::acceptsTheEdgesOfRanges_data()
{
    QTest::addColumn<QString>("text");
    QTest::newRow("lowest rate") << "carrier,rate=1000";
    QTest::newRow("highest rate") << "carrier,rate=1e7";
    QTest::newRow("shortest") << "carrier,seconds=0.001";
    QTest::newRow("a day") << "carrier,seconds=86400";
    QTest::newRow("offset at the upper edge") << "carrier,offset=24000";
    QTest::newRow("offset at the lower edge") << "carrier,offset=-24000";
    QTest::newRow("bandwidth of the rate, given before it") << "carrier,bandwidth=96000,rate=96000";
    QTest::newRow("full scale") << "carrier,level=0,noise=0";
    QTest::newRow("no deviation") << "fm,deviation=0,modulation=0";
    QTest::newRow("bursts without a gap") << "bursts,burst=1000";
    QTest::newRow("largest seed") << "noise,seed=9007199254740992";
}

void TestGeneratorParameters::acceptsTheEdgesOfRanges()
{
    QFETCH(const QString, text);
    QString error;
    QVERIFY2(GeneratorParameters::parse(text, &error), qPrintable(error));
}

void TestGeneratorParameters::refusesAndNamesTheKey_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("named");
    QTest::newRow("nothing") << ""
                             << "\"\"";
    QTest::newRow("unknown kind") << "am"
                                  << "\"am\"";
    QTest::newRow("kind missing") << "rate=48000"
                                  << "\"rate=48000\"";
    QTest::newRow("unknown key") << "fm,colour=red"
                                 << "\"colour\"";
    QTest::newRow("key without value") << "fm,rate"
                                       << "\"rate\"";
    QTest::newRow("trailing comma") << "fm,"
                                    << "\"\"";
    QTest::newRow("key twice") << "fm,rate=48000,rate=96000"
                               << "\"rate\"";
    QTest::newRow("no number") << "fm,rate=fast"
                               << "\"rate\"";
    QTest::newRow("empty number") << "fm,rate="
                                  << "\"rate\"";
    QTest::newRow("number with a tail") << "fm,rate=48000Hz"
                                        << "\"rate\"";
    QTest::newRow("rate with a fraction") << "fm,rate=48000.5"
                                          << "\"rate\"";
    QTest::newRow("rate too low") << "fm,rate=999"
                                  << "\"rate\"";
    QTest::newRow("rate too high") << "fm,rate=10000001"
                                   << "\"rate\"";
    QTest::newRow("negative frequency") << "fm,frequency=-1"
                                        << "\"frequency\"";
    QTest::newRow("not a number") << "fm,level=nan"
                                  << "\"level\"";
    QTest::newRow("infinite") << "fm,seconds=inf"
                              << "\"seconds\"";
    QTest::newRow("no time at all") << "fm,seconds=0"
                                    << "\"seconds\"";
    QTest::newRow("above full scale") << "fm,level=0.1"
                                      << "\"level\"";
    QTest::newRow("noise above full scale") << "fm,noise=1"
                                            << "\"noise\"";
    QTest::newRow("offset outside of the band") << "carrier,offset=24001"
                                                << "\"offset\"";
    QTest::newRow("offset outside of the band below") << "carrier,offset=-24001"
                                                      << "\"offset\"";
    QTest::newRow("bandwidth above the rate") << "carrier,bandwidth=48001"
                                              << "\"bandwidth\"";
    QTest::newRow("deviation outside of the band") << "fm,deviation=24001"
                                                   << "\"deviation\"";
    QTest::newRow("modulation outside of the band") << "fm,modulation=24001"
                                                    << "\"modulation\"";
    QTest::newRow("burst longer than its period") << "bursts,burst=20,period=10"
                                                  << "\"burst\"";
    QTest::newRow("negative seed") << "noise,seed=-1"
                                   << "\"seed\"";
    QTest::newRow("deviation of a carrier") << "carrier,deviation=1"
                                            << "\"deviation\"";
    QTest::newRow("burst of fm") << "fm,burst=1"
                                 << "\"burst\"";
    QTest::newRow("offset of noise") << "noise,offset=1"
                                     << "\"offset\"";
    QTest::newRow("start that is no time") << "fm,start=yesterday"
                                           << "\"start\"";
}

void TestGeneratorParameters::refusesAndNamesTheKey()
{
    QFETCH(const QString, text);
    QFETCH(const QString, named);
    QString error;
    QVERIFY(!GeneratorParameters::parse(text, &error));
    QVERIFY2(error.contains(named), qPrintable(error));
    QVERIFY(!GeneratorParameters::parse(text, nullptr));
}

void TestGeneratorParameters::framesAreAtLeastOne()
{
    GeneratorParameters parameters;
    parameters.sampleRate = 1'000;
    QCOMPARE(parameters.framesIn(0.01), qint64{1});
    QCOMPARE(parameters.framesIn(2.4), qint64{2});
    QCOMPARE(parameters.framesIn(86'400'000), qint64{86'400'000});
}

QTEST_APPLESS_MAIN(TestGeneratorParameters)
#include "tst_generatorparameters.moc"
