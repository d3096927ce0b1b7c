#pragma once

#include <zelkobase/data/zelkobasedata_export.h>

#include <reportcore/fielddeclaration.h>

#define ZELKO_FILTER_TYPES(ENUMERATOR)                                                                                 \
    ENUMERATOR(Double, "floating point number")                                                                        \
    ENUMERATOR(Int, "whole number")                                                                                    \
    ENUMERATOR(Reserved, "reserved")                                                                                   \
    ENUMERATOR(Time, "time of day")                                                                                    \
    ENUMERATOR(DateTime, "date and time")

#define ZELKO_FILTER_COMPARATORS(ENUMERATOR)                                                                           \
    ENUMERATOR(Equal, "=")                                                                                             \
    ENUMERATOR(Less, "<")                                                                                              \
    ENUMERATOR(Greater, ">")                                                                                           \
    ENUMERATOR(LessOrEqual, "<=")                                                                                      \
    ENUMERATOR(GreaterOrEqual, ">=")                                                                                   \
    ENUMERATOR(NotEqual, "!=")

#define ZELKO_NUMBERFILTER_FIELDS(FIELD)                                                                               \
    FIELD(Required, Type, Type)                                                                                        \
    FIELD(Required, Comparator, Comparator)                                                                            \
    FIELD(Required, QString, FilterValue)

namespace ZELKO_XML {

/// A limit and how a value is compared with it, the value on the left. FilterValue is the text of the limit as
/// filterValueText() gives it for Type. Check() fails where it is not, and for the type that is reserved.
class ZELKOBASEDATA_EXPORT NumberFilter : public REPORTGENERATOR::RGObject
{
public:
    /// What the limit is.
    RG_ENUM(Type, ZELKO_FILTER_TYPES)

    RG_ENUM(Comparator, ZELKO_FILTER_COMPARATORS)

    RG_OBJECT(NumberFilter, ZELKO_NUMBERFILTER_FIELDS)

protected:
    QString contentProblem() const override;
};

} // namespace ZELKO_XML
