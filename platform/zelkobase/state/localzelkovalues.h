#pragma once

#include <valuecore/valueptr.h>
#include <valuecore/valueselection.h>
#include <valuecore/valuetypes.h>
#include <zelkobase/state/zelkobasestate_export.h>

#include <QString>

namespace ZelkoCommon {

/// The values of the workstation itself for one of its sub systems: what it works on, and what it knows of its
/// connection. They belong to no server and stand on the client's own tree, below "/ZELKO/Local", also while the sub
/// system is not connected.
///
/// GUI thread.
class ZELKOBASESTATE_EXPORT LocalZelkoValues
{
public:
    /// Puts those values on Tree::Instance() that are not there yet: texts are empty at first, the moment is 0, the
    /// connection is none. They stay when this object goes, and another one of the same sub system has the same ones.
    explicit LocalZelkoValues(const QString& subSystem);

    const QString& subSystem() const { return m_subSystem; }

    /// The root path of the sub system, below which its channels stand.
    QString basePath() const;

    /// @name The values; null once somebody has taken one off the tree
    /// @{
    /// ID of the device that the user works on.
    const ValuePtr<Value<QString>>& valueDeviceId() const { return m_deviceId; }
    /// IDs of the devices that can be used, joined with "@".
    const ValuePtr<Value<QString>>& valueAvailableDevices() const { return m_availableDevices; }
    /// A CorbaCommon::ccoConnectionStates.
    const ValuePtr<ValueSelection>& valueCCOConnectionState() const { return m_connectionState; }
    /// What came of connecting, for people.
    const ValuePtr<Value<QString>>& valueCCOConnectionResult() const { return m_connectionResult; }
    /// Which moment of a recording the waterfall shows, in microseconds since the epoch.
    const ValuePtr<Value<double>>& valueWaterfallTimestamp() const { return m_waterfallTimestamp; }
    /// @}

private:
    const QString m_subSystem;
    ValuePtr<Value<QString>> m_deviceId;
    ValuePtr<Value<QString>> m_availableDevices;
    ValuePtr<ValueSelection> m_connectionState;
    ValuePtr<Value<QString>> m_connectionResult;
    ValuePtr<Value<double>> m_waterfallTimestamp;
};

} // namespace ZelkoCommon
