#pragma once

#include <recorder/store/recordpointer.h>

#include <QStringList>

#include <cstddef>
#include <optional>

class Tree;

namespace zelko::recordmap {
class RecordItemMap;
}

namespace ZelkoRecorder {

/// Looks up on the recorder's tree what it serves. The thread of the tree.
class DeviceDirectory
{
public:
    /// What a device is about. The numbers are those that the service tells.
    enum class DeviceState { NotAvailable = 0, Loading = 1, Ready = 2 };

    /// `tree` outlives the directory and has the branches of these devices.
    DeviceDirectory(const Tree& tree, const QStringList& devices);

    /// In alphabetical order.
    const QStringList& devices() const { return m_devices; }
    bool contains(const QString& device) const { return m_devices.contains(device); }

    /// Where the device is reached; empty for a device that is none.
    QString address(const QString& device) const;

    /// The first device at this address; empty when there is none.
    QString deviceAt(const QString& address) const;

    DeviceState state(const QString& device) const;

    /// Null for a device or a record that is none.
    RecordPointer record(const QString& device, const QString& recordID) const;

    /// Some of the records of a device, in no order: whoever wants one makes it on a thread of his own. `next` is where
    /// the next ones stand, nothing behind the last ones.
    struct Records
    {
        /// A place in the map of the device as it is laid out.
        struct Place
        {
            std::size_t bucket = 0;
            std::size_t bucketCount = 0;
        };

        RecordPointers records;
        std::optional<Place> next;
        bool isFromTheBeginning = true; ///< all that was given before is void, for the map was laid out afresh
    };

    /// About `atOnce` of them from a place on; without one from the first. A list that is taken like this has every
    /// record once that was there all the time. Empty for a device that is none.
    Records records(const QString& device, std::size_t atOnce, const std::optional<Records::Place>& from = {}) const;

private:
    const zelko::recordmap::RecordItemMap* map(const QString& device) const;

    const Tree& m_tree;
    QStringList m_devices;
};

} // namespace ZelkoRecorder
