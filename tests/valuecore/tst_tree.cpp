#include "changelogger.h"

#include <valuecore/itreelistener.h>
#include <valuecore/node.h>
#include <valuecore/tree.h>
#include <valuecore/valueptr.h>
#include <valuecore/valuetypes.h>

#include <QTest>

namespace {

using Number = Value<int>;

// Writes what comes and goes into the log of the observers.
class ListenerLog final : public ITreeListener
{
public:
    explicit ListenerLog(QStringList& log)
        : m_log(log)
    {}
    void ItemInserted(TreeItem& item) override { m_log << "+" + item.GetPathName(); }
    void ItemRemoving(TreeItem& item) override
    {
        m_log << "-" + item.GetPathName();
        m_stood = m_stood && item.GetTree()->GetItem(item.GetPathName()) == &item;
    }
    bool everyItemStoodWhenItWasToGo() const { return m_stood; }

private:
    QStringList& m_log;
    bool m_stood = true;
};

} // namespace

class tst_Tree : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void hasARootAndNothingElseAtFirst();
    void hasOneInstanceOfTheClientBesideOthers();
    void findsWhatWasPutIn();
    void readsPathsGenerously_data();
    void readsPathsGenerously();
    void findsOnlyTheRightType();
    void createsTheNodesOnTheWayOnce();
    void refusesWhatCannotStand_data();
    void refusesWhatCannotStand();
    void refusesASecondItemOfTheSameName();
    void refusesToStandBelowAValue();
    void refusesPathsThatAreTooLong();
    void tellsObserversOfAParentAfterTheFact();
    void knowsParentPathAndTreeOfAnItem();
    void keepsTheNameOfAnItemThatStands();
    void removesASubtreeDeepestFirst();
    void doesNotRemoveWhatIsNotThere();
    void tellsTheDeletionWhileTheValueStillExists();
    void destroysAnItemBeforeItsParentTells();
    void removesWhatAnObserverIsRemovingAlready();
    void removesTheParentFromWithinTheDeletionOfAChild();
    void refusesToPutAnItemBackUnderANodeThatGoes();
    void takesAnItemBackAtOnceUnderANodeThatStays();
    void givesNullWhenAnObserverRemovedTheNewItem();
    void tellsItsListenerOfEachItem();
    void deletesEverythingAtItsEnd();

private:
    Number* put(const QString& parent, const QString& name)
    {
        return m_tree->Emplace(parent, std::make_unique<Number>(name));
    }

    // Lives until after the tree of the test.
    ChangeLogger& logger(const QString& name)
    {
        return *m_loggers.emplace_back(std::make_unique<ChangeLogger>(name, m_log));
    }

    QStringList m_log;
    std::vector<std::unique_ptr<ChangeLogger>> m_loggers;
    std::unique_ptr<Tree> m_tree;
};

void tst_Tree::init()
{
    for (const auto& logger : m_loggers) {
        logger->react({}); // it may refer to what was local to the test
    }
    m_tree = std::make_unique<Tree>();
    m_loggers.clear();
    m_log.clear();
}

void tst_Tree::hasARootAndNothingElseAtFirst()
{
    QVERIFY(m_tree->GetRoot());
    QVERIFY(m_tree->GetRoot()->GetTreeItems().empty());
    QCOMPARE(m_tree->GetItem("/"), m_tree->GetRoot());
    QCOMPARE(m_tree->GetItem(QString()), m_tree->GetRoot());
    QCOMPARE(m_tree->GetRoot()->GetParent(), nullptr);
    QVERIFY(!m_tree->GetItem("/SubSystems"));
}

void tst_Tree::hasOneInstanceOfTheClientBesideOthers()
{
    QCOMPARE(Tree::Instance(), Tree::Instance());
    QVERIFY(Tree::Instance()->CreateOrGetNode("/tst_Tree/own"));
    QVERIFY(!m_tree->GetItem("/tst_Tree/own"));
    QVERIFY(Tree::Instance()->Remove("/tst_Tree"));
}

void tst_Tree::findsWhatWasPutIn()
{
    Number* const value = put("/SubSystems/north/ZELKO", "LoadCount");
    QVERIFY(value);
    QCOMPARE(m_tree->GetItem("/SubSystems/north/ZELKO/LoadCount"), value);
    QVERIFY(!m_tree->GetItem("/SubSystems/north/ZELKO/LoadCoun"));
    QVERIFY(!m_tree->GetItem("/SubSystems/north/ZELKO/LoadCount/x"));
    QVERIFY(!m_tree->GetItem("/subsystems/north/ZELKO/LoadCount"));
}

void tst_Tree::readsPathsGenerously_data()
{
    QTest::addColumn<QString>("path");
    QTest::addColumn<bool>("found");
    QTest::newRow("as written") << "/a/b" << true;
    QTest::newRow("without the first separator") << "a/b" << true;
    QTest::newRow("with a last separator") << "/a/b/" << true;
    QTest::newRow("with several last separators") << "/a/b//" << true;
    QTest::newRow("with an empty piece") << "/a//b" << false;
    QTest::newRow("with two first separators") << "//a/b" << false;
    QTest::newRow("with a blank") << "/a/b " << false;
}

void tst_Tree::readsPathsGenerously()
{
    put("/a", "b");
    QFETCH(QString, path);
    QTEST(m_tree->GetItem(path) != nullptr, "found");
}

void tst_Tree::findsOnlyTheRightType()
{
    Number* const value = put("/a", "b");
    QCOMPARE(m_tree->Find<Number>("/a/b"), value);
    QVERIFY(!m_tree->Find<Value<QString>>("/a/b"));
    QVERIFY(!m_tree->Find<Node>("/a/b"));
    QVERIFY(m_tree->Find<Node>("/a"));
    QVERIFY(m_tree->Find<ValueBase>("/a/b"));
    QVERIFY(!m_tree->Find<Number>("/none"));
}

void tst_Tree::createsTheNodesOnTheWayOnce()
{
    Node* const node = m_tree->CreateOrGetNode("/a/b/c");
    QVERIFY(node);
    QCOMPARE(node->GetPathName(), QStringLiteral("/a/b/c"));
    QCOMPARE(m_tree->CreateOrGetNode("/a/b/c/"), node);
    QCOMPARE(m_tree->CreateOrGetNode("a/b"), node->GetParent());
    QCOMPARE(m_tree->CreateOrGetNode("/"), m_tree->GetRoot());
    QVERIFY(!m_tree->CreateOrGetNode("/a//d"));
    QVERIFY(!m_tree->GetItem("/a/d"));
}

void tst_Tree::refusesWhatCannotStand_data()
{
    QTest::addColumn<QString>("parent");
    QTest::addColumn<QString>("name");
    QTest::newRow("no name") << "/x/y"
                             << "";
    QTest::newRow("a name with a separator") << "/x/y"
                                             << "a/b";
    QTest::newRow("a parent with an empty piece") << "/x//y"
                                                  << "a";
}

void tst_Tree::refusesWhatCannotStand()
{
    QFETCH(QString, parent);
    QFETCH(QString, name);
    QVERIFY(!put(parent, name));
    QVERIFY(m_tree->GetRoot()->GetTreeItems().empty());
    QVERIFY(!m_tree->Insert("/x", nullptr));
    QVERIFY(m_tree->GetRoot()->GetTreeItems().empty());
}

void tst_Tree::refusesASecondItemOfTheSameName()
{
    Number* const first = put("/a", "b");
    QVERIFY(!put("/a", "b"));
    QVERIFY(!m_tree->Insert("/a", std::make_unique<Node>("b")));
    QCOMPARE(m_tree->GetItem("/a/b"), first);
    QCOMPARE(m_tree->Find<Node>("/a")->GetTreeItems().size(), std::size_t{1});
}

void tst_Tree::refusesToStandBelowAValue()
{
    put("/a", "b");
    QVERIFY(!put("/a/b", "c"));
    QVERIFY(!put("/a/b/c", "d"));
    QVERIFY(!m_tree->CreateOrGetNode("/a/b"));
    QVERIFY(!m_tree->CreateOrGetNode("/a/b/c"));
}

void tst_Tree::refusesPathsThatAreTooLong()
{
    const qsizetype most = Tree::MaximumPathLength;
    QVERIFY(put("/", QString(most - 1, 'n')));
    QVERIFY(!put("/", QString(most, 'n')));
    const QString deepest = QString("/x").repeated(most / 2);
    QVERIFY(m_tree->CreateOrGetNode(deepest));
    QVERIFY(!put(deepest, "n"));
    QVERIFY(!m_tree->CreateOrGetNode(QString("/y").repeated(1000000)));
    QVERIFY(!m_tree->GetItem("/y"));
    QVERIFY(m_tree->Remove("/x"));
}

void tst_Tree::tellsObserversOfAParentAfterTheFact()
{
    ChangeLogger& observer = logger("a");
    std::vector<std::size_t> seen;
    observer.react(
        [&](Observable* source, TChangeCode) { seen.push_back(dynamic_cast<Node*>(source)->GetTreeItems().size()); });
    m_tree->CreateOrGetNode("/a")->AddObserver(&observer);
    put("/a", "one");
    put("/a", "two");
    m_tree->CreateOrGetNode("/a/three/four"); // below a child: the node hears of its own children only
    m_tree->Remove("/a/one");
    m_tree->Remove("/a/three");
    QCOMPARE(m_log, QStringList({"a 16", "a 16", "a 16", "a 18", "a 18"}));
    QCOMPARE(seen, std::vector<std::size_t>({1, 2, 3, 2, 1}));
}

void tst_Tree::knowsParentPathAndTreeOfAnItem()
{
    Number free("free");
    QCOMPARE(free.GetPathName(), QStringLiteral("free"));
    QVERIFY(!free.GetTree());
    QVERIFY(!free.GetParent());
    QVERIFY(!free.GetNode("x"));
    QVERIFY(!free.GetNode(QString()));

    Number* const value = put("/a/b", "c");
    QCOMPARE(value->GetPathName(), QStringLiteral("/a/b/c"));
    QCOMPARE(value->GetTree(), m_tree.get());
    QCOMPARE(value->GetParent(), m_tree->Find<Node>("/a/b"));
    Node* const top = m_tree->Find<Node>("/a");
    QCOMPARE(top->GetNode("b"), value->GetParent());
    QCOMPARE(top->GetNode(QString()), top);
    QVERIFY(!top->GetNode("b/c"));
    QVERIFY(!top->GetNode("none"));
    QCOMPARE(m_tree->GetRoot()->GetNode("a/b"), value->GetParent());
}

void tst_Tree::keepsTheNameOfAnItemThatStands()
{
    auto item = std::make_unique<Number>();
    item->SetName("before");
    Number* const value = m_tree->Emplace("/a", std::move(item));
    value->SetName("after");
    QCOMPARE(value->GetName(), QStringLiteral("before"));
    QCOMPARE(value->GetPathName(), QStringLiteral("/a/before"));
}

void tst_Tree::removesASubtreeDeepestFirst()
{
    ListenerLog listener(m_log);
    put("/a/b", "c");
    put("/a/b", "d");
    put("/a", "e");
    put("/other", "f");
    m_tree->SetListener(&listener);
    QVERIFY(m_tree->Remove("/a"));
    QCOMPARE(m_log, QStringList({"-/a/e", "-/a/b/d", "-/a/b/c", "-/a/b", "-/a"}));
    QVERIFY(listener.everyItemStoodWhenItWasToGo());
    QVERIFY(!m_tree->GetItem("/a"));
    QVERIFY(!m_tree->GetItem("/a/b/c"));
    QVERIFY(m_tree->GetItem("/other/f"));
}

void tst_Tree::doesNotRemoveWhatIsNotThere()
{
    put("/a", "b");
    QVERIFY(!m_tree->Remove("/a/c"));
    QVERIFY(!m_tree->Remove("/"));
    QVERIFY(!m_tree->Remove(QString()));
    QVERIFY(m_tree->Remove("/a/b"));
    QVERIFY(!m_tree->Remove("/a/b"));
    QVERIFY(m_tree->GetItem("/a"));
}

void tst_Tree::tellsTheDeletionWhileTheValueStillExists()
{
    ChangeLogger& observer = logger("value");
    ChangeLogger& parent = logger("parent");
    Number* const value = put("/a", "b");
    value->SetValue(7, nullptr);
    value->AddObserver(&observer);
    m_tree->Find<Node>("/a")->AddObserver(&parent);
    observer.react([&](Observable* source, TChangeCode) {
        QCOMPARE(source, value);
        QCOMPARE(value->GetState(), TValueState::Deleted);
        QCOMPARE(value->GetValue(), 7);
        QCOMPARE(m_tree->GetItem("/a/b"), value);
    });
    m_tree->Remove("/a/b");
    QCOMPARE(m_log, QStringList({"value 2", "parent 18"}));
}

void tst_Tree::destroysAnItemBeforeItsParentTells()
{
    ChangeLogger& parent = logger("parent");
    const ValuePtr<Number> handle(put("/a", "b"));
    bool wasNull = false;
    m_tree->Find<Node>("/a")->AddObserver(&parent);
    parent.react([&](Observable*, TChangeCode) { wasNull = !handle && !m_tree->GetItem("/a/b"); });
    m_tree->Remove("/a/b");
    QCOMPARE(m_log, QStringList({"parent 18"}));
    QVERIFY(wasNull);
}

void tst_Tree::removesWhatAnObserverIsRemovingAlready()
{
    ChangeLogger& observer = logger("value");
    ChangeLogger& parent = logger("parent");
    ListenerLog listener(m_log);
    put("/a", "b")->AddObserver(&observer);
    m_tree->Find<Node>("/a")->AddObserver(&parent);
    m_tree->SetListener(&listener);
    observer.react([&](Observable*, TChangeCode) { m_tree->Remove("/a/b"); });
    QVERIFY(m_tree->Remove("/a/b"));
    QCOMPARE(m_log, QStringList({"value 2", "-/a/b", "parent 18"}));
    QVERIFY(!m_tree->GetItem("/a/b"));
}

void tst_Tree::removesTheParentFromWithinTheDeletionOfAChild()
{
    ChangeLogger& observer = logger("value");
    ListenerLog listener(m_log);
    put("/a/b", "c")->AddObserver(&observer);
    put("/a/b", "d");
    m_tree->SetListener(&listener);
    observer.react([&](Observable*, TChangeCode) { m_tree->Remove("/a"); });
    QVERIFY(m_tree->Remove("/a/b/c"));
    QCOMPARE(m_log, QStringList({"value 2", "-/a/b/d", "-/a/b/c", "-/a/b", "-/a"}));
    QVERIFY(m_tree->GetRoot()->GetTreeItems().empty());
}

void tst_Tree::refusesToPutAnItemBackUnderANodeThatGoes()
{
    ChangeLogger& observer = logger("node");
    put("/a", "b");
    m_tree->Find<Node>("/a")->AddObserver(&observer);
    observer.react([&](Observable*, TChangeCode) { QVERIFY(!put("/a", "b")); });
    QVERIFY(m_tree->Remove("/a"));
    QCOMPARE(m_log, QStringList({"node 18"}));
    QVERIFY(!m_tree->GetItem("/a"));
    QVERIFY(put("/a", "b"));
}

void tst_Tree::takesAnItemBackAtOnceUnderANodeThatStays()
{
    ChangeLogger& observer = logger("node");
    put("/a", "b");
    m_tree->Find<Node>("/a")->AddObserver(&observer);
    observer.react([&](Observable*, TChangeCode code) {
        if (code == TChangeCode::ChildRemoved) {
            put("/a", "b");
        }
    });
    QVERIFY(m_tree->Remove("/a/b"));
    QCOMPARE(m_log, QStringList({"node 18", "node 16"}));
    QVERIFY(m_tree->GetItem("/a/b"));
}

void tst_Tree::givesNullWhenAnObserverRemovedTheNewItem()
{
    ChangeLogger& observer = logger("root");
    observer.react([&](Observable*, TChangeCode code) {
        if (code == TChangeCode::ChildAdded) {
            m_tree->Remove("/a");
        }
    });
    m_tree->GetRoot()->AddObserver(&observer);
    QVERIFY(!put("/", "a"));
    QVERIFY(!put("/a", "b"));
    QVERIFY(!m_tree->CreateOrGetNode("/a"));
    QCOMPARE(m_log, QStringList({"root 16", "root 18", "root 16", "root 18", "root 16", "root 18"}));
}

void tst_Tree::tellsItsListenerOfEachItem()
{
    ListenerLog listener(m_log);
    ChangeLogger& root = logger("root");
    m_tree->GetRoot()->AddObserver(&root);
    m_tree->SetListener(&listener);
    put("/a/b", "c");
    put("/a/b", "c");
    m_tree->Remove("/a/b");
    m_tree->SetListener(nullptr);
    m_tree->Remove("/a");
    QCOMPARE(m_log, QStringList({"+/a", "root 16", "+/a/b", "+/a/b/c", "-/a/b/c", "-/a/b", "root 18"}));
}

void tst_Tree::deletesEverythingAtItsEnd()
{
    ChangeLogger& observer = logger("value");
    Number* const value = put("/a/b", "c");
    const ValuePtr<Number> handle(value);
    value->AddObserver(&observer);
    observer.react([&](Observable*, TChangeCode) { QCOMPARE(handle->GetState(), TValueState::Deleted); });
    m_tree.reset();
    QCOMPARE(m_log, QStringList({"value 2"}));
    QVERIFY(!handle);
}

QTEST_GUILESS_MAIN(tst_Tree)
#include "tst_tree.moc"
