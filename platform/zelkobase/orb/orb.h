#pragma once

#include <zelkobase/orb/tlsoptions.h>
#include <zelkobase/orb/zelkobaseorb_export.h>

#include <QString>

#include <omniORB4/CORBA.h>

#include <chrono>
#include <memory>
#include <optional>
#include <stdexcept>

namespace ZelkoCommon {

/// How a process takes part in CORBA. Every option of the ORB that matters is set from here on purpose, because its own
/// defaults suit a closed machine room: they listen on every interface, open a local socket to everybody, never give a
/// call up and speak ISO-8859-1.
struct ZELKOBASEORB_EXPORT OrbOptions
{
    /// Address to listen on; empty for all interfaces.
    QString listenAddress = QStringLiteral("127.0.0.1");

    /// Port to listen on; 0 lets the system choose.
    quint16 port = 0;

    /// Where others reach this process when that is not where it listens, behind an address translation for instance.
    /// Empty and 0: where it listens. The port to listen on must be given then.
    QString publishedHost;
    quint16 publishedPort = 0;

    /// After this time a call is given up; each call may set its own.
    std::chrono::milliseconds callTimeout{5000};

    /// The limit of a call that has to connect first, in place of the call's own and of a CallDeadline; 0: none of its
    /// own.
    std::chrono::milliseconds connectTimeout{0};

    /// A peer that began a message must have sent the rest of it in this time, and one that began to shake hands for
    /// TLS must be done with it.
    std::chrono::milliseconds receiveTimeout{3000};

    /// A connection without a call is closed after this time.
    std::chrono::seconds idleTime{180};

    /// A peer must have taken a whole answer in this time.
    std::chrono::milliseconds answerTimeout{20000};

    /// How many connections others hold at once. Each has one call served at a time, on a thread that is there for it.
    /// Beyond it a new connection takes the place of the eldest one that never had an answer; without such a one it is
    /// closed.
    int maxConnections = 100;

    /// And how many of them come from one address, so that one host does not take all places; beyond it a new one takes
    /// the place of the eldest one of the same host. This host is no exception: a process of its own may go wrong as
    /// well, and others come through it. Enough for 16 consoles on one machine, which hold three each.
    int maxConnectionsPerHost = 50;

    /// The largest request in bytes that others may send.
    int maxRequestBytes = 4 * 1024 * 1024;

    /// The largest message in bytes that is sent, or accepted as an answer to a call of this process.
    int maxMessageBytes = 64 * 1024 * 1024;

    /// Given: this process listens with TLS and calls with TLS, and does neither without, whoever it talks to. Nothing:
    /// it does not know TLS.
    std::optional<TlsOptions> tls = {};
};

/// The ORB could not be started, the port is taken or a file of TLS cannot be used for instance. The text is for
/// people.
class ZELKOBASEORB_EXPORT OrbError : public std::runtime_error
{
public:
    using std::runtime_error::runtime_error;
};

/// The ORB of the process. There is one at a time, and a second one is refused: it would be the first one under another
/// name, options and end included. It serves calls as soon as it exists, on threads of its own, until it is
/// destroyed. All functions may be called on any thread.
class ZELKOBASEORB_EXPORT Orb
{
public:
    /// Throws OrbError.
    explicit Orb(const OrbOptions& options);

    /// Waits for the calls that are being served and closes all connections.
    ~Orb();

    Orb(const Orb&) = delete;
    Orb& operator=(const Orb&) = delete;

    /// The ORB of the process; null before there is one, and from its end on.
    static Orb* current();

    CORBA::ORB_ptr orb() const;

    /// Where objects without a name live; a reference to one ends with the process.
    PortableServer::POA_ptr rootPoa() const;

    /// Makes `servant` reachable as corbaloc::HOST:PORT/`key`, or corbaloc:ssliop:HOST:PORT/`key` with TLS, also by
    /// references from before a restart of the process.
    void publish(const char* key, PortableServer::ServantBase* servant);

    /// Ends what `publish` began. Calls that are being served go on to their end, for which it does not wait.
    void withdraw(const char* key);

    /// Reference to the object that `publish` makes reachable as `key`, whether it has done so yet or not.
    CORBA::Object_ptr published(const char* key) const;

    /// The port that is listened on.
    quint16 port() const;

    /// Whether it talks through TLS.
    bool usesTls() const;

    /// Reference to the object `key` on a host, without asking whether it is there. Null for a host or port that cannot
    /// be.
    CORBA::Object_ptr remoteObject(const QString& host, quint16 port, const char* key) const;

    /// The object that a text names: IOR:, corbaloc: or corbaname:. It takes `wstring` at once, through GIOP 1.2 with
    /// UTF-8 and UTF-16 where the text names no code sets of its own. The object is not asked whether it is there; the
    /// naming service of a corbaname is, and blocks for as long as a call may. Throws CORBA::SystemException:
    /// CORBA::BAD_PARAM or CORBA::MARSHAL for a text that is no reference, and what the call of a naming service ends
    /// with. Nil for the IOR of nothing.
    CORBA::Object_ptr reference(const QString& text) const;

private:
    struct Private;
    const std::unique_ptr<Private> d;
};

} // namespace ZelkoCommon
