#include "patience.h"
#include "recordlistsetting.h"

#include <console/demo/shownrecords.h>
#include <console/hands/operatorhands.h>
#include <console/records/recordtable.h>

#include <zelkoguibase/filter/multifiltersortproxymodel.h>
#include <zelkoguibase/filter/stringfiltercondition.h>
#include <zelkoguibase/recordlist/recorditemmapmodel.h>

#include <QAbstractItemModelTester>
#include <QAction>
#include <QHeaderView>
#include <QMenu>
#include <QSettings>
#include <QSignalSpy>
#include <QSortFilterProxyModel>
#include <QTableView>
#include <QTemporaryDir>
#include <QTest>
#include <QToolTip>

#include <optional>

using namespace ZelkoConsole;
using Model = ZelkoCommon::AbstractRecordListModel;

namespace {

struct Setting : RecordListSetting
{
    explicit Setting(int count = 0)
        : RecordListSetting(count)
        , records(treepath::device(north, device) + QLatin1String("/Records/Map"), nullptr)
    {
        sorted.setSourceModel(&records);
        sorted.setSortRole(Model::SortRole);
        view.setModel(&sorted);
        view.setSortingEnabled(true);
        view.setWordWrap(false);
        view.horizontalHeader()->setSectionsMovable(true);
        dressAnew();
        view.resize(1000, 300);
        view.show();
    }

    /// Another table in place of the one before, if there was one, which keeps its columns where that one did.
    void dressAnew() { table.emplace(&view, QStringLiteral("kept")); }

    QStringList ids() const { return shownrecords::ids(sorted); }

    QStringList columnsOnScreen() const
    {
        QStringList list;
        for (int place = 0; place < Model::ColumnCount; ++place) {
            const int column = view.horizontalHeader()->logicalIndex(place);
            if (!view.isColumnHidden(column)) {
                list.append(sorted.headerData(column, Qt::Horizontal).toString());
            }
        }
        return list;
    }

    // The pointer rests on a cell of the first row. A window that becomes active after that would take the tip away.
    void restOnFirst(int column)
    {
        view.activateWindow();
        QVERIFY(QTest::qWaitForWindowActive(&view, patience));
        const QModelIndex cell = sorted.index(0, column);
        view.scrollTo(cell);
        operatorhands::rest(*view.viewport(), view.visualRect(cell).center());
    }

    QAction* columnAction(int column) const
    {
        for (QAction* const action : table->columnMenu()->actions()) {
            if (action->isCheckable() && action->data().toInt() == column) {
                return action;
            }
        }
        return nullptr;
    }

    ZelkoGUI::RecordItemMapModel records;
    ZelkoGUI::Filter::MultiFilterSortProxyModel sorted{nullptr};
    QAbstractItemModelTester tester{&sorted, QAbstractItemModelTester::FailureReportingMode::Fatal};
    QTableView view;
    std::optional<RecordTable> table;
};

const QStringList allColumns{QStringLiteral("Name"),      QStringLiteral("Status"),      QStringLiteral("Start Time"),
                             QStringLiteral("Duration"),  QStringLiteral("Size"),        QStringLiteral("Frequency"),
                             QStringLiteral("Bandwidth"), QStringLiteral("Sample Rate"), QStringLiteral("Data Format"),
                             QStringLiteral("Stop Time"), QStringLiteral("Data Rate"),   QStringLiteral("Interface"),
                             QStringLiteral("Deletable"), QStringLiteral("Record ID")};

} // namespace

class TestRecordTable : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void showsAllColumnsTheNewestRecordFirst()
    {
        const Setting setting(3);
        QCOMPARE(setting.columnsOnScreen(), allColumns);
        QCOMPARE(setting.ids(), QStringList({QStringLiteral("r02"), QStringLiteral("r01"), QStringLiteral("r00")}));
    }

    void sortsByAClickOnAHeader()
    {
        Setting setting(3);
        operatorhands::clickHeader(setting.view, Model::SizeColumn);
        const QStringList first = setting.ids();
        operatorhands::clickHeader(setting.view, Model::SizeColumn);
        const QStringList second = setting.ids();
        QCOMPARE(QStringList(first.rbegin(), first.rend()), second);
        QVERIFY(first.constFirst() == QLatin1String("r00") || first.constFirst() == QLatin1String("r02"));
    }

    void movesARecordThatGrowsToItsPlace()
    {
        Setting setting(3);
        setting.view.sortByColumn(Model::SizeColumn, Qt::AscendingOrder);
        auto grown = RecordListSetting::record(0, 2);
        grown->SetSize(1'000'000'000);
        setting.site.setRecord(setting.north, setting.device, grown);
        QCOMPARE(setting.ids(), QStringList({QStringLiteral("r01"), QStringLiteral("r02"), QStringLiteral("r00")}));
    }

    void alignsTheHeaderOfAQuantityWithItsCells()
    {
        const Setting setting(1);
        for (int column = 0; column < Model::ColumnCount; ++column) {
            const QVariant cell = setting.sorted.index(0, column).data(Qt::TextAlignmentRole);
            const bool right = (cell.toInt() & Qt::AlignRight) != 0;
            const int header = setting.sorted.headerData(column, Qt::Horizontal, Qt::TextAlignmentRole).toInt();
            QCOMPARE((header & Qt::AlignRight) != 0, right);
        }
    }

    void hidesAndShowsAColumnByItsMenu()
    {
        Setting setting(1);
        QAction* const action = setting.columnAction(Model::BandwidthColumn);
        action->trigger();
        QVERIFY(!setting.columnsOnScreen().contains(QStringLiteral("Bandwidth")));
        QVERIFY(!action->isChecked());
        action->trigger();
        QCOMPARE(setting.columnsOnScreen(), allColumns);
    }

    void opensTheColumnMenuOnTheHeader()
    {
        Setting setting(1);
        QSignalSpy shown(setting.table->columnMenu(), &QMenu::aboutToShow);
        QContextMenuEvent event(QContextMenuEvent::Mouse, QPoint(30, 5),
                                setting.view.horizontalHeader()->mapToGlobal(QPoint(30, 5)));
        QCoreApplication::sendEvent(setting.view.horizontalHeader()->viewport(), &event);
        QTRY_COMPARE_WITH_TIMEOUT(shown.count(), 1, patience);
        setting.table->columnMenu()->close();
    }

    void keepsTheLastColumn()
    {
        Setting setting(1);
        for (int column = 1; column < Model::ColumnCount; ++column) {
            setting.columnAction(column)->trigger();
        }
        QCOMPARE(setting.columnsOnScreen(), QStringList(QStringLiteral("Name")));
        QVERIFY(!setting.columnAction(Model::NameColumn)->isEnabled());
        setting.columnAction(Model::SizeColumn)->trigger();
        QVERIFY(setting.columnAction(Model::NameColumn)->isEnabled());
    }

    void resetsTheColumns()
    {
        Setting setting(1);
        setting.view.horizontalHeader()->moveSection(0, 5);
        setting.columnAction(Model::SizeColumn)->trigger();
        setting.table->columnMenu()->actions().constLast()->trigger();
        QCOMPARE(setting.columnsOnScreen(), allColumns);
        QVERIFY(setting.columnAction(Model::SizeColumn)->isChecked());
    }

    void takesOverColumnsThatAreKept()
    {
        Setting setting(1);
        setting.view.horizontalHeader()->moveSection(0, 3);
        setting.columnAction(Model::SizeColumn)->trigger();
        setting.view.horizontalHeader()->resizeSection(Model::NameColumn, 321);
        const QStringList before = setting.columnsOnScreen();
        setting.table->saveColumns();
        setting.table->resetColumns();
        setting.table->restoreColumns();
        QCOMPARE(setting.columnsOnScreen(), before);
        QCOMPARE(setting.view.columnWidth(Model::NameColumn), 321);
        QVERIFY(!setting.columnAction(Model::SizeColumn)->isChecked());
    }

    void takesOverTheWidthOfAColumnThatWasHidden()
    {
        Setting setting(1);
        setting.view.setColumnWidth(Model::SizeColumn, 177);
        setting.columnAction(Model::SizeColumn)->trigger();
        setting.table->saveColumns();
        setting.dressAnew();
        setting.table->restoreColumns();
        QVERIFY(setting.view.isColumnHidden(Model::SizeColumn));
        setting.columnAction(Model::SizeColumn)->trigger();
        QCOMPARE(setting.view.columnWidth(Model::SizeColumn), 177);
    }

    void leavesColumnsOfWhichNothingIsKept()
    {
        Setting setting(1);
        setting.table->restoreColumns();
        QCOMPARE(setting.columnsOnScreen(), allColumns);
    }

    void remembersTheSorting()
    {
        const QTemporaryDir folder;
        QSettings settings(folder.filePath(QStringLiteral("s.ini")), QSettings::IniFormat);
        Setting setting(3);
        setting.view.sortByColumn(Model::SizeColumn, Qt::DescendingOrder);
        setting.table->saveSorting(settings);
        setting.view.sortByColumn(Model::NameColumn, Qt::AscendingOrder);
        setting.table->restoreSorting(settings);
        QCOMPARE(setting.view.horizontalHeader()->sortIndicatorSection(), int{Model::SizeColumn});
        QCOMPARE(setting.view.horizontalHeader()->sortIndicatorOrder(), Qt::DescendingOrder);
    }

    void passesOverSettingsThatDoNotFit()
    {
        const QTemporaryDir folder;
        QSettings settings(folder.filePath(QStringLiteral("s.ini")), QSettings::IniFormat);
        Setting setting(1);
        for (const QVariant& column : {QVariant(-1), QVariant(14), QVariant(QStringLiteral("nonsense"))}) {
            settings.setValue(QStringLiteral("recordTable/sortedColumn"), column);
            setting.table->restoreSorting(settings);
            QCOMPARE(setting.view.horizontalHeader()->sortIndicatorSection(), int{Model::StartTimeColumn});
        }
    }

    void hasRoomForTheWidestTexts()
    {
        Setting setting;
        auto record = RecordListSetting::record(1, 3);
        record->SetRecordName(QStringLiteral("Some name of a recording"));
        record->SetStopTime(record->GetStartTime() + quint64{11} * 24 * 3600 * 1'000'000 - 1);
        record->SetSize(1023 * 1024 * 1024 + 1020 * 1024);
        setting.site.setRecord(setting.north, setting.device, record);
        for (int column = 0; column < Model::ColumnCount; ++column) {
            const QString name = setting.sorted.headerData(column, Qt::Horizontal).toString();
            QVERIFY2(setting.view.sizeHintForIndex(setting.sorted.index(0, column)).width() <=
                         setting.view.columnWidth(column),
                     qPrintable(name));
        }
    }

    void tellsAllOfACellThatIsCutOff()
    {
        Setting setting;
        const QString name = QStringLiteral("<b>A name that is a whole sentence</b>, and then some more of it");
        auto record = RecordListSetting::record(1);
        record->SetRecordName(name);
        setting.site.setRecord(setting.north, setting.device, record);
        setting.restOnFirst(Model::NameColumn);
        QTRY_COMPARE_WITH_TIMEOUT(QToolTip::text(), QStringLiteral("<qt>%1</qt>").arg(name.toHtmlEscaped()), patience);
        setting.restOnFirst(Model::StatusColumn);
        QTRY_COMPARE_WITH_TIMEOUT(QToolTip::text(), QString(), patience);
    }

    void sortsByItsMenu()
    {
        Setting setting(3);
        QMenu& menu = *setting.table->sortMenu();
        const auto action = [&menu](const char* text) {
            const auto actions = menu.actions();
            return *std::find_if(actions.begin(), actions.end(),
                                 [text](QAction* one) { return one->text() == QLatin1String(text); });
        };
        QVERIFY(action("Start Time")->isChecked());
        QVERIFY(action("D&escending")->isChecked());
        action("&Ascending")->trigger();
        QCOMPARE(setting.ids(), QStringList({QStringLiteral("r00"), QStringLiteral("r01"), QStringLiteral("r02")}));
        action("Size")->trigger();
        action("D&escending")->trigger();
        QCOMPARE(setting.ids(), QStringList({QStringLiteral("r02"), QStringLiteral("r01"), QStringLiteral("r00")}));
        QCOMPARE(setting.view.horizontalHeader()->sortIndicatorSection(), int{Model::SizeColumn});
        setting.view.sortByColumn(Model::DurationColumn, Qt::AscendingOrder);
        QVERIFY(action("Duration")->isChecked());
        QVERIFY(!action("Size")->isChecked());
        QVERIFY(action("&Ascending")->isChecked());
    }

    void saysWhyThereAreNoRecordsWhereThereAreNone()
    {
        Setting setting;
        const auto* const note = setting.view.findChild<QWidget*>(QStringLiteral("emptyState"));
        setting.table->setEmptyState({Glyph::Bad, QStringLiteral("Nothing to see")});
        QVERIFY(note->isVisible());
        QCOMPARE(note->accessibleName(), QStringLiteral("Nothing to see"));
        const QImage withText = setting.view.grab().toImage();
        setting.table->setEmptyState({Glyph::Empty, QString()});
        QVERIFY(setting.view.grab().toImage() != withText);
        setting.site.setRecord(setting.north, setting.device, RecordListSetting::record(1));
        QVERIFY(note->isHidden());
        setting.site.eraseRecord(setting.north, setting.device, RecordListSetting::id(1));
        QVERIFY(note->isVisible());
    }

    void saysWhyThereAreNoRecordsInWhateverListItShows()
    {
        Setting setting(2);
        const auto* const note = setting.view.findChild<QWidget*>(QStringLiteral("emptyState"));
        setting.table->setEmptyState({Glyph::Bad, QStringLiteral("Nothing to see")});
        QVERIFY(note->isHidden());
        ZelkoGUI::RecordItemMapModel none(QStringLiteral("/no/such/list"), nullptr);
        setting.sorted.setSourceModel(&none);
        QVERIFY(note->isVisible());
        setting.sorted.setSourceModel(&setting.records);
        QVERIFY(note->isHidden());
    }

    void saysWhyThereAreNoRecordsBeforeThereIsAList()
    {
        Setting setting(2);
        QSortFilterProxyModel proxy;
        QTableView view;
        view.setModel(&proxy);
        const RecordTable table(&view, QStringLiteral("kept"));
        view.show();
        const auto* const note = view.findChild<QWidget*>(QStringLiteral("emptyState"));
        QVERIFY(note->isVisible());
        proxy.setSourceModel(&setting.records);
        QVERIFY(note->isHidden());
    }

    void saysNothingOfRecordsThatAreFilteredOut()
    {
        Setting setting(2);
        setting.table->setEmptyState({Glyph::Bad, QStringLiteral("Nothing to see")});
        auto* const filter =
            new ZelkoGUI::Filter::StringFilterCondition(Model::NameColumn, Model::ValueRole, &setting.sorted);
        filter->setPattern(QStringLiteral("no such name"));
        filter->setEnabled(true);
        setting.sorted.addFilter(filter);
        QCOMPARE(setting.sorted.rowCount(), 0);
        QVERIFY(setting.view.findChild<QWidget*>(QStringLiteral("emptyState"))->isHidden());
    }
};

QTEST_MAIN(TestRecordTable)
#include "tst_recordtable.moc"
