// The windows on a recording: its comments, and its bookmarks and a copy of a part of it.
//
//     recordwindows SITE DEVICE [--once]
//
// SITE is a site file; zelkoconfiguration.h has what stands in it. The recording is the first one of the device. With
// --once it is commented on and copied as a user does it, and the program ends when the recorder has done both.
#include <resources/zelkoicons.h>
#include <valuecore/tree.h>
#include <zelkobase/connection/serverconnectiondata.h>
#include <zelkobase/connection/zelkoconfiguration.h>
#include <zelkobase/orb/orb.h>
#include <zelkobase/service/zelkoguitoservercorbahandler.h>
#include <zelkoguibase/controller/zelkoserverguicontroller.h>
#include <zelkoguibase/editrecord/editrecorddialog.h>
#include <zelkoguibase/history/historydialog.h>
#include <zelkoguibase/history/historymodel.h>

#include <QApplication>
#include <QTextStream>
#include <QTimer>
#include <QToolButton>

#include <utility>

using namespace ZelkoCommon;
using namespace ZelkoGUI;

namespace {

void say(const QString& text)
{
    QTextStream(stdout) << text << Qt::endl;
}

// None of these windows changes a recording: each tells by a signal what is wanted, and the controller has the recorder
// do it. What became of it comes back with the recording in the controller's list, which both of them follow.
void connectTo(IZelkoGUIController& controller, const HistoryDialog& history, const EditRecordDialog& edit)
{
    using Controller = IZelkoGUIController;
    QObject::connect(&history, &HistoryDialog::si_addHistoryEntry, &controller, &Controller::sl_addHistoryEntry);
    QObject::connect(&history, &HistoryDialog::si_deleteHistoryEntry, &controller, &Controller::sl_deleteHistoryEntry);
    QObject::connect(&edit, &EditRecordDialog::si_setBookmarkEntries, &controller, &Controller::sl_setBookmarkEntries);
    QObject::connect(&edit, &EditRecordDialog::si_copyRecord, &controller,
                     [&controller](const QString& id, quint64 start, quint64 stop, const QString& name) {
                         controller.sl_copyRecord(id, start, stop, name);
                     });
}

/// What a user does in these windows, one thing after the other, each when the recorder has done what was before it.
class User
{
public:
    User(const ZelkoServerGUIController& controller, const HistoryDialog& history, const EditRecordDialog& edit)
        : m_controller(controller)
        , m_history(history)
        , m_edit(edit)
    {}

    /// The next of these things, when it is its time; true when the recorder has done the last one.
    bool goOn();

private:
    void comment();
    void copy();

    const ZelkoServerGUIController& m_controller;
    const HistoryDialog& m_history;
    const EditRecordDialog& m_edit;
    bool m_hasCommented = false;
    bool m_hasCopied = false;
};

bool User::goOn()
{
    const AbstractRecordListModel& records = *m_controller.recordListModel();
    const auto record = records.recordData(0);
    if (!record || !m_controller.isConnected()) {
        return false;
    }
    if (record->GetHistoryEntry().isEmpty()) {
        comment();
        return false;
    }
    copy();
    return records.rowCount() > 1;
}

// Types into the last row, which is there for a new comment.
void User::comment()
{
    if (!std::exchange(m_hasCommented, true)) {
        auto* const comments = m_history.findChild<HistoryModel*>();
        comments->sl_addTextImmediately(true);
        comments->setData(comments->index(0, HistoryModel::TextColumn), QStringLiteral("Heard twice"));
        say(QStringLiteral("commented on"));
    }
}

// Presses the button behind the name. It is off while the recording is not at rest.
void User::copy()
{
    auto* const button = m_edit.findChild<QToolButton*>(QStringLiteral("SaveButton"));
    if (button->isEnabled() && !std::exchange(m_hasCopied, true)) {
        button->click();
        say(QStringLiteral("copied"));
    }
}

} // namespace

int main(int argc, char** argv)
{
    const QApplication application(argc, argv);
    registerZelkoIcons();
    const QStringList arguments = QApplication::arguments();
    QString error;
    const auto site = ZelkoConfiguration::fromFile(arguments.value(1), &error);
    if (!site) {
        say(error);
        return 2;
    }
    Orb orb{OrbOptions{}};
    const auto connection =
        std::make_shared<ServerConnectionData>(orb, Tree::Instance(), std::make_shared<ZelkoConfiguration>(*site));
    ZelkoServerGUIController controller(std::make_shared<ZelkoGuiToServerCorbaHandler>(connection), {}, nullptr);
    controller.sl_activeDeviceChanged(arguments.value(2));
    AbstractRecordListModel* const records = controller.recordListModel();

    HistoryDialog history;
    EditRecordDialog edit(EditRecordDialog::OptionEditBookmarks | EditRecordDialog::OptionCopyRecord |
                          EditRecordDialog::OptionReplayBar | EditRecordDialog::OptionRecordInfo);
    connectTo(controller, history, edit);
    QObject::connect(records, &QAbstractItemModel::rowsInserted, &history, [&](const QModelIndex&, int first) {
        if (first == 0) { // of a list that was empty: new records come behind the others
            history.setRecord(records->recordID(0), records);
            edit.setRecord(records->recordID(0), records, false, controller.activeDevice());
        }
    });
    history.show();
    edit.show();

    User user(controller, history, edit);
    QTimer poll;
    QObject::connect(&poll, &QTimer::timeout, &poll, [&user] {
        if (user.goOn()) {
            QApplication::quit();
        }
    });
    if (arguments.contains(QStringLiteral("--once"))) {
        poll.start(100);
    }
    return QApplication::exec();
}
