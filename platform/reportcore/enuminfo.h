#pragma once

#include <reportcore/reportcore_export.h>

#include <QStringList>

#include <initializer_list>
#include <string_view>
#include <vector>

namespace REPORTGENERATOR {

/// One enumerator: its name in files and in code, and the word shown to the user.
struct EnumeratorText
{
    const char* name;
    const char* word;
};

/// The enumerators of one enumeration, numbered from 0 in the order given. Immutable, so usable on any thread.
class REPORTCORE_EXPORT EnumInfo
{
public:
    EnumInfo(std::initializer_list<EnumeratorText> enumerators);
    ~EnumInfo();

    /// Number of the enumerator of that name, -1 if there is none.
    int number(std::string_view name) const;
    int number(const QString& name) const;

    /// Name of an enumerator, empty for a number that none has.
    QString name(int number) const { return m_names.value(number); }

    /// Names and words; the index is the number.
    const QStringList& names() const { return m_names; }
    const QStringList& words() const { return m_words; }

    bool contains(int number) const { return number >= 0 && number < m_names.size(); }

private:
    std::vector<std::string_view> m_keys;
    QStringList m_names;
    QStringList m_words;
};

} // namespace REPORTGENERATOR
