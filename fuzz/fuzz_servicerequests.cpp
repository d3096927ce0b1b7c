// Calls of the recorder's service with any arguments, as they come from the network: each ends with an answer or the
// end of its connection, and the recorder goes on, channels and their managers included. ServiceScript says what the
// bytes mean.
#include "rawgiop.h"
#include "require.h"
#include "servicecaller.h"
#include "servicemanagers.h"
#include "servicerecorder.h"
#include "servicescript.h"

#include <omniORB4/omniORB.h>

#include <string>
#include <vector>

#include <fcntl.h>
#include <unistd.h>

using namespace ZelkoRecorder;

namespace {

ServiceHost::Options hostOptions()
{
    ServiceHost::Options options;
    options.channels.channel.callLimit = std::chrono::milliseconds(5); // for managers that say nothing
    options.channels.channel.pingInterval = std::chrono::milliseconds(5);
    options.channels.farewell = std::chrono::milliseconds(5);
    return options;
}

/// A folder for exports, with a path that is the same in each run: so it can stand in what is kept of runs.
class ExportTarget
{
public:
    ExportTarget()
    {
        const int opened = ::open(QFile::encodeName(m_folder.path()).constData(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
        require(opened >= 0 && ::dup3(opened, descriptor, O_CLOEXEC) == descriptor);
        ::close(opened);
    }

    static QString path() { return QStringLiteral("/proc/self/fd/%1").arg(descriptor); }

    /// Removes what was exported.
    void clear() const
    {
        const QDir folder(m_folder.path());
        for (const QString& name : folder.entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot)) {
            QDir(folder.filePath(name)).removeRecursively();
        }
    }

private:
    static constexpr int descriptor = 500;
    const QTemporaryDir m_folder;
};

/// A recorder with one record, and whoever calls it.
class Site
{
public:
    Site()
    {
        omniORB::traceLevel = 0;
        qInstallMessageHandler([](QtMsgType, const QMessageLogContext&, const QString&) {});
        while (!m_recorder.isLoaded()) {
            QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
        }
    }

    /// Makes the calls, and leaves the recorder without a channel. Now and then it gets a new service, with a fresh
    /// record, and what was exported goes.
    void play(ServiceScript script)
    {
        while (const auto call = script.next()) {
            make(*call);
        }
        if (++m_plays % playsOfService == 0) {
            m_recorder.host.reset();
            m_recorder.serve();
            restoreRecords();
            m_exports.clear();
        } else {
            removeChannels();
        }
        m_channels.clear();
        m_managers.clear();
    }

private:
    static constexpr int playsOfService = 64;

    void make(const ServiceScript::Call& call)
    {
        const ServiceScript::Operation& operation = call.operation;
        const QByteArray key =
            operation.key ? QByteArray(operation.key) : QByteArray(channelKey(lastChannel()).c_str());
        const QByteArray manager = operation.takesManager ? m_managers.reference(call.manager) : QByteArray();
        noteChannel(m_caller.call(giop::requestMessage(key, {operation.name, manager + call.arguments})));
    }

    // A reference to a channel has its key as it is.
    void noteChannel(const QByteArray& answer)
    {
        constexpr qsizetype idSize = 36;
        const std::string prefix = channelKey({});
        const qsizetype begin = answer.indexOf(prefix.c_str());
        if (begin >= 0) {
            m_channels.push_back(answer.mid(begin + static_cast<qsizetype>(prefix.size()), idSize).toStdString());
        }
    }

    // Calls are to the channel that was named last, which may be gone.
    std::string lastChannel() const { return m_channels.empty() ? std::string("nobody") : m_channels.back(); }

    // Whatever their managers do, they go.
    void removeChannels()
    {
        ChannelRegistry& registry = m_recorder.host->channels();
        for (const std::string& id : m_channels) {
            if (Channel* const channel = registry.find(QString::fromStdString(id))) {
                channel->removeForced();
            }
        }
        while (registry.count() > 0) {
            QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
        }
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    }

    static void storeTheRecord(const QString& folder)
    {
        ZelkoTest::storeRecord(folder, ZelkoTest::finishedRecord(QStringLiteral("r1")), 4000);
    }

    // Comments were added to it, and copies made of it, some of which may show only now.
    void restoreRecords()
    {
        const QString folder = m_recorder.deviceFolder(device());
        while (!values().ids().isEmpty()) {
            for (const QString& id : values().ids()) {
                QDir(folder + QLatin1Char('/') + id).removeRecursively();
            }
            synchronize();
        }
        storeTheRecord(folder);
        while (values().ids().isEmpty()) {
            synchronize();
        }
    }
    void synchronize()
    {
        values().command<Value<bool>>("Synchronize")->HasChanged(TChangeCode::ValueChanged, nullptr);
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
    }
    static QString device() { return QStringLiteral("D1"); }
    ZelkoTest::RecorderValues values() { return m_recorder.values(device()); }

    int m_argc = 0;
    QCoreApplication m_application{m_argc, nullptr};
    ExportTarget m_exports;
    ZelkoTest::ServiceRecorder m_recorder{storeTheRecord, hostOptions(), {m_exports.path()}};
    ServiceManagers m_managers{m_recorder.orb};
    ServiceCaller m_caller{m_recorder.orb.port()};
    std::vector<std::string> m_channels; // of this play
    int m_plays = 0;
};

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    static Site* const site = new Site; // ends with the process
    site->play(ServiceScript({reinterpret_cast<const char*>(data), size}));
    return 0;
}
