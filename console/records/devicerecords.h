#pragma once

#include <QObject>
#include <QString>

#include <memory>

namespace ZelkoGUI {
class RecordItemMapModel;
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

/// Follows the records of one device on the client's tree: waits until they stand there, and again after they went.
///
/// The model is empty while nothing is connected. Somebody else may connect it too, if only to the same device. GUI
/// thread.
class DeviceRecords : public QObject
{
    Q_OBJECT

public:
    /// `model` gets the records; it outlives this object.
    explicit DeviceRecords(ZelkoGUI::RecordItemMapModel* model, QObject* parent = nullptr);
    ~DeviceRecords() override;

    /// Lets go of the device before and follows the one whose branch stands, or will stand, at `devicePath`; none for
    /// an empty path. The same path again changes nothing.
    void follow(const QString& devicePath);

    const QString& devicePath() const;

    /// Whether the map, the load count and the sign of completeness are found.
    bool isConnected() const;

    /// Whether the device says that all its records are here. Not while rows that went all at once are on their way
    /// back.
    bool isComplete() const;

    LoadProgress progress() const;

    ZelkoGUI::RecordItemMapModel* model() const;

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
