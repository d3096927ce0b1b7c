#include <console/demo/demowalk.h>
#include <console/session/consolesession.h>
#include <console/window/consolewindow.h>
#include <console/window/runningconsole.h>

#include <QApplication>
#include <QCommandLineParser>
#include <QTemporaryDir>
#include <QTextStream>

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

// A short signal, then the captures, then a long one, so that something is always being recorded.
QStringList sourcesWith(const QStringList& captures)
{
    QStringList sources{QStringLiteral("Recorder1=generator:fm,name=Voice channel,rate=48000,frequency=145500000,"
                                       "bandwidth=12500,seconds=4")};
    for (const QString& capture : captures) {
        sources.append(QLatin1String("Recorder1=") + capture);
    }
    sources.append(QStringLiteral("Recorder1=generator:bursts,name=Telemetry bursts,rate=250000,frequency=433920000,"
                                  "bandwidth=200000,seconds=600"));
    return sources;
}

int walk(RunningConsole& console, const QString& folder, int records)
{
    DemoWalk walk(console.session(), console.window(), folder, records);
    const bool done = walk.run();
    QTextStream(stdout) << "Pictures:\n  " << walk.pictures().join(QLatin1String("\n  ")) << '\n';
    return done ? 0 : fail(walk.failure(), 1);
}

int run(const QCommandLineParser& parser, bool drive)
{
    const QTemporaryDir store;
    ConsoleOptions options;
    options.storeFolder = store.path();
    options.sources = sourcesWith(parser.values(QStringLiteral("record")));
    QString error;
    const auto console = RunningConsole::open(options, &error);
    if (!console) {
        return fail(error, 1);
    }
    if (drive) {
        return walk(*console, parser.value(QStringLiteral("pictures")), static_cast<int>(options.sources.size()));
    }
    console->window().show();
    return QApplication::exec();
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
    }
    const QApplication application(argc, argv);
    prepareApplication();

    QCommandLineParser parser;
    parser.addOption({QStringLiteral("record"),
                      QStringLiteral("A capture to record, besides a generator; may be given "
                                     "more than once."),
                      QStringLiteral("SIGMF")});
    parser.addOption({QStringLiteral("pictures"), QStringLiteral("Drives itself and writes pictures there."),
                      QStringLiteral("DIR"), QStringLiteral("pictures/demo")});
    parser.addHelpOption();
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
