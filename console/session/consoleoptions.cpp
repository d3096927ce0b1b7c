#include <console/session/consoleoptions.h>

#include <console/translation.h>

#include <observerbase/errorhandler.h>

#include <QCommandLineParser>
#include <QDir>
#include <QStandardPaths>

namespace ZelkoConsole {
namespace {

constexpr QLatin1String siteOption("site");
constexpr QLatin1String storeOption("store");
constexpr QLatin1String recordOption("record");
constexpr QLatin1String traceOption("trace");

void describe(QCommandLineParser& parser)
{
    parser.setApplicationDescription(tr("Operator console for signal recorders.\n"
                                        "Without a site file it starts a recorder of its own."));
    parser.addOption({siteOption, tr("The sub systems to connect to."), QStringLiteral("FILE")});
    parser.addOption(
        {storeOption,
         tr("Where the own recorder keeps its records. Without it each console that runs has a folder of its own."),
         QStringLiteral("DIR")});
    parser.addOption(
        {recordOption,
         tr("What the own recorder records; may be given more than once: \"generator:...\" or the path of a "
            "SigMF capture."),
         QStringLiteral("SOURCE")});
    parser.addOption({traceOption, tr("Writes warnings for developers too, some of them again and again while a "
                                      "recorder is not there. Without it only errors are written.")});
    parser.addHelpOption();
}

QString problemOf(const QCommandLineParser& parser)
{
    if (!parser.positionalArguments().isEmpty()) {
        return tr("\"%1\" is not an option.").arg(parser.positionalArguments().constFirst());
    }
    if (parser.isSet(siteOption) && (parser.isSet(storeOption) || parser.isSet(recordOption))) {
        return tr(
            "With a site file there is no recorder of the console's own: --store and --record do not go with it.");
    }
    return {};
}

} // namespace

std::optional<ConsoleOptions> ConsoleOptions::parse(const QStringList& arguments, QString* error)
{
    QCommandLineParser parser;
    describe(parser);
    // The parser takes the first entry for the program's name.
    const bool understood = parser.parse(QStringList(QString()) + arguments);
    const QString problem = understood ? problemOf(parser) : parser.errorText();
    if (!problem.isEmpty()) {
        if (error) {
            *error = problem;
        }
        return std::nullopt;
    }
    return ConsoleOptions{parser.value(siteOption), parser.value(storeOption), parser.values(recordOption),
                          parser.isSet(traceOption)};
}

unsigned int ConsoleOptions::traceMask() const
{
    return ErrorHandler::TraceError | (traces ? ErrorHandler::TraceWarning : 0U);
}

QString ConsoleOptions::helpText()
{
    QCommandLineParser parser;
    describe(parser);
    return parser.helpText();
}

QStringList ConsoleOptions::defaultDevices()
{
    return {QStringLiteral("Recorder1"), QStringLiteral("Recorder2")};
}

QStringList ConsoleOptions::defaultChannels()
{
    return {QStringLiteral("Channel 1=generator:fm,rate=48000,frequency=145500000,bandwidth=12500,"
                           "noise=-50")};
}

QStringList ConsoleOptions::defaultSources()
{
    return {
        QStringLiteral(
            "Recorder1=generator:fm,name=Voice channel,rate=48000,frequency=145500000,bandwidth=12500,seconds=8"),
        QStringLiteral(
            "Recorder1=generator:bursts,name=Telemetry bursts,rate=250000,frequency=433920000,bandwidth=200000,"
            "seconds=12"),
        QStringLiteral("Recorder1=generator:carrier,name=Time signal,rate=8000,frequency=10000000,bandwidth=4000,"
                       "seconds=900"),
        QStringLiteral("Recorder2=generator:noise,name=Noise floor,rate=96000,frequency=868300000,seconds=6"),
        QStringLiteral("Recorder2=generator:carrier,name=Beacon,rate=48000,frequency=50000000,noise=-40,seconds=300"),
    };
}

EmbeddedRecorderOptions ConsoleOptions::recorderOptions(const QString& programFolder) const
{
    EmbeddedRecorderOptions options;
    options.program = QDir(programFolder).filePath(QStringLiteral("zelko-recorder"));
    options.storeFolder = storeFolder.isEmpty() ? QStandardPaths::writableLocation(QStandardPaths::AppDataLocation) +
                                                      QLatin1String("/store")
                                                : QDir(storeFolder).absolutePath();
    options.subSystem = QStringLiteral("local");
    options.devices = defaultDevices();
    options.sources = sources.isEmpty() ? defaultSources() : sources;
    options.channels = defaultChannels();
    return options;
}

} // namespace ZelkoConsole
