#pragma once

#include <reportcore/binaryform.h>
#include <reportcore/fielddeclaration.h>
#include <reportcore/itemtype.h>

#include <concepts>
#include <span>
#include <type_traits>

namespace REPORTGENERATOR {

/// First word of a field's declaration.
enum class FieldKind { Required, Defaulted, Optional, RequiredPart, Part, RequiredList, List };

/// What becomes of elements that no field claims.
enum class UnknownElements { Skip, Refuse };

/// A list as the operations of an object see it. Items are handed out by the address that ItemType expects.
class REPORTCORE_EXPORT ListType
{
public:
    virtual ~ListType();
    virtual qsizetype size(const void* list) const = 0;
    virtual const void* at(const void* list, qsizetype index) const = 0;

    /// Appends a default item and gives its address, which holds until the next call.
    virtual void* append(void* list) const = 0;
};

struct FieldInfo
{
    std::string_view name;
    QString qtName;
    FieldKind kind;
    std::ptrdiff_t offset;
    const ItemType* item;
    const ListType* list;
};

struct ClassInfo
{
    std::string_view name;
    UnknownElements unknown;
    std::span<const FieldInfo> fields;
};

/// The address at which ItemType expects a value.
template <typename T>
const void* itemAddress(const T& item)
{
    if constexpr (std::derived_from<T, RGObject>) {
        return static_cast<const RGObject*>(&item);
    } else {
        return &item;
    }
}

template <typename T>
class ListOf final : public ListType
{
public:
    qsizetype size(const void* list) const override { return items(list).size(); }
    const void* at(const void* list, qsizetype index) const override { return itemAddress(items(list).at(index)); }

    void* append(void* list) const override
    {
        QVector<T>& all = *static_cast<QVector<T>*>(list);
        all.append(T{});
        return const_cast<void*>(itemAddress(all.last()));
    }

private:
    static const QVector<T>& items(const void* list) { return *static_cast<const QVector<T>*>(list); }
};

template <typename T>
const ItemType& itemTypeOf()
{
    if constexpr (std::derived_from<T, RGObject>) {
        return objectItem();
    } else if constexpr (std::is_enum_v<T>) {
        static const EnumItem item(rgEnumInfo(T{}));
        return item;
    } else {
        return plainItem(static_cast<const T*>(nullptr));
    }
}

template <typename T>
const ListType& listTypeOf()
{
    static const ListOf<T> list;
    return list;
}

inline std::ptrdiff_t offsetIn(const RGObject& object, const void* member)
{
    return static_cast<const char*>(member) - reinterpret_cast<const char*>(&object);
}

template <typename T>
FieldInfo makeField(const char* name, FieldKind kind, const RGObject& prototype, const T& member)
{
    return {name, QString::fromLatin1(name), kind, offsetIn(prototype, itemAddress(member)), &itemTypeOf<T>(), nullptr};
}

template <typename T>
FieldInfo makeField(const char* name, FieldKind kind, const RGObject& prototype, const QVector<T>& member)
{
    return {name, QString::fromLatin1(name), kind, offsetIn(prototype, &member), &itemTypeOf<T>(), &listTypeOf<T>()};
}

} // namespace REPORTGENERATOR

#define RG_DETAIL_FIELD_INFO(kind, type, name)                                                                         \
    REPORTGENERATOR::makeField(#name, REPORTGENERATOR::FieldKind::kind, prototype, prototype.m_##name),

#define RG_DETAIL_LIST_BIT(kind, type, name) | BinaryForm::listBit(Number_##name, m_##name)
#define RG_DETAIL_LIST_BIT_IF_SET(kind, type, name) | BinaryForm::listBitIfSet(Number_##name, m_##name)
#define RG_DETAIL_APPEND(kind, type, name) BinaryForm::appendField(out, mask, Number_##name, m_##name);
#define RG_DETAIL_READ(kind, type, name) &&BinaryForm::readField(reader, mask, Number_##name, m_##name)

/// Defines what RG_OBJECT has declared; belongs into the source file of the class.
#define RG_DEFINE_OBJECT(Class, FIELDS, whatOfUnknownElements)                                                         \
    Class::Class() = default;                                                                                          \
    Class::Class(const Class&) = default;                                                                              \
    Class::Class(Class&&) noexcept = default;                                                                          \
    Class::~Class() = default;                                                                                         \
    Class& Class::operator=(const Class&) = default;                                                                   \
    Class& Class::operator=(Class&&) noexcept = default;                                                               \
    const REPORTGENERATOR::ClassInfo& Class::classInfo() const                                                         \
    {                                                                                                                  \
        static const Class prototype;                                                                                  \
        static const REPORTGENERATOR::FieldInfo fields[] = {FIELDS(RG_DETAIL_FIELD_INFO)};                             \
        static const REPORTGENERATOR::ClassInfo info{#Class, REPORTGENERATOR::UnknownElements::whatOfUnknownElements,  \
                                                     fields};                                                          \
        return info;                                                                                                   \
    }                                                                                                                  \
    bool Class::replaceIf(const Fill& fill)                                                                            \
    {                                                                                                                  \
        Class fresh;                                                                                                   \
        if (!fill(fresh)) {                                                                                            \
            return false;                                                                                              \
        }                                                                                                              \
        *this = std::move(fresh);                                                                                      \
        return true;                                                                                                   \
    }                                                                                                                  \
    void Class::appendBinaryFields(std::string& out) const                                                             \
    {                                                                                                                  \
        using REPORTGENERATOR::BinaryForm;                                                                             \
        const quint32 mask = presentFields() FIELDS(RG_DETAIL_LIST_BIT_IF_SET);                                        \
        BinaryForm::append(out, mask);                                                                                 \
        FIELDS(RG_DETAIL_APPEND)                                                                                       \
    }                                                                                                                  \
    bool Class::readBinaryFields(REPORTGENERATOR::ByteReader& reader)                                                  \
    {                                                                                                                  \
        using REPORTGENERATOR::BinaryForm;                                                                             \
        quint32 mask = 0;                                                                                              \
        const bool complete = BinaryForm::readMask(reader, FieldCount, mask) FIELDS(RG_DETAIL_READ);                   \
        setPresentFields(mask & ~(0U FIELDS(RG_DETAIL_LIST_BIT)));                                                     \
        return complete;                                                                                               \
    }

#define RG_DETAIL_ENUMERATOR_TEXT(name, word) {#name, word},

/// Defines what RG_ENUM has declared.
#define RG_DEFINE_ENUM(Class, Enum, LIST)                                                                              \
    const REPORTGENERATOR::EnumInfo& Class::Enum##Info()                                                               \
    {                                                                                                                  \
        static const REPORTGENERATOR::EnumInfo info{LIST(RG_DETAIL_ENUMERATOR_TEXT)};                                  \
        return info;                                                                                                   \
    }
