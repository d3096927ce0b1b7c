#include <zelkobase/connection/zelkoconfiguration.h>

#include <zelkobase/names/valuenames.h>

#include <zelkobase/orb/hostname.h>

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

#include <algorithm>
#include <cmath>

namespace ZelkoCommon {
namespace {

constexpr qint64 maxFileSize = 1024 * 1024;
constexpr qsizetype maxReference = 4096;
constexpr std::chrono::milliseconds maxAnswerLimit = std::chrono::minutes(10);

QString tr(const char* text)
{
    return QCoreApplication::translate("ZelkoCommon::ZelkoConfiguration", text);
}

bool fail(QString* error, const QString& text)
{
    if (error) {
        *error = text;
    }
    return false;
}

bool canBeReference(const QString& text)
{
    const QStringList schemes{QStringLiteral("corbaloc:"), QStringLiteral("corbaname:"), QStringLiteral("IOR:")};
    const bool isPlain =
        std::all_of(text.begin(), text.end(), [](QChar character) { return character > u' ' && character < u'\x7f'; });
    return isPlain && text.size() <= maxReference &&
           std::any_of(schemes.begin(), schemes.end(),
                       [&](const QString& scheme) { return text.startsWith(scheme) && text.size() > scheme.size(); });
}

bool isValid(const ZelkoConfiguration::SubSystem& subSystem)
{
    return !subSystem.name.isEmpty() && !subSystem.name.contains(QLatin1Char('/')) && subSystem.port != 0 &&
           canBeHost(subSystem.host) && (subSystem.service.isEmpty() || canBeReference(subSystem.service));
}

// A whole number from 1 to 65535, and nothing that merely rounds to one.
std::optional<quint16> readPort(const QJsonValue& value)
{
    if (value.isUndefined()) {
        return ZelkoConfiguration::DefaultPort;
    }
    const double number = value.toDouble(0);
    if (number < 1 || number > 65535 || number != std::floor(number)) {
        return std::nullopt;
    }
    return static_cast<quint16>(number);
}

bool isTextOrMissing(const QJsonValue& value)
{
    return value.isUndefined() || (value.isString() && !value.toString().isEmpty());
}

std::optional<LinkCredentials> readCredentials(const QJsonObject& object)
{
    const QJsonValue user = object.value(QLatin1String("user"));
    const QJsonValue password = object.value(QLatin1String("password"));
    if (!isTextOrMissing(user) || !isTextOrMissing(password) || (user.isUndefined() && !password.isUndefined())) {
        return std::nullopt;
    }
    return LinkCredentials{user.toString(), password.toString()};
}

bool readSubSystem(const QJsonValue& value, ZelkoConfiguration& configuration, QString* error)
{
    const QJsonObject object = value.toObject();
    const QString name = object.value(QLatin1String("name")).toString();
    const auto port = readPort(object.value(QLatin1String("port")));
    if (!port) {
        return fail(error, tr("the port of sub system \"%1\" is not a number from 1 to 65535").arg(name));
    }
    if (configuration.Find(name)) {
        return fail(error, tr("the sub system \"%1\" is listed twice").arg(name));
    }
    const QJsonValue service = object.value(QLatin1String("service"));
    if (!service.isUndefined() && !canBeReference(service.toString())) {
        return fail(error, tr("the service of sub system \"%1\" is no corbaloc, corbaname or IOR").arg(name));
    }
    const auto credentials = readCredentials(object);
    if (!credentials) {
        return fail(error,
                    tr("the user of sub system \"%1\" is no text, or there is a password without one").arg(name));
    }
    return configuration.AddSubSystem(
               {name, object.value(QLatin1String("host")).toString(), *port, service.toString(), *credentials}) ||
           fail(error, tr("the sub system \"%1\" needs a name without \"/\" and a host").arg(name));
}

bool readSubSystems(const QJsonArray& subSystems, ZelkoConfiguration& configuration, QString* error)
{
    if (subSystems.isEmpty()) {
        return fail(error, tr("it lists no sub systems"));
    }
    return std::all_of(subSystems.begin(), subSystems.end(),
                       [&](const QJsonValue& value) { return readSubSystem(value, configuration, error); });
}

bool readCurrent(const QJsonValue& current, ZelkoConfiguration& configuration, QString* error)
{
    return current.isUndefined() || configuration.SetCurrentSubSystem(current.toString()) ||
           fail(error, tr("its current sub system \"%1\" is not listed").arg(current.toString()));
}

bool readListenAddress(const QJsonValue& address, ZelkoConfiguration& configuration, QString* error)
{
    return address.isUndefined() || configuration.SetListenAddress(address.toString()) ||
           fail(error, tr("\"%1\" is no address to listen on").arg(address.toString()));
}

bool readTls(const QJsonValue& value, ZelkoConfiguration& configuration, QString* error)
{
    if (value.isUndefined()) {
        return true;
    }
    const QJsonObject object = value.toObject();
    const QJsonValue password = object.value(QLatin1String("keyPassword"));
    TlsOptions options;
    options.authorityFile = object.value(QLatin1String("authority")).toString();
    options.keyFile = object.value(QLatin1String("key")).toString();
    options.keyPassword = password.toString();
    return (isTextOrMissing(password) && configuration.SetTls(options)) ||
           fail(error, tr("its \"tls\" needs the names of two files, \"authority\" and \"key\""));
}

// A whole number only: what merely rounds to one is a slip of whoever wrote it.
bool readAnswerLimit(const QJsonValue& value, ZelkoConfiguration& configuration, QString* error)
{
    const double number = value.toDouble(0);
    const bool isWhole = number >= 1 && number <= double(maxAnswerLimit.count()) && number == std::floor(number);
    return value.isUndefined() ||
           (isWhole && configuration.SetAnswerLimit(std::chrono::milliseconds(qint64(number)))) ||
           fail(error, tr("its answer limit is not a number of milliseconds from 1 to 600000"));
}

bool readObject(const QJsonObject& object, ZelkoConfiguration& configuration, QString* error)
{
    return readSubSystems(object.value(QLatin1String("subSystems")).toArray(), configuration, error) &&
           readCurrent(object.value(QLatin1String("currentSubSystem")), configuration, error) &&
           readListenAddress(object.value(QLatin1String("listen")), configuration, error) &&
           readAnswerLimit(object.value(QLatin1String("answerLimitMs")), configuration, error) &&
           readTls(object.value(QLatin1String("tls")), configuration, error);
}

// A path that is one already stays as it is.
void lookForFilesIn(const QDir& folder, ZelkoConfiguration& configuration)
{
    if (auto options = configuration.Tls()) {
        options->authorityFile = folder.absoluteFilePath(options->authorityFile);
        options->keyFile = folder.absoluteFilePath(options->keyFile);
        configuration.SetTls(*options);
    }
}

} // namespace

ZelkoConfiguration::ZelkoConfiguration() = default;

std::optional<ZelkoConfiguration> ZelkoConfiguration::fromJson(const QByteArray& json, QString* error)
{
    QJsonParseError parseError;
    const QJsonDocument document = QJsonDocument::fromJson(json, &parseError);
    if (!document.isObject()) {
        fail(error, document.isNull() ? parseError.errorString() : tr("it is not a JSON object"));
        return std::nullopt;
    }
    ZelkoConfiguration configuration;
    return readObject(document.object(), configuration, error) ? std::optional(configuration) : std::nullopt;
}

std::optional<ZelkoConfiguration> ZelkoConfiguration::fromFile(const QString& fileName, QString* error)
{
    QFile file(fileName);
    QString reason;
    if (!file.open(QIODevice::ReadOnly)) {
        reason = file.errorString();
    } else if (file.size() > maxFileSize) {
        reason = tr("it is too large for a site file");
    } else if (auto configuration = fromJson(file.readAll(), &reason)) {
        lookForFilesIn(QFileInfo(fileName).dir(), *configuration);
        return configuration;
    }
    fail(error, tr("The site file %1 cannot be used: %2.").arg(fileName, reason));
    return std::nullopt;
}

bool ZelkoConfiguration::AddSubSystem(const SubSystem& subSystem)
{
    if (!isValid(subSystem)) {
        return false;
    }
    const auto known = std::find_if(m_subSystems.begin(), m_subSystems.end(),
                                    [&](const SubSystem& other) { return other.name == subSystem.name; });
    if (known == m_subSystems.end()) {
        m_subSystems.push_back(subSystem);
    } else {
        *known = subSystem;
    }
    if (m_current.isEmpty()) {
        m_current = subSystem.name;
    }
    return true;
}

const ZelkoConfiguration::SubSystem* ZelkoConfiguration::Find(const QString& name) const
{
    const auto found = std::find_if(m_subSystems.begin(), m_subSystems.end(),
                                    [&](const SubSystem& subSystem) { return subSystem.name == name; });
    return found == m_subSystems.end() ? nullptr : &*found;
}

bool ZelkoConfiguration::SetCurrentSubSystem(const QString& name)
{
    if (!Find(name)) {
        return false;
    }
    m_current = name;
    return true;
}

bool ZelkoConfiguration::SetListenAddress(const QString& address)
{
    if (!canBeHost(address)) {
        return false;
    }
    m_listenAddress = address;
    return true;
}

bool ZelkoConfiguration::SetTls(const TlsOptions& options)
{
    if (options.authorityFile.isEmpty() || options.keyFile.isEmpty()) {
        return false;
    }
    m_tls = options;
    return true;
}

bool ZelkoConfiguration::SetAnswerLimit(std::chrono::milliseconds limit)
{
    if (limit.count() < 1 || limit > maxAnswerLimit) {
        return false;
    }
    m_answerLimit = limit;
    return true;
}

QString ZelkoConfiguration::MakeRootPath(const QString& subSystem)
{
    return zelko::names::subSystemsRoot + subSystem;
}

QString ZelkoConfiguration::cfgPath() const
{
    return QStringLiteral("ZelkoGUI");
}

} // namespace ZelkoCommon
