#include <console/demo/windowscene.h>

#include <console/records/recordpane.h>
#include <console/window/consolewindow.h>

#include <zelkoguibase/controller/zelkoserverguicontroller.h>

#include <QApplication>
#include <QDateTime>
#include <QTest>

namespace ZelkoConsole {
namespace {

constexpr int patience = 10'000;

using Status = SampleSite::Record::RecordStatus;

const QStringList& names()
{
    static const QStringList list{QStringLiteral("Airband tower"),          QStringLiteral("Telemetry bursts"),
                                  QStringLiteral("Voice channel"),          QStringLiteral("Weather satellite pass"),
                                  QStringLiteral("Noise floor, antenna 2"), QStringLiteral("Time signal")};
    return list;
}

Status statusOf(int number)
{
    switch (number) {
    case 0:
        return Status::Recording;
    case 3:
        return Status::Transferring;
    case 7:
        return Status::Damaged;
    default:
        return Status::Finished;
    }
}

} // namespace

WindowScene::WindowScene(const QStringList& subSystems, const QString& firstDevice, bool knownUsers)
    : m_site(subSystems)
    , m_settings(m_folder.filePath(QStringLiteral("settings.ini")), QSettings::IniFormat)
{
    if (knownUsers) {
        m_site.knowUsers();
    }
    m_user = std::make_unique<ConsoleUser>(m_site);
    m_site.addDevice(subSystems.constFirst(), firstDevice);
    m_site.addDevice(subSystems.constFirst(), QStringLiteral("Recorder2"), false);
    m_site.setStatus(subSystems.constLast(), {LinkState::Unreachable, QStringLiteral("connection refused")});
}

WindowScene::~WindowScene() = default;

ConsoleWindow& WindowScene::open()
{
    m_window = std::make_unique<ConsoleWindow>(&m_site, m_user.get(), &m_settings);
    m_window->show();
    QApplication::processEvents();
    return *m_window;
}

ConsoleWindow& WindowScene::openFilled(int count)
{
    ConsoleWindow& window = open();
    connectNorth();
    fill(north(), recorder1(), count);
    QApplication::processEvents();
    return window;
}

void WindowScene::connect(const QString& subSystem)
{
    m_site.connectTo(subSystem);
    const auto* const controller = m_window->records()->controller();
    if (!QTest::qWaitFor([controller] { return controller->isConnected(); }, patience)) {
        qWarning("the pictures show a device that cannot be worked on");
    }
}

void WindowScene::fill(const QString& subSystem, const QString& device, int count)
{
    const QDateTime newest(QDate(2026, 5, 4), QTime(14, 30, 12), Qt::UTC);
    for (int number = 0; number < count; ++number) {
        const auto start = static_cast<quint64>(newest.addSecs(-number * 1740).toMSecsSinceEpoch()) * 1000;
        const auto duration = static_cast<quint64>(7 + number * number * 13) * 1'000'000;
        const auto frequency = 118'100'000 + static_cast<quint64>(number) * 8'330'000;
        m_site.setRecord(subSystem, device,
                         sampleRecord(QStringLiteral("R%1").arg(20260504000 + number), names()[number % names().size()],
                                      statusOf(number), start, duration, frequency));
    }
}

} // namespace ZelkoConsole
