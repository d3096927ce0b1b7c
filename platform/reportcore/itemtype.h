#pragma once

#include <reportcore/enuminfo.h>

#include <QDateTime>

#include <string>
#include <string_view>

class QXmlStreamWriter;

namespace pugi {
class xml_node;
}

namespace REPORTGENERATOR {

/// What the operations of an object must know of the type of one value: that of a field, or of one item of a list. A
/// value is handed over by its address; for nested objects that is the address as RGObject.
class REPORTCORE_EXPORT ItemType
{
public:
    virtual ~ItemType();

    virtual bool equal(const void* a, const void* b) const = 0;

    /// What is wrong with the value in one line, empty if nothing.
    virtual QString problem(const void* item) const = 0;

    /// The value as text; empty for nested objects.
    virtual QString toText(const void* item) const = 0;

    virtual void writeXml(const QString& name, const void* item, QXmlStreamWriter& writer) const = 0;

    /// Throws RGException if the element does not hold a value of this type.
    virtual void readXml(const pugi::xml_node& element, void* item, bool validate) const = 0;
};

/// A value that is written as the text of one element.
class REPORTCORE_EXPORT ScalarItem : public ItemType
{
public:
    void writeXml(const QString& name, const void* item, QXmlStreamWriter& writer) const final;
    void readXml(const pugi::xml_node& element, void* item, bool validate) const final;

protected:
    /// False if the text, in UTF-8, is no value of this type.
    virtual bool fromText(std::string_view text, void* item) const = 0;
};

/// Numbers of an enumeration made with RG_ENUM; the text is the enumerator's name.
class REPORTCORE_EXPORT EnumItem final : public ScalarItem
{
public:
    explicit EnumItem(const EnumInfo& info)
        : m_info(info)
    {}

    bool equal(const void* a, const void* b) const override;
    QString problem(const void* item) const override;
    QString toText(const void* item) const override;

protected:
    bool fromText(std::string_view text, void* item) const override;

private:
    const EnumInfo& m_info;
};

/// The type of nested objects.
REPORTCORE_EXPORT const ItemType& objectItem();

/// The types of the plain values; the argument only chooses among them.
REPORTCORE_EXPORT const ItemType& plainItem(const bool*);
REPORTCORE_EXPORT const ItemType& plainItem(const int*);
REPORTCORE_EXPORT const ItemType& plainItem(const unsigned int*);
REPORTCORE_EXPORT const ItemType& plainItem(const qint64*);
REPORTCORE_EXPORT const ItemType& plainItem(const quint64*);
REPORTCORE_EXPORT const ItemType& plainItem(const double*);
REPORTCORE_EXPORT const ItemType& plainItem(const QString*);
REPORTCORE_EXPORT const ItemType& plainItem(const QDateTime*);

} // namespace REPORTGENERATOR
