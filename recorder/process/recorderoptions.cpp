#include <recorder/process/recorderoptions.h>

#include <recorder/store/recordid.h>

#include <credentials/userentry.h>

#include <QCommandLineParser>
#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <cmath>

namespace ZelkoRecorder {

namespace {

constexpr qint64 maxPasswordLine = 1024;

// Thrown while a command line is read; caught in parse().
struct BadOption
{
    QString text;
};

void addOptions(QCommandLineParser& parser)
{
    const auto add = [&parser](const char* name, const char* text, const char* value, const char* byDefault = nullptr) {
        parser.addOption(QCommandLineOption(QString::fromLatin1(name), QString::fromLatin1(text),
                                            QString::fromLatin1(value), QString::fromLatin1(byDefault)));
    };
    parser.addHelpOption();
    parser.addVersionOption();
    add("store", "Folder of the recordings: below it a folder per device. Required.", "folder");
    add("sub-system", "Name of the sub system that this recorder serves.", "name", "local");
    add("device", "A device of it; may be given more than once. Default: Recorder1", "id");
    add("listen", "Address to serve at.", "address", "127.0.0.1");
    add("port", "Port to serve at; 0 lets the system choose.", "number", "8004");
    add("source",
        "What a device, the first one if none is named, records at once; several are recorded one after the "
        "other. A generator, \"generator:fm,rate=48000,seconds=5\", or a SigMF file.",
        "[device=]description");
    add("channel",
        "A channel of its own, with a source in place of a receiver, from which clients record when they like and to "
        "which they replay; may be given more than once. Without a source: \"generator:fm\".",
        "name[=description]");
    add("data-patience",
        "Seconds that a recording from a channel waits for its first data, unless its own length is more; one without "
        "a "
        "length waits until it is stopped.",
        "seconds", "60");
    add("speed", "Seconds of signal recorded in a second; 0 for as fast as possible.", "factor", "1");
    add("index-interval", "Seconds of signal between two entries of a record's index.", "seconds", "1");
    add("populate", "Prepared records of each device, for load tests.", "count", "0");
    add("churn", "Changes a second that are made to each device's prepared records, on the tree only, for load tests.",
        "changes", "0");
    add("churn-changes", "After so many of these changes a device rests; 0 for never.", "count", "0");
    add("users",
        "Who may do more than look: a file with a line \"name:role:hash\" for each user. Without it every client is a "
        "viewer.",
        "file");
    parser.addOption(
        {QStringLiteral("make-user"),
         QStringLiteral("Reads a password and prints a line for that file; takes a name and a role, which is "
                        "viewer, operator or administrator.")});
    add("tls-authority",
        "Serve through TLS and not otherwise: the certificates that those of the clients are signed with.", "file");
    add("tls-key", "The certificate and the private key of this recorder, for --tls-authority.", "file");
    add("tls-key-password", "The first line of it is the password of that key, where it is encrypted.", "file");
    add("export-folder",
        "A folder below which clients may have records exported; may be given more than once. Without any, none are.",
        "folder");
    parser.addOption({QStringLiteral("once"),
                      QStringLiteral("Pass over sources that the device has recorded to their end before.")});
    parser.addOption(
        {QStringLiteral("exit-with-parent"), QStringLiteral("End when the process ends that started this one.")});
}

double number(const QCommandLineParser& parser, const QString& name, double least, double most)
{
    bool isNumber = false;
    const double value = parser.value(name).toDouble(&isNumber);
    if (!isNumber || !std::isfinite(value) || value < least || value > most) {
        throw BadOption{QStringLiteral("--%1 takes a number from %2 to %3, not \"%4\"")
                            .arg(name)
                            .arg(least)
                            .arg(most)
                            .arg(parser.value(name))};
    }
    return value;
}

// Up to a day, and never none at all.
std::chrono::microseconds seconds(const QCommandLineParser& parser, const QString& name)
{
    return std::chrono::microseconds(std::llround(number(parser, name, 0.001, 86400) * 1e6));
}

int wholeNumber(const QCommandLineParser& parser, const QString& name, int least, int most)
{
    const double value = number(parser, name, least, most);
    if (value != std::floor(value)) {
        throw BadOption{QStringLiteral("--%1 takes a whole number, not \"%2\"").arg(name, parser.value(name))};
    }
    return static_cast<int>(value);
}

QStringList devices(const QCommandLineParser& parser)
{
    QStringList ids = parser.values(QStringLiteral("device"));
    if (ids.isEmpty()) {
        ids.append(QStringLiteral("Recorder1"));
    }
    for (const QString& id : ids) {
        if (!isRecordId(id)) { // it becomes the name of a folder just as a record's ID does
            throw BadOption{
                QStringLiteral("\"%1\" cannot be a device: letters, digits, \"_\", \"-\" and \".\" can").arg(id)};
        }
    }
    if (ids.removeDuplicates() > 0) {
        throw BadOption{QStringLiteral("a device is given twice")};
    }
    return ids;
}

// Descriptions have "=" of their own: what stands before the first one counts only if it is a device.
QHash<QString, QStringList> sources(const QCommandLineParser& parser, const QStringList& devices)
{
    QHash<QString, QStringList> byDevice;
    for (const QString& text : parser.values(QStringLiteral("source"))) {
        const qsizetype cut = text.indexOf(QLatin1Char('='));
        const bool named = cut > 0 && devices.contains(text.left(cut));
        byDevice[named ? text.left(cut) : devices.first()].append(named ? text.mid(cut + 1) : text);
    }
    return byDevice;
}

// A name has no "=", descriptions have some of their own.
QList<OwnChannels::Plan> channels(const QCommandLineParser& parser)
{
    QList<OwnChannels::Plan> plans;
    for (const QString& text : parser.values(QStringLiteral("channel"))) {
        const qsizetype cut = text.indexOf(QLatin1Char('='));
        const OwnChannels::Plan plan = cut < 0 ? OwnChannels::Plan{text, QStringLiteral("generator:fm")}
                                               : OwnChannels::Plan{text.left(cut), text.mid(cut + 1)};
        plans.append(plan);
    }
    return plans;
}

QString subSystem(const QCommandLineParser& parser)
{
    QString name = parser.value(QStringLiteral("sub-system"));
    if (name.isEmpty() || name.contains(QLatin1Char('/'))) {
        throw BadOption{QStringLiteral("\"%1\" cannot be a sub system").arg(name)};
    }
    return name;
}

RecorderOptions readNewUser(const QCommandLineParser& parser)
{
    const QStringList words = parser.positionalArguments();
    if (words.size() != 2) {
        throw BadOption{QStringLiteral("--make-user takes a name and a role")};
    }
    const auto role = ZelkoCommon::roleOfName(words[1]);
    if (!role) {
        throw BadOption{QStringLiteral("\"%1\" is no role: viewer, operator and administrator are").arg(words[1])};
    }
    if (!ZelkoCommon::UserEntry::canBeName(words[0])) {
        throw BadOption{QStringLiteral("\"%1\" cannot be the name of a user").arg(words[0])};
    }
    RecorderOptions options;
    options.newUser = {words[0], *role};
    return options;
}

QStringList exportFolders(const QCommandLineParser& parser)
{
    QStringList folders;
    for (const QString& folder : parser.values(QStringLiteral("export-folder"))) {
        if (!QFileInfo(folder).isDir()) {
            throw BadOption{QStringLiteral("\"%1\" is no folder to export to").arg(folder)};
        }
        folders.append(QDir(folder).absolutePath());
    }
    return folders;
}

QString firstLine(const QString& path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly)) {
        throw BadOption{QStringLiteral("\"%1\" cannot be read: %2").arg(path, file.errorString())};
    }
    const QByteArray line = file.readLine(maxPasswordLine);
    return QString::fromUtf8(line.endsWith('\n') ? line.chopped(1) : line);
}

// Whom the recorder calls back is where the client says, and needs no name of its own in its certificate.
std::optional<ZelkoCommon::TlsOptions> tlsOptions(const QCommandLineParser& parser)
{
    ZelkoCommon::TlsOptions options;
    options.authorityFile = parser.value(QStringLiteral("tls-authority"));
    options.keyFile = parser.value(QStringLiteral("tls-key"));
    options.checksHosts = false;
    const QString passwordFile = parser.value(QStringLiteral("tls-key-password"));
    if (options.authorityFile.isEmpty() != options.keyFile.isEmpty() ||
        (options.keyFile.isEmpty() && !passwordFile.isEmpty())) {
        throw BadOption{QStringLiteral("TLS takes both --tls-authority and --tls-key")};
    }
    if (options.keyFile.isEmpty()) {
        return std::nullopt;
    }
    if (!passwordFile.isEmpty()) {
        options.keyPassword = firstLine(passwordFile);
    }
    return options;
}

RecorderOptions read(const QCommandLineParser& parser)
{
    if (parser.isSet(QStringLiteral("make-user"))) {
        return readNewUser(parser);
    }
    if (!parser.positionalArguments().isEmpty()) {
        throw BadOption{
            QStringLiteral("nobody knows what to do with \"%1\"").arg(parser.positionalArguments().constFirst())};
    }
    RecorderOptions options;
    options.store = parser.value(QStringLiteral("store"));
    if (options.store.isEmpty()) {
        throw BadOption{QStringLiteral("--store is required")};
    }
    options.subSystem = subSystem(parser);
    options.devices = devices(parser);
    options.sources = sources(parser, options.devices);
    options.channels = channels(parser);
    if (parser.isSet(QStringLiteral("once"))) {
        options.repeat = RecordingThread::Repeat::Unfinished;
    }
    options.listenAddress = parser.value(QStringLiteral("listen"));
    options.port = static_cast<quint16>(wholeNumber(parser, QStringLiteral("port"), 0, 65535));
    options.preparedRecords = wholeNumber(parser, QStringLiteral("populate"), 0, 1'000'000);
    options.churn.perSecond = number(parser, QStringLiteral("churn"), 0, 1e6);
    options.churn.changes = wholeNumber(parser, QStringLiteral("churn-changes"), 0, 1'000'000'000);
    options.pace.speed = number(parser, QStringLiteral("speed"), 0, 1e6);
    options.pace.indexInterval = seconds(parser, QStringLiteral("index-interval"));
    options.dataPatience =
        std::chrono::ceil<std::chrono::milliseconds>(seconds(parser, QStringLiteral("data-patience")));
    options.usersFile = parser.value(QStringLiteral("users"));
    options.tls = tlsOptions(parser);
    options.exportFolders = exportFolders(parser);
    options.exitWithParent = parser.isSet(QStringLiteral("exit-with-parent"));
    return options;
}

} // namespace

std::optional<RecorderOptions> RecorderOptions::parse(const QStringList& arguments, Ending* ending)
{
    QCommandLineParser parser;
    parser.setApplicationDescription(QStringLiteral("Records signals and serves the recordings."));
    addOptions(parser);
    const QString program = QStringLiteral("zelko-recorder");
    if (!parser.parse(arguments)) {
        *ending = {program + QStringLiteral(": ") + parser.errorText(), 2};
        return std::nullopt;
    }
    if (parser.isSet(QStringLiteral("help"))) {
        *ending = {parser.helpText(), 0};
        return std::nullopt;
    }
    if (parser.isSet(QStringLiteral("version"))) {
        *ending = {program + QLatin1Char(' ') + QCoreApplication::applicationVersion(), 0};
        return std::nullopt;
    }
    try {
        return read(parser);
    } catch (const BadOption& bad) {
        *ending = {program + QStringLiteral(": ") + bad.text, 2};
        return std::nullopt;
    }
}

} // namespace ZelkoRecorder
