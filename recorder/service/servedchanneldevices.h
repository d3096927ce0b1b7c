#pragma once

#include <recorder/service/channeldevices.h>

namespace ZelkoRecorder {

class ServedRecorder;

/// The devices of a recorder, as channels see them. On the recorder's thread.
class ServedChannelDevices final : public ChannelDevices
{
public:
    /// `recorder` outlives it and has all its devices.
    explicit ServedChannelDevices(ServedRecorder& recorder);

    QStringList devices() const override;
    DeviceStore store(const QString& device) const override;
    DeviceService* service(const QString& device) const override;
    const DeviceClock& clock(const QString& device) const override;
    void whenReady(const QString& device, QObject* context, std::function<void()> ready) override;
    void recordBegins(const QString& device, const QString& recordID, std::function<void()> stop,
                      const std::shared_ptr<EditQueue>& edits) override;
    void recordChanged(const QString& device, const RecordPointer& record) override;
    void recordEnded(const QString& device, const QString& recordID) override;

private:
    ServedRecorder& m_recorder;
};

} // namespace ZelkoRecorder
