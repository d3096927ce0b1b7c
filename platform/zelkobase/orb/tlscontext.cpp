#include <zelkobase/orb/tlscontext_p.h>

#include <zelkobase/orb/orb.h>
#include <zelkobase/orb/tlspeer_p.h>
#include <zelkobase/orb/tlsrefusal_p.h>

#include <omniORB4/CORBA.h>

#include <omniORB4/sslContext.h>

#include <openssl/err.h>
#include <openssl/ssl.h>

#include <QFile>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <string>
#include <utility>

namespace ZelkoCommon {
namespace {

QString lastProblem()
{
    const char* const reason = ERR_reason_error_string(ERR_peek_last_error());
    ERR_clear_error(); // what stands there would count for the next connection of this thread
    return QString::fromLatin1(reason ? reason : "it has nothing of the kind");
}

void require(bool worked, const QString& file, const char* purpose)
{
    if (!worked) {
        const QString text =
            QStringLiteral("TLS cannot be used: %1 gives no %2: %3").arg(file, QLatin1String(purpose), lastProblem());
        throw OrbError(text.toStdString());
    }
}

// Without it the library would ask at the terminal.
int passwordOf(char* buffer, int size, int, void* options)
{
    const std::string password = static_cast<const TlsOptions*>(options)->keyPassword.toStdString();
    const auto length = static_cast<int>(password.size());
    if (length > size) {
        return 0;
    }
    std::copy(password.begin(), password.end(), buffer);
    return length;
}

void useAuthorities(SSL_CTX* context, const TlsOptions& options)
{
    const QByteArray file = QFile::encodeName(options.authorityFile);
    require(SSL_CTX_load_verify_locations(context, file.constData(), nullptr) == 1, options.authorityFile,
            "certificate of an authority");
    SSL_CTX_set_client_CA_list(context, SSL_load_client_CA_file(file.constData()));
}

void useKey(SSL_CTX* context, const TlsOptions& options)
{
    const QByteArray file = QFile::encodeName(options.keyFile);
    SSL_CTX_set_default_passwd_cb(context, passwordOf);
    SSL_CTX_set_default_passwd_cb_userdata(context, const_cast<TlsOptions*>(&options));
    require(SSL_CTX_use_certificate_chain_file(context, file.constData()) == 1, options.keyFile, "certificate");
    require(SSL_CTX_use_PrivateKey_file(context, file.constData(), SSL_FILETYPE_PEM) == 1, options.keyFile,
            "private key");
    SSL_CTX_set_default_passwd_cb_userdata(context, nullptr);
}

void configure(SSL_CTX* context, const TlsOptions& options)
{
    SSL_CTX_set_min_proto_version(context, TLS1_2_VERSION);
    SSL_CTX_set_options(context, SSL_OP_NO_RENEGOTIATION | SSL_OP_NO_TICKET);
    SSL_CTX_set_num_tickets(context, 0); // no session is ever taken up again: each end proves itself each time
    SSL_CTX_set_session_cache_mode(context, SSL_SESS_CACHE_OFF);
    SSL_CTX_set_dh_auto(context, 1);
    useAuthorities(context, options);
    useKey(context, options);
}

// Either end tells the other one by an alert why it does not go on.
void noteAlert(int where, int alert)
{
    const QString text = (where & SSL_CB_READ) ? QStringLiteral("it refused the TLS connection of this machine: %1")
                                               : QStringLiteral("it does not talk through TLS as is needed: %1");
    noteTlsRefusal(text.arg(QLatin1String(SSL_alert_desc_string_long(alert))));
}

// The ORB takes a failure of a connection for something that passes when `errno` says so from before.
void hearAlert(const SSL* ssl, int where, int alert)
{
    if (!(where & SSL_CB_ALERT)) {
        return;
    }
    const bool isEnd = (alert >> 8) == SSL3_AL_FATAL; // what is below names it
    if (isEnd && !SSL_is_server(ssl)) {
        noteAlert(where, alert);
    }
    errno = 0;
}

// Owned by the ORB once it is the singleton.
class TlsContext final : public sslContext
{
public:
    explicit TlsContext(TlsOptions options)
        : m_options(std::move(options))
    {}

protected:
    void set_supported_versions() override
    {
        configure(get_SSL_CTX(), m_options);
        setChecksHosts(get_SSL_CTX(), m_options.checksHosts);
    }
    void set_CA() override {}
    void set_certificate() override {}
    void set_privatekey() override {}
    void set_DH() override {}
    int set_verify_mode() override { return SSL_VERIFY_PEER | SSL_VERIFY_FAIL_IF_NO_PEER_CERT; }

private:
    const TlsOptions m_options;
};

// Keeps the ORB from warning of what is wanted.
class NoTlsContext final : public sslContext
{
private:
    void internal_initialise() override {}
};

// The ORB would say of a file that cannot be used no more than that something failed.
void tryOut(const TlsOptions& options)
{
    const std::unique_ptr<SSL_CTX, decltype(&SSL_CTX_free)> context(SSL_CTX_new(TLS_method()), SSL_CTX_free);
    configure(context.get(), options);
}

} // namespace

void prepareTls(const std::optional<TlsOptions>& options)
{
    if (options) {
        tryOut(*options);
    }
    delete sslContext::singleton; // of an ORB that did not come to be
    sslContext::singleton = nullptr;
    sslContext::verify_callback = verifyPeer;
    sslContext::info_callback = hearAlert;
    if (options) {
        sslContext::singleton = new TlsContext(*options);
    } else {
        sslContext::singleton = new NoTlsContext;
    }
}

} // namespace ZelkoCommon
