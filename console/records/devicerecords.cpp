#include <console/records/devicerecords.h>

#include <zelkoguibase/controller/zelkoserverguicontroller.h>

#include <QTimer>

#include <utility>

namespace ZelkoConsole {

namespace {

// When no rows have come for so long, those that are still missing were deleted in the meantime.
constexpr int refillPause = 2000;

} // namespace

struct DeviceRecords::Private
{
    Private(DeviceRecords* owner, const Controller* ofDevice);

    void followRows();
    void look();
    void rowsGo();
    void rowsCame();

    DeviceRecords* const q;
    const Controller& controller;
    const ZelkoCommon::AbstractRecordListModel& model;
    bool connected = false; // at the last look
    LoadProgress progress;
    QTimer refill;      // runs while rows are missing that went without their map
    int rowsBefore = 0; // as many went then
};

DeviceRecords::Private::Private(DeviceRecords* owner, const Controller* ofDevice)
    : q(owner)
    , controller(*ofDevice)
    , model(*ofDevice->recordListModel())
    , connected(ofDevice->isConnected())
{
    refill.setSingleShot(true);
    refill.setInterval(refillPause);
    connect(&refill, &QTimer::timeout, q, &DeviceRecords::progressChanged);
    connect(&controller, &Controller::si_connectionEstablished, q, [this] { look(); });
    connect(&controller, &Controller::si_loadProgress, q, [this](int count, int total) {
        progress = {count, total};
        look();
    });
    followRows();
}

void DeviceRecords::Private::followRows()
{
    connect(&model, &QAbstractItemModel::modelAboutToBeReset, q, [this] { rowsGo(); });
    connect(&model, &QAbstractItemModel::modelReset, q, [this] { rowsCame(); });
    connect(&model, &QAbstractItemModel::rowsInserted, q, [this] { rowsCame(); });
}

// The end of a connection has no signal of its own, but the progress is told with it. The rows of a list that went with
// its connection come back with the next one, which waits for them by itself.
void DeviceRecords::Private::look()
{
    if (!controller.isConnected()) {
        refill.stop();
    }
    if (std::exchange(connected, controller.isConnected()) != connected) {
        Q_EMIT q->connectionChanged();
    }
    Q_EMIT q->progressChanged();
}

// A server that begins its state afresh empties the map and fills it again, and never takes back that it is complete.
void DeviceRecords::Private::rowsGo()
{
    if (connected && !refill.isActive()) {
        rowsBefore = model.rowCount();
        refill.start();
    }
}

// The progress of these rows may have been told while some were still missing.
void DeviceRecords::Private::rowsCame()
{
    if (!refill.isActive()) {
        return;
    }
    if (model.rowCount() < rowsBefore) {
        refill.start();
        return;
    }
    refill.stop();
    Q_EMIT q->progressChanged();
}

DeviceRecords::DeviceRecords(const Controller* controller, QObject* parent)
    : QObject(parent)
    , d(std::make_unique<Private>(this, controller))
{}

DeviceRecords::~DeviceRecords() = default;

bool DeviceRecords::isConnected() const
{
    return d->connected;
}

bool DeviceRecords::isComplete() const
{
    return d->connected && d->controller.isLoadedCompletely() && !d->refill.isActive();
}

LoadProgress DeviceRecords::progress() const
{
    return d->connected ? d->progress : LoadProgress();
}

} // namespace ZelkoConsole
