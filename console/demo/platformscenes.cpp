#include <console/demo/paintedbar.h>
#include <console/demo/scenepainter.h>
#include <console/demo/scenes.h>

#include <resources/zelkoicons.h>
#include <valuecore/tree.h>
#include <valuewidgetsbasic/vcdatetimeedit.h>
#include <widgetbase/sortlistview.h>
#include <widgetbase/sortlistviewitem.h>

#include <QApplication>
#include <QDirIterator>
#include <QFormLayout>
#include <QGridLayout>
#include <QIcon>
#include <QLabel>

namespace ZelkoConsole {
namespace {

constexpr long long begin = PaintedBar::begin;
constexpr long long second = PaintedBar::second;

void paintBarLengths(ScenePainter& painter)
{
    PaintedBar burst(2);
    painter.paint(burst.bar(), "replay-bar-two-seconds");
    PaintedBar hour(3600);
    painter.paint(hour.bar(), "replay-bar-an-hour");
    PaintedBar days(3 * 86400);
    painter.paint(days.bar(), "replay-bar-three-days");
    PaintedBar narrow(3600, 180);
    painter.paint(narrow.bar(), "replay-bar-narrow");
}

void paintBarContents(ScenePainter& painter)
{
    VCReplayBar empty(nullptr, "ReplayBar", true);
    empty.resize(720, empty.sizeHint().height());
    empty.show();
    painter.paint(empty, "replay-bar-empty");
    PaintedBar marked(600);
    marked.bookmark({{60, "Tower"}, {70, "Answer"}, {300, "A text that somebody took his time for"}, {590, "End"}});
    painter.paint(marked.bar(), "replay-bar-bookmarks");
    marked.bar().SetRangeVector({{begin + 100 * second, begin + 180 * second}, {begin + 400 * second, 0}});
    painter.paint(marked.bar(), "replay-bar-ranges");
    marked.bar().setEnabled(false);
    painter.paint(marked.bar(), "replay-bar-disabled");
}

void paintEditor(ScenePainter& painter)
{
    const PaintedMoment moment(begin);
    QWidget form;
    auto* const layout = new QFormLayout(&form);
    auto* const tied = new VCDateTimeEdit;
    tied->SetDateTime_ValuePath(moment.path());
    auto* const disabled = new VCDateTimeEdit;
    disabled->SetDateTime_ValuePath(moment.path());
    disabled->setEnabled(false);
    layout->addRow(QStringLiteral("From"), tied);
    layout->addRow(QStringLiteral("Of a locked value"), disabled);
    form.show();
    painter.paint(form, "date-time-editor");
}

void paintSortList(ScenePainter& painter)
{
    SortListView list(nullptr, "PaintedList");
    list.addColumn(QStringLiteral("File"));
    list.setColumnAlignment(list.addColumn(QStringLiteral("Size")), Qt::AlignRight | Qt::AlignVCenter);
    list.addColumn(QStringLiteral("State"));
    list.SetCompareFunctionLength(3);
    list.SetCompareFunction(1, SortListView::_compStandardNumeric);
    for (const int megabytes : {9, 120, 48, 7}) {
        auto* const item = new SortListViewItem(&list);
        item->setText(0, QStringLiteral("R2026050400%1").arg(megabytes));
        item->setText(1, QStringLiteral("%1 MB").arg(megabytes));
        item->setText(2, megabytes > 40 ? QStringLiteral("waiting") : QStringLiteral("done"));
        item->SetSortKey(1, QString::number(megabytes));
    }
    list.setRootIsDecorated(false);
    list.setColumnWidth(0, 180);
    list.setSortingEnabled(true);
    list.sortByColumn(1, Qt::AscendingOrder);
    list.resize(420, 160);
    list.show();
    painter.paint(list, "sort-list");
}

QStringList iconPaths()
{
    QStringList paths;
    for (const char* const root : {":/Zelko", ":/Filter"}) {
        QDirIterator files(QLatin1String(root), QDir::Files, QDirIterator::Subdirectories);
        while (files.hasNext()) {
            paths << files.next();
        }
    }
    paths.sort();
    return paths;
}

QLabel* iconLabel(const QIcon& icon, int size, QIcon::Mode mode)
{
    auto* const label = new QLabel;
    label->setPixmap(icon.pixmap(QSize(size, size), label->devicePixelRatioF(), mode));
    label->setFixedSize(40, 36);
    label->setAlignment(Qt::AlignCenter);
    return label;
}

void paintIcons(ScenePainter& painter)
{
    registerZelkoIcons();
    QWidget sheet;
    auto* const grid = new QGridLayout(&sheet);
    constexpr int iconsInLine = 3;
    constexpr int cellsOfIcon = 4;
    int number = 0;
    for (const QString& path : iconPaths()) {
        const QIcon icon(path);
        const int row = number / iconsInLine;
        const int column = number % iconsInLine * cellsOfIcon;
        grid->addWidget(iconLabel(icon, 16, QIcon::Normal), row, column);
        grid->addWidget(iconLabel(icon, 32, QIcon::Normal), row, column + 1);
        grid->addWidget(iconLabel(icon, 16, QIcon::Disabled), row, column + 2);
        grid->addWidget(new QLabel(path.mid(2)), row, column + 3);
        ++number;
    }
    sheet.show();
    painter.paint(sheet, "icons");
}

} // namespace

void paintPlatformScenes(ScenePainter& painter)
{
    paintBarLengths(painter);
    paintBarContents(painter);
    paintEditor(painter);
    paintSortList(painter);
    paintIcons(painter);
}

} // namespace ZelkoConsole
