#include <reportcore/enuminfo.h>

#include <algorithm>

namespace REPORTGENERATOR {

EnumInfo::EnumInfo(std::initializer_list<EnumeratorText> enumerators)
{
    for (const EnumeratorText& enumerator : enumerators) {
        m_keys.emplace_back(enumerator.name);
        m_names.append(QString::fromUtf8(enumerator.name));
        m_words.append(QString::fromUtf8(enumerator.word));
    }
}

EnumInfo::~EnumInfo() = default;

int EnumInfo::number(std::string_view name) const
{
    const auto found = std::find(m_keys.begin(), m_keys.end(), name);
    return found == m_keys.end() ? -1 : static_cast<int>(found - m_keys.begin());
}

int EnumInfo::number(const QString& name) const
{
    return static_cast<int>(m_names.indexOf(name));
}

} // namespace REPORTGENERATOR
