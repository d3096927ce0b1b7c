// A client of a recorder in a process of its own, whose replay bar is worked with the mouse. Each line of its standard
// input is answered by one line, and one that says "sending" comes before, when bookmarks are about to be sent; times
// are seconds behind the begin of the records of tests.

#include "barbookmarks.h"
#include "barclient.h"
#include "bookmarksignallog.h"
#include "inputlines.h"
#include "patience.h"

#include <resources/zelkoicons.h>

#include <QApplication>
#include <QCommandLineParser>
#include <QMetaEnum>

#include <map>

namespace {

using ZelkoGUI::BookmarkModel;
using ZelkoTest::BarClient;

/// What the lines mean.
class Session
{
public:
    explicit Session(BarClient& client)
        : m_client(client)
    {}

    QString answer(const QStringList& words)
    {
        const auto found = m_answers.find(words.first());
        return found == m_answers.end() ? QStringLiteral("unknown") : found->second(words.mid(1));
    }

private:
    using Words = QStringList;
    using Answer = std::function<QString(const Words& words)>;

    template <typename Act>
    static Answer doing(Act act)
    {
        return [act](const Words& words) {
            act(words);
            return QStringLiteral("done");
        };
    }
    template <typename Ask>
    static Answer asking(Ask ask)
    {
        return [ask](const Words& words) { return ask(words) ? QStringLiteral("yes") : QStringLiteral("no"); };
    }
    static double momentOf(const QString& seconds) { return ShownReplayBar::momentAt(seconds.toInt()); }
    static QString listed(const QStringList& texts) { return texts.join(QLatin1Char(',')); }

    ShownReplayBar& shown() const { return m_client.shown; }
    QString state() const
    {
        const auto states = QMetaEnum::fromType<BookmarkModel::enSynchState>();
        return QLatin1String(states.valueToKey(m_client.bookmarks.getSynchState()));
    }
    QString row(const QString& record) const
    {
        const auto data = m_client.row(record);
        return listed(bookmarkTexts(data.GetBookmarkEntry()));
    }
    // Those that can be pressed, and what the second one says of itself.
    QString buttons() const
    {
        return QStringLiteral("%1%2: %3")
            .arg(shown().apply()->isEnabled() ? QStringLiteral("apply ") : QString(),
                 shown().reset()->isEnabled() ? QStringLiteral("reset") : QString(), shown().reset()->toolTip());
    }
    QString replayState() const
    {
        const auto& state = m_client.channel.channelValues()->valueReplayState();
        return state ? state->GetCurrentName() : QString();
    }
    // In microseconds, so that nothing of it is lost.
    QString position() const
    {
        return QString::number(static_cast<qint64>(shown().position().GetPosition() - momentOf(QStringLiteral("0"))));
    }
    void chooseForReplay(const QString& record) const
    {
        m_client.channel.setDeviceID(ZelkoTest::Workplace::device());
        m_client.channel.setRecordData(m_client.row(record));
    }
    void edit(const Words& words) const
    {
        BookmarkModel& model = m_client.bookmarks;
        model.setData(model.index(words.value(0).toInt(), BookmarkModel::TextColumn), words.value(1));
    }
    void clickOnHeader(int section) const { m_client.bookmarks.sl_verticalHeaderClicked(section); }
    static QString changesOfMap(const QString& channel)
    {
        return QString::number(BarClient::map(channel)->GetChangeLog().NextNumber());
    }
    // What the model has told of since the last time: changes, and those of its state.
    QString changesOfModel()
    {
        static const QRegularExpression change(QStringLiteral("^(changed|end|header|state) "));
        return listed(m_signals.take().filter(change));
    }
    static void press(QToolButton* button) { QTest::mouseClick(button, Qt::LeftButton); }

    BarClient& m_client;
    BookmarkSignalLog m_signals{&m_client.bookmarks};
    const std::map<QString, Answer> m_answers{
        {"ready", asking([this](const Words&) { return m_client.isReady(); })},
        {"show", doing([this](const Words& words) { m_client.show(words.value(0)); })},
        {"row", [this](const Words& words) { return row(words.value(0)); }},
        {"state", [this](const Words&) { return state(); }},
        {"list", [this](const Words&) { return listed(bookmarkTexts(m_client.bookmarks.entries())); }},
        {"bar", [this](const Words&) { return listed(bookmarksOn(shown().bar())); }},
        {"buttons", [this](const Words&) { return buttons(); }},
        {"messages", [this](const Words&) { return listed(m_client.messages()); }},
        {"drag", doing([this](const Words& words) {
             shown().hands.dragFlag(momentOf(words.value(0)), momentOf(words.value(1)));
         })},
        {"double-click", doing([this](const Words& words) { shown().hands.doubleClick(momentOf(words.value(0))); })},
        {"apply", doing([this](const Words&) { press(shown().apply()); })},
        {"reset", doing([this](const Words&) { press(shown().reset()); })},
        {"unlock", doing([this](const Words&) { m_client.unlock(); })},
        {"sees-channel", asking([](const Words& words) { return BarClient::seesChannel(words.value(0)); })},
        {"channel", doing([this](const Words& words) { m_client.takeChannel(words.value(0)); })},
        {"choose", doing([this](const Words& words) { chooseForReplay(words.value(0)); })},
        {"run", doing([this](const Words&) { m_client.channel.setReplayRunning(); })},
        {"pause", doing([this](const Words&) { m_client.channel.setReplayPaused(); })},
        {"stop", doing([this](const Words&) { m_client.channel.setReplayIdle(); })},
        {"replay", [this](const Words&) { return replayState(); }},
        {"edit", doing([this](const Words& words) { edit(words); })},
        {"add", doing([this](const Words&) { clickOnHeader(m_client.bookmarks.entryCount()); })},
        {"remove", doing([this](const Words& words) { clickOnHeader(words.value(0).toInt()); })},
        {"share", doing([this](const Words& words) { m_client.shareBookmarks(words.value(0)); })},
        {"model-changes", [this](const Words&) { return changesOfModel(); }},
        {"map-changes", [](const Words& words) { return changesOfMap(words.value(0)); }},
        {"rename", doing([this](const Words& words) { m_client.channel.setRecordingName(words.value(0)); })},
        {"name", [this](const Words&) { return m_client.channel.channelValues()->valueRecordName()->GetValue(); }},
        {"position", [this](const Words&) { return position(); }},
        {"drag-position", doing([this](const Words& words) {
             shown().hands.dragPosition(momentOf(words.value(0)), momentOf(words.value(1)));
         })},
    };
};

} // namespace

int main(int argc, char* argv[])
{
    QApplication application(argc, argv);
    QCommandLineParser parser;
    parser.addOptions({{"port", "Port to listen on", "N", "0"},
                       {"recorder", "Port of the recorder", "N"},
                       {"published-port", "Port under which the recorder finds it", "N", "0"},
                       {"read-only", "Edits no bookmarks"}});
    parser.process(application);
    registerZelkoIcons();
    try {
        ZelkoCommon::OrbOptions options;
        options.port = parser.value("port").toUShort();
        options.publishedPort = parser.value("published-port").toUShort();
        options.publishedHost = options.publishedPort == 0 ? QString() : QStringLiteral("127.0.0.1");
        options.receiveTimeout = std::chrono::milliseconds(patience);
        ZelkoCommon::Orb orb(options);
        BarClient client(orb, parser.value("recorder").toUShort(), parser.isSet("read-only"),
                         [] { std::cout << "sending" << std::endl; });
        Session session(client);
        const ZelkoTest::InputLines input([&](const QStringList& words) { return session.answer(words); });
        std::cout << "READY port=" << orb.port() << std::endl;
        return application.exec();
    } catch (const ZelkoCommon::OrbError& error) {
        std::cerr << error.what() << '\n';
        return 1;
    }
}
