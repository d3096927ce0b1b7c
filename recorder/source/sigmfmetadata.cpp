#include <recorder/source/sigmfmetadata.h>

#include "jsonfields_p.h"

#include <recorder/source/cleantext.h>
#include <recorder/source/isotime.h>
#include <recorder/source/refusal.h>

#include <algorithm>
#include <cmath>

namespace ZelkoRecorder {

namespace {

SampleType sampleType(const JsonFields& global)
{
    const QString name = global.text("core:datatype");
    if (name == u"ci8") {
        return SampleType::ComplexInt8;
    }
    if (name == u"ci16_le") {
        return SampleType::ComplexInt16;
    }
    if (name == u"ri16_le") {
        return SampleType::RealInt16;
    }
    if (name == u"cf32_le") {
        return SampleType::ComplexFloat32;
    }
    global.refuseField("core:datatype", QStringLiteral("\"%1\" is not supported").arg(cleanText(name, 20)));
}

QByteArray hash(const JsonFields& global)
{
    if (!global.has("core:sha512")) {
        return {};
    }
    constexpr qsizetype bytes = 64;
    const QByteArray digits = global.text("core:sha512").toUtf8().toLower();
    QByteArray hash = QByteArray::fromHex(digits);
    // Decoding skips what is no digit; only encoding it again shows that there was nothing to skip.
    if (hash.size() != bytes || hash.toHex() != digits) {
        global.refuseField("core:sha512", QStringLiteral("must be 128 hexadecimal digits"));
    }
    return hash;
}

QString dataset(const JsonFields& global)
{
    if (!global.has("core:dataset")) {
        return {};
    }
    QString name = global.text("core:dataset");
    const bool isPath = name.contains(u'/') || name.contains(u'\\') || name.contains(QChar::Null);
    if (name.isEmpty() || isPath || name == u"." || name == u"..") {
        global.refuseField("core:dataset", QStringLiteral("must name a file in the same folder"));
    }
    return name;
}

void refuseUnsupported(const JsonFields& global)
{
    if (global.has("core:metadata_only") && global.flag("core:metadata_only")) {
        global.refuseField("core:metadata_only", QStringLiteral("is set: there are no samples"));
    }
    if (global.has("core:trailing_bytes") && global.whole("core:trailing_bytes", 0, INT64_MAX) != 0) {
        global.refuseField("core:trailing_bytes", QStringLiteral("other than 0 is not supported"));
    }
}

/// Reads one document; throws `Refusal`.
class Reader
{
public:
    SigmfMetadata read(const Json& document);

private:
    void readGlobal(const JsonFields& global);
    void readCaptures(const Json& captures);
    void readAnnotations(const Json& annotations);
    SourceSegment segment(const JsonFields& capture) const;
    SourceMark mark(const JsonFields& annotation) const;
    qint64 frame(const JsonFields& fields) const;
    void extendFirstSegmentToStart();

    SigmfMetadata m_metadata;
    qint64 m_offset = 0;
};

SigmfMetadata Reader::read(const Json& document)
{
    const JsonFields root(document, QStringLiteral("the document"));
    if (!root.has("global")) {
        root.refuseField("global", QStringLiteral("is missing"));
    }
    readGlobal(JsonFields(document["global"], QStringLiteral("global")));
    readCaptures(root.list("captures"));
    readAnnotations(root.list("annotations"));
    return m_metadata;
}

void Reader::readGlobal(const JsonFields& global)
{
    refuseUnsupported(global);
    SourceDescription& description = m_metadata.description;
    description.format.type = sampleType(global);
    if (global.has("core:num_channels")) {
        description.format.channels =
            static_cast<int>(global.whole("core:num_channels", 1, SigmfMetadata::maximumChannels));
    }
    const double rate = global.number("core:sample_rate", 1, SourceDescription::maximumSampleRate);
    description.sampleRate = static_cast<quint64>(std::llround(rate));
    description.bandwidth = description.format.isComplex() ? description.sampleRate : (description.sampleRate + 1) / 2;
    if (global.has("core:offset")) {
        m_offset = global.whole("core:offset", 0, SourceDescription::maximumFrame);
    }
    m_metadata.sha512 = hash(global);
    m_metadata.dataset = dataset(global);
}

qint64 Reader::frame(const JsonFields& fields) const
{
    return fields.whole("core:sample_start", m_offset, SourceDescription::maximumFrame) - m_offset;
}

SourceSegment Reader::segment(const JsonFields& capture) const
{
    SourceSegment segment;
    segment.frame = frame(capture);
    if (capture.has("core:header_bytes") && capture.whole("core:header_bytes", 0, INT64_MAX) != 0) {
        capture.refuseField("core:header_bytes", QStringLiteral("other than 0 is not supported"));
    }
    if (capture.has("core:frequency")) {
        segment.centreFrequency = static_cast<quint64>(std::llround(capture.number("core:frequency", 0, 1e12)));
    }
    if (capture.has("core:datetime")) {
        const std::optional<quint64> time = microsecondsFromIsoTime(capture.text("core:datetime"));
        if (!time) {
            capture.refuseField("core:datetime", QStringLiteral("is not an ISO 8601 moment since 1970"));
        }
        segment.startTime = *time;
    }
    return segment;
}

void Reader::readCaptures(const Json& captures)
{
    QVector<SourceSegment> segments;
    quint64 latest = 0;
    for (const Json& capture : captures) {
        const QString name = QStringLiteral("captures[%1]").arg(segments.size());
        const SourceSegment next = segment(JsonFields(capture, name));
        if (!segments.isEmpty() && next.frame <= segments.constLast().frame) {
            refuse(name, QStringLiteral("does not begin behind the one before"));
        }
        if (next.startTime != 0 && next.startTime < latest) {
            refuse(name, QStringLiteral("is earlier than one before"));
        }
        latest = std::max(latest, next.startTime);
        segments.append(next);
    }
    if (segments.isEmpty()) {
        return;
    }
    m_metadata.description.segments = segments;
    extendFirstSegmentToStart();
}

void Reader::extendFirstSegmentToStart()
{
    SourceDescription& description = m_metadata.description;
    SourceSegment& first = description.segments.first();
    const quint64 lead = description.microsecondsAt(first.frame);
    first.startTime = first.startTime > lead ? first.startTime - lead : 0;
    first.frame = 0;
}

SourceMark Reader::mark(const JsonFields& annotation) const
{
    SourceMark mark;
    mark.frame = frame(annotation);
    if (annotation.has("core:sample_count")) {
        mark.frameCount = annotation.whole("core:sample_count", 0, SourceDescription::maximumFrame);
    }
    for (const char* key : {"core:label", "core:comment"}) {
        const QString text = annotation.has(key) ? cleanText(annotation.text(key)) : QString();
        if (mark.text.isEmpty()) {
            mark.text = text;
        }
    }
    if (mark.text.isEmpty()) {
        mark.text = QStringLiteral("Annotation");
    }
    return mark;
}

void Reader::readAnnotations(const Json& annotations)
{
    QVector<SourceMark>& marks = m_metadata.description.marks;
    for (const Json& annotation : annotations) {
        marks.append(mark(JsonFields(annotation, QStringLiteral("annotations[%1]").arg(marks.size()))));
    }
    // They should come sorted, but many writers append them as they are made.
    std::ranges::stable_sort(marks, {}, &SourceMark::frame);
}

} // namespace

std::optional<SigmfMetadata> SigmfMetadata::parse(const QByteArray& bytes, QString* error)
{
    try {
        if (bytes.size() > maximumSize) {
            refuse(QStringLiteral("the metadata"), QStringLiteral("is larger than %1 bytes").arg(maximumSize));
        }
        return Reader().read(parseJson(bytes, maximumDepth));
    } catch (const Refusal& refusal) {
        if (error != nullptr) {
            *error = QStringLiteral("SigMF: ") + refusal.text;
        }
        return std::nullopt;
    }
}

} // namespace ZelkoRecorder
