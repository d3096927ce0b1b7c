#pragma once

#include <zelkoguibase/zelkoguibase_export.h>

#include <QObject>

namespace ZelkoGUI {

/// The queue of file transfers between a device and a local archive, as far as the record controllers know it: whether
/// transfers are possible changes with the device and the folder at its two ends. GUI thread only.
class ZELKOGUIBASE_EXPORT AbstractTransferScheduler : public QObject
{
    Q_OBJECT

public:
    ~AbstractTransferScheduler() override;

Q_SIGNALS:
    /// Whether transfers are possible was looked at again. May come with the same answer as before.
    void si_transferAvailable(bool available);

protected:
    explicit AbstractTransferScheduler(QObject* parent = nullptr);
};

} // namespace ZelkoGUI
