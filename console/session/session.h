#pragma once

#include <console/session/subsystemstatus.h>

#include <QObject>
#include <QStringList>

namespace ZelkoConsole {

/// The sub systems that the console works with and how far each one is reachable. What they have stands on the client's
/// tree. GUI thread.
class Session : public QObject
{
    Q_OBJECT

public:
    explicit Session(QObject* parent = nullptr);
    ~Session() override;

    /// Names, in the order of the site; the same for as long as the session lives.
    virtual QStringList subSystems() const = 0;

    /// `Connecting` for a name that is not there.
    virtual SubSystemStatus status(const QString& subSystem) const = 0;

Q_SIGNALS:
    /// `status` of the sub system gives something else than before.
    void statusChanged(const QString& subSystem);
};

} // namespace ZelkoConsole
