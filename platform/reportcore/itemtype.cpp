#include <reportcore/itemtype.h>

#include <reportcore/objectfields_p.h>
#include <reportcore/rgexception.h>
#include <reportcore/xmlreader_p.h>
#include <reportcore/xmltext_p.h>

#include <QXmlStreamWriter>

namespace REPORTGENERATOR {

namespace {

class ObjectItem final : public ItemType
{
public:
    bool equal(const void* a, const void* b) const override { return objectsEqual(object(a), object(b)); }
    QString problem(const void* item) const override { return object(item).problem(); }
    QString toText(const void*) const override { return {}; }

    void writeXml(const QString& name, const void* item, QXmlStreamWriter& writer) const override
    {
        writer.writeStartElement(name);
        writeFields(object(item), writer);
        writer.writeEndElement();
    }

    void readXml(const pugi::xml_node& element, void* item, bool validate) const override
    {
        readFields(element, *static_cast<RGObject*>(item), validate);
    }

private:
    static const RGObject& object(const void* item) { return *static_cast<const RGObject*>(item); }
};

} // namespace

ItemType::~ItemType() = default;

const ItemType& objectItem()
{
    static const ObjectItem item;
    return item;
}

void ScalarItem::writeXml(const QString& name, const void* item, QXmlStreamWriter& writer) const
{
    writer.writeTextElement(name, toText(item));
}

void ScalarItem::readXml(const pugi::xml_node& element, void* item, bool) const
{
    std::string buffer;
    const std::string_view text = elementText(element, buffer);
    if (!fromText(text, item)) {
        throw RGException(QString::fromUtf8(element.name()),
                          QStringLiteral("\"%1\" is not a possible value").arg(shortened(text)));
    }
}

} // namespace REPORTGENERATOR
