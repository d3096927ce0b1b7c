#include <zelkoguibase/state/devicecombo.h>

#include <observerbase/errorhandler.h>
#include <observerbase/trace.h>
#include <zelkobase/state/devicehandler.h>

#include <algorithm>

namespace ZelkoCommon {

DeviceCombo::DeviceCombo(QWidget* parent, DeviceHandler* handler, const QString& device, const QString& subSystem)
    : QComboBox(parent)
    , m_selectedDevice(device)
    , m_selectedSubsystem(subSystem)
    , m_filterSubsystem(subSystem)
    , m_handler(handler)
{
    setAccessibleName(tr("Device"));
    setAccessibleDescription(tr("The device to work on")); // some systems read the chosen text in place of a box's name
    slotUpdateDeviceList();
    connect(this, &QComboBox::currentIndexChanged, this, &DeviceCombo::slotDeviceSelected);
    if (handler) {
        const auto update = [&](auto signal) { connect(handler, signal, this, &DeviceCombo::slotUpdateDeviceList); };
        update(&DeviceHandler::signalDeviceHandlerSubsystemUpdated);
        update(&DeviceHandler::signalDeviceHandlerAllowedDeviceUpdated);
        update(&DeviceHandler::signalDevicesAdded);
        update(&DeviceHandler::signalDeviceRemoved);
    }
}

DeviceCombo::~DeviceCombo() = default;

bool DeviceCombo::SetDevice_ValuePath(const QString& path)
{
    const bool isThere = m_deviceValue.GetFromTree(path);
    if (isThere) {
        SetDeviceId(m_deviceValue->GetValue());
    }
    return isThere;
}

void DeviceCombo::SetReplayOn(bool on)
{
    m_replayOn = on;
    setEnabled(!on);
}

void DeviceCombo::SetRecordingOn(bool on)
{
    m_recordingOn = on;
    setEnabled(!on);
}

void DeviceCombo::Update(Observable* source, TChangeCode code)
{
    if (code == TChangeCode::ValueChanged && source == m_deviceValue.get()) {
        SetDeviceId(m_deviceValue->GetValue());
    }
}

void DeviceCombo::clear()
{
    QComboBox::clear();
    m_devices.clear();
}

// currentIndexChanged does not come for an index that stays, though another device may stand there; but for -1 it comes
// even then.
void DeviceCombo::SetDeviceId(const QString& device)
{
    const int place = GetIndex(device);
    const int index = place == -1 && count() > 0 ? 0 : place;
    if (index != currentIndex()) {
        setCurrentIndex(index);
    }
    slotDeviceSelected(currentIndex());
}

void DeviceCombo::FillDeviceList()
{
    const QSignalBlocker blocker(this);
    clear();
    if (!m_handler) {
        if (ErrorHandler::Instance()->traces(ErrorHandler::TraceError)) {
            _Q_Trace(QStringLiteral("DeviceCombo::FillDeviceList m_pDeviceHandler is empty!!! No update will occur!"),
                     __FILE__, __LINE__);
        }
        return;
    }
    if (m_filterSubsystem.isEmpty()) {
        m_handler->GetAllDevices(m_devices, true);
    } else {
        m_handler->GetDevices(m_filterSubsystem, m_devices, true);
    }
    for (const auto& [device, subSystem] : m_devices) {
        addItem(device, QVariant());
        setItemData(count() - 1, subSystem, Qt::ToolTipRole); // tells devices of the same name apart
    }
}

int DeviceCombo::GetIndex(const QString& device) const
{
    const auto found = std::find(m_devices.begin(), m_devices.end(), std::pair(device, m_selectedSubsystem));
    return found == m_devices.end() ? -1 : static_cast<int>(found - m_devices.begin());
}

bool DeviceCombo::isListed(int index) const
{
    return index >= 0 && static_cast<std::size_t>(index) < m_devices.size();
}

// Where text and list disagree the list is being filled, and the choice is made when that is over.
void DeviceCombo::slotDeviceSelected(int index)
{
    if (isListed(index) && m_devices[static_cast<std::size_t>(index)].first == currentText()) {
        const auto [device, subSystem] = m_devices[static_cast<std::size_t>(index)];
        if (device != m_selectedDevice || subSystem != m_selectedSubsystem) {
            setSelected(device, subSystem);
        }
    } else if (index == -1) {
        setSelected(QString(), QString());
    }
}

void DeviceCombo::setSelected(const QString& device, const QString& subSystem)
{
    m_selectedDevice = device;
    m_selectedSubsystem = subSystem;
    if (m_deviceValue) {
        m_deviceValue->SetValue(device, this);
    }
    Q_EMIT signalItemChanged(m_selectedDevice, m_selectedSubsystem);
}

void DeviceCombo::slotUpdateDeviceList()
{
    FillDeviceList();
    SetDeviceId(m_selectedDevice);
}

} // namespace ZelkoCommon
