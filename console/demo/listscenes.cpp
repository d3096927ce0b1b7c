#include <console/demo/paintedbar.h>
#include <console/demo/scenepainter.h>
#include <console/demo/scenes.h>
#include <console/hands/operatorhands.h>

#include <observerbase/datetime.h>
#include <resources/zelkoicons.h>
#include <zelkoguibase/recordlist/datetimeeditdelegate.h>
#include <zelkoguibase/recordlist/newrecordlistview.h>
#include <zelkoguibase/recordlist/newrecordlistviewitem.h>
#include <zelkoguibase/recordlist/recordsearchlineedit.h>
#include <zelkoguibase/recordlist/selectheaderview.h>

#include <QApplication>
#include <QFormLayout>
#include <QHeaderView>
#include <QLabel>
#include <QStandardItemModel>
#include <QTableView>
#include <QTest>
#include <QVBoxLayout>

#include <array>

namespace ZelkoConsole {
namespace {

constexpr quint64 second = 1'000'000;
constexpr quint64 newest = 1'777'905'012 * second;

struct PaintedRecord
{
    const char* name;
    qint64 size;
    quint64 seconds; // that it lasts
    quint64 frequency;
    bool isSignalTime;
};

constexpr std::array records{
    PaintedRecord{"Airband tower", 48'300'000, 754, 118'105'000, true},
    PaintedRecord{"Telemetry bursts", 1'610'612'736, 5'412, 433'920'000, false},
    PaintedRecord{"Voice channel", 912, 2, 145'500'000, true},
    PaintedRecord{"Weather satellite pass, evening, antenna 2", 734'003'200, 901, 137'912'500, true},
    PaintedRecord{"Noise floor", 10'485'760, 400'000, 0, false},
    PaintedRecord{"Time signal", 24'576, 60, 77'500, true}};

/// An item as an application derives it.
class PaintedItem : public NewRecordListViewItem
{
public:
    PaintedItem(NewRecordListView* list, const PaintedRecord& record, int number)
        : NewRecordListViewItem(list, false)
    {
        const quint64 start = newest - static_cast<quint64>(number) * 86'400 * second;
        const quint64 stop = start + record.seconds * second;
        const auto column = [list](NewRecordListView::enCOLUMN of) { return list->getColumnNumber(of); };
        SetStringValue(QLatin1String(record.name), column(NewRecordListView::ColumnName));
        SetRecordSize(record.size, column(NewRecordListView::ColumnSize));
        SetTime(start, column(NewRecordListView::ColumnStartTime), record.isSignalTime, false);
        SetTime(stop, column(NewRecordListView::ColumnStopTime), record.isSignalTime, false);
        SetDuration(start, stop, column(NewRecordListView::ColumnDuration), record.isSignalTime, false);
        SetStringValue(QStringLiteral("2.4 MS/s"), column(NewRecordListView::ColumnDataRateClass));
        SetStringValue(QStringLiteral("IQ 16 bit"), column(NewRecordListView::ColumnDataFormat));
        SetStringValue(QStringLiteral("finished"), column(NewRecordListView::ColumnStatus));
        SetStringValue(QStringLiteral("R%1").arg(20260504000 + number), column(NewRecordListView::ColumnId));
        SetFrequencyOrBandwidthValue(record.frequency, column(NewRecordListView::ColumnCenterFrequency));
        SetFrequencyOrBandwidthValue(record.frequency / 100, column(NewRecordListView::ColumnBandwidth));
    }
};

// The keys of an operator go to the window that is active.
void activate(QWidget& window)
{
    window.show();
    window.activateWindow();
    QApplication::processEvents();
}

void paintRecordList(ScenePainter& painter, bool reduced, const char* scene)
{
    NewRecordListView list(nullptr, "PaintedRecords", QString(), QString(), 3, reduced);
    for (int number = 0; number < static_cast<int>(records.size()); ++number) {
        new PaintedItem(&list, records[static_cast<std::size_t>(number)], number);
    }
    for (int column = 0; column < list.columnCount(); ++column) {
        list.resizeColumnToContents(column);
    }
    list.resize(reduced ? 1080 : 1440, 220);
    activate(list);
    list.setFocus();
    QTest::mouseClick(list.viewport(), Qt::LeftButton, Qt::NoModifier,
                      list.visualItemRect(list.topLevelItem(1)).center());
    QTest::keyClick(&list, Qt::Key_Down);
    painter.paint(list, scene);
}

void paintEmptyRecordList(ScenePainter& painter)
{
    NewRecordListView list(nullptr, "PaintedRecords", QString(), QString(), 1, true);
    list.resize(960, 120);
    activate(list);
    painter.paint(list, "record-list-empty");
}

void paintSearchFields(ScenePainter& painter)
{
    QWidget form;
    auto* const layout = new QFormLayout(&form);
    auto* const typed = new RecordSearchLineEdit;
    auto* const disabled = new RecordSearchLineEdit;
    disabled->setEnabled(false);
    auto* const entered = new RecordSearchLineEdit;
    layout->addRow(QStringLiteral("Inviting"), new RecordSearchLineEdit);
    layout->addRow(QStringLiteral("Left with an entry"), typed);
    layout->addRow(QStringLiteral("Disabled"), disabled);
    layout->addRow(QStringLiteral("With the focus"), entered);
    activate(form);
    operatorhands::type(*typed, QStringLiteral("tower"));
    entered->setFocus();
    painter.paint(form, "search-field");
}

void fillTable(QStandardItemModel& model)
{
    model.setHorizontalHeaderLabels({QStringLiteral("Name"), QStringLiteral("Start Time")});
    for (int number = 0; number < static_cast<int>(records.size()); ++number) {
        const quint64 start = newest - static_cast<quint64>(number) * 86'400 * second;
        model.appendRow({new QStandardItem(QLatin1String(records[static_cast<std::size_t>(number)].name)),
                         new QStandardItem(Vorn::DateTime::UTCtoLocalString(start))});
    }
}

void paintMarkedRows(ScenePainter& painter)
{
    QStandardItemModel model;
    fillTable(model);
    QTableView table;
    table.setVerticalHeader(new ZelkoGUI::SelectHeaderView(Qt::Vertical));
    table.setSelectionBehavior(QAbstractItemView::SelectRows);
    table.setModel(&model);
    table.resizeColumnsToContents();
    table.horizontalHeader()->setStretchLastSection(true);
    table.resize(520, 240);
    activate(table);
    table.setFocus();
    for (const int row : {1, 3, 4}) {
        QTest::mouseClick(table.viewport(), Qt::LeftButton, Qt::ControlModifier,
                          table.visualRect(model.index(row, 0)).center());
    }
    painter.paint(table, "select-header");
}

void paintBookmarkEditor(ScenePainter& painter)
{
    QWidget window;
    PaintedBar bar(600, 560);
    bar.bookmark({{60, "Tower"}, {300, "Answer"}, {590, "End"}});
    QStandardItemModel model;
    model.setHorizontalHeaderLabels({QStringLiteral("Time"), QStringLiteral("Text")});
    for (const BookmarkType& bookmark : bar.bar().GetBookmarks()) {
        const auto time = static_cast<quint64>(bookmark.time);
        model.appendRow({new QStandardItem(Vorn::DateTime::UTCtoLocalString(time)), new QStandardItem(bookmark.text)});
    }
    QTableView table;
    ZelkoCommon::DateTimeEditDelegate delegate(&bar.bar());
    table.setItemDelegateForColumn(0, &delegate);
    table.setModel(&model);
    table.setColumnWidth(0, 190);
    table.horizontalHeader()->setStretchLastSection(true);
    auto* const layout = new QVBoxLayout(&window);
    layout->addWidget(&bar.bar());
    layout->addWidget(&table);
    window.resize(600, 260);
    activate(window);
    table.setCurrentIndex(model.index(1, 0));
    table.setFocus();
    QTest::keyClick(&table, Qt::Key_F2);
    painter.paint(window, "bookmark-time-editor");
    layout->removeWidget(&bar.bar());
    bar.bar().setParent(nullptr);
    table.setParent(nullptr);
}

} // namespace

void paintListScenes(ScenePainter& painter)
{
    registerZelkoIcons();
    paintRecordList(painter, false, "record-list");
    paintRecordList(painter, true, "record-list-reduced");
    paintEmptyRecordList(painter);
    paintSearchFields(painter);
    paintMarkedRows(painter);
    paintBookmarkEditor(painter);
    paintFilterEditorScenes(painter);
    paintExtendedFilterScenes(painter);
    paintRecordListScenes(painter);
}

} // namespace ZelkoConsole
