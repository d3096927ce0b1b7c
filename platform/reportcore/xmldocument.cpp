#include <reportcore/xmldocument_p.h>

#include <QXmlStreamReader>

namespace REPORTGENERATOR {

namespace {

// Kept: what tells a well-formed document from one that is not, and texts that consist of blanks.
constexpr unsigned int parseFlags = pugi::parse_cdata | pugi::parse_eol | pugi::parse_ws_pcdata_single |
                                    pugi::parse_declaration | pugi::parse_doctype | pugi::parse_fragment;

constexpr int deepestElement = 64;

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

} // namespace

bool XmlDocument::refuse(const QString& problem)
{
    m_problem = problem;
    return false;
}

bool XmlDocument::parse(QByteArray bytes)
{
    return parseBytes(std::move(bytes)) && checkTopLevel() && checkEncoding();
}

bool XmlDocument::parse(const QString& text)
{
    if (!text.isValidUtf16())
        return refuse(QStringLiteral("the document holds half a character"));
    return parseBytes(text.toUtf8()) && checkTopLevel();
}

bool XmlDocument::parseBytes(QByteArray bytes)
{
    if (bytes.size() > longestDocument)
        return refuse(tooLarge());
    if (bytes.contains('\0'))
        return refuse(notUtf8());
    // The parser puts its end mark over the last byte it is given.
    m_bytes = std::move(bytes.append('\0'));
    const auto result = m_document.load_buffer_inplace(m_bytes.data(), static_cast<std::size_t>(m_bytes.size()),
                                                       parseFlags, pugi::encoding_utf8);
    const QString reason = QLatin1String(result.description());
    return result || refuse(QStringLiteral("not well-formed at byte %1: %2").arg(result.offset).arg(reason));
}

bool XmlDocument::checkTopLevel()
{
    int elements = 0;
    for (const pugi::xml_node node : m_document.children()) {
        if (node.type() == pugi::node_doctype)
            return refuse(noDoctype());
        if (node.type() == pugi::node_pcdata || node.type() == pugi::node_cdata)
            return refuse(QStringLiteral("not well-formed: text outside of the root element"));
        elements += node.type() == pugi::node_element ? 1 : 0;
    }
    return elements == 1 || refuse(QStringLiteral("not well-formed: %1 root elements").arg(elements));
}

bool XmlDocument::checkEncoding()
{
    const QByteArray encoding(m_document.first_child().attribute("encoding").value());
    const bool declared = m_document.first_child().type() == pugi::node_declaration && !encoding.isEmpty();
    const bool readable =
        encoding.compare("UTF-8", Qt::CaseInsensitive) == 0 || encoding.compare("US-ASCII", Qt::CaseInsensitive) == 0;
    return !declared || readable || refuse(notUtf8());
}

bool XmlDocument::take(QXmlStreamReader& reader)
{
    while (!reader.isStartElement()) {
        const QXmlStreamReader::TokenType token = reader.readNext();
        if (token == QXmlStreamReader::DTD)
            return refuse(noDoctype());
        if (reader.atEnd() || reader.hasError())
            return refuse(reader.hasError() ? reader.errorString() : QStringLiteral("no element is left"));
    }
    return copyElement(reader);
}

bool XmlDocument::copyElement(QXmlStreamReader& reader)
{
    pugi::xml_node parent = m_document;
    int depth = 0;
    do {
        if (!copyToken(reader, parent))
            return false;
        depth += reader.isStartElement() ? 1 : reader.isEndElement() ? -1 : 0;
        if (depth > deepestElement || m_copied > longestDocument)
            return refuse(depth > deepestElement ? QStringLiteral("elements are nested too deep") : tooLarge());
        if (depth > 0)
            reader.readNext();
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
        return true;
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
        return refuse(reader.hasError() ? reader.errorString()
                                        : QStringLiteral("the entity %1 is not known").arg(reader.text()));
    }
}

} // namespace REPORTGENERATOR
