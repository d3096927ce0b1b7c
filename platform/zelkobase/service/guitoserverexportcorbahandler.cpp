#include <zelkobase/service/guitoserverexportcorbahandler.h>

#include <zelkobase/orb/corbatext.h>
#include <zelkobase/service/recorderservice.h>
#include <zelkobase/service/zelkoguitoservercorbahandler.h>

namespace ZelkoGUI {

using namespace ZelkoCommon;

struct GuiToServerExportCorbaHandler::Private
{
    std::shared_ptr<ZelkoGuiToServerCorbaHandler> server;
    unsigned long lastError = 0;
    QString lastErrorText;

    bool ask(const RecorderService::Call& call);
};

bool GuiToServerExportCorbaHandler::Private::ask(const RecorderService::Call& call)
{
    lastError = server ? server->service().ask(call) : statusCode(ServiceStatus::NotConfigured);
    lastErrorText = server ? server->lastErrorText() : serviceStatusText(lastError);
    return lastError == 0;
}

GuiToServerExportCorbaHandler::GuiToServerExportCorbaHandler(std::shared_ptr<ZelkoGuiToServerCorbaHandler> server)
    : d(std::make_unique<Private>())
{
    d->server = std::move(server);
}

GuiToServerExportCorbaHandler::~GuiToServerExportCorbaHandler() = default;

bool GuiToServerExportCorbaHandler::connected() const
{
    return d->server && d->server->service().connect() == 0;
}

QString GuiToServerExportCorbaHandler::exportRecord(const QString& device, const QString& record, const QString& target)
{
    CORBA::String_var exportId;
    const bool good = d->ask([&](QD_ZLK::IF_ZLK_c_ZLK_ptr root) {
        exportId = root->exportRecording(toCorba(device), toCorba(record), toCorba(target));
        return statusCode(ServiceStatus::None);
    });
    return good ? fromCorba(exportId.in()) : QString();
}

QString GuiToServerExportCorbaHandler::exportRecordEx(const QString& device, const QString& record,
                                                      const QString& target)
{
    return exportRecord(device, record, target);
}

bool GuiToServerExportCorbaHandler::cancelExport(const QString& exportID, bool removeTarget)
{
    return d->ask([&](QD_ZLK::IF_ZLK_c_ZLK_ptr root) {
        root->cancelExport(toCorba(exportID), removeTarget);
        return statusCode(ServiceStatus::None);
    });
}

unsigned long GuiToServerExportCorbaHandler::lastError() const
{
    return d->lastError;
}

QString GuiToServerExportCorbaHandler::lastErrorText() const
{
    return d->lastErrorText;
}

} // namespace ZelkoGUI
