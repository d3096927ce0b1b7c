#include <console/session/recorderusers.h>

#include <credentials/userentry.h>

#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>
#include <QRandomGenerator>
#include <QRegularExpression>
#include <QTemporaryFile>

#include <array>
#include <cerrno>
#include <csignal>
#include <optional>

namespace ZelkoConsole {
namespace {

using ZelkoCommon::HashCost;
using ZelkoCommon::PasswordHash;
using ZelkoCommon::UserEntry;

constexpr QLatin1String namePrefix(".console-users-");

QString randomPassword()
{
    std::array<quint32, 8> words{};
    QRandomGenerator::system()->fillRange(words.data(), words.size());
    const QByteArray bytes(reinterpret_cast<const char*>(words.data()), sizeof words);
    return QString::fromLatin1(bytes.toBase64(QByteArray::Base64UrlEncoding | QByteArray::OmitTrailingEquals));
}

std::vector<KnownUser> makeUsers()
{
    std::vector<KnownUser> users;
    for (const auto role : ZelkoCommon::allRoles) {
        users.push_back({{ZelkoCommon::roleName(role), randomPassword()}, role});
    }
    return users;
}

// The passwords cannot be guessed at any cost of a try.
std::optional<QByteArray> lines(const std::vector<KnownUser>& users)
{
    QByteArray text;
    for (const KnownUser& user : users) {
        const auto hash = PasswordHash::make(user.credentials.password.toUtf8(), HashCost::least());
        if (!hash) {
            return std::nullopt;
        }
        text += UserEntry{user.credentials.user, user.role, *hash}.toLine() + '\n';
    }
    return text;
}

bool isRunning(pid_t process)
{
    return ::kill(process, 0) == 0 || errno != ESRCH;
}

void removeLeftOvers(const QDir& folder)
{
    static const QRegularExpression form(QStringLiteral("^\\.console-users-([1-9][0-9]{0,8})-"));
    for (const QString& name : folder.entryList({namePrefix + QLatin1Char('*')}, QDir::Files | QDir::Hidden)) {
        const auto found = form.match(name);
        if (found.hasMatch() && !isRunning(found.captured(1).toInt())) {
            QFile::remove(folder.filePath(name));
        }
    }
}

} // namespace

RecorderUsers::RecorderUsers()
    : m_users(makeUsers())
{}

RecorderUsers::~RecorderUsers() = default;

QString RecorderUsers::file(const QString& folder)
{
    const bool isThere =
        m_file && QFileInfo(m_file->fileName()).dir() == QDir(folder) && QFileInfo::exists(m_file->fileName());
    return isThere || write(folder) ? m_file->fileName() : QString();
}

bool RecorderUsers::write(const QString& folder)
{
    removeLeftOvers(QDir(folder));
    const QString name = namePrefix + QString::number(QCoreApplication::applicationPid()) + QLatin1String("-XXXXXX");
    m_file = std::make_unique<QTemporaryFile>(QDir(folder).filePath(name)); // has the mode 0600 from the start
    const auto text = lines(m_users);
    const bool written = text && m_file->open() && m_file->write(*text) == text->size() && m_file->flush();
    if (written) {
        m_file->close();
    }
    return written;
}

} // namespace ZelkoConsole
