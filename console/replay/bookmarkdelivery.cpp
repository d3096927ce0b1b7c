#include <console/replay/bookmarkdelivery.h>

#include <zelkobase/models/abstractrecordlistmodel.h>
#include <zelkoguibase/controller/zelkoserverguicontroller.h>

#include <QEventLoop>
#include <QGuiApplication>
#include <QScopeGuard>
#include <QTimer>

#include <utility>

namespace ZelkoConsole {

using ZelkoCommon::AbstractRecordListModel;
using ZelkoGUI::BookmarkModel;
using ZelkoGUI::ZelkoServerGUIController;

BookmarkDelivery::BookmarkDelivery(BookmarkModel* bookmarks, ZelkoServerGUIController* controller)
    : m_bookmarks(bookmarks)
    , m_controller(controller)
{}

BookmarkDelivery::~BookmarkDelivery() = default;

bool BookmarkDelivery::isConnected() const
{
    return m_controller && m_controller->isConnected();
}

BookmarkDelivery::Outcome BookmarkDelivery::send(std::chrono::milliseconds limit)
{
    if (!m_bookmarks || m_bookmarks->getSynchState() != BookmarkModel::SynchLocalChange || !isConnected()) {
        return Outcome::NoConnection;
    }
    const Entries changed = m_bookmarks->entries();
    synchronize();
    wait(limit);
    if (isTaken()) {
        return Outcome::Taken;
    }
    takeBack(changed);
    return isConnected() ? Outcome::NotTaken : Outcome::NoConnection;
}

// What goes out is in order, as the list of the model need not be.
void BookmarkDelivery::synchronize()
{
    const QObject context;
    QObject::connect(m_bookmarks, &BookmarkModel::si_updateBookmarks, &context,
                     [this](const QString& record, const Entries& bookmarks) {
                         m_record = record;
                         m_sent = bookmarks;
                     });
    m_bookmarks->sl_synchronize();
}

bool BookmarkDelivery::isTaken() const
{
    const auto record = m_controller ? m_controller->recordListModel()->getRecordData(m_record) : nullptr;
    return record && std::as_const(*record).GetBookmarkEntry() == m_sent;
}

// That the progress of the load is told is also the first sign of a connection that is lost.
void BookmarkDelivery::wait(std::chrono::milliseconds limit) const
{
    QEventLoop loop;
    const auto look = [&] {
        if (isTaken() || !isConnected()) {
            loop.quit();
        }
    };
    const AbstractRecordListModel* const records = m_controller->recordListModel();
    QObject::connect(records, &AbstractRecordListModel::si_recordChanged, &loop, look);
    QObject::connect(records, &AbstractRecordListModel::si_allRecordsChanged, &loop, look);
    QObject::connect(m_controller, &ZelkoServerGUIController::si_loadProgress, &loop, look);
    QObject::connect(m_controller, &QObject::destroyed, &loop, &QEventLoop::quit);
    QTimer::singleShot(limit, &loop, &QEventLoop::quit);
    if (!isTaken()) {
        QGuiApplication::setOverrideCursor(Qt::BusyCursor);
        const auto restore = qScopeGuard([] { QGuiApplication::restoreOverrideCursor(); });
        loop.exec();
    }
}

// The model takes what was sent for what the recorder has, sooner or later.
void BookmarkDelivery::takeBack(const Entries& changed) const
{
    const auto state = m_bookmarks ? m_bookmarks->getSynchState() : BookmarkModel::SynchNoRecord;
    if (state != BookmarkModel::SynchNoRecord && state != BookmarkModel::SynchLocalChange) {
        m_bookmarks->sl_reset();
        m_bookmarks->setEntries(changed);
    }
}

} // namespace ZelkoConsole
