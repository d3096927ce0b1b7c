// A channel manager in a process of its own, for tests that kill it. It acts for an operator, and is ready when the
// recorder has admitted him. Each line of its standard input is answered by one line.

#include "channelmanager.h"
#include "frames.h"
#include "freeport.h"
#include "inputlines.h"
#include "patience.h"
#include "recorderclient.h"
#include "replayreceiver.h"

#include <zelkobase/orb/corbacall.h>
#include <zelkobase/orb/corbatext.h>
#include <zelkobase/service/serviceaddress.h>

#include <QCommandLineParser>
#include <QTcpSocket>
#include <QUdpSocket>

#include <map>

namespace {

using QD_ZLK::IF_ZLK_c_ChanMan;
using ZelkoCommon::fromCorba;
using ZelkoCommon::toCorba;
using ZelkoCommon::toWideCorba;
using ZelkoTest::ChannelManager;

constexpr char managerKey[] = "Manager";
const QString done = QStringLiteral("done");

/// Says the wishes of a manager to a recorder, sends the data of its channel, and takes those of its replays.
class Session
{
public:
    Session(ZelkoCommon::Orb& orb, quint16 recorderPort, bool sendsStream, bool isOlder)
        : m_orb(orb)
        , m_sendsStream(sendsStream)
    {
        m_manager->answers.kind = sendsStream ? QD_ZLK::ENDPOINT_TCP : QD_ZLK::ENDPOINT_UDP;
        m_manager->answers.isOlder = isOlder;
        m_manager->answers.olderPort = ZelkoTest::freePort();
        orb.publish(managerKey, m_manager);
        const CORBA::Object_var entry =
            orb.reference(ZelkoCommon::serviceReference({QStringLiteral("127.0.0.1")}, recorderPort));
        m_entry = QD_ZLK::IF_ZLK_c_ZLK::_unchecked_narrow(entry);
    }

    ~Session() { m_orb.withdraw(managerKey); }

    // What a line is answered by: "done" where it asks for nothing, or the exception with which the recorder refused.
    QString answer(const QStringList& words)
    {
        const auto found = m_answers.find(words.first());
        try {
            return found == m_answers.end() ? QStringLiteral("unknown") : found->second(words.value(1));
        } catch (const QD_ZLK::exGen& refusal) {
            return QStringLiteral("exGen %1").arg(int(refusal.code));
        } catch (const QD_ZLK::IF_ZLK_c_Chan::exChan& refusal) {
            return QStringLiteral("exChan %1").arg(int(refusal.code));
        } catch (const CORBA::Exception& exception) {
            return ZelkoCommon::describe(exception);
        }
    }

private:
    using Answer = std::function<QString(const QString& argument)>;

    QString enter(IF_ZLK_c_ChanMan::_ptr_type manager, const QString& name)
    {
        CORBA::String_var id;
        m_channel = m_entry->registerChannel(manager, QD_ZLK::RATE_16_KB, QD_ZLK::FORMAT_IQ16, true, true,
                                             toCorba(name), id.out());
        return fromCorba(id.in());
    }
    QString enter(const QString& name)
    {
        const CORBA::Object_var object = m_orb.published(managerKey);
        return enter(IF_ZLK_c_ChanMan::_var_type(IF_ZLK_c_ChanMan::_narrow(object)), name);
    }
    QString begin(const QString& name)
    {
        m_channel->startRecording(0, toWideCorba(name), 0);
        return done;
    }
    QString end(const QString& name)
    {
        m_channel->stopRecording(toWideCorba(name));
        return done;
    }
    QString remove()
    {
        m_channel->removeChannel();
        return done;
    }
    QString find(const QString& id)
    {
        const QD_ZLK::IF_ZLK_c_Chan_var found = m_entry->getZelkoChannelInterface(toCorba(id));
        return CORBA::is_nil(found) ? QStringLiteral("nothing") : fromCorba(CORBA::String_var(found->getChannelID()));
    }
    QString calls() const { return m_manager->calls().join(QLatin1Char('|')); }
    QString send(const QString& number)
    {
        const QByteArray bytes = ZelkoTest::wire(ZelkoTest::frameOf(number.toUInt()));
        const bool sent = m_sendsStream ? sendStream(bytes) : sendDatagram(bytes);
        return sent ? done : QStringLiteral("nothing was sent");
    }
    // Comes for the samples of the replay that is about to begin.
    QString receive()
    {
        if (m_manager->replayPort() == 0) {
            return QStringLiteral("nothing to receive");
        }
        m_receiver = std::make_unique<ZelkoTest::ReplayReceiver>(m_manager->replayPort());
        return done;
    }
    // Bytes of samples, and whether the last of them has come.
    QString received() const
    {
        return QStringLiteral("%1 %2").arg(m_receiver->samples().size()).arg(m_receiver->hasEnded() ? "all" : "so far");
    }
    bool sendDatagram(const QByteArray& bytes)
    {
        return m_datagrams.writeDatagram(bytes, QHostAddress::LocalHost, m_manager->port()) == bytes.size();
    }
    bool sendStream(const QByteArray& bytes)
    {
        if (m_stream.state() == QAbstractSocket::UnconnectedState) {
            m_stream.connectToHost(QHostAddress::LocalHost, m_manager->port());
        }
        return m_stream.waitForConnected(patience) && m_stream.write(bytes) == bytes.size() &&
               m_stream.waitForBytesWritten(patience);
    }

    ZelkoCommon::Orb& m_orb;
    const bool m_sendsStream;
    ChannelManager* const m_manager = new ChannelManager;
    const PortableServer::ServantBase_var m_guard = m_manager;
    QD_ZLK::IF_ZLK_c_ZLK_var m_entry;
    QD_ZLK::IF_ZLK_c_Chan_var m_channel = QD_ZLK::IF_ZLK_c_Chan::_nil();
    QUdpSocket m_datagrams;
    QTcpSocket m_stream;
    std::unique_ptr<ZelkoTest::ReplayReceiver> m_receiver;
    const std::map<QString, Answer> m_answers{
        {"register", [this](const QString& name) { return enter(name); }},
        {"register-nobody", [this](const QString& name) { return enter(IF_ZLK_c_ChanMan::_nil(), name); }},
        {"begin", [this](const QString& name) { return begin(name); }},
        {"end", [this](const QString& name) { return end(name); }},
        {"remove", [this](const QString&) { return remove(); }},
        {"find", [this](const QString& id) { return find(id); }},
        {"calls", [this](const QString&) { return calls(); }},
        {"send", [this](const QString& number) { return send(number); }},
        {"receive", [this](const QString&) { return receive(); }},
        {"received", [this](const QString&) { return received(); }},
    };
};

} // namespace

int main(int argc, char* argv[])
{
    QCoreApplication application(argc, argv);
    QCommandLineParser parser;
    parser.addOptions({{"port", "Port to listen on", "N", "0"},
                       {"recorder", "Port of the recorder", "N"},
                       {"stream", "Sends a stream in place of datagrams"},
                       {"older", "Knows the older operations only"}});
    parser.process(application);
    try {
        ZelkoCommon::OrbOptions options;
        options.port = parser.value("port").toUShort();
        options.callTimeout = std::chrono::milliseconds(patience);
        ZelkoCommon::Orb orb(options);
        const quint16 recorderPort = parser.value("recorder").toUShort();
        ZelkoTest::RecorderClient client(orb, recorderPort);
        Session session(orb, recorderPort, parser.isSet("stream"), parser.isSet("older"));
        const ZelkoTest::InputLines input([&](const QStringList& words) { return session.answer(words); });
        QObject::connect(
            &client.link(), &ZelkoCommon::TreeLink::connected, &application,
            [&] { std::cout << "READY port=" << orb.port() << std::endl; }, Qt::SingleShotConnection);
        return application.exec();
    } catch (const ZelkoCommon::OrbError& error) {
        std::cerr << error.what() << '\n';
        return 1;
    }
}
