#include "patience.h"

#include <console/demo/samplesite.h>
#include <console/devices/devicelistmodel.h>
#include <console/devices/devicelistview.h>

#include <QSignalSpy>
#include <QTest>

using namespace ZelkoConsole;

namespace {

const QString north = QStringLiteral("north");
const QString south = QStringLiteral("south");

struct Setting
{
    Setting()
        : site({north, south})
        , view(&model)
    {
        QObject::connect(&site, &Session::statusChanged, &model,
                         [this](const QString& name) { model.setStatus(name, site.status(name)); });
        model.setSubSystems(site.subSystems());
        view.resize(300, 300);
        view.show();
    }

    void connectWithDevices(const QString& subSystem, const QStringList& devices)
    {
        for (const QString& device : devices) {
            site.addDevice(subSystem, device);
        }
        site.connectTo(subSystem);
    }

    void click(const QModelIndex& index)
    {
        QTest::mouseClick(view.viewport(), Qt::LeftButton, Qt::NoModifier, view.visualRect(index).center());
    }

    SampleSite site;
    DeviceListModel model;
    DeviceListView view;
};

const QStringList twoDevices{QStringLiteral("A1"), QStringLiteral("A2")};

} // namespace

class TestDeviceListView : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void choosesTheFirstSubSystemAndThenItsFirstDevice()
    {
        Setting setting;
        QCOMPARE(setting.view.chosenSubSystem(), north);
        QCOMPARE(setting.view.chosenDevice(), QString());
        setting.connectWithDevices(south, twoDevices);
        QCOMPARE(setting.view.chosenSubSystem(), south);
        QCOMPARE(setting.view.chosenDevice(), QStringLiteral("A1"));
    }

    void leavesTheChoiceToTheOperatorOnceHeHasChosen()
    {
        Setting setting;
        setting.click(setting.model.subSystemIndex(south));
        setting.connectWithDevices(north, twoDevices);
        QCOMPARE(setting.view.chosenSubSystem(), south);
        QCOMPARE(setting.view.chosenDevice(), QString());
    }

    void choosesByMouse()
    {
        Setting setting;
        setting.connectWithDevices(north, twoDevices);
        const QSignalSpy chosen(&setting.view, &DeviceListView::chosen);
        setting.click(setting.model.deviceIndex(north, QStringLiteral("A2")));
        QCOMPARE(setting.view.chosenDevice(), QStringLiteral("A2"));
        QCOMPARE(chosen.count(), 1);
    }

    void choosesByKeyboard()
    {
        Setting setting;
        setting.connectWithDevices(north, twoDevices);
        QTest::keyClick(&setting.view, Qt::Key_Down);
        QCOMPARE(setting.view.chosenDevice(), QStringLiteral("A2"));
        QTest::keyClick(&setting.view, Qt::Key_Home);
        QCOMPARE(setting.view.chosenSubSystem(), north);
        QCOMPARE(setting.view.chosenDevice(), QString());
        QTest::keyClick(&setting.view, Qt::Key_Minus);
        QVERIFY(!setting.view.isExpanded(setting.model.subSystemIndex(north)));
    }

    void keepsTheChoiceWhileASubSystemIsLost()
    {
        Setting setting;
        setting.connectWithDevices(north, twoDevices);
        setting.click(setting.model.deviceIndex(north, QStringLiteral("A2")));
        setting.site.lose(north, QStringLiteral("killed"));
        QCoreApplication::processEvents();
        QCOMPARE(setting.view.chosenDevice(), QStringLiteral("A2"));
        setting.connectWithDevices(north, twoDevices);
        QCOMPARE(setting.view.chosenDevice(), QStringLiteral("A2"));
    }

    void tellsThatTheChosenDeviceIsGone()
    {
        Setting setting;
        setting.connectWithDevices(north, twoDevices);
        const QSignalSpy chosen(&setting.view, &DeviceListView::chosen);
        setting.site.removeDevice(north, QStringLiteral("A1"));
        QTRY_COMPARE_WITH_TIMEOUT(setting.view.chosenDevice(), QStringLiteral("A2"), patience);
        QVERIFY(chosen.count() > 0);
    }
};

QTEST_MAIN(TestDeviceListView)
#include "tst_devicelistview.moc"
