#pragma once

#include <observerbase/iobserver.h>
#include <valuecore/valueptr.h>
#include <valuecore/valuetypes.h>
#include <zelkoguibase/zelkoguibase_export.h>

#include <QComboBox>
#include <QPointer>

#include <utility>
#include <vector>

namespace ZelkoCommon {

class DeviceHandler;

/// A box to choose a device of a handler from, of one sub system or of all. The choice can be tied to a text value of
/// the tree, in both directions.
///
/// There is a choice whenever there are devices: where the one that is wanted is not, or is of another sub system than
/// the one that is chosen, it is the first. GUI thread.
class ZELKOGUIBASE_EXPORT DeviceCombo : public QComboBox, public IObserver
{
    Q_OBJECT

public:
    /// `handler` is not owned; without one the box stays empty. `subSystem` is the one whose devices are shown, all for
    /// an empty one, and that of the device that is chosen at first.
    DeviceCombo(QWidget* parent, DeviceHandler* handler, const QString& device, const QString& subSystem);
    ~DeviceCombo() override;

    /// Ties the choice to the value at `path`, and chooses what it says. False if there is none; then the choice is
    /// tied to nothing.
    bool SetDevice_ValuePath(const QString& path);

    /// While the device replays or records no other one is chosen. Of these two whatever was called last holds.
    /// @{
    void SetReplayOn(bool on);
    void SetRecordingOn(bool on);
    /// @}

    /// Both empty when there is none.
    const QString& GetSelectedDevice() const { return m_selectedDevice; }
    const QString& GetSelectedSubsystem() const { return m_selectedSubsystem; }

    void Update(Observable* source, TChangeCode code) override;

    /// Empties the list. Hides that of QComboBox, which knows nothing of the devices.
    virtual void clear();

Q_SIGNALS:
    /// Another device is chosen; both texts are empty when none is.
    void signalItemChanged(const QString& device, const QString& subSystem);

protected:
    /// Chooses a device of the sub system that is chosen, otherwise the first of the list.
    virtual void SetDeviceId(const QString& device);

    /// Reads the list from the handler anew. The choice is whatever comes of that: see slotUpdateDeviceList.
    void FillDeviceList();

    /// The place of a device of the sub system that is chosen; -1: it is not in the list.
    int GetIndex(const QString& device) const;

protected Q_SLOTS:
    /// Takes over what is chosen in the list. -1: nothing.
    void slotDeviceSelected(int index);
    void slotUpdateDeviceList();

private:
    bool isListed(int index) const;
    void setSelected(const QString& device, const QString& subSystem);

    QString m_selectedDevice;
    QString m_selectedSubsystem;
    const QString m_filterSubsystem;
    bool m_replayOn = false;
    bool m_recordingOn = false;
    const QPointer<DeviceHandler> m_handler;
    std::vector<std::pair<QString, QString>> m_devices; ///< with their sub systems, in the order of the items
    ValueObservingPtr<Value<QString>> m_deviceValue{this};
};

} // namespace ZelkoCommon
