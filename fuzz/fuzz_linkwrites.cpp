// What a client writes on the tree link, through the recorder's server. A batch that does not parse changes nothing;
// one that does changes nothing that is locked, and each value that it leaves can be given to another client. The first
// byte says whether the rest is a script or the batch itself.
#include "framescript.h"
#include "require.h"
#include "treedigest.h"

#include <recorder/link/treelinkserver.h>

#include <valuecore/tree.h>
#include <valuecore/valuefactory.h>
#include <valuecore/valuetypes.h>
#include <zelkobase/maps/itemmaptypes.h>
#include <zelkobase/orb/orb.h>
#include <zelkobase/stringmap/stringitemmap.h>
#include <zelkoidl/treelink.hh>

#include <QCoreApplication>
#include <QEventLoop>
#include <QScopeGuard>

#include <future>

namespace {

/// The client's end, where nobody looks at what comes.
class Deaf final : public POA_ZelkoTreeLink::Subscriber, public PortableServer::RefCountServantBase
{
public:
    void deliver(ZelkoTreeLink::SessionId, CORBA::ULong, const ZelkoTreeLink::Batch&, ZelkoTreeLink::Checksum) override
    {}
};

// Calls of a client wait for the thread of the tree, which is this one.
template <typename Call>
auto elsewhere(Call call)
{
    QEventLoop loop;
    auto result = std::async(std::launch::async, [&] {
        const auto quit =
            qScopeGuard([&] { QMetaObject::invokeMethod(&loop, &QEventLoop::quit, Qt::QueuedConnection); });
        return call();
    });
    loop.exec();
    return result.get();
}

/// A recorder with a value of each kind, the last one locked, and a session with it.
class Recorder
{
public:
    Recorder()
    {
        for (const char* const type :
             {"Text", "Integer", "Boolean", "Number", "Integer64", "NumericDouble", "NumericInteger64", "Selection",
              "RecordItemMap", "BookmarkItemMap", "StringItemFrequencyMap"}) {
            insert(type, QLatin1String(type));
        }
        insert("Text", QStringLiteral("Locked"));
        const CORBA::Object_var object =
            m_orb.remoteObject(QStringLiteral("127.0.0.1"), m_orb.port(), ZelkoTreeLink::OBJECT_KEY);
        m_remote = ZelkoTreeLink::TreeServer::_unchecked_narrow(object);
        auto* const client = new Deaf;
        m_client = client;
        const PortableServer::ObjectId_var id = m_orb.rootPoa()->activate_object(client);
        const ZelkoTreeLink::Subscriber_var reference = client->_this();
        m_session = elsewhere([&] {
            return m_remote->attach(ZelkoTreeLink::PROTOCOL_VERSION, {"operator", ""}, reference);
        });
    }

    /// False when it was refused as damaged.
    bool write(const std::string& bytes)
    {
        ZelkoTreeLink::Batch batch;
        batch.length(static_cast<CORBA::ULong>(bytes.size()));
        std::copy(bytes.begin(), bytes.end(), batch.get_buffer());
        return elsewhere([&] {
            try {
                m_remote->write(m_session, batch, ZelkoCommon::link::checksum(bytes));
            } catch (const ZelkoTreeLink::Refused& refused) {
                require(refused.reason == ZelkoTreeLink::REFUSED_DAMAGED ||
                        refused.reason == ZelkoTreeLink::REFUSED_BATCH);
                return refused.reason == ZelkoTreeLink::REFUSED_BATCH;
            }
            return true;
        });
    }

    void reset()
    {
        for (const auto& [value, state] : m_states) {
            require(value->SetCommandString(state, nullptr));
        }
    }

    QStringList content() { return treeList(m_tree); }

    void requireRebuildable()
    {
        for (const auto& [value, first] : m_states) {
            std::string state;
            value->AddObjectStateStringForTransmission(state, 0);
            const auto copy = valuefactory::create(value->GetTypeName());
            require(copy->SetCommandString(state, nullptr) && copy->Compare(value));
        }
        std::string locked;
        m_states.back().first->AddObjectStateStringForTransmission(locked, 0);
        require(locked == m_states.back().second);
    }

private:
    void insert(const char* type, const QString& name)
    {
        auto value = valuefactory::create(type);
        value->SetName(name);
        std::string state;
        value->AddObjectStateStringForTransmission(state, 0);
        m_states.emplace_back(value.get(), state);
        m_tree.Insert(QString(), std::move(value));
    }

    static bool mayWrite(const ZelkoRecorder::LinkUser&, const ValueBase& value)
    {
        return value.GetName() != u"Locked";
    }

    ZelkoCommon::Orb m_orb{{}};
    Tree m_tree;
    std::vector<std::pair<ValueBase*, std::string>> m_states; // as each value was at first
    ZelkoRecorder::TreeLinkServer m_server{m_orb, m_tree, {}, &Recorder::mayWrite};
    ZelkoTreeLink::TreeServer_var m_remote;
    PortableServer::ServantBase_var m_client;
    ZelkoTreeLink::SessionId m_session = 0;
};

Recorder* recorder = nullptr;

} // namespace

extern "C" int LLVMFuzzerInitialize(int* argc, char*** argv)
{
    zelko::registerItemMapTypes();
    registerStringItemMap();
    static QCoreApplication application(*argc, *argv);
    static Recorder theRecorder;
    recorder = &theRecorder;
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    if (size == 0) {
        return 0;
    }
    const std::string_view input(reinterpret_cast<const char*>(data + 1), size - 1);
    const bool isScript = data[0] < 128;
    recorder->reset();
    const QStringList before = recorder->content();
    if (!recorder->write(isScript ? FrameScript(input).writes() : std::string(input))) {
        require(recorder->content() == before);
    }
    recorder->requireRebuildable();
    return 0;
}
