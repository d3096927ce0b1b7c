#pragma once

#include <console/session/session.h>

#include <zelkobase/data/zelko_recorddata.h>

#include <QHash>

namespace zelko::recordmap {
class RecordItemMap;
}

namespace ZelkoConsole {

class SampleConnection;

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
    std::shared_ptr<ZelkoCommon::AbstractServerConnectionData> connectionData() const override;
    const std::vector<KnownUser>& knownUsers() const override { return m_users; }
    void actFor(const ZelkoCommon::LinkCredentials& user) override;
    std::optional<ZelkoCommon::Role> role(const QString& subSystem) const override;

    /// As a recorder of the console's own has them: "viewer", "operator" and "administrator". Before anybody asks.
    void knowUsers();

    /// What the recorder of a sub system takes the user for; nothing at first.
    void setRole(const QString& subSystem, ZelkoCommon::Role role) { m_roles.insert(subSystem, role); }

    /// For whom the site acts: who was last asked for.
    const ZelkoCommon::LinkCredentials& actsFor() const { return m_actsFor; }

    void setStatus(const QString& subSystem, const SubSystemStatus& status);

    /// Connects; the branch is put there before by `addDevice`.
    void connectTo(const QString& subSystem) { setStatus(subSystem, {LinkState::Connected, {}}); }

    /// What happens when a recorder dies: its branch goes, then the state changes.
    void lose(const QString& subSystem, const QString& reason);

    /// A device with all its values and commands, an empty list and nothing more to load.
    void addDevice(const QString& subSystem, const QString& device, bool available = true);
    void removeDevice(const QString& subSystem, const QString& device);

    void setAvailable(const QString& subSystem, const QString& device, bool available);
    /// What the device says about its first load.
    void setLoad(const QString& subSystem, const QString& device, int loadCount, bool complete);

    void setRecord(const QString& subSystem, const QString& device, const RecordPtr& record);
    void eraseRecord(const QString& subSystem, const QString& device, const QString& id);
    void clearRecords(const QString& subSystem, const QString& device);

    /// What was last written to a command of the device, one whose value is a text.
    QString command(const QString& subSystem, const QString& device, QLatin1String name) const;

private:
    const QStringList m_names;
    const std::shared_ptr<SampleConnection> m_connection;
    std::vector<KnownUser> m_users;
    QHash<QString, ZelkoCommon::Role> m_roles;
    ZelkoCommon::LinkCredentials m_actsFor;
    QHash<QString, SubSystemStatus> m_status;
};

/// A record as a recorder makes it; the times are microseconds, the frequency hertz.
SampleSite::RecordPtr sampleRecord(const QString& id, const QString& name, SampleSite::Record::RecordStatus status,
                                   quint64 start, quint64 duration, quint64 frequency);

} // namespace ZelkoConsole
