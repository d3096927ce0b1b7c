// Asks for the metadata of a recording, in an archive folder or on the disk of a device, and prints what they say.
//
//     filedialog [--qt] [--once FILE]
//
// The dialog is the platform's own, or with --qt Qt's, as a site decides for all dialogs of the library. With --once
// FILE is chosen in Qt's dialog as soon as that is open.
#include <reportcore/rgexception.h>
#include <vornappstartup/cfgcenter.h>
#include <zelkobase/data/recordfiles.h>
#include <zelkobase/data/zelko_recorddata.h>
#include <zelkoguibase/archive/file_dialog.h>

#include <QApplication>
#include <QDir>
#include <QFileDialog>
#include <QLineEdit>
#include <QTemporaryDir>
#include <QTextStream>
#include <QTimer>

using ZELKO_XML::ZELKO_RecordData;

namespace {

void say(const QString& text)
{
    QTextStream(stdout) << text << Qt::endl;
}

// An application has the settings of its site in a file that its installation has laid down. This one makes its own,
// and does so before the first dialog, since that reads them for all.
void decideForQtDialogs(const QTemporaryDir& folder)
{
    CfgCenter::SetFile(ICfg::ApplicationView, folder.filePath(QStringLiteral("application.ini")));
    CfgCenter::GetAppCfg(ICfg::ApplicationView)->SetBool(QStringLiteral("UseNativeDialogs"), false);
}

// What a user does who types the name. The dialog blocks whoever opens it, but not the timers of its thread.
void chooseOnce(const QString& fileName)
{
    auto* const poll = new QTimer(qApp);
    QObject::connect(poll, &QTimer::timeout, [poll, fileName] {
        if (auto* const dialog = qobject_cast<QFileDialog*>(QApplication::activeModalWidget())) {
            poll->stop();
            dialog->findChild<QLineEdit*>()->setText(fileName);
            QMetaObject::invokeMethod(dialog, "accept");
        }
    });
    poll->start(100);
}

// Bytes of a file are foreign ones: what is no record is refused whole, with a reason.
int print(const QString& fileName)
{
    ZELKO_RecordData record;
    try {
        if (!record.LoadXml(fileName)) {
            say(QStringLiteral("%1 has no recording").arg(fileName));
            return 1;
        }
    } catch (const RGException& wrong) {
        say(wrong.GetMessage());
        return 1;
    }
    say(QStringLiteral("%1, %2 bytes, %3 bookmarks")
            .arg(record.GetRecordName())
            .arg(record.GetSize())
            .arg(record.GetBookmarkEntry().size()));
    return 0;
}

} // namespace

int main(int argc, char** argv)
{
    const QApplication application(argc, argv);
    const QStringList arguments = QApplication::arguments();
    const QTemporaryDir settings;
    const qsizetype once = arguments.indexOf(QStringLiteral("--once"));
    if (once > 0 || arguments.contains(QStringLiteral("--qt"))) {
        decideForQtDialogs(settings);
    }
    if (once > 0) {
        chooseOnce(arguments.value(once + 1));
    }
    const QString fileName =
        ZelkoGUI::file_dialog::getOpenFileName(nullptr, QStringLiteral("Open a Recording"), QDir::homePath(),
                                               QStringLiteral("Recordings (%1)").arg(ZELKO_XML::metaDataFileName));
    return fileName.isEmpty() ? 1 : print(fileName);
}
