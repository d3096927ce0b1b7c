#include <reportcore/xmlreader_p.h>

#include <reportcore/objectfields_p.h>
#include <reportcore/rgexception.h>
#include <reportcore/xmltext_p.h>

namespace REPORTGENERATOR {

namespace {

// Number of the field of that name, or of fields if there is none. Elements mostly come in the order of the fields, so
// the search starts at the last one found.
std::size_t findField(std::span<const FieldInfo> fields, std::string_view name, std::size_t start)
{
    for (std::size_t i = 0; i < fields.size(); ++i) {
        const std::size_t number = start + i < fields.size() ? start + i : start + i - fields.size();
        if (fields[number].name == name) {
            return number;
        }
    }
    return fields.size();
}

void readField(const pugi::xml_node& child, RGObject& object, const FieldInfo& field, unsigned number, bool validate)
{
    void* const member = ObjectFields::at(object, field);
    if (field.list != nullptr) {
        return field.item->readXml(child, field.list->append(member), validate);
    }
    if (ObjectFields::isSet(object, field, number)) {
        throw RGException(field.qtName, QStringLiteral("stands there twice"));
    }
    ObjectFields::markPresent(object, number);
    field.item->readXml(child, member, validate);
}

void refuseText(const pugi::xml_node& child)
{
    const bool isText = child.type() == pugi::node_pcdata || child.type() == pugi::node_cdata;
    if (isText && !trimmed(child.value()).empty()) {
        throw RGException(QString::fromUtf8(child.parent().name()),
                          QStringLiteral("holds text where elements are due"));
    }
}

} // namespace

void readFields(const pugi::xml_node& element, RGObject& object, bool validate)
{
    const ClassInfo& info = object.classInfo();
    std::size_t number = 0;
    for (const pugi::xml_node child : element.children()) {
        if (child.type() != pugi::node_element) {
            refuseText(child);
            continue;
        }
        const std::size_t found = findField(info.fields, child.name(), number);
        if (found < info.fields.size()) {
            readField(child, object, info.fields[number = found], static_cast<unsigned>(found), validate);
        } else if (validate && info.unknown == UnknownElements::Refuse) {
            throw RGException(QString::fromUtf8(child.name()),
                              QStringLiteral("is no field of %1").arg(QLatin1String(element.name())));
        }
    }
}

} // namespace REPORTGENERATOR
