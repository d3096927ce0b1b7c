// A server process of the tree link for tests. It serves a small recorder's tree and does what its standard input says;
// each line is answered by one line, "await N" when the churn has made N changes.

#include "testrecords.h"
#include "treedigest.h"

#include <recorder/link/treelinkserver.h>

#include <observerbase/iobserver.h>
#include <valuecore/valuetypes.h>
#include <zelkobase/maps/recorditemmap.h>
#include <zelkobase/orb/orb.h>

#include <QCommandLineParser>
#include <QCoreApplication>
#include <QSocketNotifier>
#include <QTimer>

#include <cstdio>
#include <iostream>
#include <random>

#include <poll.h>
#include <unistd.h>

using namespace ZelkoRecorder;
using zelko::recordmap::RecordItemMap;
using zelko::recordmap::RecordMapData;

namespace {

constexpr int churnMilliseconds = 10;

// Counts what clients write; the peer's own changes are made in its name.
class WriteCounter final : public IObserver
{
public:
    void Update(Observable*, TChangeCode) override { ++count; }
    int count = 0;
};

class Peer : public QObject
{
    Q_OBJECT

public:
    Peer(ZelkoCommon::Orb& orb, const TreeLinkServerOptions& options)
        : m_server(orb, m_tree, options, [](const ZelkoRecorder::LinkUser&, const ValueBase& value) {
            return value.GetName() != QLatin1String("ReadOnly");
        })
    {
        for (ValueBase* const value : std::initializer_list<ValueBase*>{m_number, m_text, m_readOnly, m_command}) {
            value->AddObserver(&m_writes);
        }
        connect(&m_churn, &QTimer::timeout, this, &Peer::churn);
        connect(&m_input, &QSocketNotifier::activated, this, &Peer::readInput);
    }

private:
    void readInput();
    void hear(const QStringList& words);
    QString answer(const QStringList& words);
    void holdStill();
    void say(const QString& line);
    void churn();
    void randomSteps(int count);
    void setRecord(const QString& id, quint64 size)
    {
        m_map->SetAt(id, RecordMapData(makeRecord(id, 5, size)), nullptr);
    }
    quint64 dice(quint64 sides) { return m_random() % sides; }

    Tree m_tree;
    const QString m_device = QStringLiteral("/ZELKO/Device/R1");
    Value<int>* m_number = m_tree.Emplace(m_device, std::make_unique<Value<int>>("Number"));
    Value<QString>* m_text = m_tree.Emplace(m_device, std::make_unique<Value<QString>>("Text"));
    Value<int>* m_readOnly = m_tree.Emplace(m_device, std::make_unique<Value<int>>("ReadOnly"));
    Value<int>* m_loadCount = m_tree.Emplace(m_device + "/Records", std::make_unique<Value<int>>("LoadCount"));
    RecordItemMap* m_map =
        m_tree.Emplace(m_device + "/Records", std::make_unique<RecordItemMap>("Map", TValueState::Open));
    Value<bool>* m_loaded = m_tree.Emplace(m_device + "/Records", std::make_unique<Value<bool>>("LoadedCompletly"));
    Value<QString>* m_command =
        m_tree.Emplace("/ZELKO/Command/R1", std::make_unique<Value<QString>>("DeleteRecordingList"));
    TreeLinkServer m_server;
    WriteCounter m_writes;
    QTimer m_churn;
    int m_churnRate = 0;
    int m_churned = 0;
    int m_awaited = 0; // answered when there were so many changes; 0: nobody waits
    std::mt19937_64 m_random{1};
    QSocketNotifier m_input{STDIN_FILENO, QSocketNotifier::Read};
    QByteArray m_line;
};

void Peer::readInput()
{
    char buffer[4096];
    const ssize_t size = read(STDIN_FILENO, buffer, sizeof buffer);
    if (size <= 0) {
        QCoreApplication::quit(); // whoever started it is gone
        return;
    }
    m_line.append(buffer, size);
    for (qsizetype end = m_line.indexOf('\n'); end >= 0; end = m_line.indexOf('\n')) {
        const QString line = QString::fromUtf8(m_line.left(end));
        m_line.remove(0, end + 1);
        hear(line.split(QLatin1Char(' ')));
    }
}

void Peer::hear(const QStringList& words)
{
    if (words.value(0) == QLatin1String("await")) {
        m_awaited = words.value(1).toInt();
        return;
    }
    say(answer(words));
    if (words.value(0) == QLatin1String("hold")) {
        holdStill();
    }
}

// The thread of the tree does nothing until it is spoken to again.
void Peer::holdStill()
{
    pollfd input{STDIN_FILENO, POLLIN, 0};
    poll(&input, 1, -1);
}

QString Peer::answer(const QStringList& words)
{
    const QString verb = words.value(0);
    const QString first = words.value(1);
    if (verb == "set") {
        setRecord(first, words.value(2).toULongLong());
    } else if (verb == "erase") {
        m_map->EraseAt(first, nullptr);
    } else if (verb == "clear") {
        m_map->Clear(nullptr);
    } else if (verb == "populate") {
        for (int i = 0; i < first.toInt(); ++i) {
            setRecord(QStringLiteral("P%1").arg(i), 0);
        }
        m_loadCount->SetValue(first.toInt(), nullptr);
        m_loaded->SetValue(true, nullptr);
    } else if (verb == "churn") {
        m_churnRate = first.toInt();
        m_churnRate > 0 ? m_churn.start(churnMilliseconds) : m_churn.stop();
    } else if (verb == "random") {
        randomSteps(first.toInt());
    } else if (verb == "number") {
        m_number->SetValue(first.toInt(), &m_writes);
    } else if (verb == "insert") {
        m_tree.Emplace(m_device, std::make_unique<Value<int>>(first));
    } else if (verb == "remove") {
        m_tree.Remove(m_device + '/' + first);
    } else if (verb == "digest") {
        return treeDigest(m_tree);
    } else if (verb == "list") {
        return treeList(m_tree).join('|');
    } else if (verb == "text") {
        return m_text->GetValue();
    } else if (verb == "hold") {
        return QStringLiteral("ok");
    } else if (verb == "ids") {
        return QString::number(m_command->GetValue().count(QLatin1Char('@')) + 1);
    } else if (verb == "writes") {
        return QString::number(m_writes.count);
    } else if (verb == "sessions") {
        return QString::number(m_server.sessionCount());
    } else if (verb == "restarts") {
        return QString::number(m_server.restartCount());
    } else if (verb == "backlog") {
        return QString::number(m_server.backlogBytes());
    } else {
        return QStringLiteral("unknown");
    }
    return QStringLiteral("ok");
}

void Peer::churn()
{
    for (int i = 0; i < m_churnRate * churnMilliseconds / 1000; ++i) {
        setRecord(QStringLiteral("P%1").arg(dice(1000)), m_random());
    }
    m_churned += m_churnRate * churnMilliseconds / 1000;
    if (m_awaited > 0 && m_churned >= m_awaited) {
        m_awaited = 0;
        say(QStringLiteral("ok"));
    }
}

void Peer::say(const QString& line)
{
    std::cout << line.toStdString() << std::endl;
}

// Mostly sets and erases among 500 keys, now and then a clear.
void Peer::randomSteps(int count)
{
    for (int i = 0; i < count; ++i) {
        const quint64 what = dice(5000);
        const QString id = QStringLiteral("K%1").arg(dice(500));
        if (what == 0) {
            m_map->Clear(nullptr);
        } else if (what < 2000) {
            m_map->EraseAt(id, nullptr);
        } else {
            setRecord(id, dice(3));
        }
    }
}

TreeLinkServerOptions serverOptions(const QCommandLineParser& parser)
{
    TreeLinkServerOptions options;
    if (parser.isSet("max-sessions")) {
        options.maxSessions = parser.value("max-sessions").toInt();
    }
    if (parser.isSet("max-sessions-per-peer")) {
        options.maxSessionsPerPeer = parser.value("max-sessions-per-peer").toInt();
    }
    if (parser.isSet("max-silence")) {
        options.maxSilence = std::chrono::milliseconds(parser.value("max-silence").toInt());
    }
    if (parser.isSet("write-timeout")) {
        options.writeTimeout = std::chrono::milliseconds(parser.value("write-timeout").toInt());
    }
    if (parser.isSet("waiting-writes")) {
        options.maxWaitingWriteBytes = parser.value("waiting-writes").toULongLong();
    }
    if (parser.isSet("backlog")) {
        options.maxBacklogBytes = parser.value("backlog").toULongLong();
    }
    return options;
}

} // namespace

int main(int argc, char* argv[])
{
    QCoreApplication application(argc, argv);
    QCommandLineParser parser;
    parser.addOptions({{"port", "Port to listen on", "N", "0"},
                       {"max-sessions", "Sessions at once", "N"},
                       {"max-sessions-per-peer", "Sessions at once of one host", "N"},
                       {"max-silence", "Milliseconds until a silent client is dropped", "N"},
                       {"write-timeout", "Milliseconds until a write is left to itself", "N"},
                       {"waiting-writes", "Bytes of a client that may wait for the thread of the tree", "N"},
                       {"backlog", "Bytes that may wait for a client", "N"}});
    parser.process(application);
    try {
        ZelkoCommon::OrbOptions options;
        options.port = parser.value("port").toUShort();
        ZelkoCommon::Orb orb(options);
        Peer peer(orb, serverOptions(parser));
        std::cout << "READY port=" << orb.port() << std::endl;
        return application.exec();
    } catch (const ZelkoCommon::OrbError& error) {
        std::cerr << error.what() << '\n';
        return 1;
    }
}

#include "linkpeer.moc"
