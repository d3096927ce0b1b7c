#include <zelkobase/data/numberfilter.h>

#include <zelkobase/data/filtervalue.h>

#include <reportcore/fieldtable.h>

namespace ZELKO_XML {

RG_DEFINE_ENUM(NumberFilter, Type, ZELKO_FILTER_TYPES)
RG_DEFINE_ENUM(NumberFilter, Comparator, ZELKO_FILTER_COMPARATORS)
RG_DEFINE_OBJECT(NumberFilter, ZELKO_NUMBERFILTER_FIELDS, Refuse)

template <typename T>
static bool isTextOf(const QString& text)
{
    T value{};
    return parseFilterValue(text, value);
}

static bool isTextOf(NumberFilter::Type type, const QString& text)
{
    switch (type) {
    case NumberFilter::Type::Double:
        return isTextOf<double>(text);
    case NumberFilter::Type::Int:
        return isTextOf<int>(text);
    case NumberFilter::Type::Time:
        return isTextOf<QTime>(text);
    case NumberFilter::Type::DateTime:
        return isTextOf<QDateTime>(text);
    case NumberFilter::Type::Reserved:
        break;
    }
    return false;
}

QString NumberFilter::contentProblem() const
{
    return isTextOf(m_Type, m_FilterValue) ? QString() : QStringLiteral("FilterValue is no limit of that Type");
}

} // namespace ZELKO_XML
