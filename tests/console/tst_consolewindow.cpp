#include "recordlistsetting.h"

#include <console/demo/operatorhands.h>
#include <console/devices/devicelistview.h>
#include <console/records/devicerecords.h>
#include <console/records/recordpane.h>
#include <console/records/recordtableview.h>
#include <console/session/consoleuser.h>
#include <console/widgets/connectionbadge.h>
#include <console/window/consolewindow.h>

#include <zelkobase/models/abstractrecordlistmodel.h>

#include <QApplication>
#include <QLabel>
#include <QMenuBar>
#include <QMessageBox>
#include <QSettings>
#include <QTemporaryDir>
#include <QTest>
#include <QTimer>

using namespace ZelkoConsole;

namespace {

struct Setting : RecordListSetting
{
    explicit Setting(int count = 0)
        : RecordListSetting(count)
        , settings(folder.filePath(QStringLiteral("s.ini")), QSettings::IniFormat)
    {
        open();
    }

    void open()
    {
        window.reset();
        window = std::make_unique<ConsoleWindow>(&site, &user, &settings);
        window->show();
        window->activateWindow();
        QVERIFY(QTest::qWaitForWindowActive(window.get()));
    }

    int rows() const { return window->records()->table()->model()->rowCount(); }

    QTemporaryDir folder;
    QSettings settings;
    ConsoleUser user{site};
    std::unique_ptr<ConsoleWindow> window;
};

} // namespace

class TestConsoleWindow : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void showsTheRecordsOfTheFirstDevice()
    {
        const Setting setting(3);
        QCOMPARE(setting.rows(), 3);
        QCOMPARE(setting.window->badge()->text(), QStringLiteral("north: connected"));
        QCOMPARE(setting.window->findChild<QLabel*>(QStringLiteral("timeZone"))->text().left(22),
                 QStringLiteral("Times in Europe/Berlin"));
    }

    void showsTheRecordsOfTheDeviceThatIsClicked()
    {
        Setting setting(3);
        setting.site.addDevice(setting.north, QStringLiteral("A2"));
        setting.site.setRecord(setting.north, QStringLiteral("A2"), RecordListSetting::record(7));
        DeviceListView& devices = *setting.window->devices();
        QTRY_COMPARE(devices.model()->rowCount(devices.model()->index(0, 0)), 2);
        const QModelIndex second = devices.model()->index(1, 0, devices.model()->index(0, 0));
        QTest::mouseClick(devices.viewport(), Qt::LeftButton, Qt::NoModifier, devices.visualRect(second).center());
        QCOMPARE(setting.rows(), 1);
        QTest::keyClick(&devices, Qt::Key_Up);
        QCOMPARE(setting.rows(), 3);
    }

    void showsARecordAppearGrowFinishAndGo()
    {
        Setting setting;
        auto& table = *setting.window->records()->table();
        setting.site.setRecord(setting.north, setting.device, RecordListSetting::record(1, 2));
        QCOMPARE(setting.rows(), 1);
        const auto status = [&table] {
            return table.model()->index(0, ZelkoCommon::AbstractRecordListModel::StatusColumn).data().toString();
        };
        QCOMPARE(status(), QStringLiteral("recording"));
        setting.site.setRecord(setting.north, setting.device, RecordListSetting::record(1, 5));
        QCOMPARE(status(), QStringLiteral("finished"));
        setting.site.eraseRecord(setting.north, setting.device, RecordListSetting::id(1));
        QCOMPARE(setting.rows(), 0);
    }

    void showsALostRecorderAndBringsTheListBack()
    {
        Setting setting(3);
        setting.lose();
        QCOMPARE(setting.rows(), 0);
        QCOMPARE(setting.window->badge()->text(), QStringLiteral("north: not reachable"));
        QCOMPARE(setting.window->records()->table()->emptyState().text,
                 QStringLiteral("Recorder north is not reachable: it was killed, trying again"));
        QCoreApplication::processEvents();
        setting.comeBack(3);
        QTRY_COMPARE(setting.rows(), 3);
        QCOMPARE(setting.window->badge()->text(), QStringLiteral("north: connected"));
    }

    void goesFromTheDevicesToTheRecordsByTab()
    {
        const Setting setting(3);
        QVERIFY(setting.window->devices()->hasFocus());
        QTest::keyClick(setting.window->devices(), Qt::Key_Tab);
        QVERIFY(setting.window->records()->table()->hasFocus());
        QTest::keyClick(setting.window->records()->table(), Qt::Key_Tab);
        QVERIFY(setting.window->devices()->hasFocus());
    }

    void goesToDevicesAndRecordsByShortcut()
    {
        const Setting setting(3);
        QTest::keyClick(setting.window.get(), Qt::Key_2, Qt::ControlModifier);
        QVERIFY(setting.window->records()->table()->hasFocus());
        QTest::keyClick(setting.window.get(), Qt::Key_1, Qt::ControlModifier);
        QVERIFY(setting.window->devices()->hasFocus());
    }

    void quitsByShortcut()
    {
        const Setting setting;
        QTest::keyClick(setting.window.get(), Qt::Key_Q, Qt::ControlModifier);
        QVERIFY(!setting.window->isVisible());
    }

    void keepsItsSizeWithLongNames()
    {
        const QString longName(200, QLatin1Char('n'));
        Setting setting(2);
        setting.window->resize(760, 400);
        setting.site.addDevice(setting.north, longName);
        DeviceListView& devices = *setting.window->devices();
        QTRY_COMPARE(devices.model()->rowCount(devices.model()->index(0, 0)), 2);
        devices.setCurrentIndex(devices.model()->index(1, 0, devices.model()->index(0, 0)));
        QCoreApplication::processEvents();
        QCOMPARE(setting.window->findChild<QLabel*>(QStringLiteral("deviceTitle"))->text(), longName);
        QCOMPARE(setting.window->size(), QSize(760, 400));
        QVERIFY(devices.width() > 200);
    }

    void showsNamesJustAsTheyAre()
    {
        Setting setting(2);
        setting.site.addDevice(setting.north, QStringLiteral("<i>A3<br>"));
        DeviceListView& devices = *setting.window->devices();
        QTRY_COMPARE(devices.model()->rowCount(devices.model()->index(0, 0)), 2);
        devices.setCurrentIndex(devices.model()->index(1, 0, devices.model()->index(0, 0)));
        QCOMPARE(setting.window->findChild<QLabel*>(QStringLiteral("deviceTitle"))->textFormat(), Qt::PlainText);
        QCOMPARE(devices.currentIndex().data(Qt::ToolTipRole).toString(),
                 QStringLiteral("<qt>Device &lt;i&gt;A3&lt;br&gt; of north: available</qt>"));
    }

    void tellsWhatItIs()
    {
        const Setting setting;
        QString text;
        QTimer::singleShot(0, setting.window.get(), [&text] {
            auto* const box = qobject_cast<QMessageBox*>(QApplication::activeModalWidget());
            QVERIFY(box);
            text = box->text();
            QTest::keyClick(box, Qt::Key_Escape);
        });
        QTest::keyClick(setting.window.get(), Qt::Key_F1);
        QVERIFY(text.contains(QStringLiteral("Recorder Console")));
    }

    void offersTheStandardMenus()
    {
        const Setting setting;
        QStringList titles;
        for (const QAction* const action : setting.window->menuBar()->actions()) {
            titles.append(action->text());
        }
        QCOMPARE(titles, QStringList({QStringLiteral("&File"), QStringLiteral("&Recording"), QStringLiteral("&View"),
                                      QStringLiteral("&User"), QStringLiteral("&Help")}));
    }

    void remembersSizeAndColumns()
    {
        Setting setting(1);
        setting.window->resize(900, 500);
        setting.window->records()->table()->setColumnWidth(0, 222);
        setting.window->close();
        setting.open();
        QCOMPARE(setting.window->size(), QSize(900, 500));
        QCOMPARE(setting.window->records()->table()->columnWidth(0), 222);
    }

    void remembersItsPlacesWhenItIsQuitWithABoxOpen()
    {
        const Setting setting;
        QTimer::singleShot(0, setting.window.get(), &ConsoleWindow::showAbout);
        QTimer::singleShot(0, setting.window.get(), &QCoreApplication::quit);
        QTimer::singleShot(5000, setting.window.get(), [] { QCoreApplication::exit(1); });
        QCOMPARE(QApplication::exec(), 0);
        QVERIFY(setting.settings.contains(QStringLiteral("window/geometry")));
    }

    void givesEachPartANameForScreenReaders()
    {
        const Setting setting;
        QCOMPARE(setting.window->devices()->accessibleName(), QStringLiteral("Devices"));
        QCOMPARE(setting.window->records()->table()->accessibleName(), QStringLiteral("Recordings"));
        QCOMPARE(setting.window->badge()->accessibleDescription(), QStringLiteral("north: connected"));
    }
};

QTEST_MAIN(TestConsoleWindow)
#include "tst_consolewindow.moc"
