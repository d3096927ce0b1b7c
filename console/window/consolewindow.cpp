#include <console/window/consolewindow.h>

#include <console/devices/devicelistmodel.h>
#include <console/devices/devicelistview.h>
#include <console/devices/workdevice.h>
#include <console/records/openrecordwindows.h>
#include <console/records/recordactions.h>
#include <console/records/recordpane.h>
#include <console/records/recordtable.h>
#include <console/replay/replaydeck.h>
#include <console/session/consoleuser.h>
#include <console/session/session.h>
#include <console/widgets/connectionbadge.h>
#include <console/widgets/glyph.h>
#include <console/widgets/heading.h>
#include <console/widgets/menubarbutton.h>
#include <console/window/timezonetext.h>
#include <console/window/usermenu.h>
#include <console/window/usermessages.h>

#include <vornappstartup/cfgcenter.h>
#include <zelkoguibase/controller/zelkoserverguicontroller.h>

#include <QAction>
#include <QApplication>
#include <QDateTime>
#include <QDir>
#include <QFileInfo>
#include <QLabel>
#include <QMenuBar>
#include <QMessageBox>
#include <QSettings>
#include <QSplitter>
#include <QStatusBar>
#include <QTableView>
#include <QTimeZone>
#include <QVBoxLayout>

namespace ZelkoConsole {
namespace {

constexpr QLatin1String geometryKey("window/geometry");
constexpr QLatin1String splitterKey("window/splitter");
constexpr QSize firstSize(1280, 720);

template <typename Receiver, typename Slot>
QAction* addMenuAction(QMenu& menu, const QString& text, const QKeySequence& shortcut, Receiver* receiver, Slot slot)
{
    QAction* const action = menu.addAction(text);
    action->setShortcut(shortcut);
    QObject::connect(action, &QAction::triggered, receiver, slot);
    return action;
}

// What the windows of the library keep goes into a file of their own beside that of this window.
QSettings* withLibrarySettings(QSettings* settings)
{
    const QFileInfo file(settings->fileName());
    CfgCenter::SetFile(ICfg::UserView, file.dir().filePath(file.completeBaseName() + QLatin1String("-library.ini")));
    return settings;
}

} // namespace

ConsoleWindow::ConsoleWindow(Session* session, ConsoleUser* user, QSettings* settings, QWidget* parent)
    : QMainWindow(parent)
    , m_session(session)
    , m_user(user)
    , m_settings(withLibrarySettings(settings))
    , m_deviceModel(new DeviceListModel(this))
    , m_devices(new DeviceListView(m_deviceModel))
    , m_records(new RecordPane(session->connectionData()))
    , m_replay(new ReplayDeck(session->connectionData(), m_records))
    , m_splitter(new QSplitter(Qt::Horizontal))
    , m_badge(new ConnectionBadge)
    , m_userMenu(new UserMenu(
          user, [this] { return leaveUser(); }, this))
    , m_messages(std::make_unique<UserMessages>(this))
    , m_windows(std::make_unique<OpenRecordWindows>(this))
{
    setObjectName(QStringLiteral("consoleWindow"));
    setWindowTitle(tr("Recorder Console"));
    setCentralWidget(makeContent());
    makeMenus();
    makeUserButton();
    makeStatusBar();
    m_records->controller()->setDialogParent(this);

    connect(m_devices, &DeviceListView::chosen, this, &ConsoleWindow::showChoice);
    connect(m_records->workDevice(), &WorkDevice::chosen, m_devices, &DeviceListView::choose);
    connect(m_replay, &ReplayDeck::answered, this, &ConsoleWindow::showChoice);
    connect(m_windows.get(), &OpenRecordWindows::answered, this, &ConsoleWindow::showChoice);
    connect(session, &Session::statusChanged, this, &ConsoleWindow::statusChanged);
    connect(session, &Session::writeRefused, this, &ConsoleWindow::writeRefused);
    connect(session, &Session::writeNotSent, this, &ConsoleWindow::writeNotSent);
    m_deviceModel->setSubSystems(session->subSystems());
    for (const QString& subSystem : session->subSystems()) {
        statusChanged(subSystem);
    }
    restorePlaces();
    m_devices->setFocus();
}

ConsoleWindow::~ConsoleWindow() = default;

QWidget* ConsoleWindow::makeContent()
{
    m_splitter->addWidget(makeDevicePane());
    m_splitter->addWidget(makeWorkPane());
    m_splitter->setStretchFactor(1, 1);
    m_splitter->setChildrenCollapsible(false);
    m_splitter->setHandleWidth(10);

    auto* const content = new QWidget;
    auto* const layout = new QVBoxLayout(content);
    layout->setContentsMargins(10, 10, 10, 6);
    layout->addWidget(m_splitter);
    return content;
}

QWidget* ConsoleWindow::makeDevicePane()
{
    auto* const title = new Heading(tr("Devices"));
    title->setBuddy(m_devices);
    title->setContentsMargins(2, 0, 2, 0);
    auto* const pane = new QWidget;
    pane->setMinimumWidth(fontMetrics().averageCharWidth() * 24); // where the names can still be told apart
    auto* const layout = new QVBoxLayout(pane);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(6);
    layout->addWidget(title);
    layout->addWidget(m_devices, 1);
    return pane;
}

QWidget* ConsoleWindow::makeWorkPane()
{
    auto* const pane = new QWidget;
    auto* const layout = new QVBoxLayout(pane);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(8);
    layout->addWidget(m_records, 1);
    layout->addWidget(m_replay);
    return pane;
}

void ConsoleWindow::makeMenus()
{
    QMenu& file = *menuBar()->addMenu(tr("&File"));
    QAction* const quit = addMenuAction(file, tr("&Quit"), Qt::CTRL | Qt::Key_Q, this, &QWidget::close);
    quit->setMenuRole(QAction::QuitRole);

    menuBar()->addMenu(m_records->actions()->menu());

    QMenu& view = *menuBar()->addMenu(tr("&View"));
    view.addMenu(m_records->recordTable()->columnMenu());
    view.addMenu(m_records->recordTable()->sortMenu());
    view.addSeparator();
    constexpr auto focus = qOverload<>(&QWidget::setFocus);
    addMenuAction(view, tr("Go to &Devices"), Qt::CTRL | Qt::Key_1, m_devices, focus);
    addMenuAction(view, tr("Go to &Records"), Qt::CTRL | Qt::Key_2, m_records->table(), focus);
    addMenuAction(view, tr("Go to Replay &Bar"), Qt::CTRL | Qt::Key_3, m_replay, &ReplayDeck::goToBar);
    addMenuAction(view, tr("Go to Book&marks"), Qt::CTRL | Qt::Key_4, m_replay, &ReplayDeck::goToBookmarks);

    menuBar()->addMenu(m_userMenu);

    QMenu& help = *menuBar()->addMenu(tr("&Help"));
    QAction* const about =
        addMenuAction(help, tr("&About Recorder Console"), Qt::Key_F1, this, &ConsoleWindow::showAbout);
    about->setMenuRole(QAction::AboutRole);
}

// The menu bar has the same menu for the keyboard.
void ConsoleWindow::makeUserButton()
{
    auto* const button = new MenuBarButton(menuBar());
    button->setObjectName(QStringLiteral("userButton"));
    button->setIcon(glyphIcon(Glyph::Person));
    button->setMenu(m_userMenu);
    button->setStatusTip(tr("Who works here."));
    const auto show = [this, button] {
        button->setText(m_userMenu->userText());
        button->setAccessibleName(tr("User: %1").arg(m_userMenu->userText()));
        menuBar()->setCornerWidget(button); // each time anew: that gives it the room that its text takes now
    };
    connect(m_userMenu, &UserMenu::userTextChanged, button, show);
    show();
}

void ConsoleWindow::makeStatusBar()
{
    auto* const zone = new QLabel(timeZoneText(QTimeZone::systemTimeZone(), QDateTime::currentDateTimeUtc()));
    zone->setObjectName(QStringLiteral("timeZone"));
    zone->setContentsMargins(6, 0, 6, 0);
    statusBar()->setSizeGripEnabled(false);
    statusBar()->addWidget(m_badge);
    statusBar()->addWidget(m_records->statusWidget(), 1);
    statusBar()->addPermanentWidget(zone);
}

void ConsoleWindow::showAbout()
{
    QMessageBox::about(this, tr("About Recorder Console"),
                       tr("<h3>Recorder Console</h3>"
                          "<p>Version %1</p>"
                          "<p>Shows the records of signal recorders as they appear, grow, finish and go.</p>")
                           .arg(QApplication::applicationVersion()));
}

// Another device goes on to be chosen, or the state of the one that is, while the user is asked about the one before.
void ConsoleWindow::showChoice()
{
    if (isAsking() || !leaveDevice()) {
        return;
    }
    const QString subSystem = m_devices->chosenSubSystem();
    const SubSystemStatus status = m_session->status(subSystem);
    m_records->setDevice(subSystem, m_devices->chosenDevice());
    m_records->setStatus(status);
    m_replay->setSubSystem(subSystem);
    m_user->workAt(subSystem); // after the device: nothing is selected when the rights become others
    m_badge->show(subSystem, status);
}

// Where that is not to be, its entry is chosen again; at last when the click that chose another one is over, or that
// would mark the other one.
bool ConsoleWindow::leaveDevice()
{
    const QString subSystem = m_devices->chosenSubSystem();
    const auto leaving = m_records->subSystem() == subSystem ? OpenRecordWindows::Leaving::Device
                                                             : OpenRecordWindows::Leaving::Everything;
    if (m_records->shows(subSystem, m_devices->chosenDevice()) ||
        (m_windows->close(leaving) && m_replay->settleBookmarks())) {
        return true;
    }
    const auto goBack = [this] { m_devices->choose(m_records->subSystem(), m_records->device()); };
    goBack();
    QMetaObject::invokeMethod(this, goBack, Qt::QueuedConnection);
    return false;
}

// What the user has open may be more than the next one may do.
bool ConsoleWindow::leaveUser()
{
    return m_windows->close(OpenRecordWindows::Leaving::Everything) &&
           m_replay->settleBookmarks(ReplayDeck::Leaving::User);
}

bool ConsoleWindow::isAsking() const
{
    return m_windows->isClosing() || m_replay->isAsking();
}

void ConsoleWindow::statusChanged(const QString& subSystem)
{
    m_deviceModel->setStatus(subSystem, m_session->status(subSystem));
    if (subSystem == m_devices->chosenSubSystem()) {
        showChoice();
    }
}

void ConsoleWindow::writeRefused(const QString& subSystem, const QString& reason)
{
    const QString advice = m_user->role() == ZelkoCommon::Role::Administrator
                               ? tr("What was changed is again as it was; try it once more.")
                               : tr("Log in as a user who may do this.");
    m_messages->show(tr("Recorder %1 has refused a change: %2. %3").arg(subSystem, reason, advice));
}

void ConsoleWindow::writeNotSent(const QString& subSystem, const QString& reason)
{
    m_messages->show(tr("A change did not go to recorder %1: %2. What was changed is again as it was; try it with less "
                        "at once, or a little later.")
                         .arg(subSystem, reason));
}

void ConsoleWindow::restorePlaces()
{
    m_records->recordTable()->restoreSorting(*m_settings);
    m_replay->restorePlaces(*m_settings);
    if (!restoreGeometry(m_settings->value(geometryKey).toByteArray())) {
        resize(firstSize);
    }
    m_splitter->restoreState(m_settings->value(splitterKey).toByteArray());
}

void ConsoleWindow::closeEvent(QCloseEvent* event)
{
    if (!m_windows->close(OpenRecordWindows::Leaving::Everything) ||
        !m_replay->settleBookmarks(ReplayDeck::Leaving::Console)) {
        event->ignore();
        return;
    }
    m_records->savePlaces(*m_settings);
    m_replay->savePlaces(*m_settings);
    m_settings->setValue(geometryKey, saveGeometry());
    m_settings->setValue(splitterKey, m_splitter->saveState());
    QMainWindow::closeEvent(event);
}

} // namespace ZelkoConsole
