#include <zelkobase/service/zelkoguitoservercorbahandler.h>

#include <zelkobase/connection/zelkoconfiguration.h>
#include <zelkobase/service/recorderservice.h>

#include <QObject>

namespace ZelkoGUI {

using ZelkoCommon::AbstractServerConnectionData;
using ZelkoCommon::ServiceAddress;

struct ZelkoGuiToServerCorbaHandler::Private
{
    QString subSystem;
    std::shared_ptr<AbstractServerConnectionData> connectionData;
    QString reference;
    ZelkoCommon::RecorderService service{[this] { return address(); }};
    QObject context; // its connections end first

    QString currentSubSystem() const;
    ServiceAddress address() const;
    void followLink();
};

QString ZelkoGuiToServerCorbaHandler::Private::currentSubSystem() const
{
    if (!subSystem.isEmpty() || !connectionData) {
        return subSystem;
    }
    const auto configuration = connectionData->GetConfiguration();
    return configuration ? configuration->GetCurrentSubSystem() : QString();
}

ServiceAddress ZelkoGuiToServerCorbaHandler::Private::address() const
{
    if (!reference.isEmpty()) {
        return {reference, {}, 0};
    }
    const auto configuration = connectionData ? connectionData->GetConfiguration() : nullptr;
    const auto* const found = configuration ? configuration->Find(currentSubSystem()) : nullptr;
    return found ? ServiceAddress{found->service, found->host, found->port} : ServiceAddress();
}

// The link sees the end of a recorder before anybody asks its service again.
void ZelkoGuiToServerCorbaHandler::Private::followLink()
{
    if (connectionData) {
        QObject::connect(connectionData.get(), &AbstractServerConnectionData::si_allTicsDisconnected, &context,
                         [this](const QString& lost) {
                             if (lost == currentSubSystem()) {
                                 service.forget();
                             }
                         });
    }
}

ZelkoGuiToServerCorbaHandler::ZelkoGuiToServerCorbaHandler(const QString& subSystem,
                                                           std::shared_ptr<AbstractServerConnectionData> connectionData,
                                                           const QString& service)
    : d(std::make_unique<Private>())
{
    d->subSystem = subSystem;
    d->connectionData = std::move(connectionData);
    d->reference = service;
    d->followLink();
    if (const auto configuration = d->connectionData ? d->connectionData->GetConfiguration() : nullptr) {
        setLimit(configuration->AnswerLimit());
    }
}

ZelkoGuiToServerCorbaHandler::ZelkoGuiToServerCorbaHandler(std::shared_ptr<AbstractServerConnectionData> connectionData)
    : ZelkoGuiToServerCorbaHandler({}, std::move(connectionData), {})
{}

ZelkoGuiToServerCorbaHandler::~ZelkoGuiToServerCorbaHandler() = default;

std::shared_ptr<AbstractServerConnectionData> ZelkoGuiToServerCorbaHandler::GetServerConnectionData() const
{
    return d->connectionData;
}

QString ZelkoGuiToServerCorbaHandler::GetCurrentSubsystem() const
{
    return d->currentSubSystem();
}

bool ZelkoGuiToServerCorbaHandler::IsConnected() const
{
    return d->connectionData && d->connectionData->isConnected(d->currentSubSystem());
}

void ZelkoGuiToServerCorbaHandler::setLimit(std::chrono::milliseconds limit)
{
    d->service.setLimit(limit);
}

std::chrono::milliseconds ZelkoGuiToServerCorbaHandler::limit() const
{
    return d->service.limit();
}

QString ZelkoGuiToServerCorbaHandler::lastErrorText() const
{
    return d->service.lastErrorText();
}

ZelkoCommon::RecorderService& ZelkoGuiToServerCorbaHandler::service() const
{
    return d->service;
}

} // namespace ZelkoGUI
