#include <reportcore/binaryform.h>

#include <reportcore/xmltext_p.h>

#include <cmath>

namespace REPORTGENERATOR {

namespace {

bool isLatin1(QStringView text)
{
    char16_t all = 0;
    for (const QChar c : text) {
        all |= c.unicode();
    }
    return all < 0x100;
}

void appendNarrow(QStringView text, std::string& out)
{
    const std::size_t start = out.size();
    out.resize(start + static_cast<std::size_t>(text.size()));
    std::transform(text.begin(), text.end(), out.begin() + static_cast<std::ptrdiff_t>(start),
                   [](QChar c) { return static_cast<char>(c.unicode()); });
}

void appendWide(QStringView text, std::string& out)
{
    for (const QChar c : text) {
        appendNumber(out, static_cast<quint16>(c.unicode()));
    }
}

QString wideText(const char* units, quint32 length)
{
    QString text(static_cast<qsizetype>(length), Qt::Uninitialized);
    qFromLittleEndian<quint16>(units, static_cast<qsizetype>(length), text.data());
    return text;
}

} // namespace

void BinaryForm::append(std::string& out, const QString& text)
{
    const bool wide = !isLatin1(text);
    appendNumber(out, static_cast<quint32>(text.size()) * 2 + (wide ? 1 : 0));
    if (wide) {
        appendWide(text, out);
    } else {
        appendNarrow(text, out);
    }
}

bool BinaryForm::read(ByteReader& reader, bool& value)
{
    quint8 byte = 0;
    if (!reader.read(byte) || byte > 1) {
        return false;
    }
    value = byte == 1;
    return true;
}

bool BinaryForm::read(ByteReader& reader, double& value)
{
    quint64 bits = 0;
    if (!reader.read(bits)) {
        return false;
    }
    value = std::bit_cast<double>(bits);
    return std::isfinite(value);
}

bool BinaryForm::read(ByteReader& reader, QString& text)
{
    quint32 header = 0;
    if (!reader.read(header)) {
        return false;
    }
    const quint32 length = header / 2;
    const bool wide = header % 2 == 1;
    const char* const units = reader.take(std::size_t{length} * (wide ? 2 : 1));
    if (units == nullptr) {
        return false;
    }
    text = wide ? wideText(units, length) : QString::fromLatin1(units, static_cast<qsizetype>(length));
    return true;
}

bool BinaryForm::read(ByteReader& reader, QDateTime& time)
{
    qint64 milliseconds = 0;
    if (!reader.read(milliseconds)) {
        return false;
    }
    time = QDateTime::fromMSecsSinceEpoch(milliseconds, Qt::UTC);
    return isWritable(time);
}

} // namespace REPORTGENERATOR
