#include "frametext.h"

#include <zelkobase/connection/linkvtclient_p.h>

#include <observerbase/iobserver.h>
#include <valuecore/tree.h>
#include <valuecore/valuetypes.h>

#include <QtTest>

using ZelkoCommon::LinkVtClient;

namespace {

class Server final : public IObserver
{
public:
    void Update(Observable*, TChangeCode) override {}
};

struct Fixture
{
    Tree tree;
    Server server;
    QStringList sent;
    Value<int>* announced = tree.Emplace("/A", std::make_unique<Value<int>>("Announced"));
    Value<int>* local = tree.Emplace("/A", std::make_unique<Value<int>>("Local"));
    LinkVtClient client{&server, [this](const ValueBase& value) { return &value == announced ? 7u : 0u; },
                        [this](const ValueBase&, const std::string& frame) { sent << frameTexts(frame); }};
};

} // namespace

class TestLinkVtClient : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void sendsWritesToValuesThatWereAdded();
    void sendsARepeatedCommand();
    void sendsNothingOfOtherValues();
    void neverEchoesTheServer();
    void takesOnlyWhatTheServerAnnounced();
    void addsAValueOnce();
    void sendsNothingAfterAValueWasRemoved();
    void sendsNothingAfterItsEnd();
    void outlivesItsValues();
    void leavesValuesThatAnotherTookOver();
};

void TestLinkVtClient::sendsWritesToValuesThatWereAdded()
{
    Fixture f;
    f.client.AddValue(f.announced, 0);
    f.announced->SetValue(1, nullptr);
    f.announced->SetValue(2, nullptr);
    f.announced->SetValue(2, nullptr);
    QCOMPARE(f.sent, (QStringList{"commands 7", "commands 7"}));
}

void TestLinkVtClient::sendsARepeatedCommand()
{
    Fixture f;
    f.client.AddValue(f.announced, 0);
    f.announced->HasChanged(TChangeCode::ValueChanged, nullptr);
    f.announced->HasChanged(TChangeCode::ValueChanged, nullptr);
    QCOMPARE(f.sent, (QStringList{"commands 7", "commands 7"}));
}

void TestLinkVtClient::sendsNothingOfOtherValues()
{
    Fixture f;
    f.announced->SetValue(1, nullptr);
    QCOMPARE(f.sent, QStringList());
}

void TestLinkVtClient::neverEchoesTheServer()
{
    Fixture f;
    f.client.AddValue(f.announced, 0);
    f.announced->SetValue(1, &f.server);
    f.announced->HasChanged(TChangeCode::ValueChanged, &f.server);
    f.announced->SetState(TValueState::Locked, &f.server);
    QCOMPARE(f.sent, QStringList());
}

void TestLinkVtClient::takesOnlyWhatTheServerAnnounced()
{
    Fixture f;
    f.client.AddValue(f.local, 0);
    f.client.AddValue(nullptr, 0);
    f.local->SetValue(1, nullptr);
    QVERIFY(!f.local->GetTransmitter());
    QCOMPARE(f.sent, QStringList());
}

void TestLinkVtClient::addsAValueOnce()
{
    Fixture f;
    f.client.AddValue(f.announced, 0);
    f.client.AddValue(f.announced, 0);
    f.announced->SetValue(1, nullptr);
    QCOMPARE(f.sent, QStringList{"commands 7"});
}

void TestLinkVtClient::sendsNothingAfterAValueWasRemoved()
{
    Fixture f;
    f.client.AddValue(f.announced, 0);
    f.client.RemoveValue(f.announced);
    f.client.RemoveValue(f.announced);
    f.client.RemoveValue(f.local);
    f.client.RemoveValue(nullptr);
    f.announced->SetValue(1, nullptr);
    QCOMPARE(f.sent, QStringList());
}

void TestLinkVtClient::sendsNothingAfterItsEnd()
{
    Fixture f;
    f.client.AddValue(f.announced, 0);
    f.client.close();
    f.announced->SetValue(1, nullptr);
    f.client.AddValue(f.announced, 0);
    f.announced->SetValue(2, nullptr);
    QCOMPARE(f.sent, QStringList());
}

void TestLinkVtClient::outlivesItsValues()
{
    Fixture f;
    f.client.AddValue(f.announced, 0);
    f.tree.Remove("/A");
    f.client.close();
    QCOMPARE(f.sent, QStringList());
}

void TestLinkVtClient::leavesValuesThatAnotherTookOver()
{
    Fixture f;
    f.client.AddValue(f.announced, 0);
    int sentByOther = 0;
    LinkVtClient other(
        &f.server, [](const ValueBase&) { return 1u; }, [&](const ValueBase&, const std::string&) { ++sentByOther; });
    other.AddValue(f.announced, 0);
    f.client.close();
    f.announced->SetValue(1, nullptr);
    QCOMPARE(sentByOther, 1);
    QCOMPARE(f.sent, QStringList());
}

QTEST_APPLESS_MAIN(TestLinkVtClient)
#include "tst_linkvtclient.moc"
