#include "testauthority.h"

#include <QFile>

#include <openssl/evp.h>
#include <openssl/pem.h>
#include <openssl/x509.h>
#include <openssl/x509v3.h>

#include <cstdio>

namespace {

template <auto free>
struct Freeing
{
    template <typename T>
    void operator()(T* pointer) const
    {
        free(pointer);
    }
};
using Key = std::unique_ptr<EVP_PKEY, Freeing<EVP_PKEY_free>>;
using Certificate = std::unique_ptr<X509, Freeing<X509_free>>;
using File = std::unique_ptr<std::FILE, Freeing<std::fclose>>;

Key newKey()
{
    return Key(EVP_EC_gen("P-256"));
}

void setName(X509_NAME* name, const char* text)
{
    X509_NAME_add_entry_by_txt(name, "CN", MBSTRING_UTF8, reinterpret_cast<const unsigned char*>(text), -1, -1, 0);
}

void addExtension(X509* certificate, int kind, const QByteArray& value)
{
    X509_EXTENSION* const extension = X509V3_EXT_conf_nid(nullptr, nullptr, kind, value.constData());
    X509_add_ext(certificate, extension, -1);
    X509_EXTENSION_free(extension);
}

Certificate newCertificate(const char* name, EVP_PKEY* key, int serial)
{
    Certificate certificate(X509_new());
    X509_set_version(certificate.get(), X509_VERSION_3);
    ASN1_INTEGER_set(X509_get_serialNumber(certificate.get()), serial);
    setName(X509_get_subject_name(certificate.get()), name);
    X509_set_pubkey(certificate.get(), key);
    return certificate;
}

void setTimes(X509* certificate, int from, int until)
{
    X509_gmtime_adj(X509_getm_notBefore(certificate), from);
    X509_gmtime_adj(X509_getm_notAfter(certificate), until);
}

bool writeFile(const QString& path, X509* certificate, EVP_PKEY* key, const QString& password)
{
    const File file(std::fopen(QFile::encodeName(path).constData(), "w"));
    const QByteArray bytes = password.toUtf8();
    return file && PEM_write_X509(file.get(), certificate) == 1 &&
           (!key ||
            PEM_write_PKCS8PrivateKey(file.get(), key, bytes.isEmpty() ? nullptr : EVP_aes_256_cbc(), bytes.constData(),
                                      static_cast<int>(bytes.size()), nullptr, nullptr) == 1);
}

} // namespace

struct TestAuthority::Private
{
    const QTemporaryDir folder;
    const Key key = newKey();
    const Certificate certificate = newCertificate("Authority of a test", key.get(), 1);
    int lastSerial = 1;
};

TestAuthority::TestAuthority()
    : d(std::make_unique<Private>())
{
    X509* const own = d->certificate.get();
    setTimes(own, -24 * 3600, 24 * 3600);
    X509_set_issuer_name(own, X509_get_subject_name(own));
    addExtension(own, NID_basic_constraints, "critical,CA:TRUE");
    X509_sign(own, d->key.get(), EVP_sha256());
    writeFile(file(), own, nullptr, {});
}

TestAuthority::~TestAuthority() = default;

QString TestAuthority::file() const
{
    return d->folder.filePath(QStringLiteral("authority.pem"));
}

QString TestAuthority::makeKey(const Wish& wish)
{
    const Key key = newKey();
    const Certificate certificate = newCertificate("Host of a test", key.get(), ++d->lastSerial);
    setTimes(certificate.get(), wish.validFrom, wish.validUntil);
    X509_set_issuer_name(certificate.get(), X509_get_subject_name(d->certificate.get()));
    addExtension(certificate.get(), NID_subject_alt_name, wish.hosts.toLatin1());
    X509_sign(certificate.get(), d->key.get(), EVP_sha256());
    const QString path = d->folder.filePath(QStringLiteral("key%1.pem").arg(d->lastSerial));
    return writeFile(path, certificate.get(), key.get(), wish.password) ? path : QString();
}

ZelkoCommon::TlsOptions TestAuthority::options(const Wish& wish)
{
    return {file(), makeKey(wish), wish.password};
}
