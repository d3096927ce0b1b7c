#include <zelkoguibase/controller/zelkoserverguicontroller.h>

#include "controllersite.h"
#include "tracemask.h"

#include <QtTest>

#include <optional>

using namespace Qt::StringLiterals;
using ZelkoGUI::IZelkoGUIController;
using ZelkoGUI::ZelkoServerGUIController;

/// What a controller makes of the errors that its windows report.
class DeviceErrorsTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        m_site.emplace();
        m_messages.emplace();
        m_controller =
            std::make_unique<ZelkoServerGUIController>(m_site->handler, IZelkoGUIController::UserActionCopy, nullptr);
        m_controller->sl_activeDeviceChanged(u"D1"_s);
    }
    void cleanup()
    {
        m_controller.reset();
        m_messages.reset();
        m_site.reset();
    }

    void anErrorIsAnsweredOnceThereWasADevice();
    void anErrorIsNoWarning_data();
    void anErrorIsNoWarning();
    void anErrorIsAnsweredAsTheSubSystemOfTheDevice_data();
    void anErrorIsAnsweredAsTheSubSystemOfTheDevice();
    void anExceptionEndsAnErrorWithATrace();

private:
    std::optional<ControllerSite> m_site;
    std::optional<ShownMessages> m_messages;
    std::unique_ptr<ZelkoServerGUIController> m_controller;
};

void DeviceErrorsTest::anErrorIsAnsweredOnceThereWasADevice()
{
    ZelkoServerGUIController fresh(m_site->handler, IZelkoGUIController::UserActionCopy, nullptr);
    fresh.sl_errorText(u"too early"_s, u"nobody hears it"_s);
    QCOMPARE(m_messages->texts(), QStringList());
    const TraceTexts traces;
    m_controller->sl_errorText(u"No spectrum"_s, u"record P"_s);
    QCOMPARE(m_messages->texts(), QStringList{u"No spectrum\nrecord P"_s});
    QVERIFY(traces.contain(u"/SubSystems/north"_s));
}

// An error is traced as one, and a warning would be traced where warnings are.
void DeviceErrorsTest::anErrorIsNoWarning_data()
{
    QTest::addColumn<unsigned int>("mask");
    QTest::addColumn<bool>("isTraced");
    QTest::newRow("errors are wanted") << unsigned(ErrorHandler::TraceError) << true;
    QTest::newRow("warnings are wanted") << unsigned(ErrorHandler::TraceWarning) << false;
}

void DeviceErrorsTest::anErrorIsNoWarning()
{
    QFETCH(const unsigned int, mask);
    const TraceTexts traces;
    const TraceMask wanted(mask);
    m_controller->sl_errorText(u"No spectrum"_s, u"record P"_s);
    QTEST(traces.contain(u"No spectrum\nrecord P"_s), "isTraced");
    QCOMPARE(m_messages->texts().size(), 1);
}

void DeviceErrorsTest::anErrorIsAnsweredAsTheSubSystemOfTheDevice_data()
{
    QTest::addColumn<bool>("byConnection");
    QTest::newRow("a device of the other sub system is named") << false;
    QTest::newRow("the connection of the other sub system comes") << true;
}

void DeviceErrorsTest::anErrorIsAnsweredAsTheSubSystemOfTheDevice()
{
    QFETCH(const bool, byConnection);
    m_site->data->configuration->SetCurrentSubSystem(u"south"_s);
    const TraceTexts traces;
    m_controller->sl_errorText(u"before"_s, QString());
    QVERIFY(traces.contain(u"/SubSystems/north: before"_s));
    if (byConnection) {
        m_site->data->setConnected(u"south"_s, true);
    } else {
        m_controller->sl_activeDeviceChanged(u"D1"_s, u"south"_s);
    }
    m_controller->sl_errorText(u"after"_s, QString());
    QVERIFY(traces.contain(u"/SubSystems/south: after"_s));
}

void DeviceErrorsTest::anExceptionEndsAnErrorWithATrace()
{
    const TraceTexts traces;
    ErrorHandler::Instance()->SetMessageSink([](const QString&) { throw std::runtime_error("no window"); });
    m_controller->sl_errorText(u"No spectrum"_s, u"record P"_s);
    QCOMPARE(traces.withSources().last(),
             u"zelkoserverguicontroller: Exception in ZelkoServerGUIController::sl_errorText"_s);
}

QTEST_MAIN(DeviceErrorsTest)
#include "tst_deviceerrors.moc"
