#include <recorder/service/servedchanneldevices.h>

#include <recorder/served/servedrecorder.h>

namespace ZelkoRecorder {

ServedChannelDevices::ServedChannelDevices(ServedRecorder& recorder)
    : m_recorder(recorder)
{}

QStringList ServedChannelDevices::devices() const
{
    return m_recorder.deviceIds();
}

DeviceStore ServedChannelDevices::store(const QString& device) const
{
    return m_recorder.service(device)->store();
}

DeviceService* ServedChannelDevices::service(const QString& device) const
{
    return m_recorder.service(device);
}

const DeviceClock& ServedChannelDevices::clock(const QString& device) const
{
    return m_recorder.service(device)->clock();
}

void ServedChannelDevices::whenReady(const QString& device, QObject* context, std::function<void()> ready)
{
    m_recorder.device(device)->whenReady(context, std::move(ready));
}

void ServedChannelDevices::recordBegins(const QString& device, const QString& recordID, std::function<void()> stop,
                                        const std::shared_ptr<EditQueue>& edits)
{
    m_recorder.device(device)->beginForeignRecording(recordID, std::move(stop), edits);
}

void ServedChannelDevices::recordChanged(const QString& device, const RecordPointer& record)
{
    m_recorder.device(device)->showForeignRecording(record);
}

void ServedChannelDevices::recordEnded(const QString& device, const QString& recordID)
{
    m_recorder.device(device)->endForeignRecording(recordID);
}

} // namespace ZelkoRecorder
