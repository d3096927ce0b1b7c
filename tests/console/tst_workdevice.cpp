#include "patience.h"
#include "turns.h"

#include <console/demo/samplesite.h>
#include <console/devices/devicelistview.h>
#include <console/devices/workdevice.h>
#include <console/records/recordpane.h>
#include <console/session/consoleuser.h>
#include <console/window/consolewindow.h>

#include <zelkobase/state/localzelkovalues.h>
#include <zelkoguibase/state/devicecombo.h>

#include <QApplication>
#include <QScopeGuard>
#include <QSettings>
#include <QTableView>
#include <QTemporaryDir>
#include <QtTest>

using namespace Qt::StringLiterals;
using namespace ZelkoConsole;
using ZelkoCommon::DeviceCombo;

namespace {

/// A site with the devices A1, A2 and, not available, A3 in north, and B1 in south, all of it connected.
struct Site : SampleSite
{
    Site()
        : SampleSite({u"north"_s, u"south"_s})
    {
        addDevice(u"north"_s, u"A1"_s);
        addDevice(u"north"_s, u"A2"_s);
        addDevice(u"north"_s, u"A3"_s, false);
        addDevice(u"south"_s, u"B1"_s);
        connectTo(u"north"_s);
        connectTo(u"south"_s);
    }
    ~Site() override { Tree::Instance()->Remove(u"/ZELKO/Local"_s); }
};

struct Setting
{
    Setting()
    {
        QObject::connect(&work, &WorkDevice::chosen, &context, [this](const QString& subSystem, const QString& device) {
            chosen.append(device + u'@' + subSystem);
        });
        work.setSubSystem(u"north"_s);
        work.show();
        work.activateWindow();
    }

    bool isActive() { return QTest::qWaitForWindowActive(&work, patience); }
    DeviceCombo& combo() { return *work.combo(); }
    static QString kept(const QString& subSystem)
    {
        return ZelkoCommon::LocalZelkoValues(subSystem).valueDeviceId()->GetValue();
    }
    QStringList items() { return itemsOf(combo()); }
    static QStringList itemsOf(const QComboBox& box)
    {
        QStringList texts;
        for (int index = 0; index < box.count(); ++index) {
            texts.append(box.itemText(index));
        }
        return texts;
    }

    Site site;
    WorkDevice work{site.connectionData()};
    QStringList chosen;
    QObject context;
};

/// A console of that site.
struct Console
{
    explicit Console(Site& site)
        : settings(folder.filePath(u"s.ini"_s), QSettings::IniFormat)
    {
        site.knowUsers();
        user = std::make_unique<ConsoleUser>(site);
        window = std::make_unique<ConsoleWindow>(&site, user.get(), &settings);
        window->show();
    }

    const QTemporaryDir folder;
    QSettings settings;
    std::unique_ptr<ConsoleUser> user;
    std::unique_ptr<ConsoleWindow> window;
};

} // namespace

class TestWorkDevice : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void isNotSeenWithoutASubSystem();
    void offersTheDevicesOfTheSubSystem();
    void keepsTheChoiceInTheLocalValues();
    void remembersTheChoiceOfEachSubSystem();
    void followsTheLocalValue();
    void isNotSeenWhileThereAreNoDevices();
    void keepsTheFocusWhenTheListIsFilledAnew();
    void isDisabledWhileTheChannelIsBusy_data();
    void isDisabledWhileTheChannelIsBusy();
    void isChosenByKeys();
    void doesNotTellOfADeviceThatTakesThePlaceOfAnother();
    void cutsLongNames();
    void standsInTheWindow();
    void leavesTheListsLevel_data();
    void leavesTheListsLevel();
    void showsTheRecordsOfTheDeviceThatIsChosen();
};

void TestWorkDevice::isNotSeenWithoutASubSystem()
{
    Setting setting;
    QVERIFY(setting.work.isVisible());
    setting.work.setSubSystem(QString());
    QVERIFY(!setting.work.isVisible());
    QVERIFY(!setting.work.combo());
}

void TestWorkDevice::offersTheDevicesOfTheSubSystem()
{
    Setting setting;
    QCOMPARE(setting.items(), (QStringList{u"A1"_s, u"A2"_s}));
    setting.work.setSubSystem(u"south"_s);
    QCOMPARE(setting.items(), QStringList{u"B1"_s});
    setting.work.setSubSystem(u"west"_s);
    QCOMPARE(setting.items(), QStringList());
    QVERIFY(!setting.work.isVisible());
}

void TestWorkDevice::keepsTheChoiceInTheLocalValues()
{
    Setting setting;
    QCOMPARE(Setting::kept(u"north"_s), u"A1"_s);
    setting.combo().setCurrentIndex(1);
    QCOMPARE(Setting::kept(u"north"_s), u"A2"_s);
    QCOMPARE(Setting::kept(u"south"_s), QString());
}

void TestWorkDevice::remembersTheChoiceOfEachSubSystem()
{
    Setting setting;
    setting.combo().setCurrentIndex(1);
    setting.work.setSubSystem(u"south"_s);
    QCOMPARE(setting.combo().GetSelectedDevice(), u"B1"_s);
    setting.work.setSubSystem(u"north"_s);
    QCOMPARE(setting.combo().GetSelectedDevice(), u"A2"_s);
}

void TestWorkDevice::followsTheLocalValue()
{
    Setting setting;
    ZelkoCommon::LocalZelkoValues(u"north"_s).valueDeviceId()->SetValue(u"A2"_s, nullptr);
    QCOMPARE(setting.combo().currentText(), u"A2"_s);
    QCOMPARE(setting.chosen, QStringList());
}

void TestWorkDevice::isNotSeenWhileThereAreNoDevices()
{
    Setting setting;
    setting.site.lose(u"north"_s, u"it was killed"_s);
    QTRY_VERIFY_WITH_TIMEOUT(!setting.work.isVisible(), patience);
    setting.site.addDevice(u"north"_s, u"A1"_s);
    setting.site.connectTo(u"north"_s);
    QTRY_VERIFY_WITH_TIMEOUT(setting.work.isVisible(), patience);
    QCOMPARE(setting.items(), QStringList{u"A1"_s});
}

void TestWorkDevice::keepsTheFocusWhenTheListIsFilledAnew()
{
    Setting setting;
    QVERIFY(setting.isActive());
    setting.combo().setFocus();
    setting.site.addDevice(u"north"_s, u"A4"_s);
    QTRY_COMPARE_WITH_TIMEOUT(setting.combo().count(), 3, patience);
    letTurnsPass();
    QVERIFY(setting.combo().hasFocus());
}

void TestWorkDevice::isDisabledWhileTheChannelIsBusy_data()
{
    QTest::addColumn<bool>("isRecording");
    QTest::addColumn<bool>("isReplaying");
    QTest::addColumn<bool>("isEnabled");
    QTest::newRow("at rest") << false << false << true;
    QTest::newRow("recording") << true << false << false;
    QTest::newRow("replaying") << false << true << false;
    QTest::newRow("both") << true << true << false;
}

void TestWorkDevice::isDisabledWhileTheChannelIsBusy()
{
    QFETCH(bool, isRecording);
    QFETCH(bool, isReplaying);
    QFETCH(bool, isEnabled);
    Setting setting;
    setting.work.setBusy(isRecording, isReplaying);
    QCOMPARE(setting.combo().isEnabled(), isEnabled);
    setting.work.setSubSystem(u"south"_s);
    QCOMPARE(setting.combo().isEnabled(), isEnabled);
    setting.work.setBusy(false, false);
    QVERIFY(setting.combo().isEnabled());
}

void TestWorkDevice::isChosenByKeys()
{
    Setting setting;
    QVERIFY(setting.isActive());
    QTest::keyClick(&setting.work, Qt::Key_W, Qt::AltModifier);
    QTRY_VERIFY_WITH_TIMEOUT(setting.combo().hasFocus(), patience);
    QTest::keyClick(&setting.combo(), Qt::Key_Down);
    QCOMPARE(setting.chosen, QStringList{u"A2@north"_s});
    QCOMPARE(Setting::kept(u"north"_s), u"A2"_s);
}

void TestWorkDevice::doesNotTellOfADeviceThatTakesThePlaceOfAnother()
{
    Setting setting;
    setting.site.setAvailable(u"north"_s, u"A1"_s, false);
    letTurnsPass();
    QCOMPARE(setting.combo().GetSelectedDevice(), u"A2"_s);
    QCOMPARE(Setting::kept(u"north"_s), u"A2"_s);
    QCOMPARE(setting.chosen, QStringList());
}

void TestWorkDevice::cutsLongNames()
{
    Setting setting;
    const int before = setting.work.sizeHint().width();
    setting.site.addDevice(u"north"_s, QString(200, u'm'));
    letTurnsPass();
    QCOMPARE(setting.combo().count(), 3);
    QCOMPARE(setting.work.sizeHint().width(), before);
}

void TestWorkDevice::standsInTheWindow()
{
    Site site;
    const Console console(site);
    ConsoleWindow& window = *console.window;
    const WorkDevice& work = *window.records()->workDevice();
    QVERIFY(work.isVisible());
    QCOMPARE(Setting::itemsOf(*work.combo()), (QStringList{u"A1"_s, u"A2"_s}));
    window.devices()->choose(u"south"_s, u"B1"_s);
    QCOMPARE(Setting::itemsOf(*work.combo()), QStringList{u"B1"_s});
}

void TestWorkDevice::leavesTheListsLevel_data()
{
    QTest::addColumn<int>("pointSize");
    QTest::newRow("small letters") << 6;
    QTest::newRow("usual letters") << 10;
    QTest::newRow("larger letters") << 14;
}

void TestWorkDevice::leavesTheListsLevel()
{
    QFETCH(int, pointSize);
    const QFont before = QApplication::font();
    const auto restore = qScopeGuard([&before] { QApplication::setFont(before); });
    QFont font = before;
    font.setPointSize(pointSize);
    QApplication::setFont(font);
    Site site;
    const Console console(site);
    ConsoleWindow& window = *console.window;
    const auto topOf = [&window](const QWidget& part) { return part.mapTo(&window, QPoint()).y(); };
    const int top = topOf(*window.devices());
    QCOMPARE(topOf(*window.records()->table()), top);
    site.lose(u"north"_s, u"it was killed"_s);
    QTRY_VERIFY_WITH_TIMEOUT(!window.records()->workDevice()->isVisible(), patience);
    letTurnsPass();
    QCOMPARE(topOf(*window.records()->table()), top);
    QCOMPARE(topOf(*window.devices()), top);
}

void TestWorkDevice::showsTheRecordsOfTheDeviceThatIsChosen()
{
    Site site;
    const Console console(site);
    ConsoleWindow& window = *console.window;
    window.activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(&window, patience));
    DeviceCombo& combo = *window.records()->workDevice()->combo();
    combo.setFocus();
    QTest::keyClick(&combo, Qt::Key_Down);
    QCOMPARE(window.devices()->chosenDevice(), u"A2"_s);
    window.devices()->choose(u"north"_s, u"A3"_s);
    QCOMPARE(window.devices()->chosenDevice(), u"A3"_s);
    QCOMPARE(combo.GetSelectedDevice(), u"A2"_s); // looking at another device is not working on it
    window.devices()->choose(u"north"_s, u"A9"_s);
    QCOMPARE(window.devices()->chosenDevice(), u"A3"_s);
}

QTEST_MAIN(TestWorkDevice)
#include "tst_workdevice.moc"
