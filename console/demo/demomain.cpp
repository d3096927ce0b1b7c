#include <console/demo/demowalk.h>
#include <console/demo/expectedrecord.h>
#include <console/session/consolesession.h>
#include <console/window/runningconsole.h>

#include <process/terminationsignals.h>

#include <QApplication>
#include <QCommandLineParser>
#include <QTemporaryDir>
#include <QTextStream>

#include <optional>

namespace {

using namespace ZelkoConsole;

constexpr int wrongUsage = 2;

int fail(const QString& text, int code)
{
    QTextStream(stderr) << "zelko-demo: " << text << '\n';
    return code;
}

bool hasDisplay()
{
    return !qEnvironmentVariableIsEmpty("DISPLAY") || !qEnvironmentVariableIsEmpty("WAYLAND_DISPLAY");
}

void describe(QCommandLineParser& parser)
{
    parser.addOption({QStringLiteral("record"),
                      QStringLiteral("A capture to record, besides a generator; may be given more than once."),
                      QStringLiteral("SIGMF")});
    parser.addOption({QStringLiteral("pictures"), QStringLiteral("Drives itself and writes pictures there."),
                      QStringLiteral("DIR"), QStringLiteral("pictures/demo")});
    parser.addHelpOption();
}

// A short signal, then the captures; each of them ends.
QStringList finiteSources(const QStringList& captures)
{
    return QStringList{QStringLiteral("generator:fm,name=Voice channel,rate=48000,frequency=145500000,"
                                      "bandwidth=12500,seconds=4")} +
           captures;
}

// A long one behind them, so that something is always being recorded.
QStringList recorderSources(const QStringList& finite)
{
    QStringList sources;
    for (const QString& source : finite) {
        sources.append(QLatin1String("Recorder1=") + source);
    }
    sources.append(QStringLiteral("Recorder1=generator:bursts,name=Telemetry bursts,rate=250000,frequency=433920000,"
                                  "bandwidth=200000,seconds=3600"));
    return sources;
}

std::optional<QList<ExpectedRecord>> expectedOf(const QStringList& sources, QString* error)
{
    QList<ExpectedRecord> expected;
    for (const QString& source : sources) {
        const auto record = ExpectedRecord::ofSource(source, error);
        if (!record) {
            return std::nullopt;
        }
        expected.append(*record);
    }
    return expected;
}

int walk(RunningConsole& console, const QString& folder, const QList<ExpectedRecord>& expected)
{
    auto& session = static_cast<ConsoleSession&>(console.session()); // that of a recorder of its own
    DemoWalk walk(session, console.window(), folder, expected);
    const bool done = walk.run();
    QTextStream(stdout) << "Pictures:\n  " << walk.pictures().join(QLatin1String("\n  ")) << '\n';
    return done ? 0 : fail(walk.failure(), 1);
}

int run(const QCommandLineParser& parser, bool drive)
{
    const QTemporaryDir store;
    const QStringList finite = finiteSources(parser.values(QStringLiteral("record")));
    QString error;
    const auto expected = expectedOf(finite, &error);
    if (!expected) {
        return fail(error, 1);
    }
    ConsoleOptions options;
    options.storeFolder = store.path();
    options.sources = recorderSources(finite);
    const auto console = RunningConsole::open(options, &error);
    if (!console) {
        return fail(error, 1);
    }
    return drive ? walk(*console, parser.value(QStringLiteral("pictures")), *expected) : console->run();
}

} // namespace

// With a display the console opens and stays open. Without one, or with --pictures, the session drives itself
// offscreen.
int main(int argc, char** argv)
{
    const bool pictures = QByteArrayList(argv, argv + argc).contains("--pictures");
    const bool drive = pictures || !hasDisplay();
    if (drive) {
        qputenv("QT_QPA_PLATFORM", "offscreen");
    } else {
        ZelkoCommon::TerminationSignals::hold();
    }
    const QApplication application(argc, argv);
    prepareApplication();

    QCommandLineParser parser;
    describe(parser);
    parser.process(application);
    if (!parser.positionalArguments().isEmpty()) {
        return fail(QStringLiteral("\"%1\" is not an option").arg(parser.positionalArguments().constFirst()),
                    wrongUsage);
    }
    if (drive) {
        QApplication::setStyle(QStringLiteral("fusion"));
    }
    return run(parser, drive);
}
