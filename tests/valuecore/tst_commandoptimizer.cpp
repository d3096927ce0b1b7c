#include <valuecore/commandoptimizer.h>
#include <valuecore/valuetypes.h>

#include <QTest>

namespace {

// A command whose rules the test decides on.
class TestCommand final : public ValueBase::CommandOnValue
{
public:
    struct Rules
    {
        std::size_t target = 0;
        bool kept = false;
        bool dropsContent = false;
    };

    TestCommand(int id, Rules rules)
        : CommandOnValue(id, nullptr, nullptr)
        , m_rules(rules)
    {}

    void Execute() override {}
    TestCommand* Clone() const override { return new TestCommand(*this); }
    std::optional<std::size_t> TargetHash() const override
    {
        ++looks;
        return m_rules.target % 4; // collides on purpose
    }
    bool Supersedes(const CommandOnValue& earlier) const override
    {
        ++looks;
        const auto* const same = dynamic_cast<const TestCommand*>(&earlier);
        return same && same->m_rules.target == m_rules.target;
    }
    bool SupersedesContent() const override { return m_rules.dropsContent; }
    bool IsKept() const override { return m_rules.kept; }

    static inline int looks = 0; // how often a command was asked how it stands to others

private:
    Rules m_rules;
};

// Not a command on a value at all.
class Stranger final : public Command
{
public:
    void Execute() override {}
    int GetCommandId() const override { return 77; }
    void AddCommandString(std::string&) const override {}
    Stranger* Clone() const override { return new Stranger; }
};

std::vector<int> idsOf(const CommandList& commands)
{
    std::vector<int> result;
    for (const auto& command : commands) {
        result.push_back(command->GetCommandId());
    }
    return result;
}

} // namespace

class tst_CommandOptimizer : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void leavesOutWhatALaterCommandReplaces();
    void keepsTargetsApartWhoseHashesCollide();
    void leavesKeptCommandsIn();
    void dropsContentButNoStatesAndNotifications();
    void passesOnWhatIsNoCommandOnAValue();
    void isEmptyAfterItGaveItsCommands();
    void costsTheSameHoweverLongTheList();

private:
    void add(int id, TestCommand::Rules rules) { m_optimizer.Add(std::make_unique<TestCommand>(id, rules)); }
    int looksAtKeptCommands(int count);

    CommandListOptimizer m_optimizer;
};

void tst_CommandOptimizer::leavesOutWhatALaterCommandReplaces()
{
    add(100, {1});
    add(101, {2});
    add(102, {1});
    add(103, {1});
    QCOMPARE(idsOf(m_optimizer.Take()), std::vector<int>({101, 103}));
}

void tst_CommandOptimizer::keepsTargetsApartWhoseHashesCollide()
{
    add(100, {1});
    add(101, {5});
    add(102, {9});
    add(103, {5});
    QCOMPARE(idsOf(m_optimizer.Take()), std::vector<int>({100, 102, 103}));
}

void tst_CommandOptimizer::leavesKeptCommandsIn()
{
    add(100, {1, true});
    add(101, {1});
    add(102, {1, true});
    QCOMPARE(idsOf(m_optimizer.Take()), std::vector<int>({100, 102}));
}

void tst_CommandOptimizer::dropsContentButNoStatesAndNotifications()
{
    Value<int> value;
    m_optimizer.Add(std::make_unique<CommandState>(&value, TValueState::Locked, nullptr));
    add(100, {1});
    m_optimizer.Add(std::make_unique<CommandHasChanged>(&value, TChangeCode::ValueChanged, nullptr));
    add(101, {2, true});
    add(102, {.dropsContent = true});
    add(103, {1});
    m_optimizer.Add(std::make_unique<CommandState>(&value, TValueState::Open, nullptr));
    QCOMPARE(idsOf(m_optimizer.Take()), std::vector<int>({2, 102, 103, 1}));
}

void tst_CommandOptimizer::passesOnWhatIsNoCommandOnAValue()
{
    m_optimizer.Add(std::make_unique<Stranger>());
    add(100, {1});
    m_optimizer.Add(std::make_unique<Stranger>());
    QCOMPARE(idsOf(m_optimizer.Take()), std::vector<int>({77, 100, 77}));
}

void tst_CommandOptimizer::isEmptyAfterItGaveItsCommands()
{
    add(100, {1});
    QCOMPARE(m_optimizer.Take().size(), std::size_t{1});
    QVERIFY(m_optimizer.Take().empty());
    add(101, {1});
    QCOMPARE(idsOf(m_optimizer.Take()), std::vector<int>({101}));
}

// A list in which nothing can be left out is the dear one: it took quadratic time once.
void tst_CommandOptimizer::costsTheSameHoweverLongTheList()
{
    const int looks = looksAtKeptCommands(1000);
    QVERIFY(looks > 0);
    QCOMPARE(looksAtKeptCommands(10000), 10 * looks);
}

int tst_CommandOptimizer::looksAtKeptCommands(int count)
{
    TestCommand::looks = 0;
    for (int i = 0; i < count; ++i) {
        add(i, {1, true});
    }
    [&] { QCOMPARE(m_optimizer.Take().size(), std::size_t(count)); }();
    return TestCommand::looks;
}

QTEST_GUILESS_MAIN(tst_CommandOptimizer)
#include "tst_commandoptimizer.moc"
