#include <vornappstartup/settingscfg_p.h>

#include <QStringList>

#include <algorithm>

SettingsCfg::SettingsCfg(const QString& fileName)
    : m_settings(std::make_shared<QSettings>(fileName, QSettings::IniFormat))
{
    // A key that is missing is missing, whatever an INI file of another program says.
    m_settings->setFallbacksEnabled(false);
}

SettingsCfg::SettingsCfg(std::shared_ptr<QSettings> settings, const QString& prefix)
    : m_settings(std::move(settings))
    , m_prefix(prefix)
{}

SettingsCfg::~SettingsCfg() = default;

// A text with commas that somebody wrote into the file without quotes is read as a list.
QString SettingsCfg::GetString(const QString& key, const QString& defaultValue) const
{
    const QVariant value = m_settings->value(m_prefix + key);
    return value.isValid() ? value.toStringList().join(QLatin1String(", ")) : defaultValue;
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
    m_settings->setValue(m_prefix + key, value);
}

void SettingsCfg::SetInteger(const QString& key, int value)
{
    m_settings->setValue(m_prefix + key, QString::number(value));
}

void SettingsCfg::SetBool(const QString& key, bool value)
{
    m_settings->setValue(m_prefix + key, value ? QStringLiteral("true") : QStringLiteral("false"));
}

bool SettingsCfg::hasGroup(const QString& prefix) const
{
    const QStringList keys = m_settings->allKeys();
    return std::any_of(keys.begin(), keys.end(), [&](const QString& key) { return key.startsWith(prefix); });
}

std::unique_ptr<ICfg> SettingsCfg::OpenGroup(const QString& name, Access access)
{
    const QString prefix = m_prefix + name + QLatin1Char('/');
    const bool opens = access == Access::Write ? m_settings->isWritable() : hasGroup(prefix);
    if (name.isEmpty() || !opens) {
        return nullptr;
    }
    return std::unique_ptr<ICfg>(new SettingsCfg(m_settings, prefix));
}

// QSettings keeps the first error that it ever met. A fresh one shares what waits to be written and has none yet.
bool SettingsCfg::Flush()
{
    QSettings settings(m_settings->fileName(), m_settings->format());
    settings.sync();
    return settings.status() == QSettings::NoError;
}
