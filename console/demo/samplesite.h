#pragma once

#include <console/session/session.h>

#include <zelkobase/data/zelko_recorddata.h>

#include <QHash>

namespace zelko::recordmap {
class RecordItemMap;
}

namespace ZelkoConsole {

/// A session without a network: what it says is set, and the devices are put on the client's tree by hand. For pictures
/// and tests.
class SampleSite : public Session
{
    Q_OBJECT

public:
    using Record = ZELKO_XML::ZELKO_RecordData;
    using RecordPtr = std::shared_ptr<Record>;

    explicit SampleSite(const QStringList& subSystems, QObject* parent = nullptr);

    /// Takes the branches of its sub systems from the tree.
    ~SampleSite() override;

    QStringList subSystems() const override { return m_names; }
    SubSystemStatus status(const QString& subSystem) const override { return m_status.value(subSystem); }

    void setStatus(const QString& subSystem, const SubSystemStatus& status);

    /// Connects; the branch is put there before by `addDevice`.
    void connectTo(const QString& subSystem) { setStatus(subSystem, {LinkState::Connected, {}}); }

    /// What happens when a recorder dies: its branch goes, then the state changes.
    void lose(const QString& subSystem, const QString& reason);

    /// A device with all its values, an empty list and nothing more to load.
    void addDevice(const QString& subSystem, const QString& device, bool available = true);
    void removeDevice(const QString& subSystem, const QString& device);

    void setAvailable(const QString& subSystem, const QString& device, bool available);
    /// What the device says about its first load.
    void setLoad(const QString& subSystem, const QString& device, int loadCount, bool complete);

    void setRecord(const QString& subSystem, const QString& device, const RecordPtr& record);
    void eraseRecord(const QString& subSystem, const QString& device, const QString& id);
    void clearRecords(const QString& subSystem, const QString& device);

private:
    const QStringList m_names;
    QHash<QString, SubSystemStatus> m_status;
};

/// A record as a recorder makes it; the times are microseconds, the frequency hertz.
SampleSite::RecordPtr sampleRecord(const QString& id, const QString& name, SampleSite::Record::RecordStatus status,
                                   quint64 start, quint64 duration, quint64 frequency);

} // namespace ZelkoConsole
