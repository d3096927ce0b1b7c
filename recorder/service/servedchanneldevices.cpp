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

void ServedChannelDevices::whenReady(const QString& device, QObject* context, std::function<void()> ready)
{
    m_recorder.device(device)->whenReady(context, std::move(ready));
}

void ServedChannelDevices::recordBegins(const QString& device, const QString& recordID, std::function<void()> stop)
{
    m_recorder.device(device)->beginForeignRecording(recordID, std::move(stop));
}

void ServedChannelDevices::recordChanged(const QString& device, const RecordPointer& record)
{
    m_recorder.device(device)->showForeignRecording(record);
}

void ServedChannelDevices::recordEnded(const QString& device, const QString& recordID)
{
    m_recorder.device(device)->endForeignRecording(recordID);
}

void ServedChannelDevices::renameRecord(const QString& device, const QString& recordID, const QString& name)
{
    m_renames.enqueue([service = m_recorder.service(device), recordID, name] { service->setComment(recordID, name); });
}

} // namespace ZelkoRecorder
