#pragma once

#include <credentials/role.h>
#include <zelkobase/connection/linkoptions.h>
#include <zelkobase/connection/zelkobaseconnection_export.h>
#include <zelkobase/connection/zelkoconfiguration.h>

#include <QObject>
#include <QString>

#include <memory>
#include <optional>

class IVtClient;
class Tree;

namespace ZelkoCommon {

class Orb;

/// Keeps the branch of one sub system on a local tree in step with its recorder server, for as long as it lives:
/// connects, connects again when the connection is lost, and carries writes the other way.
///
/// Lives on the thread of the tree. Everything that can block runs on a thread of its own; the ORB's threads only put
/// bytes into a queue.
///
/// Slots of its signals and observers of the tree must not destroy it; `deleteLater` is for them. While one of them
/// runs an event loop of its own, changes wait.
class ZELKOBASECONNECTION_EXPORT TreeLink : public QObject
{
    Q_OBJECT

public:
    /// Begins to connect. `orb` and `tree` outlive the link.
    TreeLink(Orb& orb, Tree* tree, const ZelkoConfiguration::SubSystem& subSystem, const LinkOptions& options,
             QObject* parent = nullptr);

    /// Detaches from the server and takes the branch out of the tree, without signals. Waits for a call that is under
    /// way, at most its timeout.
    ~TreeLink() override;

    /// Begins what the destructor does and waits for nothing: whoever destroys several links stops them all first, so
    /// that they wait at the same time. No signal and no change comes any more. Only the destructor may follow.
    void stop();

    const QString& subSystem() const;

    /// True from `connected()` to `disconnected()`.
    bool isConnected() const;

    /// The writing end; null while not connected. Writes of an old one, kept beyond its connection, go nowhere.
    std::shared_ptr<IVtClient> client() const;

    /// For whom the client acts from now on, in place of what the sub system or the options say. A connection of
    /// somebody else ends, when what was written is sent, and one for this user follows at once. Nothing for the user
    /// who it is already.
    void setCredentials(const LinkCredentials& credentials);

    /// What the server takes the user for; nothing while not connected, or connected for another user still.
    std::optional<Role> role() const;

    /// Why there is no connection, for people; empty while there is one, before the first attempt has failed, and after
    /// somebody else was named in place of a user who was not admitted.
    QString lastError() const;

    /// Whether the last attempt failed because the server does not admit the user who it is now. Others follow, with
    /// longer pauses.
    bool isDenied() const;

Q_SIGNALS:
    /// Once per connection: everything that the server has stands in the tree, its plain values up to date.
    void connected();
    /// Once per lost connection, when the branch is gone from the tree.
    void disconnected();
    /// An attempt to connect failed; the next one follows by itself. Not where a user was not admitted who has been
    /// replaced meanwhile.
    void connectFailed(const QString& reason);
    /// The server refused a write, for which another user may have the right. The value comes back as the server has
    /// it.
    void writeRefused(const QString& reason);
    /// A write did not leave this client, whoever the user is: it is too large, or the server has not taken yet what
    /// was written before it. The value comes back as the server has it.
    void writeNotSent(const QString& reason);
    /// A node came into the tree, with its full path.
    void nodeCreated(const QString& path);

private:
    struct Private;
    const std::unique_ptr<Private> d;
};

} // namespace ZelkoCommon
