#include <console/session/consoleoptions.h>
#include <console/window/runningconsole.h>

#include <observerbase/errorhandler.h>
#include <process/terminationsignals.h>

#include <QApplication>
#include <QTextStream>

namespace {

constexpr int wrongUsage = 2;

int fail(const QString& text, int code)
{
    QTextStream(stderr) << "zelko-console: " << text << '\n';
    return code;
}

} // namespace

int main(int argc, char** argv)
{
    ZelkoCommon::TerminationSignals::hold();
    const QApplication application(argc, argv);
    ZelkoConsole::prepareApplication();

    const QStringList arguments = QApplication::arguments().mid(1);
    if (arguments.contains(QLatin1String("--help")) || arguments.contains(QLatin1String("-h"))) {
        QTextStream(stdout) << ZelkoConsole::ConsoleOptions::helpText();
        return 0;
    }
    QString error;
    const auto options = ZelkoConsole::ConsoleOptions::parse(arguments, &error);
    if (!options) {
        return fail(error, wrongUsage);
    }
    ErrorHandler::Instance()->SetTraceMask(options->traceMask());
    const auto console = ZelkoConsole::RunningConsole::open(*options, &error);
    if (!console) {
        return fail(error, 1);
    }
    return console->run();
}
