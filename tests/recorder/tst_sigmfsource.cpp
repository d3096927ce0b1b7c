#include <recorder/source/sigmfsource.h>

#include <sigmfpair.h>

#include <QDateTime>
#include <QDir>
#include <QTest>

#include <sys/stat.h>

using namespace ZelkoRecorder;
using ZelkoTest::SigmfPair;
using ZelkoTest::writeFile;

namespace {

QByteArray readAll(SignalSource& source, qint64 framesAtOnce)
{
    const int size = source.description().format.bytesPerFrame();
    QByteArray buffer(framesAtOnce * size, '\0');
    QByteArray bytes;
    while (const qint64 frames = source.read(buffer.data(), framesAtOnce)) {
        bytes += buffer.left(frames * size);
    }
    return bytes;
}

} // namespace

class TestSigmfSource : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void opensByAnyOfItsNames_data();
    void opensByAnyOfItsNames();
    void givesTheSamplesAsTheyAre_data();
    void givesTheSamplesAsTheyAre();
    void describesTheRecording();
    void leavesOutWhatLiesBehindTheData();
    void marksEndWithTheData();
    void ignoresTheRestOfAFrame();
    void acceptsTheRightHash();
    void readsTheNamedDataFile();
    void isAnotherSourceWhenAFileWasWrittenTo_data();
    void isAnotherSourceWhenAFileWasWrittenTo();
    void followsALinkOfTheUsualName();
    void refusesMissingAndOddFiles_data();
    void refusesMissingAndOddFiles();
    void refusesAPipeWithoutWaiting();
    void refusesAWrongHash_data();
    void refusesAWrongHash();
    void refusesALinkOutOfTheFolder();
    void refusesMetadataBeyondTheLimit();
    void refusesDataTooLargeForAnyTime();
    void failsWhenTheDataShrinks();

private:
    QString path(const char* name) const { return m_folder->filePath(QString::fromLatin1(name)); }
    void expectRefusal(const QString& path, const QString& reason);

    std::unique_ptr<QTemporaryDir> m_folder;
};

void TestSigmfSource::init()
{
    m_folder = std::make_unique<QTemporaryDir>();
    QVERIFY(m_folder->isValid());
}

void TestSigmfSource::expectRefusal(const QString& path, const QString& reason)
{
    QString error;
    QVERIFY(!SigmfSource::open(path, &error));
    QVERIFY2(error.contains(reason), qPrintable(error));
    QVERIFY(!SigmfSource::open(path, nullptr));
}

void TestSigmfSource::opensByAnyOfItsNames_data()
{
    QTest::addColumn<QString>("name");
    QTest::newRow("metadata file") << "rec.1.sigmf-meta";
    QTest::newRow("data file") << "rec.1.sigmf-data";
    QTest::newRow("neither") << "rec.1";
}

void TestSigmfSource::opensByAnyOfItsNames()
{
    QFETCH(const QString, name);
    QVERIFY(SigmfPair().write(path("rec.1")));
    QString error;
    const auto source = SigmfSource::open(m_folder->filePath(name), &error);
    QVERIFY2(source, qPrintable(error));
    QCOMPARE(source->description().name, QStringLiteral("rec.1"));
}

void TestSigmfSource::givesTheSamplesAsTheyAre_data()
{
    QTest::addColumn<QString>("type");
    QTest::addColumn<int>("channels");
    QTest::addColumn<qint64>("frames");
    QTest::addColumn<qint64>("framesAtOnce");
    QTest::newRow("complex bytes, one by one") << "ci8" << 1 << qint64{24} << qint64{1};
    QTest::newRow("complex 16 bits, unevenly") << "ci16_le" << 1 << qint64{12} << qint64{5};
    QTest::newRow("real 16 bits, stereo") << "ri16_le" << 2 << qint64{12} << qint64{4};
    QTest::newRow("complex floats, all at once") << "cf32_le" << 1 << qint64{6} << qint64{6};
    QTest::newRow("three channels, more than all") << "ci16_le" << 3 << qint64{4} << qint64{100};
}

void TestSigmfSource::givesTheSamplesAsTheyAre()
{
    QFETCH(const QString, type);
    QFETCH(const int, channels);
    QFETCH(const qint64, framesAtOnce);
    SigmfPair pair;
    pair.samples = QByteArray("\x00\xff\x80\x7f", 4) + "abcdefghijklmnopqrstuvwxyz0123456789ABCDEFGH";
    pair.global["core:datatype"] = type;
    pair.global["core:num_channels"] = channels;
    QVERIFY(pair.write(path("rec")));
    const auto source = SigmfSource::open(path("rec"), nullptr);
    QVERIFY(source);
    QTEST(source->description().totalFrames, "frames");
    QCOMPARE(readAll(*source, framesAtOnce), pair.samples);
    char untouched = 'x';
    QCOMPARE(source->read(&untouched, 1), qint64{0});
    QCOMPARE(untouched, 'x');
    QVERIFY(source->errorText().isEmpty());
}

void TestSigmfSource::describesTheRecording()
{
    SigmfPair pair;
    pair.annotations = {QJsonObject{{"core:sample_start", 1}, {"core:sample_count", 2}, {"core:label", "first"}}};
    QVERIFY(pair.write(path("rec")));
    const auto source = SigmfSource::open(path("rec"), nullptr);
    QVERIFY(source);
    const SourceDescription& description = source->description();
    QCOMPARE(description.format, (SampleFormat{SampleType::ComplexInt16, 1}));
    QCOMPARE(description.sampleRate, quint64{1'000});
    QCOMPARE(description.totalFrames, qint64{4});
    QCOMPARE(description.segments, (QVector<SourceSegment>{{0, 145'000'000, 1'624'058'271'163'959}}));
    QCOMPARE(description.marks, (QVector<SourceMark>{{1, 2, QStringLiteral("first")}}));
}

void TestSigmfSource::leavesOutWhatLiesBehindTheData()
{
    SigmfPair pair;
    pair.captures = {QJsonObject{{"core:sample_start", 0}}, QJsonObject{{"core:sample_start", 3}},
                     QJsonObject{{"core:sample_start", 4}}};
    pair.annotations = {QJsonObject{{"core:sample_start", 3}}, QJsonObject{{"core:sample_start", 4}}};
    QVERIFY(pair.write(path("rec")));
    const auto source = SigmfSource::open(path("rec"), nullptr);
    QVERIFY(source);
    QCOMPARE(source->description().segments, (QVector<SourceSegment>{{0, 0, 0}, {3, 0, 0}}));
    QCOMPARE(source->description().marks, (QVector<SourceMark>{{3, -1, QStringLiteral("Annotation")}}));
}

void TestSigmfSource::marksEndWithTheData()
{
    SigmfPair pair;
    pair.annotations = {QJsonObject{{"core:sample_start", 1}, {"core:sample_count", 3}},
                        QJsonObject{{"core:sample_start", 2}, {"core:sample_count", 1'000'000}}};
    QVERIFY(pair.write(path("rec")));
    const auto source = SigmfSource::open(path("rec"), nullptr);
    QVERIFY(source);
    QCOMPARE(source->description().marks.value(0).frameCount, qint64{3});
    QCOMPARE(source->description().marks.value(1).frameCount, qint64{2});
}

void TestSigmfSource::ignoresTheRestOfAFrame()
{
    SigmfPair pair;
    pair.samples += "xyz";
    QVERIFY(pair.write(path("rec")));
    const auto source = SigmfSource::open(path("rec"), nullptr);
    QVERIFY(source);
    QCOMPARE(source->description().totalFrames, qint64{4});
    QCOMPARE(readAll(*source, 3), pair.samples.chopped(3));
}

void TestSigmfSource::acceptsTheRightHash()
{
    SigmfPair pair;
    pair.samples = QByteArray(1'000'000, 's');
    pair.addHash();
    QVERIFY(pair.write(path("rec")));
    const auto source = SigmfSource::open(path("rec"), nullptr);
    QVERIFY(source);
    QCOMPARE(readAll(*source, 1'000), pair.samples);
}

void TestSigmfSource::readsTheNamedDataFile()
{
    SigmfPair pair;
    pair.global["core:dataset"] = QStringLiteral("samples.bin");
    QVERIFY(writeFile(path("rec.sigmf-meta"), pair.metadata()));
    expectRefusal(path("rec"), QStringLiteral("samples.bin\" cannot be read"));
    QVERIFY(writeFile(path("samples.bin"), pair.samples));
    const auto source = SigmfSource::open(path("rec"), nullptr);
    QVERIFY(source);
    QCOMPARE(readAll(*source, 10), pair.samples);
}

void TestSigmfSource::isAnotherSourceWhenAFileWasWrittenTo_data()
{
    QTest::addColumn<QString>("file");
    QTest::addColumn<bool>("grows");
    QTest::newRow("more metadata") << "rec.sigmf-meta" << true;
    QTest::newRow("metadata written again") << "rec.sigmf-meta" << false;
    QTest::newRow("more data") << "samples.bin" << true;
    QTest::newRow("data written again") << "samples.bin" << false;
}

void TestSigmfSource::isAnotherSourceWhenAFileWasWrittenTo()
{
    QFETCH(const QString, file);
    QFETCH(const bool, grows);
    SigmfPair pair;
    pair.global["core:dataset"] = QStringLiteral("samples.bin");
    QVERIFY(writeFile(path("rec.sigmf-meta"), pair.metadata()));
    QVERIFY(writeFile(path("samples.bin"), pair.samples));
    const QString before = SigmfSource::fingerprint(path("rec"));
    QCOMPARE(SigmfSource::fingerprint(path("rec")), before);
    QFile changed(m_folder->filePath(file));
    QVERIFY(changed.open(QIODevice::ReadWrite | QIODevice::Append));
    const QDateTime time = changed.fileTime(QFileDevice::FileModificationTime);
    QVERIFY(!grows || (changed.write(" ") == 1 && changed.flush()));
    QVERIFY(changed.setFileTime(grows ? time : time.addSecs(1), QFileDevice::FileModificationTime));
    changed.close();
    QVERIFY(SigmfSource::fingerprint(path("rec")) != before);
}

void TestSigmfSource::followsALinkOfTheUsualName()
{
    QVERIFY(SigmfPair().write(path("big")));
    QVERIFY(QDir(m_folder->path()).mkdir(QStringLiteral("links")));
    QVERIFY(QFile::link(path("big.sigmf-meta"), path("links/rec.sigmf-meta")));
    QVERIFY(QFile::link(path("big.sigmf-data"), path("links/rec.sigmf-data")));
    QVERIFY(SigmfSource::open(path("links/rec"), nullptr));
}

void TestSigmfSource::refusesMissingAndOddFiles_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("reason");
    QTest::newRow("nothing there") << "none"
                                   << "none.sigmf-meta\" cannot be read";
    QTest::newRow("no data file") << "lonely"
                                  << "lonely.sigmf-data\" cannot be read";
    QTest::newRow("empty data file") << "empty"
                                     << "empty.sigmf-data\" holds no samples";
    QTest::newRow("less than a frame") << "short"
                                       << "short.sigmf-data\" holds no samples";
    QTest::newRow("empty metadata") << "blank"
                                    << "blank.sigmf-meta\": SigMF: the metadata is not JSON";
    QTest::newRow("folder as metadata") << "folder"
                                        << "folder.sigmf-meta\" is not a file";
    QTest::newRow("folder as data") << "half"
                                    << "half.sigmf-data\" is not a file";
    QTest::newRow("the folder itself") << ""
                                       << "cannot be read";
    QTest::newRow("an archive in one file") << "archive.sigmf"
                                            << "archive.sigmf.sigmf-meta\" cannot be read";
}

void TestSigmfSource::refusesMissingAndOddFiles()
{
    SigmfPair pair;
    QVERIFY(writeFile(path("lonely.sigmf-meta"), pair.metadata()));
    QVERIFY(writeFile(path("half.sigmf-meta"), pair.metadata()));
    QVERIFY(QDir(m_folder->path()).mkdir(QStringLiteral("half.sigmf-data")));
    QVERIFY(QDir(m_folder->path()).mkdir(QStringLiteral("folder.sigmf-meta")));
    QVERIFY(writeFile(path("blank.sigmf-meta"), QByteArray()));
    QVERIFY(writeFile(path("archive.sigmf"), pair.samples));
    pair.samples = "abc";
    QVERIFY(pair.write(path("short")));
    pair.samples.clear();
    QVERIFY(pair.write(path("empty")));

    QFETCH(const QString, name);
    QFETCH(const QString, reason);
    expectRefusal(m_folder->filePath(name), reason);
}

void TestSigmfSource::refusesAPipeWithoutWaiting()
{
    QCOMPARE(mkfifo(path("pipe.sigmf-meta").toLocal8Bit().constData(), 0600), 0);
    expectRefusal(path("pipe"), QStringLiteral("pipe.sigmf-meta\" is not a file"));
}

void TestSigmfSource::refusesAWrongHash_data()
{
    QTest::addColumn<QByteArray>("samples");
    QTest::newRow("other byte") << QByteArray("0123456789abcdeF");
    QTest::newRow("byte more") << QByteArray("0123456789abcdef0");
    QTest::newRow("frame less") << QByteArray("0123456789ab");
}

void TestSigmfSource::refusesAWrongHash()
{
    QFETCH(const QByteArray, samples);
    SigmfPair pair;
    pair.addHash();
    pair.samples = samples;
    QVERIFY(pair.write(path("rec")));
    expectRefusal(path("rec"), QStringLiteral("rec.sigmf-data\" does not have the SHA-512 of its metadata"));
}

void TestSigmfSource::refusesALinkOutOfTheFolder()
{
    SigmfPair pair;
    QVERIFY(writeFile(path("secret"), "not for everybody"));
    QVERIFY(QDir(m_folder->path()).mkdir(QStringLiteral("in")));
    QVERIFY(QFile::link(path("secret"), path("in/samples.bin")));
    pair.global["core:dataset"] = QStringLiteral("samples.bin");
    QVERIFY(writeFile(path("in/rec.sigmf-meta"), pair.metadata()));
    expectRefusal(path("in/rec"), QStringLiteral("samples.bin\" lies outside of its folder"));
}

void TestSigmfSource::refusesMetadataBeyondTheLimit()
{
    QVERIFY(SigmfPair().write(path("rec")));
    QFile metadata(path("rec.sigmf-meta"));
    QVERIFY(metadata.resize(qint64{1} << 40));
    expectRefusal(path("rec"), QStringLiteral("larger than 8388608 bytes"));
}

void TestSigmfSource::refusesDataTooLargeForAnyTime()
{
    SigmfPair pair;
    pair.global["core:datatype"] = QStringLiteral("ci8");
    QVERIFY(pair.write(path("rec")));
    QFile data(path("rec.sigmf-data"));
    QVERIFY2(data.resize(2 * (SourceDescription::maximumFrame + 1)), qPrintable(data.errorString()));
    expectRefusal(path("rec"), QStringLiteral("holds too many samples"));
}

void TestSigmfSource::failsWhenTheDataShrinks()
{
    SigmfPair pair;
    pair.samples = QByteArray(400'000, 's');
    QVERIFY(pair.write(path("rec")));
    const auto source = SigmfSource::open(path("rec"), nullptr);
    QVERIFY(source);
    QByteArray buffer(400'000, '\0');
    QCOMPARE(source->read(buffer.data(), 10), qint64{10});
    QFile data(path("rec.sigmf-data"));
    QVERIFY(data.resize(200'000));
    QCOMPARE(source->read(buffer.data(), 99'990), qint64{0});
    QVERIFY2(source->errorText().contains(u"rec.sigmf-data\" ends early"), qPrintable(source->errorText()));
    // A gap is a gap: nothing more comes, even if the bytes do.
    QVERIFY(data.resize(400'000));
    QCOMPARE(source->read(buffer.data(), 1), qint64{0});
}

QTEST_APPLESS_MAIN(TestSigmfSource)
#include "tst_sigmfsource.moc"
