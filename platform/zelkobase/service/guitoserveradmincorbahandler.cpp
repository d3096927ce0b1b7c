#include <zelkobase/service/guitoserveradmincorbahandler.h>

#include <zelkobase/orb/corbatext.h>
#include <zelkobase/service/corbametadataconverter.h>
#include <zelkobase/service/recorderservice.h>
#include <zelkobase/service/zelkoguitoservercorbahandler.h>

#include <limits>

namespace ZelkoGUI {
namespace {

using namespace ZelkoCommon;
using Admin = QD_ZLK::IF_ZELKO_Admin_ptr;

QD_ZLK::RecordBookmarkSeq toBookmarks(const QVector<ZELKO_XML::BookmarkEntry>& entries)
{
    QD_ZLK::RecordBookmarkSeq bookmarks;
    bookmarks.length(static_cast<CORBA::ULong>(entries.size()));
    for (CORBA::ULong i = 0; i < bookmarks.length(); ++i) {
        const ZELKO_XML::BookmarkEntry& entry = entries.at(static_cast<int>(i));
        bookmarks[i].position = static_cast<CORBA::LongLong>(entry.GetTimestamp());
        bookmarks[i].text = toWideCorba(entry.GetBookmark());
    }
    return bookmarks;
}

QD_ZLK::TimeRangeSeq toRanges(qint64 start, qint64 stop)
{
    QD_ZLK::TimeRangeSeq ranges;
    ranges.length(1);
    ranges[0].start = start;
    ranges[0].stop = stop;
    return ranges;
}

// A number that the service has no room for would arrive as another one.
template <typename To>
bool fits(unsigned long number)
{
    return number <= static_cast<unsigned long>(std::numeric_limits<To>::max());
}

bool isWindow(ZelkoDataTypes::eFFT_Window window)
{
    return window >= ZelkoDataTypes::eFFT_Window::Rectangular && window <= ZelkoDataTypes::eFFT_Window::FlatTop;
}

} // namespace

struct GuiToServerAdminCorbaHandler::Private
{
    std::shared_ptr<ZelkoGuiToServerCorbaHandler> server;
    QString subSystem; // of the active device

    unsigned long ask(const RecorderService::AdminCall& call) const
    {
        return server ? server->service().askAdmin(call) : statusCode(ServiceStatus::NotConfigured);
    }
};

GuiToServerAdminCorbaHandler::GuiToServerAdminCorbaHandler(std::shared_ptr<ZelkoGuiToServerCorbaHandler> server,
                                                           QObject* parent)
    : QObject(parent)
    , d(std::make_unique<Private>())
{
    d->server = std::move(server);
}

GuiToServerAdminCorbaHandler::~GuiToServerAdminCorbaHandler() = default;

unsigned long GuiToServerAdminCorbaHandler::addHistory(const QString& device, const QString& record,
                                                       const QString& entry)
{
    return d->ask([&](Admin admin) -> unsigned long {
        return admin->addHistory(toCorba(device), toCorba(record), toWideCorba(entry));
    });
}

unsigned long GuiToServerAdminCorbaHandler::removeHistoryEntry(const QString& device, const QString& record,
                                                               const qint64& timestamp)
{
    return d->ask([&](Admin admin) -> unsigned long {
        return admin->removeHistoryEntry(toCorba(device), toCorba(record), timestamp);
    });
}

unsigned long GuiToServerAdminCorbaHandler::copyRecord(const QString& device, const QString& record, qint64 start,
                                                       qint64 stop, const QString& name, QString* newRecord)
{
    CORBA::String_var made;
    const unsigned long code = d->ask([&](Admin admin) -> unsigned long {
        return admin->copyRecord(toCorba(device), toCorba(record), made.out(), toRanges(start, stop),
                                 toWideCorba(name));
    });
    if (code == 0 && newRecord) {
        *newRecord = fromCorba(made.in());
    }
    return code;
}

unsigned long GuiToServerAdminCorbaHandler::addBookmarkEntries(const QString& device, const QString& record,
                                                               const QVector<ZELKO_XML::BookmarkEntry>& entries)
{
    return d->ask([&](Admin admin) -> unsigned long {
        return admin->addBookmarks(toCorba(device), toCorba(record), toBookmarks(entries));
    });
}

unsigned long GuiToServerAdminCorbaHandler::deleteBookmarkEntries(const QString& device, const QString& record,
                                                                  const QVector<ZELKO_XML::BookmarkEntry>& entries)
{
    return d->ask([&](Admin admin) -> unsigned long {
        return admin->deleteBookmarks(toCorba(device), toCorba(record), toBookmarks(entries));
    });
}

unsigned long GuiToServerAdminCorbaHandler::SetRecordDeletableFlag(const QString& device, const QString& record,
                                                                   bool deletable)
{
    return d->ask([&](Admin admin) -> unsigned long {
        return admin->setRecordDeletableFlag(toCorba(device), toCorba(record), deletable);
    });
}

unsigned long GuiToServerAdminCorbaHandler::SetRecordComment(const QString& device, const QString& record,
                                                             const QString& comment)
{
    return d->ask([&](Admin admin) -> unsigned long {
        return admin->setRecordComment(toCorba(device), toCorba(record), toWideCorba(comment));
    });
}

unsigned long GuiToServerAdminCorbaHandler::requestRecordDataDetail(const QString& device, const QString& record)
{
    return d->ask(
        [&](Admin admin) -> unsigned long { return admin->requestRecordDataDetail(toCorba(device), toCorba(record)); });
}

unsigned long GuiToServerAdminCorbaHandler::overviewSpectrumStreamed(const QString& device, const QString& record,
                                                                     qint64 start, qint64 stop, unsigned int resolution,
                                                                     unsigned long fftLength,
                                                                     ZelkoDataTypes::eFFT_Window window, QString ip,
                                                                     unsigned int port)
{
    return d->ask([&](Admin admin) -> unsigned long {
        if (!fits<CORBA::Long>(fftLength) || !fits<CORBA::UShort>(port) || !isWindow(window)) {
            return statusCode(ServiceStatus::BadArgument);
        }
        return admin->getOverviewSpectrumStreamed(
            toCorba(device), toCorba(record), start, stop, resolution, static_cast<CORBA::Long>(fftLength),
            static_cast<QD_ZLK::FftWindow>(window), toCorba(ip), static_cast<CORBA::UShort>(port));
    });
}

unsigned long GuiToServerAdminCorbaHandler::getDeviceTime(const QString& device, qint64& time, bool& synchronised)
{
    CORBA::LongLong deviceTime = 0;
    CORBA::Boolean isSynchronised = false;
    const unsigned long code = d->ask([&](Admin admin) -> unsigned long {
        return admin->getDeviceTime(toCorba(device), deviceTime, isSynchronised);
    });
    if (code == 0) {
        time = deviceTime;
        synchronised = isSynchronised;
    }
    return code;
}

unsigned long GuiToServerAdminCorbaHandler::setDeviceTime(const QString& device, qint64 time)
{
    return d->ask([&](Admin admin) -> unsigned long { return admin->setDeviceTime(toCorba(device), time); });
}

unsigned long GuiToServerAdminCorbaHandler::getRecord(const QString& device, const QString& record,
                                                      ZELKO_XML::ZELKO_RecordData& data)
{
    QD_ZLK::RecordInfo_var info;
    const unsigned long code = d->ask(
        [&](Admin admin) -> unsigned long { return admin->getRecord(toCorba(device), toCorba(record), info.out()); });
    if (code == 0) {
        data = CorbaMetaDataConverter::convertRecordFromZelko(info.in());
    }
    return code;
}

QString GuiToServerAdminCorbaHandler::lastErrorText() const
{
    return d->server ? d->server->lastErrorText() : serviceStatusText(statusCode(ServiceStatus::NotConfigured));
}

void GuiToServerAdminCorbaHandler::sl_activeDeviceChanged(const QString&, const QString& subSystem)
{
    if (subSystem != d->subSystem) {
        d->subSystem = subSystem;
        if (d->server) {
            d->server->service().forget();
        }
    }
}

} // namespace ZelkoGUI
