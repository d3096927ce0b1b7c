// Prints the devices of a site's recorder and what becomes of its first channel; records on it if asked to.
//
//     channels SITE [NAME SECONDS]
//
// SITE is a site file; zelkoconfiguration.h has what stands in it. With NAME the first device records what the channel
// has for so long, under that name, and the program ends when the recording has.
#include <valuecore/node.h>
#include <valuecore/nodeptr.h>
#include <valuecore/tree.h>
#include <valuecore/valuetypes.h>
#include <zelkobase/connection/serverconnectiondata.h>
#include <zelkobase/connection/zelkoconfiguration.h>
#include <zelkobase/names/valuenames.h>
#include <zelkobase/orb/orb.h>
#include <zelkobase/state/localzelkovalues.h>
#include <zelkoguibase/state/zelkochannelmodel.h>
#include <zelkoguibase/state/zelkodevicemodel.h>

#include <QCoreApplication>
#include <QTextStream>
#include <QTimer>

using namespace ZelkoCommon;
using ZelkoGUI::ZelkoChannelModel;
using ZelkoGUI::ZelkoDeviceModel;

namespace {

void say(const QString& text)
{
    QTextStream(stdout) << text << Qt::endl;
}

// Which channel the workstation works on is a value of its own, on the client's tree: whoever sets it chooses.
Value<QString>& makeChannelId(const LocalZelkoValues& local)
{
    return *Tree::Instance()->Emplace(zelko::names::localValuesPath(local.basePath()),
                                      std::make_unique<Value<QString>>(QStringLiteral("ChannelID")));
}

// ID of the first channel that the recorder serves; empty if there is none.
QString firstChannel(const LocalZelkoValues& local)
{
    NodePtr channels;
    const bool isServed = channels.GetFromTree(local.basePath() + zelko::names::zelkoChannel);
    return isServed && !channels->GetTreeItems().empty() ? channels->GetTreeItems().front()->GetName() : QString();
}

QString stateText(ZelkoGlobal::ChannelAvailableState state)
{
    switch (state) {
    case ZelkoGlobal::ChannelReady:
        return QStringLiteral("the channel is ready");
    case ZelkoGlobal::ChannelRecordFlagOff:
        return QStringLiteral("the channel may not record");
    case ZelkoGlobal::ChannelNotSet:
        return QStringLiteral("no channel is chosen");
    case ZelkoGlobal::ChannelValuesMissing:
        return QStringLiteral("the channel has gone");
    case ZelkoGlobal::ChannelDisconnected:
        return QStringLiteral("there is no connection");
    }
    return QString();
}

void sayStates(const ZelkoDeviceModel& devices, const ZelkoChannelModel& channel)
{
    QObject::connect(
        &devices, qOverload<const QStringList&>(&ZelkoDeviceModel::devicesRefreshed),
        [](const QStringList& ids) { say(QStringLiteral("devices: %1").arg(ids.join(QStringLiteral(", ")))); });
    QObject::connect(&channel, &ZelkoChannelModel::si_availableChannelState,
                     [](ZelkoGlobal::ChannelAvailableState state) { say(stateText(state)); });
    QObject::connect(&channel, &ZelkoChannelModel::si_recordingNormal, [] { say(QStringLiteral("recording")); });
    QObject::connect(&channel, &ZelkoChannelModel::si_recordingStopped, [] { say(QStringLiteral("stopped")); });
    QObject::connect(&channel, &ZelkoChannelModel::si_errorCode, [](const QString& text) { say(text); });
}

// Both are there before anything can be recorded, in whichever order they come: a device to record on, and a channel.
void recordOnce(ZelkoDeviceModel& devices, ZelkoChannelModel& channel, const QString& name, int seconds)
{
    auto* const start = new QTimer(&channel);
    QObject::connect(start, &QTimer::timeout, &channel, [&devices, &channel, start, name] {
        if (devices.isReady() && channel.isReady()) {
            start->stop();
            channel.setDeviceID(devices.currentDevice());
            channel.setRecordingName(name);
            channel.startRecording();
        }
    });
    QObject::connect(&channel, &ZelkoChannelModel::si_recordingNormal, &channel, [&channel, seconds] {
        QTimer::singleShot(std::chrono::seconds(seconds), &channel, &ZelkoChannelModel::stopRecording);
        QObject::connect(&channel, &ZelkoChannelModel::si_recordingStopped, qApp, &QCoreApplication::quit);
    });
    start->start(100);
}

} // namespace

int main(int argc, char** argv)
{
    const QCoreApplication application(argc, argv);
    const QStringList arguments = QCoreApplication::arguments();
    QString error;
    const auto site = ZelkoConfiguration::fromFile(arguments.value(1), &error);
    if (!site) {
        say(error);
        return 2;
    }
    Orb orb{OrbOptions{}};
    const auto connection =
        std::make_shared<ServerConnectionData>(orb, Tree::Instance(), std::make_shared<ZelkoConfiguration>(*site));
    const LocalZelkoValues local(site->GetCurrentSubSystem());
    Value<QString>& channelId = makeChannelId(local);

    ZelkoDeviceModel devices(connection);
    ZelkoChannelModel channel(local, channelId.GetPathName(), connection);
    sayStates(devices, channel);
    QObject::connect(connection.get(), &ServerConnectionData::si_allTicsConnected, &channel, [&] {
        channelId.SetValue(firstChannel(local), nullptr);
        channel.resetChannel(QString()); // after a lost connection it is the same one, and has to be looked for again
    });
    if (arguments.size() > 3) {
        recordOnce(devices, channel, arguments[2], arguments[3].toInt());
    }
    return QCoreApplication::exec();
}
