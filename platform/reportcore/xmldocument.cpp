#include <reportcore/xmldocument_p.h>

#include <reportcore/plainxml_p.h>

#include <QXmlStreamReader>

#include <algorithm>

namespace REPORTGENERATOR {

namespace {

// Texts that consist of blanks are kept.
constexpr unsigned int parseFlags = pugi::parse_escapes | pugi::parse_ws_pcdata_single;

QString tooLarge()
{
    return QStringLiteral("the document is larger than %1 MiB").arg(longestDocument / (1024 * 1024));
}

QString notUtf8()
{
    return QStringLiteral("the document is not text in UTF-8");
}

QString noDoctype()
{
    return QStringLiteral("a document type declaration is not accepted");
}

QString notWellFormed(const QXmlStreamReader& reader)
{
    return QStringLiteral("not well-formed in line %1, column %2: %3")
        .arg(reader.lineNumber())
        .arg(reader.columnNumber())
        .arg(reader.errorString());
}

bool isUtf8(QStringView encoding)
{
    return encoding.isEmpty() || encoding.compare(QLatin1String("UTF-8"), Qt::CaseInsensitive) == 0 ||
           encoding.compare(QLatin1String("US-ASCII"), Qt::CaseInsensitive) == 0;
}

bool isNamespaceTwice(const QXmlStreamReader& reader)
{
    const QXmlStreamNamespaceDeclarations declarations = reader.namespaceDeclarations();
    for (auto declaration = declarations.begin(); declaration != declarations.end(); ++declaration) {
        const auto isSame = [&](const auto& other) { return other.prefix() == declaration->prefix(); };
        if (std::any_of(declarations.begin(), declaration, isSame)) {
            return true;
        }
    }
    return false;
}

bool isZeroInNames(const QXmlStreamReader& reader)
{
    const QXmlStreamAttributes attributes = reader.attributes();
    const QXmlStreamNamespaceDeclarations declarations = reader.namespaceDeclarations();
    return std::any_of(attributes.begin(), attributes.end(),
                       [](const auto& attribute) { return attribute.qualifiedName().contains(QChar::Null); }) ||
           std::any_of(declarations.begin(), declarations.end(),
                       [](const auto& declaration) { return declaration.prefix().contains(QChar::Null); });
}

// The two things about attributes that the reader lets pass.
bool areAttributesMalformed(const QXmlStreamReader& reader)
{
    return isNamespaceTwice(reader) || isZeroInNames(reader);
}

} // namespace

bool XmlDocument::refuse(const QString& problem)
{
    m_problem = problem;
    return false;
}

bool XmlDocument::parse(const QByteArray& bytes)
{
    if (bytes.size() > longestDocument) {
        return refuse(tooLarge());
    }
    if (parsePlain(bytes)) {
        return true;
    }
    // With a zero it could still be another encoding that the reader knows.
    if (!bytes.isValidUtf8() || bytes.contains('\0')) {
        return refuse(notUtf8());
    }
    QXmlStreamReader reader(bytes);
    if (reader.readNext() == QXmlStreamReader::StartDocument && !isUtf8(reader.documentEncoding())) {
        return refuse(notUtf8());
    }
    return takeWhole(reader);
}

bool XmlDocument::parse(const QString& text)
{
    if (!text.isValidUtf16()) {
        return refuse(QStringLiteral("the document holds half a character"));
    }
    const QByteArray bytes = text.toUtf8();
    if (bytes.size() > longestDocument) {
        return refuse(tooLarge());
    }
    if (parsePlain(bytes)) {
        return true;
    }
    QXmlStreamReader reader(text);
    return takeWhole(reader);
}

// The quick way, for the documents that this system writes. The parser behind it looks at little of what it passes by:
// what it is given has been looked at before, and it sees to the end tags.
bool XmlDocument::parsePlain(const QByteArray& bytes)
{
    if (!isPlainXml({bytes.constData(), static_cast<std::size_t>(bytes.size())})) {
        return false;
    }
    m_bytes = bytes;
    const auto size = static_cast<std::size_t>(m_bytes.size());
    const bool parsed = m_document.load_buffer_inplace(m_bytes.data(), size, parseFlags, pugi::encoding_utf8);
    if (!parsed) {
        m_document.reset();
    }
    return parsed;
}

bool XmlDocument::takeWhole(QXmlStreamReader& reader)
{
    if (!take(reader)) {
        return false;
    }
    while (!reader.atEnd()) {
        if (reader.readNext() == QXmlStreamReader::DTD) {
            return refuse(noDoctype());
        }
    }
    return !reader.hasError() || refuse(notWellFormed(reader));
}

bool XmlDocument::take(QXmlStreamReader& reader)
{
    while (!reader.isStartElement()) {
        const QXmlStreamReader::TokenType token = reader.readNext();
        if (token == QXmlStreamReader::DTD) {
            return refuse(noDoctype());
        }
        if (reader.hasError()) {
            return refuse(notWellFormed(reader));
        }
        if (reader.atEnd()) {
            return refuse(QStringLiteral("no element is left"));
        }
    }
    return copyElement(reader);
}

bool XmlDocument::copyElement(QXmlStreamReader& reader)
{
    pugi::xml_node parent = m_document.root();
    int depth = 0;
    do {
        if (!copyToken(reader, parent)) {
            return false;
        }
        depth += reader.isStartElement() ? 1 : reader.isEndElement() ? -1 : 0;
        if (depth > deepestElement || m_copied > longestDocument) {
            return refuse(depth > deepestElement ? QStringLiteral("elements are nested too deep") : tooLarge());
        }
        if (depth > 0) {
            reader.readNext();
        }
    } while (depth > 0);
    return true;
}

// Texts become CDATA: the reader has resolved their entities already.
bool XmlDocument::copyToken(QXmlStreamReader& reader, pugi::xml_node& parent)
{
    const QByteArray bytes = (reader.isStartElement() ? reader.qualifiedName() : reader.text()).toUtf8();
    m_copied += bytes.size() + 1;
    switch (reader.tokenType()) {
    case QXmlStreamReader::StartElement:
        parent = parent.append_child(bytes.constData());
        return !areAttributesMalformed(reader) ||
               refuse(QStringLiteral("not well-formed: attributes of %1").arg(reader.qualifiedName()));
    case QXmlStreamReader::EndElement:
        parent = parent.parent();
        return true;
    case QXmlStreamReader::Characters:
        parent.append_child(pugi::node_cdata).set_value(bytes.constData());
        return true;
    case QXmlStreamReader::Comment:
    case QXmlStreamReader::ProcessingInstruction:
        return true;
    default:
        return refuse(reader.hasError() ? notWellFormed(reader)
                                        : QStringLiteral("the entity %1 is not known").arg(reader.text()));
    }
}

} // namespace REPORTGENERATOR
