#pragma once

#include <QByteArray>
#include <QString>

#include <pugixml.hpp>

class QXmlStreamReader;

namespace REPORTGENERATOR {

/// Longest document that is read, in bytes. A parsed document may need sixteen times its size in memory.
constexpr qsizetype longestDocument = 32 * 1024 * 1024;

/// A document in memory whose root element is to be read. It holds elements and their texts, the entities resolved;
/// attributes and all else are left out. However a document comes in, the same ones are refused and the same is held
/// of those that are not.
class XmlDocument
{
public:
    /// Parses a document in UTF-8. False, with a reason in problem(), if it is too large, not well-formed, too deep, in
    /// another encoding or has a document type declaration.
    bool parse(const QByteArray& bytes);

    /// The same for a document that is text already; the encoding that it declares is of no account.
    bool parse(const QString& text);

    /// Takes over the element at which `reader` stands, or the next one, up to its end. False if `reader` finds it
    /// not well-formed, if it holds unresolved entities or is too large or too deep.
    bool take(QXmlStreamReader& reader);

    pugi::xml_node root() const { return m_document.document_element(); }
    const QString& problem() const { return m_problem; }

private:
    bool refuse(const QString& problem);
    bool parsePlain(const QByteArray& bytes);
    bool takeWhole(QXmlStreamReader& reader);
    bool copyElement(QXmlStreamReader& reader);
    bool copyToken(QXmlStreamReader& reader, pugi::xml_node& parent);

    QByteArray m_bytes;
    pugi::xml_document m_document;
    qsizetype m_copied = 0;
    QString m_problem;
};

} // namespace REPORTGENERATOR
