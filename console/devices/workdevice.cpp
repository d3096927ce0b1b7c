#include <console/devices/workdevice.h>

#include <zelkobase/state/devicehandler.h>
#include <zelkobase/state/localzelkovalues.h>
#include <zelkoguibase/state/devicecombo.h>

#include <QHBoxLayout>
#include <QLabel>

namespace ZelkoConsole {

using ZelkoCommon::DeviceCombo;

namespace {

// Longer names are cut, so that the box leaves room for the title beside it.
constexpr int shownCharacters = 12;

} // namespace

WorkDevice::WorkDevice(const std::shared_ptr<ZelkoCommon::AbstractServerConnectionData>& connection, QWidget* parent)
    : QWidget(parent)
    , m_handler(new ZelkoCommon::DeviceHandler(connection, this))
    , m_layout(new QHBoxLayout(this))
    , m_label(new QLabel(tr("&Work on:")))
{
    setObjectName(QStringLiteral("workDevice"));
    setStatusTip(tr("The device that this workstation records and replays on."));
    m_layout->setContentsMargins(0, 0, 0, 0);
    m_layout->addWidget(m_label);
    updateVisible();
}

WorkDevice::~WorkDevice() = default;

void WorkDevice::setSubSystem(const QString& subSystem)
{
    if (subSystem == m_subSystem) {
        return;
    }
    m_subSystem = subSystem;
    delete m_combo; // a box stays with its sub system
    m_combo = subSystem.isEmpty() ? nullptr : makeCombo();
    updateBusy();
    updateVisible();
}

DeviceCombo* WorkDevice::makeCombo()
{
    const auto deviceId = ZelkoCommon::LocalZelkoValues(m_subSystem).valueDeviceId();
    auto* const combo = new DeviceCombo(this, m_handler, deviceId->GetValue(), m_subSystem);
    combo->setObjectName(QStringLiteral("workDeviceCombo"));
    combo->setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);
    combo->setMinimumContentsLength(shownCharacters);
    combo->SetDevice_ValuePath(deviceId->GetPathName());
    if (const QString& device = combo->GetSelectedDevice(); !device.isEmpty()) {
        deviceId->SetValue(device,
                           nullptr); // the box does not write what it had chosen before it was tied to the value
    }
    m_layout->addWidget(combo);
    m_label->setBuddy(combo);
    connect(combo, &QComboBox::activated, this,
            [this] { Q_EMIT chosen(m_combo->GetSelectedSubsystem(), m_combo->GetSelectedDevice()); });
    for (const auto signal : {&QAbstractItemModel::rowsInserted, &QAbstractItemModel::rowsRemoved}) {
        connect(combo->model(), signal, this, [this] { m_soon.ask(); });
    }
    return combo;
}

void WorkDevice::setBusy(bool isRecording, bool isReplaying)
{
    m_isRecording = isRecording;
    m_isReplaying = isReplaying;
    updateBusy();
}

// Of the two whatever is said last holds in the box.
void WorkDevice::updateBusy()
{
    if (m_combo && m_isRecording) {
        m_combo->SetReplayOn(m_isReplaying);
        m_combo->SetRecordingOn(true);
    } else if (m_combo) {
        m_combo->SetRecordingOn(false);
        m_combo->SetReplayOn(m_isReplaying);
    }
}

// The box is empty for a moment whenever it is filled anew: one that were hidden then would lose the focus.
void WorkDevice::updateVisible()
{
    setVisible(m_combo && m_combo->count() > 0);
}

} // namespace ZelkoConsole
