#include <recorder/source/sampleformat.h>

#include <QTest>

using namespace ZelkoRecorder;

Q_DECLARE_METATYPE(ZelkoRecorder::SampleType)

class TestSampleFormat : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void layoutFollowsFromTheType_data();
    void layoutFollowsFromTheType();
};

void TestSampleFormat::layoutFollowsFromTheType_data()
{
    QTest::addColumn<SampleType>("type");
    QTest::addColumn<int>("channels");
    QTest::addColumn<bool>("isComplex");
    QTest::addColumn<int>("bitsPerValue");
    QTest::addColumn<int>("bytesPerFrame");
    QTest::addColumn<int>("storedFormat");
    QTest::newRow("complex bytes") << SampleType::ComplexInt8 << 1 << true << 8 << 2 << 2;
    QTest::newRow("complex 16 bits") << SampleType::ComplexInt16 << 1 << true << 16 << 4 << 1;
    QTest::newRow("complex 16 bits, three channels") << SampleType::ComplexInt16 << 3 << true << 16 << 12 << 1;
    QTest::newRow("real 16 bits") << SampleType::RealInt16 << 1 << false << 16 << 2 << 3;
    QTest::newRow("real 16 bits, stereo") << SampleType::RealInt16 << 2 << false << 16 << 4 << 3;
    QTest::newRow("complex floats") << SampleType::ComplexFloat32 << 1 << true << 32 << 8 << 21;
}

void TestSampleFormat::layoutFollowsFromTheType()
{
    QFETCH(const SampleType, type);
    QFETCH(const int, channels);
    const SampleFormat format{type, channels};
    QTEST(format.isComplex(), "isComplex");
    QTEST(format.bitsPerValue(), "bitsPerValue");
    QTEST(format.bytesPerFrame(), "bytesPerFrame");
    QTEST(static_cast<int>(format.storedFormat()), "storedFormat");
}

QTEST_APPLESS_MAIN(TestSampleFormat)
#include "tst_sampleformat.moc"
