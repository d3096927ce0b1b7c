#include "changelogger.h"
#include "sentcommands.h"

#include <valuecore/valueselection.h>

#include <QTest>

using Choices = std::vector<ValueSelection::Choice>;

namespace {

const Choices threeChoices{{10, "idle"}, {20, "recording"}, {30, "replaying"}};

constexpr SelItemDesc descriptions[] = {{5, "off"}, {7, "on"}};
constexpr ValueDescriptor descriptor{"Reboot", descriptions, 2};

} // namespace

class tst_ValueSelection : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void isEmptyAtFirst();
    void readsAStaticDescription();
    void selectsByKey();
    void selectsByName();
    void refusesWhatIsNoChoice();
    void keepsItsKeyWhenTheChoicesChange();
    void givesACommandTwice();
    void sendsKeyAndChoices();
    void takesFromAPeerAKeyWithoutAChoice();
    void rebuildsItself_data();
    void rebuildsItself();
    void staysEqualThroughAnOptimisedList();
    void comparesAndAssigns();
    void refusesMoreChoicesThanThereAreBytes();

private:
    std::unique_ptr<ValueSelection> m_value;
    QStringList m_log;
    ChangeLogger m_observer{"a", m_log};
};

void tst_ValueSelection::init()
{
    m_value = std::make_unique<ValueSelection>("State");
    m_value->SetChoices(threeChoices, nullptr);
    m_value->SetCurrentKey(20, nullptr);
    m_value->AddObserver(&m_observer);
    m_log.clear();
}

void tst_ValueSelection::isEmptyAtFirst()
{
    const ValueSelection value;
    QCOMPARE(value.GetCurrentKey(), 0);
    QCOMPARE(value.GetCurrentIndex(), -1);
    QCOMPARE(value.GetCurrentName(), QString());
    QVERIFY(value.GetChoices().empty());
    QCOMPARE(value.GetType(), 8);
    QCOMPARE(value.GetTypeName(), "Selection");
}

void tst_ValueSelection::readsAStaticDescription()
{
    const ValueSelection value(descriptor, TValueState::Locked);
    QCOMPARE(value.GetName(), QStringLiteral("Reboot"));
    QCOMPARE(value.GetState(), TValueState::Locked);
    QCOMPARE(value.GetChoices(), Choices({{5, "off"}, {7, "on"}}));
    QCOMPARE(value.GetCurrentKey(), 5);
    QCOMPARE(value.GetCurrentIndex(), 0);

    const ValueSelection bare(ValueDescriptor{"Bare"});
    QCOMPARE(bare.GetName(), QStringLiteral("Bare"));
    QVERIFY(bare.GetChoices().empty());
    QCOMPARE(bare.GetCurrentIndex(), -1);
}

void tst_ValueSelection::selectsByKey()
{
    QVERIFY(m_value->SetCurrentKey(30, nullptr));
    QCOMPARE(m_value->GetCurrentKey(), 30);
    QCOMPARE(m_value->GetCurrentIndex(), 2);
    QCOMPARE(m_value->GetCurrentName(), QStringLiteral("replaying"));
    QCOMPARE(m_value->GetStringValue(), QStringLiteral("replaying"));
    QVERIFY(m_value->SetCurrentKey(30, nullptr));
    QVERIFY(m_value->SetCurrentKey(10, &m_observer));
    QCOMPARE(m_log, QStringList({"a 3"}));
}

void tst_ValueSelection::selectsByName()
{
    QVERIFY(m_value->SetStringValue("idle", nullptr));
    QCOMPARE(m_value->GetCurrentKey(), 10);
    QVERIFY(!m_value->SetStringValue("Idle", nullptr));
    QVERIFY(!m_value->SetStringValue("", nullptr));
    QCOMPARE(m_value->GetCurrentKey(), 10);
    QCOMPARE(m_log, QStringList({"a 3"}));
}

void tst_ValueSelection::refusesWhatIsNoChoice()
{
    QVERIFY(!m_value->SetCurrentKey(0, nullptr));
    QVERIFY(!m_value->SetCurrentKey(-1, nullptr));
    QCOMPARE(m_value->GetCurrentKey(), 20);
    QCOMPARE(m_log, QStringList());
}

void tst_ValueSelection::keepsItsKeyWhenTheChoicesChange()
{
    m_value->SetChoices(threeChoices, nullptr);
    QCOMPARE(m_log, QStringList());
    m_value->SetChoices({{1, "one"}, {20, "two"}}, nullptr);
    QCOMPARE(m_value->GetCurrentKey(), 20);
    QCOMPARE(m_value->GetCurrentIndex(), 1);
    QCOMPARE(m_value->GetCurrentName(), QStringLiteral("two"));
    m_value->SetChoices({{1, "one"}}, nullptr);
    QCOMPARE(m_value->GetCurrentKey(), 20);
    QCOMPARE(m_value->GetCurrentIndex(), -1);
    QCOMPARE(m_value->GetCurrentName(), QString());
    QCOMPARE(m_log, QStringList({"a 3", "a 3"}));
}

void tst_ValueSelection::givesACommandTwice()
{
    SentCommands sent;
    m_value->SetTransmitter(&sent);
    m_value->HasChanged(TChangeCode::ValueChanged, nullptr);
    m_value->HasChanged(TChangeCode::ValueRefreshed, nullptr);
    QCOMPARE(m_log, QStringList({"a 3", "a 23"}));
    QCOMPARE(sent.ids(), std::vector<int>({10, 2}));
    ValueSelection peer;
    peer.Assign(*m_value);
    peer.SetCurrentKey(10, nullptr);
    peer.AddObserver(&m_observer);
    m_log.clear();
    QVERIFY(peer.SetCommandString(sent.stream(), nullptr));
    QCOMPARE(peer.GetCurrentKey(), 20);
    QVERIFY(peer.SetCommandString(sent.stream(), nullptr));
    QCOMPARE(m_log, QStringList({"a 3", "a 23", "a 3", "a 23"}));
}

void tst_ValueSelection::sendsKeyAndChoices()
{
    SentCommands sent;
    ValueSelection value;
    value.SetTransmitter(&sent);
    value.SetChoices(threeChoices, nullptr);
    value.SetCurrentKey(30, nullptr);
    QCOMPARE(sent.ids(), std::vector<int>({11, 10}));
    ValueSelection peer;
    QVERIFY(peer.SetCommandString(sent.stream(), nullptr));
    QVERIFY(peer == value);
}

void tst_ValueSelection::takesFromAPeerAKeyWithoutAChoice()
{
    SentCommands sent;
    ValueSelection sender;
    sender.SetChoices({{99, "beyond"}}, nullptr);
    sender.SetTransmitter(&sent);
    sender.SetCurrentKey(99, nullptr);
    QVERIFY(m_value->SetCommandString(sent.stream(), nullptr));
    QCOMPARE(m_value->GetCurrentKey(), 99);
    QCOMPARE(m_value->GetCurrentIndex(), -1);
    QVERIFY(m_value->SetCommandString(sent.stream(), nullptr));
    QCOMPARE(m_log, QStringList({"a 3"}));
}

void tst_ValueSelection::rebuildsItself_data()
{
    QTest::addColumn<int>("key");
    QTest::addColumn<bool>("choicesGoAfterwards");
    QTest::newRow("a key among the choices") << 30 << false;
    QTest::newRow("a key that lost its choice") << 30 << true;
}

void tst_ValueSelection::rebuildsItself()
{
    QFETCH(int, key);
    QFETCH(bool, choicesGoAfterwards);
    m_value->SetCurrentKey(key, nullptr);
    if (choicesGoAfterwards) {
        m_value->SetChoices({{1, QString()}, {1, "the same key"}}, nullptr);
    }
    std::string state;
    m_value->AddObjectStateStringForTransmission(state, 0);
    ValueSelection fresh;
    QVERIFY(fresh.SetCommandString(state, nullptr));
    QVERIFY(fresh == *m_value);
    QCOMPARE(fresh.GetCurrentKey(), key);
}

void tst_ValueSelection::staysEqualThroughAnOptimisedList()
{
    SentCommands sent;
    ValueSelection peer(*m_value);
    m_value->SetTransmitter(&sent);
    m_value->SetUpdateTimerTime(60000);
    m_value->SetChoices({{50, "fifty"}}, nullptr);
    m_value->SetCurrentKey(50, nullptr);
    m_value->HasChanged(TChangeCode::ValueChanged, nullptr);
    m_value->SetChoices({{60, "sixty"}}, nullptr);
    m_value->TriggerOptimization();
    QCOMPARE(sent.ids(), std::vector<int>({10, 11}));
    QVERIFY(peer.SetCommandString(sent.stream(), nullptr));
    QVERIFY(peer == *m_value);
}

void tst_ValueSelection::comparesAndAssigns()
{
    ValueSelection other;
    QVERIFY(!m_value->Compare(&other));
    QVERIFY(!m_value->Compare(nullptr));
    other.Assign(*m_value);
    QVERIFY(m_value->Compare(&other));
    other.SetCurrentKey(10, nullptr);
    QVERIFY(!m_value->Compare(&other));
    QCOMPARE(m_log, QStringList());
}

void tst_ValueSelection::refusesMoreChoicesThanThereAreBytes()
{
    std::string stream = "11;";
    commandwriter::number(stream, std::uint32_t{0xffffffff});
    commandwriter::number(stream, std::int32_t{1});
    commandwriter::string(stream, "one");
    stream += ';';
    QVERIFY(!m_value->SetCommandString(stream, nullptr));
    QCOMPARE(m_value->GetChoices(), threeChoices);
    QCOMPARE(m_log, QStringList());
}

QTEST_GUILESS_MAIN(tst_ValueSelection)
#include "tst_valueselection.moc"
