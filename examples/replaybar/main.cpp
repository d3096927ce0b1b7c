// A recording on an axis of time, and its bookmarks there and in a table, to be edited.
//
//     replaybar SITE DEVICE [--once]
//
// SITE is a site file; zelkoconfiguration.h has what stands in it. The recording is the first one of the device. With
// --once its beginning is marked, and the program ends when the recorder has stored the bookmark.
#include <resources/zelkoicons.h>
#include <valuecore/tree.h>
#include <zelkobase/connection/serverconnectiondata.h>
#include <zelkobase/connection/zelkoconfiguration.h>
#include <zelkobase/orb/orb.h>
#include <zelkobase/service/zelkoguitoservercorbahandler.h>
#include <zelkoguibase/bookmarks/bookmarkedittimedelegate.h>
#include <zelkoguibase/bookmarks/bookmarkmodel.h>
#include <zelkoguibase/controller/zelkoserverguicontroller.h>
#include <zelkoguibase/replaybar/replaybarwidget.h>

#include <QApplication>
#include <QHeaderView>
#include <QTableView>
#include <QTextStream>
#include <QVBoxLayout>

using namespace ZelkoCommon;
using namespace ZelkoGUI;

namespace {

void say(const QString& text)
{
    QTextStream(stdout) << text << Qt::endl;
}

/// The table and the bar are two views of one model. The buttons beside the bar send what was changed or take it back.
class BookmarkWindow : public QWidget
{
public:
    explicit BookmarkWindow(BookmarkModel* bookmarks);

    ReplayBarWidget* bar() const { return m_bar; }

private:
    QTableView* makeTable(BookmarkModel* bookmarks);

    ReplayBarWidget* const m_bar;
};

BookmarkWindow::BookmarkWindow(BookmarkModel* bookmarks)
    : m_bar(new ReplayBarWidget(bookmarks))
{
    auto* const layout = new QVBoxLayout(this);
    layout->addWidget(m_bar);
    layout->addWidget(makeTable(bookmarks), 1);
    // A new bookmark stands where the marker of the bar is.
    connect(m_bar, &ReplayBarWidget::si_currentPosChanged, bookmarks, &BookmarkModel::sl_setNewBookmarkTime);
}

// The headers of the rows are its buttons: they delete a bookmark, and the last one adds one.
QTableView* BookmarkWindow::makeTable(BookmarkModel* bookmarks)
{
    auto* const table = new QTableView;
    table->setModel(bookmarks);
    table->setItemDelegateForColumn(BookmarkModel::TimeColumn, new BookmarkEditTimeDelegate(table));
    table->verticalHeader()->setSectionsClickable(true);
    connect(table->verticalHeader(), &QHeaderView::sectionClicked, bookmarks, &BookmarkModel::sl_verticalHeaderClicked);
    return table;
}

// What a user does who adds a bookmark and presses the button that sends it. Sent bookmarks lock the model until the
// recording comes back with them.
void markOnce(BookmarkModel& bookmarks, const AbstractRecordListModel& records)
{
    const auto record = records.recordData(0);
    if (record && !record->GetBookmarkEntry().isEmpty()) {
        const auto& stored = record->GetBookmarkEntry().constFirst();
        say(QStringLiteral("%1 has \"%2\"").arg(record->GetRecordName(), stored.GetBookmark()));
        QApplication::quit();
    } else if (record && bookmarks.getSynchState() == BookmarkModel::SynchInSync) {
        BookmarkModel::Entry beginning;
        beginning.SetTimestamp(record->GetStartTime());
        beginning.SetBookmark(QStringLiteral("Begin"));
        bookmarks.appendEntry(beginning);
        bookmarks.sl_synchronize();
    }
}

} // namespace

int main(int argc, char** argv)
{
    const QApplication application(argc, argv);
    registerZelkoIcons();
    const QStringList arguments = QApplication::arguments();
    QString error;
    const auto site = ZelkoConfiguration::fromFile(arguments.value(1), &error);
    if (!site) {
        say(error);
        return 2;
    }
    Orb orb{OrbOptions{}};
    const auto connection =
        std::make_shared<ServerConnectionData>(orb, Tree::Instance(), std::make_shared<ZelkoConfiguration>(*site));
    ZelkoServerGUIController controller(std::make_shared<ZelkoGuiToServerCorbaHandler>(connection), {}, nullptr);
    controller.sl_activeDeviceChanged(arguments.value(2));
    AbstractRecordListModel* const records = controller.recordListModel();

    BookmarkModel bookmarks(false); // true for users who may only look
    BookmarkWindow window(&bookmarks);
    // The model talks to no recorder: what it wants stored goes to the controller, and comes back with the recording.
    QObject::connect(&bookmarks, &BookmarkModel::si_updateBookmarks, &controller,
                     &ZelkoServerGUIController::sl_setBookmarkEntries);
    QObject::connect(records, &QAbstractItemModel::rowsInserted, &window, [&](const QModelIndex&, int first) {
        if (first == 0) { // of a list that was empty: new records come behind the others
            window.bar()->setRecord(records->recordID(0), records, controller.activeDevice());
        }
    });
    if (arguments.contains(QStringLiteral("--once"))) {
        QObject::connect(
            records, &AbstractRecordListModel::si_recordChanged, &window, [&] { markOnce(bookmarks, *records); },
            Qt::QueuedConnection);
    }
    window.show();
    return QApplication::exec();
}
