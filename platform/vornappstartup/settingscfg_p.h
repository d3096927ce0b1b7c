#pragma once

#include <vornappstartup/icfg.h>
#include <vornappstartup/inifile_p.h>

/// A configuration in an INI file, or a group of it.
class SettingsCfg final : public ICfg
{
public:
    explicit SettingsCfg(const QString& fileName);
    ~SettingsCfg() override;

    QString GetString(const QString& key, const QString& defaultValue) const override;
    int GetInteger(const QString& key, int defaultValue) const override;
    bool GetBool(const QString& key, bool defaultValue) const override;
    void SetString(const QString& key, const QString& value) override;
    void SetInteger(const QString& key, int value) override;
    void SetBool(const QString& key, bool value) override;
    std::unique_ptr<ICfg> OpenGroup(const QString& name, Access access) override;
    bool Flush() override;

private:
    SettingsCfg(std::shared_ptr<IniFile> file, const QString& prefix);
    bool hasGroup(const QString& prefix) const;

    const std::shared_ptr<IniFile> m_file;
    const QString m_prefix; ///< of the keys; empty, or with a "/" at its end
};
