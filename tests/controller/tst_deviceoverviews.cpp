#include <zelkoguibase/controller/zelkoserverguicontroller.h>

#include "controllersite.h"
#include "loopbackservice.h"
#include "ownconfiguration.h"
#include "patience.h"
#include "shownoverview.h"
#include "testrecords.h"

#include <overviewdisplay/spectrumoverviewwidget.h>
#include <resources/zelkoicons.h>

#include <QAction>
#include <QLabel>
#include <QPointer>
#include <QtTest>

#include <optional>

using namespace Qt::StringLiterals;
using SPECTRUM_OVERVIEW::SpectrumOverviewWidget;
using ZELKO_XML::ZELKO_RecordData;
using ZelkoGUI::ZelkoServerGUIController;
using Emission = std::function<void(SpectrumOverviewWidget&)>;

Q_DECLARE_METATYPE(Emission)

namespace {

constexpr auto overviewAction = ZelkoServerGUIController::UserActionOverview;

std::shared_ptr<ZELKO_RecordData> spectralRecord(const QString& id)
{
    const auto record = makeRecord(id, 5, 360'000);
    record->SetDataFormat(ZELKO_RecordData::DataFormat::IQ16);
    for (const quint64 time : {record->GetStartTime(), record->GetStopTime()}) {
        ZELKO_XML::IndexEntry entry;
        entry.SetTimestamp(time);
        entry.SetRecordOffset(time == record->GetStartTime() ? 0 : 360'000);
        entry.SetSampleRate(1000);
        record->AppendIndexEntry(entry);
    }
    return record;
}

} // namespace

/// The spectrum overviews that the controller of a device opens.
class DeviceOverviewsTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase()
    {
        registerZelkoIcons();
        m_service.emplace();
    }
    void cleanupTestCase() { m_service.reset(); }
    void init();
    void cleanup();

    void theActionOpensAWindow();
    void aSecondUseMakesASecondWindow();
    void aClosedWindowIsGone();
    void theDeviceIsAskedForSpectra();
    void whatAWindowWantsGoesToTheDevice_data();
    void whatAWindowWantsGoesToTheDevice();
    void aWindowHasTheRecordAskedFor();
    void anErrorOfAWindowIsShown();
    void aWindowOutlivesTheController();
    void aWindowFollowsTheListOfRecords();
    void settingsAreKeptInTheGroupOfTheSite();

private:
    SpectrumOverviewWidget& open(const QString& record = u"P"_s)
    {
        const QList<SpectrumOverviewWidget*> before = openedOverviews();
        m_controller->sl_selectedRecordsChanged({record});
        m_site->client->take();
        m_controller->recordAction(overviewAction)->trigger();
        QList<SpectrumOverviewWidget*> opened = openedOverviews();
        opened.removeIf([&before](SpectrumOverviewWidget* window) { return before.contains(window); });
        return *opened.value(0);
    }
    static QString status(const SpectrumOverviewWidget& window)
    {
        return window.findChild<QLabel*>(u"StatusLabel"_s)->text();
    }
    QStringList calls() const { return m_service->peer.calls(); }

    std::optional<OwnConfiguration> m_configuration;
    std::optional<LoopbackService> m_service;
    std::optional<ControllerSite> m_site;
    std::optional<DeviceBranch> m_branch;
    std::optional<ShownMessages> m_messages;
    std::unique_ptr<ZelkoServerGUIController> m_controller;
};

void DeviceOverviewsTest::init()
{
    m_configuration.emplace();
    m_messages.emplace();
    m_site.emplace(m_service->proxy.port());
    m_site->handler->setLimit(std::chrono::seconds(60)); // a loaded machine is no failure
    m_branch.emplace(*m_site->data, u"D1"_s);
    m_branch->putAll();
    m_branch->set<QString>("IpAddress", u"127.0.0.1"_s);
    m_branch->setRecord(spectralRecord(u"P"_s));
    m_branch->setRecord(spectralRecord(u"Q"_s));
    m_controller = std::make_unique<ZelkoServerGUIController>(
        m_site->handler, nullptr, QString(), ZelkoServerGUIController::UserActions(QFlag(1023)), nullptr);
    m_controller->sl_activeDeviceChanged(u"D1"_s);
    QTRY_VERIFY_WITH_TIMEOUT(m_controller->isConnected(), patience);
    m_service->peer.forgetCalls();
}

void DeviceOverviewsTest::cleanup()
{
    qDeleteAll(openedOverviews());
    m_controller.reset();
    m_branch.reset();
    m_site.reset();
    m_messages.reset();
    m_configuration.reset();
}

void DeviceOverviewsTest::theActionOpensAWindow()
{
    const SpectrumOverviewWidget& window = open();
    QCOMPARE(m_site->client->take(), QStringList{u"SyncOneRecord=P"_s});
    QVERIFY(window.isVisible());
    QVERIFY(!window.parent());
    QVERIFY(window.testAttribute(Qt::WA_DeleteOnClose));
    QCOMPARE(window.windowTitle(), u"Spectrum Overview: name of P"_s);
}

void DeviceOverviewsTest::aSecondUseMakesASecondWindow()
{
    const SpectrumOverviewWidget& first = open();
    const SpectrumOverviewWidget& second = open();
    const SpectrumOverviewWidget& third = open(u"Q"_s);
    QCOMPARE(openedOverviews().size(), 3);
    QCOMPARE(first.windowTitle(), second.windowTitle());
    QCOMPARE(third.windowTitle(), u"Spectrum Overview: name of Q"_s);
    QVERIFY(first.isVisible() && second.isVisible() && third.isVisible());
}

void DeviceOverviewsTest::aClosedWindowIsGone()
{
    const QPointer<SpectrumOverviewWidget> first(&open());
    open(u"Q"_s);
    first->close();
    QTRY_VERIFY_WITH_TIMEOUT(!first, patience);
    QCOMPARE(openedOverviews().size(), 1);
}

void DeviceOverviewsTest::theDeviceIsAskedForSpectra()
{
    open();
    QTRY_VERIFY_WITH_TIMEOUT(!calls().isEmpty(), patience);
    const QStringList words = calls().first().split(u' ');
    QCOMPARE(words.mid(0, 5), (QStringList{u"getOverviewSpectrumStreamed"_s, u"D1"_s, u"P"_s, u"1700000000000000"_s,
                                           u"1700000090000000"_s}));
    QCOMPARE(words.value(6), u"1024"_s);
    QCOMPARE(words.value(7), u"1"_s);
    QCOMPARE(words.value(8), u"127.0.0.1"_s);
    QVERIFY(words.value(9).toUShort() != 0);
}

void DeviceOverviewsTest::whatAWindowWantsGoesToTheDevice_data()
{
    QTest::addColumn<Emission>("emission");
    QTest::addColumn<QString>("call");
    ZELKO_XML::BookmarkEntry entry;
    entry.SetTimestamp(1'700'000'000'000'001);
    entry.SetBookmark(u"start"_s);
    QTest::newRow("a copy") << Emission([](SpectrumOverviewWidget& window) {
        Q_EMIT window.si_copyRecord(u"P"_s, 5, 9, u"copy"_s, u"D2"_s);
    }) << u"copyRecord D2 P [5-9] copy"_s;
    QTest::newRow("bookmarks") << Emission([entry](SpectrumOverviewWidget& window) {
        Q_EMIT window.si_setBookmarkEntries(u"P"_s, {entry}, u"D2"_s);
    }) << u"addBookmarks D2 P [1700000000000001:start]"_s;
    QTest::newRow("spectra") << Emission([](SpectrumOverviewWidget& window) {
        Q_EMIT window.si_overviewSpectrumStreamed(u"P"_s, 1, 2, 3, 4, ZelkoDataTypes::eFFT_Window::Blackman,
                                                  u"192.0.2.9"_s, 5, u"D2"_s);
    }) << u"getOverviewSpectrumStreamed D2 P 1 2 3 4 3 192.0.2.9 5"_s;
    QTest::newRow("the record of another device")
        << Emission([](SpectrumOverviewWidget& window) { Q_EMIT window.si_resyncRecord(u"P"_s, u"D2"_s); })
        << u"requestRecordDataDetail D2 P"_s;
}

void DeviceOverviewsTest::whatAWindowWantsGoesToTheDevice()
{
    QFETCH(const Emission, emission);
    QFETCH(const QString, call);
    emission(open());
    QCOMPARE(calls(), QStringList{call});
}

void DeviceOverviewsTest::aWindowHasTheRecordAskedFor()
{
    SpectrumOverviewWidget& window = open();
    m_site->client->take();
    Q_EMIT window.si_resyncRecord(u"Q"_s, u"D1"_s);
    QCOMPARE(m_site->client->take(), QStringList{u"SyncOneRecord=Q"_s});
}

void DeviceOverviewsTest::anErrorOfAWindowIsShown()
{
    Q_EMIT open().si_errorText(u"No picture"_s, u"disk full"_s);
    QCOMPARE(m_messages->texts(), QStringList{u"No picture\ndisk full"_s});
}

void DeviceOverviewsTest::aWindowOutlivesTheController()
{
    const SpectrumOverviewWidget& window = open();
    m_controller.reset();
    QCOMPARE(openedOverviews().size(), 1);
    QCOMPARE(status(window), u"The record is not in the list at the moment."_s);
}

void DeviceOverviewsTest::aWindowFollowsTheListOfRecords()
{
    const SpectrumOverviewWidget& window = open();
    const auto renamed = spectralRecord(u"P"_s);
    renamed->SetRecordName(u"beacon 7"_s);
    m_branch->setRecord(renamed);
    QTRY_COMPARE_WITH_TIMEOUT(window.windowTitle(), u"Spectrum Overview: beacon 7"_s, patience);
    m_branch->map()->EraseAt(u"P"_s, nullptr);
    QTRY_COMPARE_WITH_TIMEOUT(status(window), u"The record has been deleted."_s, patience);
}

void DeviceOverviewsTest::settingsAreKeptInTheGroupOfTheSite()
{
    delete &open();
    ICfg* const user = CfgCenter::GetAppCfg(ICfg::UserView);
    const auto site = user->OpenGroup(u"ZelkoGUI"_s, ICfg::Access::Read);
    QVERIFY(site);
    QVERIFY(site->OpenGroup(u"SpectrumOverview"_s, ICfg::Access::Read));
}

QTEST_MAIN(DeviceOverviewsTest)

#include "tst_deviceoverviews.moc"
