#pragma once

#include <reportcore/enuminfo.h>
#include <reportcore/rgobject.h>

#include <QVector>

#include <utility>

/// A data class is declared as one list of its fields, a macro that calls its argument once per field:
///
///     #define BOOKMARKENTRY_FIELDS(FIELD) FIELD(Required, quint64, Timestamp) FIELD(Required, QString, Bookmark)
///
///     class MY_EXPORT BookmarkEntry : public REPORTGENERATOR::RGObject
///     {
///         RG_OBJECT(BookmarkEntry, BOOKMARKENTRY_FIELDS)
///     };
///
/// and defined in one source file that includes <reportcore/fieldtable.h>:
///
///     RG_DEFINE_OBJECT(BookmarkEntry, BOOKMARKENTRY_FIELDS, Skip)
///
/// The last word says what becomes of unknown elements in XML: `Skip` or `Refuse`. A class has up to 32 fields; new
/// ones go to the end, because the order is that of the binary form.
///
// clang-format off
/// | first word   | meaning                                               | accessors                          |
/// |--------------|-------------------------------------------------------|------------------------------------|
/// | Required     | a value without which Check() fails                   | GetX, SetX, GetXAsString           |
/// | Defaulted    | a value that may be missing and then counts as zero   | GetX, SetX, GetXAsString           |
/// | Optional     | a value that may be missing, which can be told        | those, ResetX, IsXSet              |
/// | RequiredPart | a nested object without which Check() fails           | GetX, SetX                         |
/// | Part         | a nested object that may be missing                   | GetX, SetX, ResetX, IsXSet         |
/// | RequiredList | values or nested objects, at least one                | GetX, SetX, AppendX, ResetX, IsXSet |
/// | List         | values or nested objects; set means not empty         | GetX, SetX, AppendX, ResetX, IsXSet |
// clang-format on
///
/// Values are `bool`, `int`, `unsigned int`, `qint64`, `quint64`, `double` (finite), `QString`, `QDateTime` (valid, to
/// the millisecond) and enumerations made with RG_ENUM; nested objects are classes made with RG_OBJECT. The second word
/// is the type of the value, for lists that of one item. GetX of a part or a list also gives a reference for writing on
/// an object that is not const; for a part this makes it present.
#define RG_OBJECT(Class, FIELDS)                                                                                       \
public:                                                                                                                \
    Class();                                                                                                           \
    Class(const Class&);                                                                                               \
    Class(Class&&) noexcept;                                                                                           \
    ~Class() override;                                                                                                 \
    Class& operator=(const Class&);                                                                                    \
    Class& operator=(Class&&) noexcept;                                                                                \
    friend bool operator==(const Class& a, const Class& b)                                                             \
    {                                                                                                                  \
        return a.equals(b);                                                                                            \
    }                                                                                                                  \
    const REPORTGENERATOR::ClassInfo& classInfo() const override;                                                      \
    FIELDS(RG_DETAIL_ACCESSORS)                                                                                        \
                                                                                                                       \
protected:                                                                                                             \
    bool replaceIf(const Fill& fill) override;                                                                         \
    void appendBinaryFields(std::string& out) const override;                                                          \
    bool readBinaryFields(REPORTGENERATOR::ByteReader& reader) override;                                               \
                                                                                                                       \
private:                                                                                                               \
    enum FieldNumber : unsigned { FIELDS(RG_DETAIL_NUMBER) FieldCount };                                               \
    static_assert(FieldCount <= 32, "presence is a mask of 32 bits");                                                  \
    FIELDS(RG_DETAIL_MEMBER)

/// An enumeration inside a class, from a list that calls its argument with a name and the word shown to the user. The
/// enumerators are numbered from 0. `NameToX` gives -1 for an unknown name; `GetXs` and `GetGUIXs` list names and
/// words, with the number as index. Defined by RG_DEFINE_ENUM(Class, X, LIST).
#define RG_ENUM(Enum, LIST)                                                                                            \
    enum class Enum : int { LIST(RG_DETAIL_ENUMERATOR) };                                                              \
    static const REPORTGENERATOR::EnumInfo& Enum##Info();                                                              \
    friend const REPORTGENERATOR::EnumInfo& rgEnumInfo(Enum)                                                           \
    {                                                                                                                  \
        return Enum##Info();                                                                                           \
    }                                                                                                                  \
    static Enum NameTo##Enum(const QString& name)                                                                      \
    {                                                                                                                  \
        return static_cast<Enum>(Enum##Info().number(name));                                                           \
    }                                                                                                                  \
    static QString Enum##ToName(Enum value)                                                                            \
    {                                                                                                                  \
        return Enum##Info().name(static_cast<int>(value));                                                             \
    }                                                                                                                  \
    static QStringList Get##Enum##s()                                                                                  \
    {                                                                                                                  \
        return Enum##Info().names();                                                                                   \
    }                                                                                                                  \
    static QStringList GetGUI##Enum##s()                                                                               \
    {                                                                                                                  \
        return Enum##Info().words();                                                                                   \
    }

#define RG_DETAIL_ENUMERATOR(name, word) name,

#define RG_DETAIL_NUMBER(kind, type, name) Number_##name,
#define RG_DETAIL_MEMBER(kind, type, name) RG_DETAIL_MEMBER_##kind(type, name)
#define RG_DETAIL_ACCESSORS(kind, type, name) RG_DETAIL_ACCESSORS_##kind(type, name)

#define RG_DETAIL_MEMBER_Required(type, name) type m_##name{};
#define RG_DETAIL_MEMBER_Defaulted(type, name) RG_DETAIL_MEMBER_Required(type, name)
#define RG_DETAIL_MEMBER_Optional(type, name) RG_DETAIL_MEMBER_Required(type, name)
#define RG_DETAIL_MEMBER_RequiredPart(type, name) RG_DETAIL_MEMBER_Required(type, name)
#define RG_DETAIL_MEMBER_Part(type, name) RG_DETAIL_MEMBER_Required(type, name)
#define RG_DETAIL_MEMBER_RequiredList(type, name) QVector<type> m_##name;
#define RG_DETAIL_MEMBER_List(type, name) RG_DETAIL_MEMBER_RequiredList(type, name)

#define RG_DETAIL_GET_AND_SET(type, name)                                                                              \
    const type& Get##name() const                                                                                      \
    {                                                                                                                  \
        return m_##name;                                                                                               \
    }                                                                                                                  \
    void Set##name(type value)                                                                                         \
    {                                                                                                                  \
        m_##name = std::move(value);                                                                                   \
        setPresent(Number_##name);                                                                                     \
    }

#define RG_DETAIL_OPTION(type, name)                                                                                   \
    void Reset##name()                                                                                                 \
    {                                                                                                                  \
        m_##name = decltype(m_##name)();                                                                               \
        setAbsent(Number_##name);                                                                                      \
    }                                                                                                                  \
    bool Is##name##Set() const                                                                                         \
    {                                                                                                                  \
        return isPresent(Number_##name);                                                                               \
    }

#define RG_DETAIL_GET_FOR_WRITING(type, name)                                                                          \
    type& Get##name()                                                                                                  \
    {                                                                                                                  \
        setPresent(Number_##name);                                                                                     \
        return m_##name;                                                                                               \
    }

#define RG_DETAIL_ACCESSORS_Required(type, name)                                                                       \
    RG_DETAIL_GET_AND_SET(type, name)                                                                                  \
    QString Get##name##AsString() const                                                                                \
    {                                                                                                                  \
        return fieldText(Number_##name);                                                                               \
    }

#define RG_DETAIL_ACCESSORS_Defaulted(type, name) RG_DETAIL_ACCESSORS_Required(type, name)

#define RG_DETAIL_ACCESSORS_Optional(type, name) RG_DETAIL_ACCESSORS_Required(type, name) RG_DETAIL_OPTION(type, name)

#define RG_DETAIL_ACCESSORS_RequiredPart(type, name)                                                                   \
    RG_DETAIL_GET_AND_SET(type, name)                                                                                  \
    RG_DETAIL_GET_FOR_WRITING(type, name)

#define RG_DETAIL_ACCESSORS_Part(type, name) RG_DETAIL_ACCESSORS_RequiredPart(type, name) RG_DETAIL_OPTION(type, name)

#define RG_DETAIL_ACCESSORS_RequiredList(type, name)                                                                   \
    const QVector<type>& Get##name() const                                                                             \
    {                                                                                                                  \
        return m_##name;                                                                                               \
    }                                                                                                                  \
    QVector<type>& Get##name()                                                                                         \
    {                                                                                                                  \
        return m_##name;                                                                                               \
    }                                                                                                                  \
    void Set##name(QVector<type> items)                                                                                \
    {                                                                                                                  \
        m_##name = std::move(items);                                                                                   \
    }                                                                                                                  \
    void Append##name(type item)                                                                                       \
    {                                                                                                                  \
        m_##name.append(std::move(item));                                                                              \
    }                                                                                                                  \
    void Reset##name()                                                                                                 \
    {                                                                                                                  \
        m_##name.clear();                                                                                              \
    }                                                                                                                  \
    bool Is##name##Set() const                                                                                         \
    {                                                                                                                  \
        return !m_##name.isEmpty();                                                                                    \
    }

#define RG_DETAIL_ACCESSORS_List(type, name) RG_DETAIL_ACCESSORS_RequiredList(type, name)
