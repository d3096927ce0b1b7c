#include <recorder/source/sigmfmetadata.h>

#include <sigmfpair.h>

#include <QTest>

using namespace ZelkoRecorder;
using ZelkoTest::SigmfPair;

Q_DECLARE_METATYPE(ZelkoRecorder::SampleType)

namespace {

/// A document of the given parts, as texts so that it can be wrong in any way.
QByteArray document(const char* global, const char* captures = "[]", const char* annotations = "[]")
{
    return QByteArray("{\"global\":") + global + ",\"captures\":" + captures + ",\"annotations\":" + annotations + '}';
}

QByteArray withGlobal(const QByteArray& field)
{
    return document(("{\"core:datatype\":\"ci8\",\"core:sample_rate\":1000," + field + '}').constData());
}

constexpr const char* plainGlobal = "{\"core:datatype\":\"ci8\",\"core:sample_rate\":1000}";

QByteArray withCapture(const QByteArray& captures)
{
    return document(plainGlobal, captures.constData());
}

QByteArray withAnnotation(const QByteArray& annotations)
{
    return document(plainGlobal, "[]", annotations.constData());
}

SigmfMetadata accepted(const QByteArray& bytes)
{
    QString error;
    const std::optional<SigmfMetadata> metadata = SigmfMetadata::parse(bytes, &error);
    if (!metadata) {
        qFatal("%s", qPrintable(error));
    }
    return *metadata;
}

} // namespace

class TestSigmfMetadata : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void readsDataTypes_data();
    void readsDataTypes();
    void readsRateAndBandwidth_data();
    void readsRateAndBandwidth();
    void readsHashAndDataset();
    void readsCaptures();
    void withoutCapturesNothingIsKnown();
    void firstCaptureReachesBackToTheFirstFrame();
    void offsetIsTakenOffEveryFrame();
    void readsAnnotationsInOrderOfFrames();
    void annotationTextsAreFitForXml();
    void ignoresWhatItDoesNotRead();
    void refusesWithTheReason_data();
    void refusesWithTheReason();
    void refusesEveryTruncation();
    void survivesEveryFlippedByte();
    void refusesDeepNesting_data();
    void refusesDeepNesting();
    void acceptsTheDeepestNesting();
    void refusesWhatIsTooLarge();
};

void TestSigmfMetadata::readsDataTypes_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<SampleType>("type");
    QTest::newRow("complex bytes") << "ci8" << SampleType::ComplexInt8;
    QTest::newRow("complex 16 bits") << "ci16_le" << SampleType::ComplexInt16;
    QTest::newRow("real 16 bits") << "ri16_le" << SampleType::RealInt16;
    QTest::newRow("complex floats") << "cf32_le" << SampleType::ComplexFloat32;
}

void TestSigmfMetadata::readsDataTypes()
{
    QFETCH(const QString, name);
    SigmfPair pair;
    pair.global["core:datatype"] = name;
    pair.global["core:num_channels"] = 3;
    const SigmfMetadata metadata = accepted(pair.metadata());
    QTEST(metadata.description.format.type, "type");
    QCOMPARE(metadata.description.format.channels, 3);
    QCOMPARE(metadata.description.totalFrames, qint64{-1});
    QVERIFY(metadata.description.name.isEmpty());
}

void TestSigmfMetadata::readsRateAndBandwidth_data()
{
    QTest::addColumn<QString>("type");
    QTest::addColumn<double>("written");
    QTest::addColumn<quint64>("rate");
    QTest::addColumn<quint64>("bandwidth");
    QTest::newRow("complex") << "ci8" << 48000.0 << quint64{48'000} << quint64{48'000};
    QTest::newRow("real, half the rate") << "ri16_le" << 48000.0 << quint64{48'000} << quint64{24'000};
    QTest::newRow("with a fraction") << "ci8" << 2'000'000.6 << quint64{2'000'001} << quint64{2'000'001};
    QTest::newRow("lowest") << "ri16_le" << 1.0 << quint64{1} << quint64{1};
    QTest::newRow("highest") << "ci8" << 1e12 << quint64{1'000'000'000'000} << quint64{1'000'000'000'000};
}

void TestSigmfMetadata::readsRateAndBandwidth()
{
    QFETCH(const QString, type);
    QFETCH(const double, written);
    SigmfPair pair;
    pair.global["core:datatype"] = type;
    pair.global["core:sample_rate"] = written;
    const SigmfMetadata metadata = accepted(pair.metadata());
    QTEST(metadata.description.sampleRate, "rate");
    QTEST(metadata.description.bandwidth, "bandwidth");
    QCOMPARE(metadata.description.format.channels, 1);
}

void TestSigmfMetadata::readsHashAndDataset()
{
    SigmfPair pair;
    QVERIFY(accepted(pair.metadata()).sha512.isEmpty());
    QVERIFY(accepted(pair.metadata()).dataset.isEmpty());

    pair.global["core:sha512"] = QString(64, u'a') + QString(64, u'B');
    pair.global["core:dataset"] = QStringLiteral("samples.bin");
    const SigmfMetadata metadata = accepted(pair.metadata());
    QCOMPARE(metadata.sha512, QByteArray(32, '\xaa') + QByteArray(32, '\xbb'));
    QCOMPARE(metadata.dataset, QStringLiteral("samples.bin"));
}

void TestSigmfMetadata::readsCaptures()
{
    const SigmfMetadata metadata = accepted(withCapture(
        "[{\"core:sample_start\":0,\"core:frequency\":145e6,\"core:datetime\":\"2021-06-18T23:17:51.163959Z\"},"
        "{\"core:sample_start\":10,\"core:frequency\":145000000.6},"
        "{\"core:sample_start\":20,\"core:datetime\":\"2021-06-18T23:17:52Z\"}]"));
    const QVector<SourceSegment> expected{
        {0, 145'000'000, 1'624'058'271'163'959}, {10, 145'000'001, 0}, {20, 0, 1'624'058'272'000'000}};
    QCOMPARE(metadata.description.segments, expected);
    QCOMPARE(metadata.description.startTime(), quint64{1'624'058'271'163'959});
}

void TestSigmfMetadata::withoutCapturesNothingIsKnown()
{
    const SigmfMetadata metadata = accepted(document(plainGlobal));
    QCOMPARE(metadata.description.segments, QVector<SourceSegment>{SourceSegment()});
    QVERIFY(metadata.description.marks.isEmpty());
}

void TestSigmfMetadata::firstCaptureReachesBackToTheFirstFrame()
{
    const SigmfMetadata metadata = accepted(
        withCapture("[{\"core:sample_start\":500,\"core:frequency\":7,\"core:datetime\":\"1970-01-01T00:00:02Z\"}]"));
    QCOMPARE(metadata.description.segments, (QVector<SourceSegment>{{0, 7, 1'500'000}}));

    const SigmfMetadata beforeTheEpoch =
        accepted(withCapture("[{\"core:sample_start\":5000,\"core:datetime\":\"1970-01-01T00:00:02Z\"}]"));
    QCOMPARE(beforeTheEpoch.description.segments, (QVector<SourceSegment>{{0, 0, 0}}));
}

void TestSigmfMetadata::offsetIsTakenOffEveryFrame()
{
    const SigmfMetadata metadata = accepted(
        document("{\"core:datatype\":\"ci8\",\"core:sample_rate\":1000,\"core:offset\":100}",
                 "[{\"core:sample_start\":100},{\"core:sample_start\":110}]", "[{\"core:sample_start\":105}]"));
    QCOMPARE(metadata.description.segments, (QVector<SourceSegment>{{0, 0, 0}, {10, 0, 0}}));
    QCOMPARE(metadata.description.marks.value(0).frame, qint64{5});
}

void TestSigmfMetadata::readsAnnotationsInOrderOfFrames()
{
    const SigmfMetadata metadata = accepted(withAnnotation(
        "[{\"core:sample_start\":20,\"core:sample_count\":5,\"core:comment\":\"last\"},"
        "{\"core:sample_start\":3,\"core:label\":\"name\",\"core:comment\":\"remark\"},"
        "{\"core:sample_start\":7,\"core:sample_count\":0,\"core:label\":\" \",\"core:comment\":\"remark\"},"
        "{\"core:sample_start\":3}]"));
    const QVector<SourceMark> expected{{3, -1, QStringLiteral("name")},
                                       {3, -1, QStringLiteral("Annotation")},
                                       {7, 0, QStringLiteral("remark")},
                                       {20, 5, QStringLiteral("last")}};
    QCOMPARE(metadata.description.marks, expected);
}

void TestSigmfMetadata::annotationTextsAreFitForXml()
{
    const SigmfMetadata metadata =
        accepted(withAnnotation("[{\"core:sample_start\":0,\"core:comment\":\"a\\u0000b\\n\\ud834\\udd1e\\uffff\"}]"));
    QCOMPARE(metadata.description.marks.value(0).text, QString::fromUtf8("a b \xF0\x9D\x84\x9E"));
}

void TestSigmfMetadata::ignoresWhatItDoesNotRead()
{
    accepted("\xEF\xBB\xBF" + withGlobal("\"core:version\":17,\"core:hw\":{\"a\":[null,1e300]}"));
    accepted(withGlobal("\"core:metadata_only\":false,\"core:trailing_bytes\":0"));
    accepted(withCapture("[{\"core:sample_start\":0,\"core:header_bytes\":0,\"core:geolocation\":7}]"));
}

void TestSigmfMetadata::refusesWithTheReason_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<QString>("reason");
    const auto row = [](const char* name, const QByteArray& bytes, const char* reason) {
        QTest::newRow(name) << bytes << QString::fromLatin1(reason);
    };
    row("nothing", "", "not JSON from byte 1");
    row("no JSON", "hello", "not JSON from byte 1");
    row("tail", document(plainGlobal) + "x", "not JSON");
    row("two documents", document(plainGlobal) + document(plainGlobal), "not JSON");
    row("comment", "/* */" + document(plainGlobal), "not JSON");
    row("no UTF-8", withGlobal("\"core:author\":\"\xff\""), "not JSON");
    row("lone surrogate", withGlobal("\"core:author\":\"\\ud834\""), "not JSON");
    row("a zero behind", document(plainGlobal) + '\0', "holds a zero byte");
    row("a document behind a zero", document(plainGlobal) + '\0' + document(plainGlobal), "holds a zero byte");
    row("not a number", withGlobal("\"core:x\":NaN"), "not JSON");
    row("infinity", withGlobal("\"core:x\":-Infinity"), "not JSON");
    row("number beyond any range", withGlobal("\"core:x\":1e999"), "beyond any range");
    row("array as document", "[]", "the document must be an object");
    row("null as document", "null", "the document must be an object");
    row("empty document", "{}", "\"global\" is missing");
    row("global is a list", document("[]"), "global must be an object");
    row("captures missing", QByteArray("{\"annotations\":[],\"global\":") + plainGlobal + '}',
        "\"captures\" is missing");
    row("annotations missing", QByteArray("{\"captures\":[],\"global\":") + plainGlobal + '}',
        "\"annotations\" is missing");
    row("captures is an object", document(plainGlobal, "{}"), "\"captures\" must be an array");
    row("annotations is a text", document(plainGlobal, "[]", "\"\""), "\"annotations\" must be an array");

    row("data type missing", document("{\"core:sample_rate\":1}"), "\"core:datatype\" is missing");
    row("data type is a number", document("{\"core:datatype\":8}"), "\"core:datatype\" must be a text");
    row("big-endian", withGlobal("\"core:datatype\":\"ci16_be\""), "\"ci16_be\" is not supported");
    row("unsigned", withGlobal("\"core:datatype\":\"cu8\""), "\"cu8\" is not supported");
    row("other letters", withGlobal("\"core:datatype\":\"CI8\""), "\"CI8\" is not supported");

    row("rate missing", document("{\"core:datatype\":\"ci8\"}"), "\"core:sample_rate\" is missing");
    row("rate is a text", withGlobal("\"core:sample_rate\":\"1000\""), "\"core:sample_rate\" must be a number");
    row("rate is null", withGlobal("\"core:sample_rate\":null"), "\"core:sample_rate\" must be a number");
    row("rate is zero", withGlobal("\"core:sample_rate\":0"), "\"core:sample_rate\" must be a number");
    row("rate below one", withGlobal("\"core:sample_rate\":0.9"), "\"core:sample_rate\" must be a number");
    row("rate is negative", withGlobal("\"core:sample_rate\":-48000"), "\"core:sample_rate\" must be a number");
    row("rate is huge", withGlobal("\"core:sample_rate\":1e300"), "\"core:sample_rate\" must be a number");
    row("no channel", withGlobal("\"core:num_channels\":0"), "\"core:num_channels\" must be a whole number");
    row("half a channel", withGlobal("\"core:num_channels\":1.5"), "\"core:num_channels\" must be a whole number");
    row("too many channels", withGlobal("\"core:num_channels\":257"), "\"core:num_channels\" must be a whole number");
    row("channels beyond 32 bits", withGlobal("\"core:num_channels\":4294967297"), "\"core:num_channels\" must be");
    row("channels beyond 63 bits", withGlobal("\"core:num_channels\":18446744073709551615"), "\"core:num_channels\"");
    row("channels beyond 64 bits", withGlobal("\"core:num_channels\":99999999999999999999"), "\"core:num_channels\"");
    row("channels is true", withGlobal("\"core:num_channels\":true"), "\"core:num_channels\" must be");
    row("negative offset", withGlobal("\"core:offset\":-1"), "\"core:offset\" must be a whole number");
    row("metadata only", withGlobal("\"core:metadata_only\":true"), "\"core:metadata_only\" is set");
    row("metadata only is a number", withGlobal("\"core:metadata_only\":1"), "\"core:metadata_only\" must be true");
    row("trailing bytes", withGlobal("\"core:trailing_bytes\":4"), "\"core:trailing_bytes\" other than 0");
    row("short hash", withGlobal("\"core:sha512\":\"abcd\""), "\"core:sha512\" must be 128");
    row("empty hash", withGlobal("\"core:sha512\":\"\""), "\"core:sha512\" must be 128");
    const QByteArray digits(127, 'a');
    row("hash with another letter", withGlobal("\"core:sha512\":\"" + digits + "g\""), "\"core:sha512\" must be 128");
    row("hash with a blank more", withGlobal("\"core:sha512\":\"" + digits + "a \""), "\"core:sha512\" must be 128");
    row("hash is a number", withGlobal("\"core:sha512\":7"), "\"core:sha512\" must be a text");

    const char* sameFolder = "\"core:dataset\" must name a file in the same folder";
    row("data file above", withGlobal("\"core:dataset\":\"../secret\""), sameFolder);
    row("data file at the root", withGlobal("\"core:dataset\":\"/etc/passwd\""), sameFolder);
    row("data file below", withGlobal("\"core:dataset\":\"a/b\""), sameFolder);
    row("data file with a backslash", withGlobal("\"core:dataset\":\"..\\\\b\""), sameFolder);
    row("folder itself as data file", withGlobal("\"core:dataset\":\".\""), sameFolder);
    row("folder above as data file", withGlobal("\"core:dataset\":\"..\""), sameFolder);
    row("data file without a name", withGlobal("\"core:dataset\":\"\""), sameFolder);
    row("data file with a zero", withGlobal("\"core:dataset\":\"a\\u0000b\""), sameFolder);

    row("capture is a number", withCapture("[1]"), "captures[0] must be an object");
    row("capture without start", withCapture("[{}]"), "captures[0]: \"core:sample_start\" is missing");
    row("negative start", withCapture("[{\"core:sample_start\":-1}]"), "\"core:sample_start\" must be a whole number");
    row("start with a point", withCapture("[{\"core:sample_start\":0.0}]"), "\"core:sample_start\" must be a whole");
    row("start beyond all times", withCapture("[{\"core:sample_start\":1000000000001}]"), "\"core:sample_start\"");
    row("start beyond 63 bits", withCapture("[{\"core:sample_start\":9223372036854775808}]"), "\"core:sample_start\"");
    row("captures at one frame", withCapture("[{\"core:sample_start\":1},{\"core:sample_start\":1}]"),
        "captures[1] does not begin behind the one before");
    row("captures out of order", withCapture("[{\"core:sample_start\":2},{\"core:sample_start\":1}]"),
        "captures[1] does not begin behind the one before");
    row("captures back in time",
        withCapture("[{\"core:sample_start\":0,\"core:datetime\":\"2020-01-01T00:00:01Z\"},{\"core:sample_start\":1},"
                    "{\"core:sample_start\":2,\"core:datetime\":\"2020-01-01T00:00:00Z\"}]"),
        "captures[2] is earlier than one before");
    row("negative frequency", withCapture("[{\"core:sample_start\":0,\"core:frequency\":-1}]"), "\"core:frequency\"");
    row("huge frequency", withCapture("[{\"core:sample_start\":0,\"core:frequency\":1e13}]"), "\"core:frequency\"");
    row("frequency is a text", withCapture("[{\"core:sample_start\":0,\"core:frequency\":\"1\"}]"),
        "\"core:frequency\"");
    row("time is a number", withCapture("[{\"core:sample_start\":0,\"core:datetime\":0}]"),
        "\"core:datetime\" must be a text");
    row("time is no time", withCapture("[{\"core:sample_start\":0,\"core:datetime\":\"2020\"}]"),
        "\"core:datetime\" is not an ISO 8601 moment");
    row("header bytes", withCapture("[{\"core:sample_start\":0,\"core:header_bytes\":8}]"),
        "\"core:header_bytes\" other than 0");

    row("annotation is null", withAnnotation("[null]"), "annotations[0] must be an object");
    row("annotation without start", withAnnotation("[{\"core:sample_start\":1},{}]"),
        "annotations[1]: \"core:sample_start\" is missing");
    row("negative count", withAnnotation("[{\"core:sample_start\":0,\"core:sample_count\":-1}]"),
        "\"core:sample_count\" must be a whole number");
    row("label is a list", withAnnotation("[{\"core:sample_start\":0,\"core:label\":[]}]"),
        "\"core:label\" must be a text");
    row("comment is a number", withAnnotation("[{\"core:sample_start\":0,\"core:label\":\"a\",\"core:comment\":1}]"),
        "\"core:comment\" must be a text");
    row("annotation before the offset",
        document("{\"core:datatype\":\"ci8\",\"core:sample_rate\":1,\"core:offset\":5}", "[]",
                 "[{\"core:sample_start\":4}]"),
        "annotations[0]: \"core:sample_start\" must be a whole number from 5");
}

void TestSigmfMetadata::refusesWithTheReason()
{
    QFETCH(const QByteArray, bytes);
    QFETCH(const QString, reason);
    QString error;
    QVERIFY(!SigmfMetadata::parse(bytes, &error));
    QVERIFY2(error.startsWith(u"SigMF: ") && error.contains(reason), qPrintable(error));
    QVERIFY(!SigmfMetadata::parse(bytes, nullptr));
}

void TestSigmfMetadata::refusesEveryTruncation()
{
    SigmfPair pair;
    pair.annotations = {QJsonObject{{"core:sample_start", 1}, {"core:comment", "a"}}};
    const QByteArray whole = pair.metadata().trimmed();
    QVERIFY(SigmfMetadata::parse(whole, nullptr));
    for (qsizetype size = 0; size < whole.size(); ++size) {
        QVERIFY2(!SigmfMetadata::parse(whole.left(size), nullptr), qPrintable(QString::number(size)));
    }
}

void TestSigmfMetadata::survivesEveryFlippedByte()
{
    const QByteArray whole = SigmfPair().metadata();
    qsizetype refused = 0;
    for (qsizetype at = 0; at < whole.size(); ++at) {
        QByteArray flipped = whole;
        flipped[at] = static_cast<char>(~flipped.at(at));
        QString error;
        const std::optional<SigmfMetadata> metadata = SigmfMetadata::parse(flipped, &error);
        QCOMPARE(metadata.has_value(), error.isEmpty());
        refused += !metadata;
    }
    // Each flipped byte lies above ASCII, alone, and so is no UTF-8.
    QCOMPARE(refused, whole.size());
}

void TestSigmfMetadata::refusesDeepNesting_data()
{
    QTest::addColumn<QByteArray>("bytes");
    constexpr qsizetype many = 1'000'000;
    QTest::newRow("arrays that stay open") << QByteArray(many, '[');
    QTest::newRow("arrays that are closed") << QByteArray(many, '[') + QByteArray(many, ']');
    QTest::newRow("objects") << QByteArray("{\"a\":").repeated(many);
    QTest::newRow("in a field that nobody reads")
        << withGlobal("\"x\":" + QByteArray(many, '[') + QByteArray(many, ']'));
    QTest::newRow("one level too many") << withGlobal("\"x\":" + QByteArray(63, '[') + QByteArray(63, ']'));
}

void TestSigmfMetadata::refusesDeepNesting()
{
    QFETCH(const QByteArray, bytes);
    QString error;
    QVERIFY(!SigmfMetadata::parse(bytes, &error));
    QCOMPARE(error, QStringLiteral("SigMF: the metadata is nested deeper than 64 levels"));
}

void TestSigmfMetadata::acceptsTheDeepestNesting()
{
    accepted(withGlobal("\"x\":" + QByteArray(62, '[') + QByteArray(62, ']')));
    // Brackets inside of a text open nothing.
    accepted(withGlobal("\"x\":\"\\\"" + QByteArray(100, '[') + "\\\\\""));
}

void TestSigmfMetadata::refusesWhatIsTooLarge()
{
    QByteArray bytes = document(plainGlobal);
    bytes += QByteArray(SigmfMetadata::maximumSize - bytes.size(), ' ');
    QVERIFY(SigmfMetadata::parse(bytes, nullptr));
    QString error;
    QVERIFY(!SigmfMetadata::parse(bytes + ' ', &error));
    QCOMPARE(error, QStringLiteral("SigMF: the metadata is larger than 8388608 bytes"));
}

QTEST_APPLESS_MAIN(TestSigmfMetadata)
#include "tst_sigmfmetadata.moc"
