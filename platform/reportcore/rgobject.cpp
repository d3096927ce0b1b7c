#include <reportcore/rgobject.h>

#include <reportcore/bytereader.h>
#include <reportcore/durablefile.h>
#include <reportcore/objectfields_p.h>
#include <reportcore/rgexception.h>
#include <reportcore/xmldocument_p.h>
#include <reportcore/xmlreader_p.h>

#include <QDataStream>
#include <QFile>
#include <QXmlStreamWriter>

#include <algorithm>

namespace REPORTGENERATOR {

namespace {

// The first byte of the binary form.
constexpr quint8 binaryVersion = 1;

void writeDocument(const RGObject& object, QXmlStreamWriter& writer)
{
    writer.writeStartDocument();
    object.GetXml(writer);
    writer.writeEndDocument();
}

bool isRootOf(const XmlDocument& document, const RGObject& object)
{
    return object.classInfo().name == document.root().name();
}

} // namespace

RGObject::~RGObject() = default;

QString RGObject::className() const
{
    return QLatin1String(classInfo().name.data(), static_cast<qsizetype>(classInfo().name.size()));
}

void RGObject::Reset()
{
    replaceValidated([](RGObject&) { return true; });
}

bool RGObject::HasData() const
{
    return ObjectFields::isAnySet(*this);
}

QString RGObject::problem() const
{
    return objectProblem(*this);
}

void RGObject::Check() const
{
    const QString found = problem();
    if (!found.isEmpty()) {
        throw RGException(className(), found);
    }
}

bool RGObject::Check(bool throwing) const
{
    if (throwing) {
        Check();
    }
    return throwing || problem().isEmpty();
}

QString RGObject::contentProblem() const
{
    return {};
}

bool RGObject::equals(const RGObject& other) const
{
    return objectsEqual(*this, other);
}

QString RGObject::fieldText(unsigned field) const
{
    const FieldInfo& info = classInfo().fields[field];
    return info.item->toText(ObjectFields::at(*this, info));
}

bool RGObject::replaceValidated(const Fill& fill)
{
    const bool validate = m_validate;
    return replaceIf([&fill, validate](RGObject& fresh) {
        fresh.m_validate = validate;
        return fill(fresh);
    });
}

void RGObject::GetXml(QXmlStreamWriter& writer) const
{
    if (m_validate) {
        Check();
    }
    writer.writeStartElement(className());
    writeFields(*this, writer);
    writer.writeEndElement();
}

QString RGObject::GetXmlString() const
{
    QString text;
    QXmlStreamWriter writer(&text);
    writeDocument(*this, writer);
    return text;
}

bool RGObject::SaveXml(const QString& fileName) const
{
    QByteArray bytes;
    QXmlStreamWriter writer(&bytes);
    writer.setAutoFormatting(true);
    writeDocument(*this, writer);
    return !writer.hasError() && writeDurably(fileName, bytes);
}

// `where` goes before what is said about the content: a file's name and a colon, or nothing.
bool RGObject::readRoot(const XmlDocument& document, const QString& where)
{
    if (!isRootOf(document, *this)) {
        return false;
    }
    try {
        return replaceValidated([&document](RGObject& fresh) {
            readFields(document.root(), fresh, fresh.m_validate);
            if (fresh.m_validate) {
                fresh.Check();
            }
            return true;
        });
    } catch (const RGException& exception) {
        throw RGException(className(), where + QString::fromUtf8(exception.what()));
    }
}

bool RGObject::ProcessXml(QXmlStreamReader& reader)
{
    XmlDocument document;
    if (!document.take(reader)) {
        throw RGException(className(), document.problem());
    }
    return readRoot(document, {});
}

bool RGObject::SetXmlString(const QString& text, bool complain)
{
    XmlDocument document;
    const bool parsed = document.parse(text);
    if (parsed && readRoot(document, {})) {
        return true;
    }
    if (complain) {
        throw RGException(className(),
                          parsed ? QStringLiteral("the document is of another class") : document.problem());
    }
    return false;
}

bool RGObject::LoadXml(const QString& fileName)
{
    QFile file(fileName);
    return LoadXml(&file);
}

bool RGObject::LoadXml(QFile* file)
{
    if (file->isOpen()) {
        return loadFrom(*file);
    }
    if (!file->open(QIODevice::ReadOnly | QIODevice::Unbuffered)) {
        return false;
    }
    const bool loaded = loadFrom(*file);
    file->close();
    return loaded;
}

bool RGObject::loadFrom(QFile& file)
{
    // One byte more than there should be shows whether there is more; devices have no size and are cut off at the
    // limit.
    const qint64 size = file.size() - file.pos();
    const QByteArray bytes = file.read(size > 0 ? std::min<qint64>(size, longestDocument) + 1 : longestDocument + 1);
    if (file.error() != QFileDevice::NoError) {
        return false;
    }
    const QString where = file.fileName() + QStringLiteral(": ");
    XmlDocument document;
    if (!document.parse(bytes)) {
        throw RGException(className(), where + document.problem());
    }
    return readRoot(document, where);
}

void RGObject::appendBinary(std::string& out) const
{
    appendNumber(out, binaryVersion);
    appendBinaryFields(out);
}

bool RGObject::readBinary(const char*& begin, const char* end)
{
    return replaceValidated([&](RGObject& fresh) { return fresh.fillFromBinary(begin, end); });
}

// Of a new object; one that is half filled when this fails is for the bin.
bool RGObject::fillFromBinary(const char*& begin, const char* end)
{
    ByteReader reader(begin, end);
    quint8 version = 0;
    const bool complete = reader.read(version) && version == binaryVersion && readBinaryFields(reader);
    if (complete) {
        begin = reader.position();
    }
    return complete;
}

void RGObject::GetBinary(QDataStream& stream, int version, bool check) const
{
    if (version != binaryVersion) {
        throw RGException(className(), QStringLiteral("binary version %1 is not known").arg(version));
    }
    if (check) {
        Check();
    }
    std::string bytes;
    appendBinary(bytes);
    stream << QByteArray::fromRawData(bytes.data(), static_cast<qsizetype>(bytes.size()));
}

bool RGObject::SetBinary(QDataStream& stream, int version)
{
    if (version != binaryVersion) {
        throw RGException(className(), QStringLiteral("binary version %1 is not known").arg(version));
    }
    QByteArray bytes;
    stream >> bytes;
    if (stream.status() != QDataStream::Ok) {
        return false;
    }
    const char* begin = bytes.constData();
    const char* const end = begin + bytes.size();
    const bool taken = replaceValidated([&](RGObject& fresh) {
        const bool whole = fresh.readBinary(begin, end) && begin == end;
        if (whole && m_validate) {
            fresh.Check();
        }
        return whole;
    });
    if (!taken) {
        throw RGException(className(), QStringLiteral("the binary form is not whole"));
    }
    return true;
}

} // namespace REPORTGENERATOR
