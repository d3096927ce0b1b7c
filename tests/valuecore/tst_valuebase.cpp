#include "changelogger.h"
#include "patience.h"
#include "sentcommands.h"

#include <valuecore/commandoptimizer.h>
#include <valuecore/tree.h>
#include <valuecore/valuetypes.h>

#include <QElapsedTimer>
#include <QTest>

using Number = Value<int>;

class tst_ValueBase : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void hasNoContentOfItsOwn();
    void tellsOfAStateOnce();
    void sendsItsStateButNeverItsDeletion();
    void hasChangedTellsAndSendsWithoutContent_data();
    void hasChangedTellsAndSendsWithoutContent();
    void foldsNotificationsOfATransactionIntoOne();
    void foldsNestedTransactionsIntoOne();
    void endsATransactionWithItsCodeAndOrigin();
    void doesNotMindAnEndWithoutAStart();
    void tellsStatesInTheMiddleOfATransaction();
    void sendsEachCommandOfATransaction();
    void passesCommandsOnAtOnceByDefault();
    void sendsNothingWithoutATransmitter();
    void echoesWithItsOrigin();
    void foldsCommandsUntilTheUpdateTime();
    void passesOnAtMostOnceInTheUpdateTime();
    void passesOnAtOnceWhileTheTimerIsOverridden();
    void overridesATimeThatIsSetLater();
    void passesOnWhatWaitsWhenTheUpdateTimeGoes();
    void passesOnWhatWaitsWhenAsked_data();
    void passesOnWhatWaitsWhenAsked();
    void givesTheWaitingCommandsAsAStream();
    void dropsWaitingCommandsWithTheirTransmitter();
    void optimisesItsWaitingCommandsWithAGivenOptimizer();
    void recordsWhatWasDoneSince();
    void recordsBesideTransmission();
    void addsCommandsThatOthersMade();
    void executesNothingOfAMalformedStream_data();
    void executesNothingOfAMalformedStream();
    void stopsWhenAnObserverEndsTheValue();
    void announcesItsDeletionOnce();
    void announcesItsDeletionAfterTheStateWasSet();

private:
    QStringList m_log;
    ChangeLogger m_observer{"a", m_log};
    SentCommands m_sent;
    std::unique_ptr<Number> m_value;
};

void tst_ValueBase::init()
{
    m_log.clear();
    m_observer.react({});
    m_sent = SentCommands();
    m_value = std::make_unique<Number>("value");
    m_value->AddObserver(&m_observer);
    m_value->SetTransmitter(&m_sent);
}

void tst_ValueBase::hasNoContentOfItsOwn()
{
    struct Bare : ValueBase
    {
        using ValueBase::ValueBase;
        QString GetStringValue() const override { return {}; }
        int GetType() const override { return 0; }
        const char* GetTypeName() const override { return "Bare"; }
    };
    Bare value("bare", TValueState::Locked);
    QVERIFY(!value.SetStringValue("text", nullptr));
    Bare other;
    QVERIFY(!value.Compare(&other));
    other.Assign(value);
    QVERIFY(value.Compare(&other));
    QVERIFY(!value.Compare(m_value.get()));
    QVERIFY(!value.Compare(nullptr));
    QVERIFY_EXCEPTION_THROWN(value.Assign(*m_value), std::bad_cast);
    const char* stream = ";";
    QVERIFY(!value.CreateNextCommand(10, &stream, nullptr, 1));
}

void tst_ValueBase::tellsOfAStateOnce()
{
    m_value->SetState(TValueState::Locked, nullptr);
    m_value->SetState(TValueState::Locked, nullptr);
    QCOMPARE(m_value->GetState(), TValueState::Locked);
    QCOMPARE(m_log, QStringList({"a 2"}));
    m_value->SetState(TValueState::Open, &m_observer);
    QCOMPARE(m_log, QStringList({"a 2"}));
}

void tst_ValueBase::sendsItsStateButNeverItsDeletion()
{
    m_value->SetState(TValueState::Locked, nullptr);
    m_value->SetState(TValueState::Deleted, nullptr);
    QCOMPARE(m_sent.ids(), std::vector<int>({ValueBase::CommandIdState}));
    std::string state;
    m_value->AddObjectStateStringForTransmission(state, 0);
    Number peer;
    QVERIFY(peer.SetCommandString(m_sent.stream(), nullptr));
    QCOMPARE(peer.GetState(), TValueState::Locked);
    QVERIFY(peer.SetCommandString(state, nullptr));
    QVERIFY(!peer.SetCommandString("1;\1;", nullptr));
    QCOMPARE(peer.GetState(), TValueState::Locked);
}

void tst_ValueBase::hasChangedTellsAndSendsWithoutContent_data()
{
    QTest::addColumn<int>("code");
    QTest::newRow("state") << 2;
    QTest::newRow("content") << 3;
    QTest::newRow("child added") << 16;
    QTest::newRow("child removed") << 18;
    QTest::newRow("refreshed") << 23;
    QTest::newRow("a code of a newer peer") << 1000000;
    QTest::newRow("a negative code") << -1;
}

void tst_ValueBase::hasChangedTellsAndSendsWithoutContent()
{
    QFETCH(int, code);
    m_value->HasChanged(static_cast<TChangeCode>(code), nullptr);
    QCOMPARE(m_log, QStringList({QStringLiteral("a %1").arg(code)}));
    QCOMPARE(m_sent.sent().size(), std::size_t{1});
    QCOMPARE(m_sent.sent().front().value, m_value.get());
    QCOMPARE(m_value->GetValue(), 0);

    QStringList peerLog;
    ChangeLogger peerObserver("peer", peerLog);
    Number peer;
    peer.AddObserver(&peerObserver);
    QVERIFY(peer.SetCommandString(m_sent.stream(), nullptr));
    QCOMPARE(peerLog, QStringList({QStringLiteral("peer %1").arg(code)}));
}

void tst_ValueBase::foldsNotificationsOfATransactionIntoOne()
{
    m_value->StartTransaction(nullptr);
    QVERIFY(m_value->IsTransactionActive());
    m_value->SetValue(1, nullptr);
    m_value->SetValue(2, nullptr);
    m_value->HasChanged(TChangeCode::ValueRefreshed, nullptr);
    QCOMPARE(m_log, QStringList());
    m_value->EndTransaction(TChangeCode::ValueChanged, nullptr);
    QVERIFY(!m_value->IsTransactionActive());
    QCOMPARE(m_log, QStringList({"a 3"}));
    m_value->SetValue(3, nullptr);
    QCOMPARE(m_log, QStringList({"a 3", "a 3"}));
}

void tst_ValueBase::foldsNestedTransactionsIntoOne()
{
    m_value->StartTransaction(nullptr);
    m_value->StartTransaction(nullptr);
    m_value->SetValue(1, nullptr);
    m_value->EndTransaction(TChangeCode::ValueRefreshed, nullptr);
    QVERIFY(m_value->IsTransactionActive());
    m_value->SetValue(2, nullptr);
    QCOMPARE(m_log, QStringList());
    m_value->EndTransaction(TChangeCode::ValueChanged, nullptr);
    QCOMPARE(m_log, QStringList({"a 3"}));
}

void tst_ValueBase::endsATransactionWithItsCodeAndOrigin()
{
    ChangeLogger other("b", m_log);
    m_value->AddObserver(&other);
    m_value->StartTransaction(nullptr);
    m_value->EndTransaction(TChangeCode::ValueRefreshed, &m_observer);
    QCOMPARE(m_log, QStringList({"b 23"}));
}

void tst_ValueBase::doesNotMindAnEndWithoutAStart()
{
    m_value->EndTransaction(TChangeCode::ValueChanged, nullptr);
    QCOMPARE(m_log, QStringList());
    m_value->SetValue(1, nullptr);
    m_value->StartTransaction(nullptr);
    m_value->EndTransaction(TChangeCode::ValueChanged, nullptr);
    QCOMPARE(m_log, QStringList({"a 3", "a 3"}));
}

void tst_ValueBase::tellsStatesInTheMiddleOfATransaction()
{
    Tree tree;
    Number* const value = tree.Emplace("/a", std::make_unique<Number>("b"));
    value->AddObserver(&m_observer);
    value->StartTransaction(nullptr);
    value->SetValue(1, nullptr);
    value->SetState(TValueState::Locked, nullptr);
    QCOMPARE(m_log, QStringList({"a 2"}));
    tree.Remove("/a/b");
    QCOMPARE(m_log, QStringList({"a 2", "a 2"}));
}

void tst_ValueBase::sendsEachCommandOfATransaction()
{
    m_value->StartTransaction(nullptr);
    m_value->SetValue(1, nullptr);
    m_value->SetValue(2, nullptr);
    QCOMPARE(m_sent.sent().size(), std::size_t{2});
    m_value->EndTransaction(TChangeCode::ValueChanged, nullptr);
    QCOMPARE(m_sent.sent().size(), std::size_t{2});
}

void tst_ValueBase::passesCommandsOnAtOnceByDefault()
{
    m_value->SetValue(1, nullptr);
    QCOMPARE(m_sent.sent().size(), std::size_t{1});
    QCOMPARE(m_value->GetCommandStringForTransmission(), std::string());
    m_value->SetUpdateTimerTime(0);
    m_value->SetValue(2, nullptr);
    QCOMPARE(m_sent.sent().size(), std::size_t{2});
}

void tst_ValueBase::sendsNothingWithoutATransmitter()
{
    QCOMPARE(m_value->GetTransmitter(), &m_sent);
    m_value->SetTransmitter(nullptr);
    QCOMPARE(m_value->GetTransmitter(), nullptr);
    m_value->SetValue(1, nullptr);
    m_value->HasChanged(TChangeCode::ValueChanged, nullptr);
    QVERIFY(m_sent.sent().empty());
    QCOMPARE(m_log, QStringList({"a 3", "a 3"}));
}

void tst_ValueBase::echoesWithItsOrigin()
{
    Number sender;
    SentCommands outgoing;
    sender.SetTransmitter(&outgoing);
    sender.SetValue(6, nullptr);
    ChangeLogger link("link", m_log);
    m_value->AddObserver(&link);
    QVERIFY(m_value->SetCommandString(outgoing.stream(), &link));
    QCOMPARE(m_log, QStringList({"a 3"}));
    QCOMPARE(m_sent.sent().size(), std::size_t{1});
    QCOMPARE(m_sent.sent().front().origin, static_cast<IObserver*>(&link));
}

void tst_ValueBase::foldsCommandsUntilTheUpdateTime()
{
    m_value->SetUpdateTimerTime(20);
    for (int i = 1; i <= 100; ++i) {
        m_value->SetValue(i, nullptr);
    }
    QCOMPARE(m_log.size(), 100);
    QVERIFY(m_sent.sent().empty());
    QTRY_COMPARE_WITH_TIMEOUT(m_sent.sent().size(), std::size_t{1}, patience);
    Number peer;
    QVERIFY(peer.SetCommandString(m_sent.stream(), nullptr));
    QCOMPARE(peer.GetValue(), 100);
}

void tst_ValueBase::passesOnAtMostOnceInTheUpdateTime()
{
    constexpr int updateTime = 50;
    m_value->SetUpdateTimerTime(updateTime);
    QElapsedTimer clock;
    clock.start();
    m_value->SetValue(1, nullptr);
    QTRY_COMPARE_WITH_TIMEOUT(m_sent.sent().size(), std::size_t{1}, patience);
    m_value->SetValue(2, nullptr);
    QTRY_COMPARE_WITH_TIMEOUT(m_sent.sent().size(), std::size_t{2}, patience);
    QVERIFY(clock.elapsed() >= 2 * updateTime - 10); // a coarse timer may be early by a twentieth
}

void tst_ValueBase::passesOnAtOnceWhileTheTimerIsOverridden()
{
    m_value->SetUpdateTimerTime(60000);
    m_value->SetValue(1, nullptr);
    m_value->OverrideTimer();
    QCOMPARE(m_sent.sent().size(), std::size_t{1});
    m_value->SetValue(2, nullptr);
    QCOMPARE(m_sent.sent().size(), std::size_t{2});
    m_value->KillOverrideTimer();
    m_value->SetValue(3, nullptr);
    QCOMPARE(m_sent.sent().size(), std::size_t{2});
    m_value->OverrideTimer();
    QCOMPARE(m_sent.sent().size(), std::size_t{3});
}

void tst_ValueBase::overridesATimeThatIsSetLater()
{
    m_value->KillOverrideTimer();
    m_value->OverrideTimer();
    m_value->SetUpdateTimerTime(60000);
    m_value->SetValue(1, nullptr);
    QCOMPARE(m_sent.sent().size(), std::size_t{1});
}

void tst_ValueBase::passesOnWhatWaitsWhenTheUpdateTimeGoes()
{
    m_value->SetUpdateTimerTime(60000);
    m_value->SetValue(1, nullptr);
    m_value->SetUpdateTimerTime(-1);
    QCOMPARE(m_sent.sent().size(), std::size_t{1});
    m_value->SetValue(2, nullptr);
    QCOMPARE(m_sent.sent().size(), std::size_t{2});
}

void tst_ValueBase::passesOnWhatWaitsWhenAsked_data()
{
    QTest::addColumn<bool>("byTimer");
    QTest::newRow("by the trigger of the optimisation") << false;
    QTest::newRow("by the timer's own call") << true;
}

void tst_ValueBase::passesOnWhatWaitsWhenAsked()
{
    QFETCH(bool, byTimer);
    const auto ask = [&] { byTimer ? m_value->OnTimer() : m_value->TriggerOptimization(); };
    ask();
    m_value->SetUpdateTimerTime(60000);
    m_value->SetValue(1, nullptr);
    m_value->SetState(TValueState::Locked, nullptr);
    m_value->SetValue(2, nullptr);
    m_value->HasChanged(TChangeCode::ValueChanged, nullptr);
    m_value->HasChanged(TChangeCode::ValueChanged, nullptr);
    ask();
    QCOMPARE(m_sent.ids(), std::vector<int>({1, 10, 10}));
    ask();
    QCOMPARE(m_sent.sent().size(), std::size_t{3});
}

void tst_ValueBase::givesTheWaitingCommandsAsAStream()
{
    m_value->SetUpdateTimerTime(60000);
    m_value->SetValue(1, nullptr);
    m_value->SetValue(2, nullptr);
    const std::string stream = m_value->GetCommandStringForTransmission();
    QCOMPARE(m_value->GetCommandStringForTransmission(), std::string());
    m_value->TriggerOptimization();
    QVERIFY(m_sent.sent().empty());
    QStringList peerLog;
    ChangeLogger peerObserver("peer", peerLog);
    Number peer;
    peer.AddObserver(&peerObserver);
    QVERIFY(peer.SetCommandString(stream, nullptr));
    QCOMPARE(peer.GetValue(), 2);
    QCOMPARE(peerLog, QStringList({"peer 3"}));
}

void tst_ValueBase::dropsWaitingCommandsWithTheirTransmitter()
{
    SentCommands next;
    m_value->SetUpdateTimerTime(60000);
    m_value->SetValue(1, nullptr);
    m_value->SetTransmitter(&m_sent);
    QVERIFY(!m_value->GetCommandStringForTransmission().empty());
    m_value->SetValue(2, nullptr);
    m_value->SetTransmitter(&next);
    m_value->TriggerOptimization();
    QVERIFY(m_sent.sent().empty());
    QVERIFY(next.sent().empty());
}

void tst_ValueBase::optimisesItsWaitingCommandsWithAGivenOptimizer()
{
    // Leaves everything out but the first command.
    struct OnlyTheFirst final : ICommandListOptimizer
    {
        void Add(std::unique_ptr<Command> command) override
        {
            if (!first) {
                first = std::move(command);
            }
        }
        CommandList Take() override
        {
            CommandList list;
            list.push_back(std::move(first));
            return list;
        }
        std::unique_ptr<Command> first;
    };
    OnlyTheFirst optimizer;
    m_value->OptimizeCommandList(optimizer); // nothing waits
    QVERIFY(!optimizer.first);
    m_value->SetUpdateTimerTime(60000);
    m_value->SetValue(1, nullptr);
    m_value->SetValue(2, nullptr);
    m_value->OptimizeCommandList(optimizer);
    m_value->TriggerOptimization();
    Number peer;
    QVERIFY(peer.SetCommandString(m_sent.stream(), nullptr));
    QCOMPARE(peer.GetValue(), 1);
}

void tst_ValueBase::recordsWhatWasDoneSince()
{
    m_value->SetTransmitter(nullptr);
    m_value->SetValue(1, nullptr);
    QCOMPARE(m_value->GetCommandStringForRecording(), std::string());
    m_value->SetRecording(true);
    m_value->SetValue(2, nullptr);
    m_value->SetState(TValueState::Locked, nullptr);
    m_value->HasChanged(TChangeCode::ValueChanged, nullptr);
    const std::string stream = m_value->GetCommandStringForRecording();
    QCOMPARE(m_value->GetCommandStringForRecording(), std::string());
    m_value->SetValue(3, nullptr);
    m_value->SetRecording(true);
    QCOMPARE(m_value->GetCommandStringForRecording(), std::string());
    m_value->SetRecording(false);
    m_value->SetValue(4, nullptr);
    QCOMPARE(m_value->GetCommandStringForRecording(), std::string());

    QStringList peerLog;
    ChangeLogger peerObserver("peer", peerLog);
    Number peer;
    peer.AddObserver(&peerObserver);
    QVERIFY(peer.SetCommandString(stream, nullptr));
    QCOMPARE(peer.GetValue(), 2);
    QCOMPARE(peerLog, QStringList({"peer 3", "peer 2", "peer 3"}));
}

void tst_ValueBase::recordsBesideTransmission()
{
    m_value->SetRecording(true);
    m_value->SetUpdateTimerTime(60000);
    m_value->SetValue(1, nullptr);
    m_value->SetValue(2, nullptr);
    m_value->TriggerOptimization();
    QCOMPARE(m_sent.sent().size(), std::size_t{1});
    QCOMPARE(m_value->GetCommandStringForRecording().size(), 2 * m_sent.stream().size());
}

void tst_ValueBase::addsCommandsThatOthersMade()
{
    m_value->AddCommand(new CommandHasChanged(m_value.get(), TChangeCode::ValueRefreshed, &m_observer));
    QCOMPARE(m_sent.ids(), std::vector<int>({2}));
    QCOMPARE(m_sent.sent().front().origin, static_cast<IObserver*>(&m_observer));
    m_value->SetRecording(true);
    m_value->AddCommandForTransmission(new CommandState(m_value.get(), TValueState::Locked, nullptr));
    QCOMPARE(m_sent.ids(), std::vector<int>({2, 1}));
    QCOMPARE(m_value->GetCommandStringForRecording(), std::string());
    m_value->SetTransmitter(nullptr);
    m_value->AddCommandForTransmission(new CommandState(m_value.get(), TValueState::Locked, nullptr));
    m_value->AddCommand(new CommandState(m_value.get(), TValueState::Locked, nullptr));
    QCOMPARE(m_sent.sent().size(), std::size_t{2});
    QCOMPARE(m_value->GetCommandStringForRecording(), std::string("1;\2;"));
    QCOMPARE(m_value->GetState(), TValueState::Open); // the commands were executed by whoever made them, or not at all
    QCOMPARE(m_log, QStringList());
}

void tst_ValueBase::executesNothingOfAMalformedStream_data()
{
    QTest::addColumn<QByteArray>("tail");
    QTest::newRow("an unknown id") << QByteArray("99;");
    QTest::newRow("no id") << QByteArray(";");
    QTest::newRow("a negative id") << QByteArray("-1;");
    QTest::newRow("an id that is too large") << QByteArray("99999999999;");
    QTest::newRow("an id without an end") << QByteArray("1");
    QTest::newRow("an id with a blank") << QByteArray("1 ;\0;", 5);
    QTest::newRow("a state that is missing") << QByteArray("1;");
    QTest::newRow("a state that does not exist") << QByteArray("1;\3;");
    QTest::newRow("a state without an end") << QByteArray("1;\2");
    QTest::newRow("a state with a wrong end") << QByteArray("1;\2:");
    QTest::newRow("a code without an end") << QByteArray("2;\1\0\0\0", 6);
    QTest::newRow("a content that is cut off") << QByteArray("10;\0\1\0\0", 7);
    QTest::newRow("a flag that is neither true nor false") << QByteArray("10;\2\1\0\0\0;", 9);
    QTest::newRow("a zero") << QByteArray("\0", 1);
}

void tst_ValueBase::executesNothingOfAMalformedStream()
{
    QFETCH(QByteArray, tail);
    Number sender;
    SentCommands outgoing;
    sender.SetTransmitter(&outgoing);
    sender.SetValue(5, nullptr);
    const std::string stream = outgoing.stream() + tail.toStdString();
    QVERIFY(!m_value->SetCommandString(stream, nullptr));
    QCOMPARE(m_value->GetValue(), 0);
    QCOMPARE(m_log, QStringList());
    QVERIFY(m_value->SetCommandString(outgoing.stream(), nullptr));
    QCOMPARE(m_value->GetValue(), 5);
    QVERIFY(m_value->SetCommandString(std::string_view(), nullptr));
}

void tst_ValueBase::stopsWhenAnObserverEndsTheValue()
{
    Number sender;
    SentCommands outgoing;
    sender.SetTransmitter(&outgoing);
    sender.SetValue(5, nullptr);
    sender.SetValue(6, nullptr);
    m_value->SetTransmitter(nullptr);
    m_observer.react([&](Observable*, TChangeCode) { m_value.reset(); });
    QVERIFY(m_value->SetCommandString(outgoing.stream(), nullptr));
    QVERIFY(!m_value);
    QCOMPARE(m_log, QStringList({"a 3"}));
}

void tst_ValueBase::announcesItsDeletionOnce()
{
    m_observer.react([&](Observable*, TChangeCode) { m_value->AnnounceDeletion(); });
    m_value->AnnounceDeletion();
    m_value->AnnounceDeletion();
    QCOMPARE(m_log, QStringList({"a 2"}));
    QCOMPARE(m_value->GetState(), TValueState::Deleted);
    QCOMPARE(m_value->GetTransmitter(), nullptr);
    QVERIFY(m_sent.sent().empty());
}

void tst_ValueBase::announcesItsDeletionAfterTheStateWasSet()
{
    m_value->SetState(TValueState::Deleted, &m_observer);
    QCOMPARE(m_log, QStringList());
    m_value->AnnounceDeletion();
    QCOMPARE(m_log, QStringList({"a 2"}));
}

QTEST_GUILESS_MAIN(tst_ValueBase)
#include "tst_valuebase.moc"
