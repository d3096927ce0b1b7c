#pragma once

#include <QObject>

#include <memory>

namespace ZelkoGUI {
class ZelkoServerGUIController;
}

namespace ZelkoConsole {

/// How far the first load of a list is.
struct LoadProgress
{
    int count = 0; ///< records that are here
    int total = 0; ///< records that will be; 0 when nothing is being loaded, or nothing is known

    bool isLoading() const { return total > 0; }
    bool operator==(const LoadProgress&) const = default;
};

/// Whether the records of a controller's device are here: what the controller knows of the device, with the rows of its
/// list that went all at once and are on their way back. GUI thread.
class DeviceRecords : public QObject
{
    Q_OBJECT

public:
    using Controller = ZelkoGUI::ZelkoServerGUIController;

    /// `controller` outlives this object, or goes while nothing is asked of it any more.
    explicit DeviceRecords(const Controller* controller, QObject* parent = nullptr);
    ~DeviceRecords() override;

    /// Whether the controller has all that it needs of its device.
    bool isConnected() const;

    /// Whether the device says that all its records are here. Not while rows that went all at once are on their way
    /// back.
    bool isComplete() const;

    /// Nothing is being loaded while nothing is connected.
    LoadProgress progress() const;

Q_SIGNALS:
    /// `isConnected()` changed.
    void connectionChanged();

    /// `progress()` or `isComplete()` may have changed; with each batch of rows.
    void progressChanged();

private:
    struct Private;
    const std::unique_ptr<Private> d;
};

} // namespace ZelkoConsole
