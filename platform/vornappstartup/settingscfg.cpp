#include <vornappstartup/settingscfg_p.h>

SettingsCfg::SettingsCfg(const QString& fileName)
    : m_file(std::make_shared<IniFile>(fileName))
{}

SettingsCfg::SettingsCfg(std::shared_ptr<IniFile> file, const QString& prefix)
    : m_file(std::move(file))
    , m_prefix(prefix)
{}

SettingsCfg::~SettingsCfg() = default;

QString SettingsCfg::GetString(const QString& key, const QString& defaultValue) const
{
    return m_file->values().value(m_prefix + key, defaultValue);
}

int SettingsCfg::GetInteger(const QString& key, int defaultValue) const
{
    bool isNumber = false;
    const int number = GetString(key, QString()).toInt(&isNumber);
    return isNumber ? number : defaultValue;
}

bool SettingsCfg::GetBool(const QString& key, bool defaultValue) const
{
    const QString word = GetString(key, QString());
    if (word == QLatin1String("true") || word == QLatin1String("1")) {
        return true;
    }
    return word == QLatin1String("false") || word == QLatin1String("0") ? false : defaultValue;
}

void SettingsCfg::SetString(const QString& key, const QString& value)
{
    m_file->setValue(m_prefix + key, value);
}

void SettingsCfg::SetInteger(const QString& key, int value)
{
    SetString(key, QString::number(value));
}

void SettingsCfg::SetBool(const QString& key, bool value)
{
    SetString(key, value ? QStringLiteral("true") : QStringLiteral("false"));
}

// The keys are in order, so that those of a group stand together.
bool SettingsCfg::hasGroup(const QString& prefix) const
{
    const auto first = m_file->values().lowerBound(prefix);
    return first != m_file->values().end() && first.key().startsWith(prefix);
}

std::unique_ptr<ICfg> SettingsCfg::OpenGroup(const QString& name, Access access)
{
    const QString prefix = m_prefix + name + QLatin1Char('/');
    const bool opens = access == Access::Write ? m_file->isWritable() : hasGroup(prefix);
    if (name.isEmpty() || !opens) {
        return nullptr;
    }
    return std::unique_ptr<ICfg>(new SettingsCfg(m_file, prefix));
}

bool SettingsCfg::Flush()
{
    return m_file->write();
}
