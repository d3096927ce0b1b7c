#pragma once

#include <zelkobase/service/zelkobaseservice_export.h>

#include <QString>

#include <memory>

namespace ZelkoGUI {

class ZelkoGuiToServerCorbaHandler;

/// Has a recorder write records out.
///
/// Each operation asks the recorder and waits for the answer, at most the limit of the connection; nothing throws. GUI
/// thread only.
class ZELKOBASESERVICE_EXPORT GuiToServerExportCorbaHandler
{
public:
    /// A null `server` is allowed: every operation then returns ServiceStatus::NotConfigured.
    explicit GuiToServerExportCorbaHandler(std::shared_ptr<ZelkoGuiToServerCorbaHandler> server);
    ~GuiToServerExportCorbaHandler();

    /// Whether the service is found. Blocks if it was not asked before, or was lost since.
    bool connected() const;

    /// Begins to write a record to `target`, a path as the recorder understands it. Gives the ID of the export, empty
    /// on failure.
    QString exportRecord(const QString& device, const QString& record, const QString& target);

    /// The same; the service has one operation for both.
    QString exportRecordEx(const QString& device, const QString& record, const QString& target);

    /// Ends an export, and with `removeTarget` takes away what it has written. False on failure.
    bool cancelExport(const QString& exportID, bool removeTarget);

    /// Status of the last operation: 0, or a ZelkoCommon::ServiceStatus.
    unsigned long lastError() const;

    /// Its text, with what the recorder itself said about it; empty when there was no error.
    QString lastErrorText() const;

private:
    struct Private;
    const std::unique_ptr<Private> d;
};

} // namespace ZelkoGUI
