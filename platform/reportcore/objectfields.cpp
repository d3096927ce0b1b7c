#include <reportcore/objectfields_p.h>

#include <QXmlStreamWriter>

namespace REPORTGENERATOR {

namespace {

bool isRequired(FieldKind kind)
{
    return kind == FieldKind::Required || kind == FieldKind::RequiredPart || kind == FieldKind::RequiredList;
}

bool isOptional(FieldKind kind)
{
    return kind == FieldKind::Optional || kind == FieldKind::Part;
}

bool listsEqual(const FieldInfo& field, const void* a, const void* b)
{
    const qsizetype size = field.list->size(a);
    if (size != field.list->size(b)) {
        return false;
    }
    for (qsizetype i = 0; i < size; ++i) {
        if (!field.item->equal(field.list->at(a, i), field.list->at(b, i))) {
            return false;
        }
    }
    return true;
}

bool fieldsEqual(const FieldInfo& field, const void* a, const void* b)
{
    return field.list != nullptr ? listsEqual(field, a, b) : field.item->equal(a, b);
}

QString fieldProblem(const RGObject& object, const FieldInfo& field, unsigned number)
{
    if (!ObjectFields::isSet(object, field, number)) {
        return isRequired(field.kind) ? QStringLiteral("%1 is missing").arg(field.qtName) : QString();
    }
    QString found;
    ObjectFields::forEachItem(object, field, [&](const void* item) {
        if (!found.isEmpty()) {
            return;
        }
        found = field.item->problem(item);
        if (!found.isEmpty()) {
            found.prepend(field.qtName + QStringLiteral(": "));
        }
    });
    return found;
}

} // namespace

ListType::~ListType() = default;

bool ObjectFields::isAnySet(const RGObject& object)
{
    const std::span<const FieldInfo> fields = object.classInfo().fields;
    for (unsigned i = 0; i < fields.size(); ++i) {
        if (isSet(object, fields[i], i)) {
            return true;
        }
    }
    return false;
}

bool objectsEqual(const RGObject& a, const RGObject& b)
{
    const ClassInfo& info = a.classInfo();
    if (&info != &b.classInfo()) {
        return false;
    }
    for (unsigned i = 0; i < info.fields.size(); ++i) {
        const FieldInfo& field = info.fields[i];
        if (isOptional(field.kind) && ObjectFields::isSet(a, field, i) != ObjectFields::isSet(b, field, i)) {
            return false;
        }
        if (!fieldsEqual(field, ObjectFields::at(a, field), ObjectFields::at(b, field))) {
            return false;
        }
    }
    return true;
}

QString objectProblem(const RGObject& object)
{
    const std::span<const FieldInfo> fields = object.classInfo().fields;
    for (unsigned i = 0; i < fields.size(); ++i) {
        QString problem = fieldProblem(object, fields[i], i);
        if (!problem.isEmpty()) {
            return problem;
        }
    }
    return ObjectFields::contentProblem(object);
}

void writeFields(const RGObject& object, QXmlStreamWriter& writer)
{
    const std::span<const FieldInfo> fields = object.classInfo().fields;
    for (unsigned i = 0; i < fields.size(); ++i) {
        const FieldInfo& field = fields[i];
        if (ObjectFields::isSet(object, field, i)) {
            ObjectFields::forEachItem(object, field,
                                      [&](const void* item) { field.item->writeXml(field.qtName, item, writer); });
        }
    }
}

} // namespace REPORTGENERATOR
