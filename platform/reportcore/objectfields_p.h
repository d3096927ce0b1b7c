#pragma once

#include <reportcore/fieldtable.h>

namespace REPORTGENERATOR {

/// The fields of one object by number, for code that works on any class.
class ObjectFields
{
public:
    static const void* at(const RGObject& object, const FieldInfo& field)
    {
        return reinterpret_cast<const char*>(&object) + field.offset;
    }
    static void* at(RGObject& object, const FieldInfo& field)
    {
        return reinterpret_cast<char*>(&object) + field.offset;
    }

    /// Whether the field is set; a list is when it is not empty.
    static bool isSet(const RGObject& object, const FieldInfo& field, unsigned number)
    {
        return field.list != nullptr ? field.list->size(at(object, field)) > 0 : object.isPresent(number);
    }

    static void markPresent(RGObject& object, unsigned number) { object.setPresent(number); }
    static QString contentProblem(const RGObject& object) { return object.contentProblem(); }

    /// Whether any field is set.
    static bool isAnySet(const RGObject& object);

    /// Calls `use(const void* item)` for each value of the field: for a list its items, otherwise the one.
    template <typename Use>
    static void forEachItem(const RGObject& object, const FieldInfo& field, Use use)
    {
        const void* const member = at(object, field);
        if (field.list == nullptr) {
            use(member);
            return;
        }
        const qsizetype size = field.list->size(member);
        for (qsizetype i = 0; i < size; ++i) {
            use(field.list->at(member, i));
        }
    }
};

bool objectsEqual(const RGObject& a, const RGObject& b);
QString objectProblem(const RGObject& object);
void writeFields(const RGObject& object, QXmlStreamWriter& writer);

} // namespace REPORTGENERATOR
