#pragma once

#include <zelkobase/connection/linkcredentials.h>
#include <zelkobase/connection/zelkobaseconnection_export.h>
#include <zelkobase/orb/tlsoptions.h>

#include <QString>
#include <QStringList>

#include <chrono>
#include <optional>
#include <vector>

namespace ZelkoCommon {

/// Which sub systems a site has and where their recorder servers are found.
///
/// A site file is a JSON object:
///
///     {
///         "currentSubSystem": "north",
///         "subSystems": [
///             { "name": "north", "host": "recorder-north", "port": 8004 },
///             { "name": "south", "host": "192.0.2.7", "service": "corbaname::192.0.2.1#south/recorder" }
///         ],
///         "listen": "192.0.2.20",
///         "answerLimitMs": 5000,
///         "tls": { "authority": "site-ca.pem", "key": "console.pem" }
///     }
///
/// A sub system may have a "user" for whom to act there, and a "password" too. Without the password the application is
/// to ask for it, and its client is nobody in particular until it did. Who writes it into the file keeps the file to
/// himself.
///
/// "port" is 8004 and "currentSubSystem" the first one when left out. "service" is where the recorder's service is
/// found when that is not at the same host and port: a corbaloc or a corbaname, whose places say their hosts ("rir:"
/// does not), or an IOR. A name of a host in the first two is looked up within the time limit of a question; in an IOR,
/// and in what a naming service answers, it is not limited, so addresses should stand there. "answerLimitMs" is how
/// long a question to the service may take, in milliseconds, from 1 to 600000; 5000 when left out. "listen" is the
/// address of this machine on which the recorder servers call back: one of its own addresses, or "0.0.0.0" for all of
/// them. When it is left out an application finds it out by itself: loopback while all recorder servers are on this
/// machine, else the address that leads to them. It is needed where they are reached by more than one interface.
///
/// With "tls" the application talks through TLS and not otherwise, with all of the site's recorders. "authority" is a
/// file with the certificates that those of the recorders are signed with, "key" one with the certificate and the
/// private key of this machine, for recorders ask who calls; "keyPassword" is needed where the key is encrypted. Files
/// are PEM and looked for in the folder of the site file.
class ZELKOBASECONNECTION_EXPORT ZelkoConfiguration
{
public:
    static constexpr quint16 DefaultPort = 8004;
    static constexpr std::chrono::milliseconds DefaultAnswerLimit{5000};

    struct SubSystem
    {
        QString name; ///< not empty, without "/"
        QString host; ///< name or address
        quint16 port = DefaultPort;
        QString service = {};             ///< reference of the recorder's service; empty: at host and port
        LinkCredentials credentials = {}; ///< for whom to act there

        /// Whether there is all that it takes to act for somebody: a user and his password.
        bool hasCredentials() const { return !credentials.user.isEmpty() && !credentials.password.isEmpty(); }

        bool operator==(const SubSystem&) const = default;
    };

    ZelkoConfiguration();

    /// Reads a site file as it stands. Nothing, and a text for people in `error`, when it is no site file.
    static std::optional<ZelkoConfiguration> fromJson(const QByteArray& json, QString* error);

    /// Reads a site file from disk; an error names the file.
    static std::optional<ZelkoConfiguration> fromFile(const QString& fileName, QString* error);

    /// Adds a sub system, or changes the one of that name. False, and no change, for a name or host that cannot be. The
    /// first one becomes the current one.
    bool AddSubSystem(const SubSystem& subSystem);

    const std::vector<SubSystem>& SubSystems() const { return m_subSystems; }

    /// The sub system of that name, or null.
    const SubSystem* Find(const QString& name) const;

    /// The sub system that an application works on; empty when there is none at all.
    const QString& GetCurrentSubSystem() const { return m_current; }

    /// False, and no change, for a name that is not there.
    bool SetCurrentSubSystem(const QString& name);

    /// Where to listen for the calls of the recorder servers; empty when that is left to the application.
    const QString& ListenAddress() const { return m_listenAddress; }

    /// False, and no change, for a text that can be no address.
    bool SetListenAddress(const QString& address);

    /// How to talk through TLS; nothing: without it.
    const std::optional<TlsOptions>& Tls() const { return m_tls; }

    /// False, and no change, when a file is missing.
    bool SetTls(const TlsOptions& options);

    /// How long a question to a recorder's service may take.
    std::chrono::milliseconds AnswerLimit() const { return m_answerLimit; }

    /// False, and no change, for a limit that is not from 1 ms to 10 min.
    bool SetAnswerLimit(std::chrono::milliseconds limit);

    /// Path of a sub system on the value tree.
    static QString MakeRootPath(const QString& subSystem);

    /// Under which the settings of windows are kept.
    QString cfgPath() const;

private:
    std::vector<SubSystem> m_subSystems;
    QString m_current;
    QString m_listenAddress;
    std::optional<TlsOptions> m_tls;
    std::chrono::milliseconds m_answerLimit = DefaultAnswerLimit;
};

} // namespace ZelkoCommon
