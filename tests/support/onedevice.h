#pragma once

#include <recorder/service/channeldevices.h>

#include <QTemporaryDir>

#include <vector>

namespace ZelkoTest {

/// The one device D1 of a recorder, which becomes ready when the test calls those that wait for it.
class OneDevice final : public ZelkoRecorder::ChannelDevices
{
public:
    QStringList devices() const override { return {QStringLiteral("D1")}; }
    ZelkoRecorder::DeviceStore store(const QString&) const override
    {
        return ZelkoRecorder::DeviceStore(folder.path());
    }
    ZelkoRecorder::DeviceService* service(const QString&) const override { return nullptr; }
    void whenReady(const QString&, QObject*, std::function<void()> ready) override { waiting.push_back(ready); }
    const ZelkoRecorder::DeviceClock& clock(const QString&) const override { return deviceClock; }
    void recordBegins(const QString&, const QString& id, std::function<void()>,
                      const std::shared_ptr<ZelkoRecorder::EditQueue>& queue) override
    {
        recordID = id;
        edits = queue;
    }
    void recordChanged(const QString&, const ZelkoRecorder::RecordPointer&) override {}
    void recordEnded(const QString&, const QString&) override {}

    QTemporaryDir folder;
    const ZelkoRecorder::DeviceClock deviceClock{folder.path()};
    QString recordID;
    std::shared_ptr<ZelkoRecorder::EditQueue> edits;
    std::vector<std::function<void()>> waiting;
};

} // namespace ZelkoTest
