#include <reportcore/binarycodec_p.h>

#include <reportcore/objectfields_p.h>

#include <algorithm>

namespace REPORTGENERATOR {

namespace {

void appendList(const RGObject& object, const FieldInfo& field, std::string& out)
{
    appendNumber(out, static_cast<quint32>(field.list->size(ObjectFields::at(object, field))));
    ObjectFields::forEachItem(object, field, [&](const void* item) { field.item->appendBinary(item, out); });
}

// An item takes more room in memory than in the bytes of a peer. So a peer that promises many gets room for a few, and
// more only as they come.
constexpr quint32 promisedAtMost = 1024;

// A count that the bytes left cannot hold is refused before memory is asked for.
bool readList(ByteReader& reader, const FieldInfo& field, void* list)
{
    quint32 count = 0;
    if (!reader.read(count) || count == 0 || count > reader.left() / field.item->leastBinarySize()) {
        return false;
    }
    field.list->reserve(list, static_cast<qsizetype>(std::min(count, promisedAtMost)));
    for (quint32 i = 0; i < count; ++i) {
        if (!field.item->readBinary(reader, field.list->append(list))) {
            return false;
        }
    }
    return true;
}

} // namespace

void appendFields(const RGObject& object, std::string& out)
{
    const quint32 mask = ObjectFields::mask(object);
    appendNumber(out, mask);
    const std::span<const FieldInfo> fields = object.classInfo().fields;
    for (unsigned i = 0; i < fields.size(); ++i) {
        const FieldInfo& field = fields[i];
        if (((mask >> i) & 1U) == 0) {
            continue;
        }
        if (field.list != nullptr) {
            appendList(object, field, out);
        } else {
            field.item->appendBinary(ObjectFields::at(object, field), out);
        }
    }
}

bool readFields(ByteReader& reader, RGObject& object)
{
    quint32 mask = 0;
    const std::span<const FieldInfo> fields = object.classInfo().fields;
    if (!reader.read(mask) || (quint64{mask} >> fields.size()) != 0) {
        return false;
    }
    for (unsigned i = 0; i < fields.size(); ++i) {
        const FieldInfo& field = fields[i];
        if (((mask >> i) & 1U) == 0) {
            continue;
        }
        void* const member = ObjectFields::at(object, field);
        if (field.list == nullptr) {
            ObjectFields::markPresent(object, i);
        }
        if (field.list != nullptr ? !readList(reader, field, member) : !field.item->readBinary(reader, member)) {
            return false;
        }
    }
    return true;
}

} // namespace REPORTGENERATOR
