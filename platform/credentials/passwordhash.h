#pragma once

#include <credentials/credentials_export.h>

#include <QByteArray>

#include <optional>

namespace ZelkoCommon {

/// What making a hash costs, and each try of a password against it.
struct HashCost
{
    unsigned long long passes = 2;
    std::size_t memoryBytes = std::size_t{64} * 1024 * 1024;

    /// The least that there is, for passwords that nobody can guess anyway, and for tests.
    static constexpr HashCost least() { return {1, std::size_t{8} * 1024}; }
};

/// A password as it may be kept: hashed with Argon2id, a salt of its own and what the hash cost beside it in the text.
/// The password cannot be had from it. Any thread.
class CREDENTIALS_EXPORT PasswordHash
{
public:
    /// A longer password is nobody's, so that hashing one takes no longer than another.
    static constexpr qsizetype maximumPassword = 1024;

    /// Bounds of what a hash may cost whose text comes from outside.
    static constexpr unsigned long long maximumPasses = 10;
    static constexpr std::size_t maximumMemory = std::size_t{256} * 1024 * 1024;

    /// Hashes a password, as UTF-8. Takes the time and the memory of `cost`. Nothing for a password that is empty or
    /// too long, and where the memory is not to be had.
    static std::optional<PasswordHash> make(const QByteArray& password, const HashCost& cost = {});

    /// Takes over a text that `text` gave. Nothing for one that is no such hash, or costs more than the bounds.
    static std::optional<PasswordHash> fromText(const QByteArray& text);

    /// ASCII without blanks and colons, fewer than 128 bytes.
    const QByteArray& text() const { return m_text; }

    /// What a try costs.
    HashCost cost() const;

    /// Whether this is the hash of the password. Takes the time and the memory that the hash cost. False too where the
    /// memory is not to be had.
    bool matches(const QByteArray& password) const;

private:
    explicit PasswordHash(QByteArray text);

    QByteArray m_text;
};

} // namespace ZelkoCommon
