#pragma once

#include <console/soon.h>

#include <QString>
#include <QWidget>

#include <memory>

class QHBoxLayout;
class QLabel;

namespace ZelkoCommon {
class AbstractServerConnectionData;
class DeviceCombo;
class DeviceHandler;
} // namespace ZelkoCommon

namespace ZelkoConsole {

/// Which device of a sub system the workstation records and replays on, chosen from those that can be used. Another one
/// than that may be looked at meanwhile. The choice is kept in the local values of the sub system. Without a device to
/// choose there is nothing to see of this.
class WorkDevice : public QWidget
{
    Q_OBJECT

public:
    /// Has no sub system at first.
    explicit WorkDevice(const std::shared_ptr<ZelkoCommon::AbstractServerConnectionData>& connection,
                        QWidget* parent = nullptr);
    ~WorkDevice() override;

    /// Offers the devices of a sub system; none for an empty name.
    void setSubSystem(const QString& subSystem);

    /// While the channel of the workstation records or replays, no other device is chosen.
    void setBusy(bool isRecording, bool isReplaying);

    /// The box; null without a sub system. Another sub system has another one.
    ZelkoCommon::DeviceCombo* combo() const { return m_combo; }

Q_SIGNALS:
    /// The user has chosen a device, perhaps the one that it was. Not told: that another one takes its place because it
    /// can be used no more.
    void chosen(const QString& subSystem, const QString& device);

private:
    ZelkoCommon::DeviceCombo* makeCombo();
    void updateBusy();
    void updateVisible();

    ZelkoCommon::DeviceHandler* const m_handler;
    QString m_subSystem;
    bool m_isRecording = false;
    bool m_isReplaying = false;
    Soon m_soon{[this] { updateVisible(); }};
    QHBoxLayout* m_layout;
    QLabel* m_label;
    ZelkoCommon::DeviceCombo* m_combo = nullptr;
};

} // namespace ZelkoConsole
