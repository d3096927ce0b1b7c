#pragma once

#include <console/session/session.h>

#include <zelkobase/connection/zelkoconfiguration.h>

namespace ZelkoConsole {

/// The session of a site to which nothing can be connected, because of what its site file says of this machine: a key
/// that cannot be used, an address that it does not have. The window shows the site, and why.
class UnusableSite : public Session
{
    Q_OBJECT

public:
    /// `reason` is for people, without a full stop.
    UnusableSite(const ZelkoCommon::ZelkoConfiguration& site, const QString& reason, QObject* parent = nullptr);
    ~UnusableSite() override;

    QStringList subSystems() const override;
    SubSystemStatus status(const QString& subSystem) const override;

    /// To none of them, for good.
    std::shared_ptr<ZelkoCommon::AbstractServerConnectionData> connectionData() const override;

private:
    const QString m_reason;
    const std::shared_ptr<ZelkoCommon::AbstractServerConnectionData> m_connection;
};

} // namespace ZelkoConsole
