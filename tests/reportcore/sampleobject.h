#pragma once

#include <reportcore/fielddeclaration.h>

#include <QDateTime>

#define COLOURS(ENUMERATOR)                                                                                            \
    ENUMERATOR(Red, "a warm red")                                                                                      \
    ENUMERATOR(Green, "a green")                                                                                       \
    ENUMERATOR(Blue, "a cold blue")

#define SAMPLE_PART_FIELDS(FIELD)                                                                                      \
    FIELD(Required, int, Number)                                                                                       \
    FIELD(Optional, QString, Note)                                                                                     \
    FIELD(List, int, Value)

#define SAMPLE_OBJECT_FIELDS(FIELD)                                                                                    \
    FIELD(Required, QString, Name)                                                                                     \
    FIELD(RequiredPart, SamplePart, Head)                                                                              \
    FIELD(RequiredList, QString, Address)                                                                              \
    FIELD(Defaulted, bool, Flag)                                                                                       \
    FIELD(Optional, bool, Choice)                                                                                      \
    FIELD(Optional, int, Small)                                                                                        \
    FIELD(Optional, unsigned int, Count)                                                                               \
    FIELD(Optional, qint64, Balance)                                                                                   \
    FIELD(Optional, quint64, Total)                                                                                    \
    FIELD(Optional, double, Level)                                                                                     \
    FIELD(Optional, QString, Text)                                                                                     \
    FIELD(Optional, QDateTime, Time)                                                                                   \
    FIELD(Optional, Colour, Colour)                                                                                    \
    FIELD(Part, SamplePart, Extra)                                                                                     \
    FIELD(List, int, Figure)                                                                                           \
    FIELD(List, Colour, Palette)                                                                                       \
    FIELD(List, SamplePart, Item)

/// A nested object; unknown elements are refused.
class SamplePart : public REPORTGENERATOR::RGObject
{
    RG_OBJECT(SamplePart, SAMPLE_PART_FIELDS)
};

/// A data class with a field of every kind and type; unknown elements are skipped.
class SampleObject : public REPORTGENERATOR::RGObject
{
public:
    RG_ENUM(Colour, COLOURS)
    RG_OBJECT(SampleObject, SAMPLE_OBJECT_FIELDS)
};

/// Values that differ from the default.
template <typename T>
T sampleValue()
{
    if constexpr (std::is_same_v<T, QString>)
        return QStringLiteral("sample");
    else if constexpr (std::is_same_v<T, QDateTime>)
        return QDateTime::fromMSecsSinceEpoch(1'234'567'890'123, Qt::UTC);
    else if constexpr (std::is_same_v<T, double>)
        return 0.1;
    else
        return static_cast<T>(1);
}

template <>
inline SamplePart sampleValue<SamplePart>()
{
    SamplePart part;
    part.SetNumber(-7);
    part.SetNote(QStringLiteral("part"));
    part.AppendValue(3);
    return part;
}

/// An object with only what Check() asks for, and one with every field set.
SampleObject smallSample();
SampleObject fullSample();
