#pragma once

#include <zelkobase/data/admin.h>

#include <QString>

namespace ZelkoConsole {

/// A channel as a recorder serves it, on the client's tree of a site of samples: stopped, may record and replay. Goes
/// with the branch of its sub system.
class SampleChannel
{
public:
    using Recording = ZELKO_XML::Admin::RecordReplayAllModes;
    using Replay = ZELKO_XML::Admin::RecordReplayMode;

    SampleChannel(const QString& subSystem, const QString& id, const QString& name);

    /// @name What the recorder says of it
    /// @{
    void setRecording(Recording state) const;
    void setReplay(Replay state) const;
    void setError(const QString& error) const;
    void setMayRecord(bool may) const;
    void setMayReplay(bool may) const;
    void setPosition(quint64 position) const; ///< microseconds since the epoch
    void setRecordName(const QString& name) const;
    void setRecordTimeout(int seconds) const;
    void setFileSizeInKB(int size) const;
    /// @}

    /// @name What stands there, whoever wrote it
    /// @{
    Recording recording() const;
    Replay replay() const;
    quint64 position() const;
    QString device() const;
    QString record() const;
    QString recordName() const;
    int recordTimeout() const;
    int fileSizeInKB() const;
    /// @}

    /// Takes it off the tree.
    void remove() const;

private:
    template <typename T>
    T& value(QLatin1String name) const;
    template <typename T>
    void put(std::initializer_list<QLatin1String> valueNames) const;

    QString m_path;
};

} // namespace ZelkoConsole
