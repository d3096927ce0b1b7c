#include <console/records/devicerecords.h>

#include <console/treeobserver.h>

#include <valuecore/valueptr.h>
#include <valuecore/valuetypes.h>
#include <zelkobase/maps/recorditemmap.h>
#include <zelkobase/names/valuenames.h>
#include <zelkoguibase/recordlist/recorditemmapmodel.h>

#include <QTimer>

namespace ZelkoConsole {

using zelko::recordmap::RecordItemMap;
namespace names = zelko::names;
using ZelkoCommon::AbstractRecordListModel;

namespace {

constexpr int lookUpInterval = 100;

// When no rows have come for so long, those that are still missing were deleted in the meantime.
constexpr int refillPause = 2000;

} // namespace

struct DeviceRecords::Private
{
    Private(DeviceRecords* owner, ZelkoGUI::RecordItemMapModel* theModel);

    void stateChanged(TChangeCode code);
    void loadChanged(TChangeCode code);
    void lookUp();
    bool connectModel();
    void checkStillThere();
    void letGo();
    void rowsGo();
    void rowsCame();
    bool isWhole() const { return map && loadCount && complete; }

    DeviceRecords* const q;
    QString devicePath;
    bool connected = false;
    QTimer timer;
    QTimer refill;      // runs while rows are missing that went without their map
    int rowsBefore = 0; // as many went then
    ZelkoGUI::RecordItemMapModel& model;
    TreeObserver mapObserver;
    TreeObserver loadObserver;
    ValueObservingPtr<RecordItemMap> map;
    ValueObservingPtr<Value<int>> loadCount;
    ValueObservingPtr<Value<bool>> complete;
};

DeviceRecords::Private::Private(DeviceRecords* owner, ZelkoGUI::RecordItemMapModel* theModel)
    : q(owner)
    , model(*theModel)
    , mapObserver([this](TChangeCode code) { stateChanged(code); })
    , loadObserver([this](TChangeCode code) { loadChanged(code); })
    , map(&mapObserver)
    , loadCount(&loadObserver)
    , complete(&loadObserver)
{
    timer.setInterval(lookUpInterval);
    connect(&timer, &QTimer::timeout, q, [this] { lookUp(); });
    refill.setSingleShot(true);
    refill.setInterval(refillPause);
    connect(&refill, &QTimer::timeout, q, &DeviceRecords::progressChanged);
    connect(&model, &QAbstractItemModel::modelAboutToBeReset, q, [this] { rowsGo(); });
    connect(&model, &QAbstractItemModel::modelReset, q, [this] { rowsCame(); });
    connect(&model, &QAbstractItemModel::rowsInserted, q, [this] { rowsCame(); });
    connect(&model, &QAbstractItemModel::rowsInserted, q, &DeviceRecords::progressChanged);
    connect(&model, &AbstractRecordListModel::si_allRecordsChanged, q, &DeviceRecords::progressChanged);
}

// A value that goes is still held while its observers hear of it, so what is left is looked at afterwards. The rows
// come by way of the model.
void DeviceRecords::Private::stateChanged(TChangeCode code)
{
    if (code == TChangeCode::StateChanged) {
        QTimer::singleShot(0, q, [this] { checkStillThere(); });
    }
}

void DeviceRecords::Private::loadChanged(TChangeCode code)
{
    stateChanged(code);
    if (code == TChangeCode::ValueChanged && connected) {
        Q_EMIT q->progressChanged();
    }
}

// A server that begins its state afresh empties the map and fills it again, and never takes back that it is complete.
void DeviceRecords::Private::rowsGo()
{
    if (!refill.isActive()) {
        rowsBefore = model.recordCount();
        refill.start();
    }
}

void DeviceRecords::Private::rowsCame()
{
    if (model.recordCount() >= rowsBefore) {
        refill.stop();
    } else if (refill.isActive()) {
        refill.start();
    }
}

void DeviceRecords::Private::lookUp()
{
    map.GetFromTree(names::recordMapPath(devicePath));
    loadCount.GetFromTree(names::loadCountPath(devicePath));
    complete.GetFromTree(names::loadedCompletlyPath(devicePath));
    if (!isWhole() || !connectModel()) {
        return;
    }
    timer.stop();
    connected = true;
    Q_EMIT q->connectionChanged();
    Q_EMIT q->progressChanged();
}

// To connect the model a second time would take all its rows away and bring them again.
bool DeviceRecords::Private::connectModel()
{
    const QString path = names::recordMapPath(devicePath);
    return model.connectionPath() == path || model.connect(path);
}

void DeviceRecords::Private::checkStillThere()
{
    if (connected && !isWhole()) {
        letGo();
        timer.start();
    }
}

void DeviceRecords::Private::letGo()
{
    timer.stop();
    map = nullptr;
    loadCount = nullptr;
    complete = nullptr;
    model.disconnect();
    refill.stop();
    if (std::exchange(connected, false)) {
        Q_EMIT q->connectionChanged();
        Q_EMIT q->progressChanged();
    }
}

DeviceRecords::DeviceRecords(ZelkoGUI::RecordItemMapModel* model, QObject* parent)
    : QObject(parent)
    , d(std::make_unique<Private>(this, model))
{}

DeviceRecords::~DeviceRecords() = default;

void DeviceRecords::follow(const QString& devicePath)
{
    if (d->devicePath == devicePath) {
        return;
    }
    d->letGo();
    d->devicePath = devicePath;
    if (!devicePath.isEmpty()) {
        d->timer.start();
        d->lookUp();
    }
}

const QString& DeviceRecords::devicePath() const
{
    return d->devicePath;
}

bool DeviceRecords::isConnected() const
{
    return d->connected;
}

bool DeviceRecords::isComplete() const
{
    return d->complete && d->complete->GetValue() && !d->refill.isActive();
}

LoadProgress DeviceRecords::progress() const
{
    const int count = d->model.recordCount();
    if (!d->loadCount || !d->complete || d->complete->GetValue() || count >= d->loadCount->GetValue()) {
        return {};
    }
    return {count, d->loadCount->GetValue()};
}

ZelkoGUI::RecordItemMapModel* DeviceRecords::model() const
{
    return &d->model;
}

} // namespace ZelkoConsole
