#include "menuanswer.h"
#include "patience.h"
#include "recordlistsetting.h"

#include <console/demo/shownrecords.h>
#include <console/hands/operatorhands.h>
#include <console/records/recordpane.h>
#include <console/records/recordtable.h>

#include <zelkobase/models/abstractrecordlistmodel.h>
#include <zelkoguibase/controller/zelkoserverguicontroller.h>
#include <zelkoguibase/recordlist/recordlistwidget.h>

#include <QHeaderView>
#include <QLabel>
#include <QProgressBar>
#include <QTableView>
#include <QTest>

using namespace ZelkoConsole;
using Model = ZelkoCommon::AbstractRecordListModel;

namespace {

struct Setting : RecordListSetting
{
    explicit Setting(int count = 0)
        : RecordListSetting(count)
    {
        pane.resize(900, 320);
        pane.show();
    }

    void choose()
    {
        pane.setDevice(north, device);
        pane.setStatus(site.status(north));
    }

    void showDevice()
    {
        choose();
        QTRY_VERIFY_WITH_TIMEOUT(pane.controller()->isConnected(), patience);
    }

    /// Has the keys, and shows its records.
    void activate()
    {
        showDevice();
        QTRY_VERIFY_WITH_TIMEOUT(pane.table()->model()->rowCount() > 0, patience);
        pane.activateWindow();
        QVERIFY(QTest::qWaitForWindowActive(&pane, patience));
    }

    int rowOf(int number) const
    {
        return static_cast<int>(shownrecords::ids(*pane.table()->model()).indexOf(id(number)));
    }

    QString text(const char* name) const { return pane.findChild<QLabel*>(QLatin1String(name))->text(); }
    QProgressBar& bar() const { return *pane.findChild<QProgressBar*>(QStringLiteral("LoadProgressBar")); }
    QLabel& barLabel() const { return *pane.findChild<QLabel*>(QStringLiteral("LoadProgressLabel")); }

    RecordPane pane{site.connectionData()};
};

} // namespace

class TestRecordPane : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void countsTheRecordings()
    {
        Setting setting(2);
        setting.showDevice();
        QCOMPARE(setting.text("RecordCountLabel"), QStringLiteral("2 recordings"));
        setting.site.eraseRecord(setting.north, setting.device, RecordListSetting::id(0));
        QCOMPARE(setting.text("RecordCountLabel"), QStringLiteral("1 recordings"));
        setting.site.eraseRecord(setting.north, setting.device, RecordListSetting::id(1));
        QCOMPARE(setting.text("RecordCountLabel"), QStringLiteral("0 recordings"));
        QCOMPARE(setting.pane.recordTable()->emptyState().text, QStringLiteral("No records on this device"));
    }

    void sumsUpTheSelection()
    {
        Setting setting(3);
        setting.showDevice();
        QCOMPARE(setting.text("selectionSummary"), QString());
        operatorhands::clickRow(*setting.pane.table(), 0);
        operatorhands::clickRow(*setting.pane.table(), 1, Qt::ShiftModifier);
        QCOMPARE(setting.text("selectionSummary"), QStringLiteral("2 selected, 4.76 MByte, 5 s"));
    }

    void followsTheSizeOfASelectedRecordThatGrows()
    {
        Setting setting(1);
        setting.showDevice();
        operatorhands::clickRow(*setting.pane.table(), 0);
        auto grown = RecordListSetting::record(0);
        grown->SetSize(2048);
        setting.site.setRecord(setting.north, setting.device, grown);
        QCOMPARE(setting.text("selectionSummary"), QStringLiteral("1 selected, 2 kByte, 1 s"));
    }

    void showsHowFarTheLoadIsAndHidesItWhenDone()
    {
        Setting setting(1);
        setting.site.setLoad(setting.north, setting.device, 3, false);
        setting.showDevice();
        QVERIFY(setting.bar().isVisible());
        QCOMPARE(setting.barLabel().text(), QStringLiteral("Loading Records: "));
        QCOMPARE(setting.bar().maximum(), 3);
        QCOMPARE(setting.bar().value(), 1);
        setting.site.setRecord(setting.north, setting.device, RecordListSetting::record(1));
        QCOMPARE(setting.bar().value(), 2);
        setting.site.setLoad(setting.north, setting.device, 3, true);
        QVERIFY(!setting.bar().isVisible());
        QVERIFY(!setting.barLabel().isVisible());
    }

    void hidesTheLoadWhenTheRecorderDies()
    {
        Setting setting(1);
        setting.site.setLoad(setting.north, setting.device, 3, false);
        setting.showDevice();
        setting.lose();
        setting.pane.setStatus(setting.site.status(setting.north));
        QTRY_COMPARE_WITH_TIMEOUT(setting.text("RecordCountLabel"), QStringLiteral("0 recordings"), patience);
        QVERIFY(!setting.bar().isVisible());
        QCOMPARE(setting.pane.recordTable()->emptyState().text,
                 QStringLiteral("Recorder north is not reachable: it was killed, trying again"));
    }

    void hidesTheLoadWhenAnotherDeviceIsChosen()
    {
        Setting setting(1);
        setting.site.setLoad(setting.north, setting.device, 3, false);
        setting.showDevice();
        QVERIFY(setting.bar().isVisible());
        setting.pane.setDevice(setting.north, QStringLiteral("A2"));
        QVERIFY(!setting.bar().isVisible());
        QCOMPARE(setting.pane.table()->model()->rowCount(), 0);
        QCOMPARE(setting.text("RecordCountLabel"), QStringLiteral("0 recordings"));
    }

    void selectsNothingInTheListOfAnotherDevice()
    {
        Setting setting(3);
        const QString other = QStringLiteral("A2");
        setting.site.addDevice(setting.north, other);
        setting.site.setRecord(setting.north, other, RecordListSetting::record(0));
        setting.site.setRecord(setting.north, other, RecordListSetting::record(1));
        setting.showDevice();
        operatorhands::clickRow(*setting.pane.table(), setting.rowOf(1));
        setting.pane.setDevice(setting.north, other);
        QTRY_COMPARE_WITH_TIMEOUT(setting.text("RecordCountLabel"), QStringLiteral("2 recordings"), patience);
        QCoreApplication::processEvents(); // in which a selection would be restored
        QVERIFY(!setting.pane.table()->selectionModel()->hasSelection());
        QVERIFY(setting.pane.controller()->selectedRecords().isEmpty());
    }

    void saysNothingOfADeviceThatIsFoundAtOnce()
    {
        Setting setting;
        setting.choose();
        QCOMPARE(setting.pane.recordTable()->emptyState().text, QString());
        QTRY_COMPARE_WITH_TIMEOUT(setting.pane.recordTable()->emptyState().text,
                                  QStringLiteral("No records on this device"), patience);
    }

    void saysThatItWaitsForADeviceThatIsNotFound()
    {
        Setting setting;
        setting.site.removeDevice(setting.north, setting.device);
        setting.choose();
        QTRY_COMPARE_WITH_TIMEOUT(setting.pane.recordTable()->emptyState().text,
                                  QStringLiteral("Waiting for the records of A1…"), patience);
    }

    void hasTheListWithAllItsParts()
    {
        const Setting setting;
        for (const char* const part :
             {"ActionToolbar", "RecordNameFilterWidget", "ShowExtendedFilterButton", "ExtendedFilterDialog",
              "RecordCountLabel", "ActiveDeviceLabel", "LoadProgressLabel", "LoadProgressBar",
              "RecordListWidgetPopupMenu", "CopyToClipboardMenu"}) {
            QVERIFY2(setting.pane.list()->findChild<QWidget*>(QLatin1String(part)), part);
        }
        QVERIFY(setting.pane.table()->verticalHeader()->isVisible());
        QCOMPARE(setting.pane.table()->selectionMode(), QAbstractItemView::ExtendedSelection);
    }

    void opensItsMenuAtTheCurrentCellByTheMenuKey()
    {
        Setting setting(2);
        setting.activate();
        QTableView& table = *setting.pane.table();
        operatorhands::clickRow(table, 0);
        QTest::keyClick(&table, Qt::Key_Down);
        QCOMPARE(table.currentIndex().row(), 1);
        QPoint place;
        const MenuAnswer menu([&place](const QMenu& popup) { place = popup.pos(); });
        operatorhands::pressMenuKey();
        QVERIFY(menu.wasGiven());
        QCOMPARE(place, table.mapToGlobal(table.visualRect(table.currentIndex()).center()));
    }

    void opensItsMenuAtAClick()
    {
        Setting setting(2);
        setting.activate();
        QTableView& table = *setting.pane.table();
        const QPoint clicked = table.visualRect(table.model()->index(1, 0)).center();
        QPoint place;
        const MenuAnswer menu([&place](const QMenu& popup) { place = popup.pos(); });
        QContextMenuEvent event(QContextMenuEvent::Mouse, clicked, table.viewport()->mapToGlobal(clicked));
        QCoreApplication::sendEvent(table.viewport(), &event);
        QVERIFY(menu.wasGiven());
        QCOMPARE(place, table.mapToGlobal(clicked));
    }

    // At the column that the keys are for.
    void opensTheColumnMenuByTheMenuKey()
    {
        Setting setting(1);
        setting.activate();
        QTableView& table = *setting.pane.table();
        table.setFocus();
        QTest::keyClick(&table, Qt::Key_Tab);
        QHeaderView* const header = table.horizontalHeader();
        QVERIFY(header->hasFocus());
        QTest::keyClick(header, Qt::Key_Right);
        const QMenu* opened = nullptr;
        QPoint place;
        const MenuAnswer menu([&](const QMenu& popup) {
            opened = &popup;
            place = popup.pos();
        });
        operatorhands::pressMenuKey();
        QTRY_VERIFY_WITH_TIMEOUT(menu.wasGiven(), patience);
        QCOMPARE(opened, setting.pane.recordTable()->columnMenu());
        QCOMPARE(header->logicalIndexAt(header->mapFromGlobal(place).x()), header->logicalIndex(1));
    }

    void sortsSizesAsNumbersAndNamesWithoutRegardToCase()
    {
        Setting setting;
        setting.showDevice();
        const auto add = [&setting](int number, const char* name, quint64 size) {
            auto record = RecordListSetting::record(number);
            record->SetRecordName(QLatin1String(name));
            record->SetSize(size);
            setting.site.setRecord(setting.north, setting.device, record);
        };
        add(0, "beta", 9);
        add(1, "Alpha", 10'000);
        add(2, "Gamma", 800);
        QTableView& table = *setting.pane.table();
        table.sortByColumn(Model::SizeColumn, Qt::AscendingOrder);
        QCOMPARE(shownrecords::ids(*table.model()),
                 QStringList({QStringLiteral("r00"), QStringLiteral("r02"), QStringLiteral("r01")}));
        table.sortByColumn(Model::NameColumn, Qt::AscendingOrder);
        QCOMPARE(shownrecords::ids(*table.model()),
                 QStringList({QStringLiteral("r01"), QStringLiteral("r00"), QStringLiteral("r02")}));
    }

    void namesDeviceAndSubSystem()
    {
        Setting setting;
        setting.showDevice();
        QCOMPARE(setting.text("deviceTitle"), QStringLiteral("A1"));
        setting.pane.setDevice(setting.north, QString());
        QCOMPARE(setting.text("deviceTitle"), QStringLiteral("north"));
        QCOMPARE(setting.pane.recordTable()->emptyState().text, QStringLiteral("Select a device of north"));
    }
};

QTEST_MAIN(TestRecordPane)
#include "tst_recordpane.moc"
