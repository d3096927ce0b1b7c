#pragma once

#include <console/session/embeddedrecorder.h>
#include <console/session/session.h>

#include <zelkobase/connection/linkoptions.h>
#include <zelkobase/connection/zelkoconfiguration.h>

namespace ZelkoCommon {
class Orb;
}

namespace ZelkoConsole {

/// The real session: keeps the sub systems of a site on the client's tree, or the one of a recorder of its own.
class ConsoleSession : public Session
{
    Q_OBJECT

public:
    /// Connects to the sub systems of a site. `orb` outlives the session.
    ConsoleSession(ZelkoCommon::Orb& orb, const ZelkoCommon::ZelkoConfiguration& site,
                   const ZelkoCommon::LinkOptions& link = {}, QObject* parent = nullptr);

    /// Starts a recorder and connects to it.
    ConsoleSession(ZelkoCommon::Orb& orb, const EmbeddedRecorderOptions& recorder, QObject* parent = nullptr);

    /// Detaches and stops the recorder, if there is one.
    ~ConsoleSession() override;

    QStringList subSystems() const override;
    SubSystemStatus status(const QString& subSystem) const override;
    std::shared_ptr<ZelkoCommon::AbstractServerConnectionData> connectionData() const override;

    const std::vector<KnownUser>& knownUsers() const override;
    QString configuredUser() const override;
    void actFor(const ZelkoCommon::LinkCredentials& user) override;
    std::optional<ZelkoCommon::Role> role(const QString& subSystem) const override;

    /// The recorder of the session's own; null with a site.
    const EmbeddedRecorder* recorder() const;

private:
    struct Private;
    const std::unique_ptr<Private> d;
};

} // namespace ZelkoConsole
