#include <credentials/passwordhash.h>

#include <QRegularExpression>

#include <sodium.h>

#include <array>
#include <utility>

namespace ZelkoCommon {
namespace {

static_assert(HashCost::least().passes >= crypto_pwhash_argon2id_OPSLIMIT_MIN);
static_assert(HashCost::least().memoryBytes >= crypto_pwhash_argon2id_MEMLIMIT_MIN);
static_assert(HashCost().passes == crypto_pwhash_argon2id_OPSLIMIT_INTERACTIVE);
static_assert(HashCost().memoryBytes == crypto_pwhash_argon2id_MEMLIMIT_INTERACTIVE);

constexpr std::size_t kibibyte = 1024;

bool isReady()
{
    static const bool ready = sodium_init() >= 0;
    return ready;
}

bool canBePassword(const QByteArray& password)
{
    return !password.isEmpty() && password.size() <= PasswordHash::maximumPassword;
}

// Salt and hash are unpadded base64, of which there is one way to write given bytes, and others to nearly write them.
bool isBase64(const QString& text)
{
    const auto bytes = QByteArray::fromBase64Encoding(text.toLatin1(), QByteArray::AbortOnBase64DecodingErrors);
    return bytes && bytes.decoded.toBase64(QByteArray::OmitTrailingEquals) == text.toLatin1();
}

QRegularExpressionMatch match(const QByteArray& text)
{
    static const QRegularExpression form(
        QStringLiteral("\\A\\$argon2id\\$v=19\\$m=([1-9][0-9]{0,8}),t=([1-9][0-9]{0,8}),p=1"
                       "\\$([A-Za-z0-9+/]{22})\\$([A-Za-z0-9+/]{43})\\z"));
    return form.match(QString::fromLatin1(text));
}

HashCost costIn(const QRegularExpressionMatch& found)
{
    return {found.captured(2).toULongLong(), found.captured(1).toULongLong() * kibibyte};
}

bool isWithinBounds(const HashCost& cost)
{
    return cost.memoryBytes >= HashCost::least().memoryBytes && cost.memoryBytes <= PasswordHash::maximumMemory &&
           cost.passes <= PasswordHash::maximumPasses;
}

} // namespace

PasswordHash::PasswordHash(QByteArray text)
    : m_text(std::move(text))
{}

std::optional<PasswordHash> PasswordHash::make(const QByteArray& password, const HashCost& cost)
{
    std::array<char, crypto_pwhash_argon2id_STRBYTES> text{};
    if (!canBePassword(password) || !isWithinBounds(cost) || !isReady() ||
        crypto_pwhash_argon2id_str(text.data(), password.constData(), static_cast<unsigned long long>(password.size()),
                                   cost.passes, cost.memoryBytes) != 0) {
        return std::nullopt;
    }
    return PasswordHash(QByteArray(text.data()));
}

std::optional<PasswordHash> PasswordHash::fromText(const QByteArray& text)
{
    const auto found = match(text);
    const bool usable =
        found.hasMatch() && isWithinBounds(costIn(found)) && isBase64(found.captured(3)) && isBase64(found.captured(4));
    return usable ? std::optional(PasswordHash(text)) : std::nullopt;
}

HashCost PasswordHash::cost() const
{
    return costIn(match(m_text));
}

bool PasswordHash::matches(const QByteArray& password) const
{
    return canBePassword(password) && isReady() &&
           crypto_pwhash_argon2id_str_verify(m_text.constData(), password.constData(),
                                             static_cast<unsigned long long>(password.size())) == 0;
}

} // namespace ZelkoCommon
