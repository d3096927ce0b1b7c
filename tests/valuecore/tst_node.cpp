#include "changelogger.h"

#include <valuecore/node.h>
#include <valuecore/nodeptr.h>
#include <valuecore/tree.h>
#include <valuecore/valuetypes.h>

#include <QTest>

class tst_Node : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void listsItsChildrenInTheOrderInWhichTheyCame();
    void handleIsNullUntilTheNodeIsThere();
    void handleIsNullOnAValue();
    void handleCreatesAMissingNode();
    void handleTurnsNullWithTheNode();
    void handleIsNullAfterAFailedLookUp();
    void observingHandleHearsOfChildren();
    void observingHandleEndsItsSubscription_data();
    void observingHandleEndsItsSubscription();
    void observingHandleMovesWithItsNode();
    void observingHandleSurvivesItsNode();
    void observingHandleMayGoInItsOwnNotification();

private:
    QStringList m_log;
    ChangeLogger m_client{"client", m_log};
    std::unique_ptr<Tree> m_tree;
};

void tst_Node::init()
{
    m_log.clear();
    m_client.react({});
    m_tree = std::make_unique<Tree>();
}

void tst_Node::listsItsChildrenInTheOrderInWhichTheyCame()
{
    m_tree->CreateOrGetNode("/a/z");
    m_tree->Insert("/a", std::make_unique<Value<int>>("m"));
    m_tree->CreateOrGetNode("/a/b");
    m_tree->Remove("/a/m");
    m_tree->Insert("/a", std::make_unique<Value<int>>("m"));
    QStringList names;
    for (const TreeItem* item : m_tree->Find<Node>("/a")->GetTreeItems()) {
        names << item->GetName();
    }
    QCOMPARE(names, QStringList({"z", "b", "m"}));
}

void tst_Node::handleIsNullUntilTheNodeIsThere()
{
    NodePtr handle;
    QVERIFY(!handle);
    QVERIFY(!handle.GetFromTree("/a", m_tree.get()));
    QVERIFY(!handle);
    Node* const node = m_tree->CreateOrGetNode("/a");
    QVERIFY(!handle);
    QVERIFY(handle.GetFromTree("/a", m_tree.get()));
    QCOMPARE(handle.get(), node);
    QCOMPARE(handle->GetName(), QStringLiteral("a"));
    handle.Reset();
    QVERIFY(!handle);
}

void tst_Node::handleIsNullOnAValue()
{
    m_tree->Insert("/a", std::make_unique<Value<int>>("b"));
    NodePtr handle;
    QVERIFY(!handle.GetFromTree("/a/b", m_tree.get()));
    QVERIFY(!handle.CreateOrGetNode("/a/b", m_tree.get()));
    QVERIFY(!handle.CreateOrGetNode("/a/b/c", m_tree.get()));
    QVERIFY(!handle);
}

void tst_Node::handleCreatesAMissingNode()
{
    NodePtr handle;
    QVERIFY(handle.CreateOrGetNode("/a/b", m_tree.get()));
    QCOMPARE(handle.get(), m_tree->Find<Node>("/a/b"));
    NodePtr second;
    QVERIFY(second.CreateOrGetNode("/a/b", m_tree.get()));
    QCOMPARE(second.get(), handle.get());
    const NodePtr copy(second);
    QCOMPARE(copy.get(), handle.get());
}

void tst_Node::handleTurnsNullWithTheNode()
{
    NodePtr handle;
    handle.CreateOrGetNode("/a/b", m_tree.get());
    m_tree->Remove("/a");
    QVERIFY(!handle);
    m_tree->CreateOrGetNode("/a/b");
    QVERIFY(!handle);
}

void tst_Node::handleIsNullAfterAFailedLookUp()
{
    NodePtr handle;
    handle.CreateOrGetNode("/a", m_tree.get());
    QVERIFY(!handle.GetFromTree("/b", m_tree.get()));
    QVERIFY(!handle);
}

void tst_Node::observingHandleHearsOfChildren()
{
    NodeObservingPtr handle(&m_client);
    QVERIFY(!handle.GetFromTree("/a", m_tree.get()));
    QVERIFY(handle.CreateOrGetNode("/a", m_tree.get()));
    m_tree->CreateOrGetNode("/a/b");
    m_tree->Remove("/a/b");
    QCOMPARE(m_log, QStringList({"client 16", "client 18"}));
}

void tst_Node::observingHandleEndsItsSubscription_data()
{
    QTest::addColumn<QString>("way");
    QTest::newRow("by a reset") << "reset";
    QTest::newRow("by its end") << "end";
    QTest::newRow("by a look-up that fails") << "look-up";
}

void tst_Node::observingHandleEndsItsSubscription()
{
    QFETCH(QString, way);
    auto handle = std::make_unique<NodeObservingPtr>(&m_client);
    handle->CreateOrGetNode("/a", m_tree.get());
    Node* const node = handle->get();
    QCOMPARE(node->ObserverCount(), std::size_t{1});
    if (way == "reset") {
        handle->Reset();
    } else if (way == "end") {
        handle.reset();
    } else {
        QVERIFY(!handle->GetFromTree("/none", m_tree.get()));
    }
    m_tree->CreateOrGetNode("/a/b");
    QCOMPARE(m_log, QStringList());
    QCOMPARE(node->ObserverCount(), std::size_t{0});
}

void tst_Node::observingHandleMovesWithItsNode()
{
    NodeObservingPtr handle(&m_client);
    handle.CreateOrGetNode("/a", m_tree.get());
    handle.CreateOrGetNode("/b", m_tree.get());
    handle.GetFromTree("/b", m_tree.get()); // the same once more: no second subscription, no gap
    m_tree->CreateOrGetNode("/a/x");
    QCOMPARE(m_log, QStringList());
    m_tree->CreateOrGetNode("/b/x");
    QCOMPARE(m_log, QStringList({"client 16"}));
}

void tst_Node::observingHandleSurvivesItsNode()
{
    NodeObservingPtr handle(&m_client);
    handle.CreateOrGetNode("/a", m_tree.get());
    m_tree->Remove("/a");
    QVERIFY(!handle);
    QVERIFY(handle.CreateOrGetNode("/a", m_tree.get()));
    m_tree->CreateOrGetNode("/a/b");
    QCOMPARE(m_log, QStringList({"client 16"}));
    m_tree.reset();
    QVERIFY(!handle);
}

void tst_Node::observingHandleMayGoInItsOwnNotification()
{
    auto handle = std::make_unique<NodeObservingPtr>(&m_client);
    handle->CreateOrGetNode("/a", m_tree.get());
    m_client.react([&](Observable*, TChangeCode) { handle.reset(); });
    m_tree->CreateOrGetNode("/a/b");
    m_tree->CreateOrGetNode("/a/c");
    QCOMPARE(m_log, QStringList({"client 16"}));
}

QTEST_GUILESS_MAIN(tst_Node)
#include "tst_node.moc"
