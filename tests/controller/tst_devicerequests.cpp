#include <zelkoguibase/controller/zelkoserverguicontroller.h>

#include "servicesite.h"
#include "shownmessages.h"

#include <zelkobase/service/toolbarhelper.h>

#include <QtTest>

#include <optional>

using namespace Qt::StringLiterals;
using ZelkoCommon::ServiceStatus;
using ZelkoGUI::IZelkoGUIController;
using ZelkoGUI::ZelkoServerGUIController;

using Request = std::function<void(ZelkoServerGUIController&)>;

/// What the slots of a controller ask of the recorder's service.
class DeviceRequestsTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        m_site.emplace();
        m_controller =
            std::make_unique<ZelkoServerGUIController>(m_site->handler, IZelkoGUIController::UserActionCopy, nullptr);
        m_controller->sl_activeDeviceChanged(u"D1"_s);
    }
    void cleanup()
    {
        m_controller.reset();
        m_site.reset();
    }

    void aRequestGoesToItsDevice_data();
    void aRequestGoesToItsDevice();
    void aRequestThatFailsIsNotTold();
    void theServiceOfAnotherSubSystemIsLookedForAnew();

private:
    QStringList calls() const { return m_site->peer.calls(); }

    std::optional<ServiceSite> m_site;
    std::unique_ptr<ZelkoServerGUIController> m_controller;
};

Q_DECLARE_METATYPE(Request)

void DeviceRequestsTest::aRequestGoesToItsDevice_data()
{
    using Controller = ZelkoServerGUIController;
    QTest::addColumn<Request>("request");
    QTest::addColumn<QString>("call");
    const auto row = [](const char* name, const Request& request, const QString& call) {
        QTest::newRow(name) << request << call;
    };
    const auto bookmarks = [] {
        ZELKO_XML::BookmarkEntry entry;
        entry.SetTimestamp(1700000000000001);
        entry.SetBookmark(u"start"_s);
        return QVector<ZELKO_XML::BookmarkEntry>{entry};
    };
    row(
        "a copy on the active device", [](Controller& c) { c.sl_copyRecord(u"P"_s, 5, 9, u"copy"_s); },
        u"copyRecord D1 P [5-9] copy"_s);
    row(
        "a copy on another device", [](Controller& c) { c.sl_copyRecord(u"P"_s, 5, 9, u"copy"_s, u"D2"_s); },
        u"copyRecord D2 P [5-9] copy"_s);
    row(
        "a comment", [](Controller& c) { c.sl_addHistoryEntry(u"P"_s, u"heard"_s); }, u"addHistory D1 P heard"_s);
    row(
        "a comment that is taken back", [](Controller& c) { c.sl_deleteHistoryEntry(u"P"_s, 1700000000000002); },
        u"removeHistoryEntry D1 P 1700000000000002"_s);
    row(
        "bookmarks on the active device", [bookmarks](Controller& c) { c.sl_setBookmarkEntries(u"P"_s, bookmarks()); },
        u"addBookmarks D1 P [1700000000000001:start]"_s);
    row(
        "bookmarks on another device",
        [bookmarks](Controller& c) { c.sl_setBookmarkEntries(u"P"_s, bookmarks(), u"D2"_s); },
        u"addBookmarks D2 P [1700000000000001:start]"_s);
    row(
        "no bookmarks", [](Controller& c) { c.sl_setBookmarkEntries(u"P"_s, {}); }, u"addBookmarks D1 P []"_s);
    row(
        "a spectrum of the active device",
        [](Controller& c) {
            c.sl_overviewSpectrumStreamed(u"P"_s, 1, 2, 3, 4, ZelkoDataTypes::eFFT_Window::Blackman, u"192.0.2.9"_s, 5);
        },
        u"getOverviewSpectrumStreamed D1 P 1 2 3 4 3 192.0.2.9 5"_s);
    row(
        "a spectrum of another device",
        [](Controller& c) {
            c.sl_overviewSpectrumStreamed(u"P"_s, 1, 2, 3, 4, ZelkoDataTypes::eFFT_Window::Hann, u"192.0.2.9"_s, 5,
                                          u"D2"_s);
        },
        u"getOverviewSpectrumStreamed D2 P 1 2 3 4 1 192.0.2.9 5"_s);
}

void DeviceRequestsTest::aRequestGoesToItsDevice()
{
    QFETCH(const Request, request);
    QFETCH(const QString, call);
    request(*m_controller);
    QCOMPARE(calls(), QStringList{call});
}

void DeviceRequestsTest::aRequestThatFailsIsNotTold()
{
    const ShownMessages messages;
    m_site->peer.setAnswer(u"copyRecord"_s, ZelkoCommon::statusCode(ServiceStatus::DiskFull));
    m_controller->sl_copyRecord(u"P"_s, 5, 9, u"copy"_s);
    QCOMPARE(calls().size(), 1);
    QCOMPARE(messages.texts(), QStringList());
}

// The administration is asked for once per recorder, and once more when the sub system is another one.
void DeviceRequestsTest::theServiceOfAnotherSubSystemIsLookedForAnew()
{
    m_controller->sl_addHistoryEntry(u"P"_s, u"heard"_s);
    const int before = m_site->peer.adminRequests();
    m_controller->sl_activeDeviceChanged(u"D2"_s);
    m_controller->sl_addHistoryEntry(u"P"_s, u"heard"_s);
    QCOMPARE(m_site->peer.adminRequests(), before);
    m_site->data->configuration->AddSubSystem({u"south"_s, u"127.0.0.1"_s, m_site->proxy.port()});
    m_site->data->configuration->SetCurrentSubSystem(u"south"_s);
    m_controller->sl_activeDeviceChanged(u"D2"_s);
    m_controller->sl_addHistoryEntry(u"P"_s, u"heard"_s);
    QCOMPARE(m_site->peer.adminRequests(), before + 1);
}

QTEST_MAIN(DeviceRequestsTest)
#include "tst_devicerequests.moc"
