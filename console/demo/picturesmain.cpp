#include <console/demo/appearance.h>
#include <console/demo/scenes.h>
#include <console/window/runningconsole.h>

#include <QApplication>
#include <QCommandLineParser>
#include <QDir>
#include <QProcess>
#include <QTemporaryFile>
#include <QTextStream>

namespace {

constexpr int wrongUsage = 2;
constexpr auto variantVariable = "ZELKO_PICTURES_VARIANT";

int fail(const QString& text, int code)
{
    QTextStream(stderr) << "zelko-pictures: " << text << '\n';
    return code;
}

// Paints the pictures of one look; light and dark differ in the palette, the scale was set by who started this process.
int paintVariant(const QStringList& capabilities, const QDir& folder, const QString& variant)
{
    if (variant == QLatin1String("dark")) {
        QApplication::setPalette(ZelkoConsole::darkPalette());
    }
    for (const QString& capability : capabilities) {
        const QStringList files = ZelkoConsole::paintScenes(capability, folder.filePath(capability), variant);
        if (files.isEmpty()) {
            return fail(QStringLiteral("the pictures cannot be written to %1").arg(folder.path()), 1);
        }
        QTextStream(stdout) << files.join(QLatin1Char('\n')) << '\n';
    }
    return 0;
}

// The screen that the pictures are taken on. Windows limit themselves to it, and the one that there is by default is
// smaller than the console.
bool writeScreen(QTemporaryFile& file)
{
    return file.open() && file.write(R"({"screens": [{"name": "screen", "x": 0, "y": 0, "width": 3840, "height": 2160,
                          "logicalDpi": 96, "logicalBaseDpi": 96, "dpr": 1}]})") > 0 &&
           file.flush();
}

// The scale of a process is fixed when it starts, so each look gets a process of its own.
int startVariant(const QString& variant, const QString& scale, const QString& screenFile)
{
    QProcess process;
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(QLatin1String(variantVariable), variant);
    environment.insert(QStringLiteral("QT_SCALE_FACTOR"), scale);
    environment.insert(QStringLiteral("QT_QPA_PLATFORM"), QLatin1String("offscreen:configfile=") + screenFile);
    process.setProcessEnvironment(environment);
    process.setProcessChannelMode(QProcess::ForwardedChannels);
    process.start(QApplication::applicationFilePath(), QApplication::arguments().mid(1));
    return process.waitForFinished(-1) && process.exitStatus() == QProcess::NormalExit ? process.exitCode() : 1;
}

int paintAll()
{
    QTemporaryFile screen;
    if (!writeScreen(screen)) {
        return fail(QStringLiteral("the file %1 cannot be written").arg(screen.fileName()), 1);
    }
    int result = 0;
    for (const auto& [variant, scale] : {std::pair("light", "1"), std::pair("dark", "1"), std::pair("200", "2")}) {
        result = std::max(result, startVariant(QLatin1String(variant), QLatin1String(scale), screen.fileName()));
    }
    return result;
}

void describe(QCommandLineParser& parser)
{
    parser.setApplicationDescription(QStringLiteral("Paints each window and widget in three looks."));
    parser.addPositionalArgument(QStringLiteral("DIR"), QStringLiteral("The folder that the pictures are written to."));
    parser.addPositionalArgument(QStringLiteral("NAME"),
                                 QStringLiteral("Only those of this capability: %1.")
                                     .arg(ZelkoConsole::paintedCapabilities().join(QLatin1String(", "))),
                                 QStringLiteral("[NAME]"));
    parser.addHelpOption();
}

int paint(const QStringList& capabilities, const QDir& folder)
{
    for (const QString& capability : capabilities) {
        if (!ZelkoConsole::paintedCapabilities().contains(capability)) {
            return fail(QStringLiteral("there are no pictures of \"%1\"").arg(capability), wrongUsage);
        }
        if (!folder.mkpath(capability)) {
            return fail(QStringLiteral("the folder %1 cannot be made").arg(folder.filePath(capability)), 1);
        }
    }
    const QString variant = qEnvironmentVariable(variantVariable);
    return variant.isEmpty() ? paintAll() : paintVariant(capabilities, folder, variant);
}

} // namespace

// zelko-pictures DIR [NAME]: a picture of each window and widget of the capability NAME, or of all, in three looks.
int main(int argc, char** argv)
{
    if (!qEnvironmentVariableIsSet(variantVariable)) {
        qputenv("QT_QPA_PLATFORM", "offscreen");
    }
    const QApplication application(argc, argv);
    ZelkoConsole::prepareApplication();
    QApplication::setStyle(QStringLiteral("fusion"));

    QCommandLineParser parser;
    describe(parser);
    if (!parser.parse(QApplication::arguments())) {
        return fail(parser.errorText() + QLatin1Char('\n') + parser.helpText(), wrongUsage);
    }
    if (parser.isSet(QStringLiteral("help"))) {
        parser.showHelp();
    }
    const QStringList arguments = parser.positionalArguments();
    if (arguments.isEmpty() || arguments.size() > 2) {
        return fail(parser.helpText(), wrongUsage);
    }
    return paint(arguments.size() == 2 ? arguments.mid(1) : ZelkoConsole::paintedCapabilities(),
                 QDir(arguments.constFirst()));
}
