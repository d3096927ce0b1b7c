#include "changelogger.h"

#include <valuecore/valueptr.h>
#include <valuecore/valuetypes.h>

#include <QTest>

using Number = Value<int>;

class tst_ValuePtr : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void isNullUntilTheValueIsThere();
    void isNullOnAValueOfAnotherType();
    void turnsNullWithTheValue();
    void isDroppedByNull();
    void observesOnlyWhatItPointsTo();
    void observingEndsWithTheHandle();
    void observingEndsWithAFailedLookUp();
    void pointingToTheSameAgainChangesNothing();
    void clientStandsBeforeTheHandle();
    void turnsNullWhenTheValueAnnouncesItsEnd();
    void turnsNullOnTheStateAloneAndDetachesBoth();
    void ignoresOtherStatesAndCodes();
    void clientMayDropTheHandleOnTheNoticeOfDeletion();
    void clientMayDestroyTheHandleOnTheNoticeOfDeletion();
    void clientMayPointTheHandleElsewhereOnTheNoticeOfDeletion();
    void outlivesAValueThatWentWithoutNotice();

private:
    Number* put(const QString& name) { return m_tree->Emplace("/a", std::make_unique<Number>(name)); }

    // Lives until after the tree of the test.
    ChangeLogger& logger(const QString& name)
    {
        return *m_loggers.emplace_back(std::make_unique<ChangeLogger>(name, m_log));
    }

    QStringList m_log;
    std::vector<std::unique_ptr<ChangeLogger>> m_loggers;
    ChangeLogger m_client{"client", m_log};
    std::unique_ptr<Tree> m_tree;
};

void tst_ValuePtr::init()
{
    m_client.react({});
    for (const auto& logger : m_loggers) {
        logger->react({}); // it may refer to what was local to the test
    }
    m_tree = std::make_unique<Tree>();
    m_loggers.clear();
    m_log.clear();
}

void tst_ValuePtr::isNullUntilTheValueIsThere()
{
    ValuePtr<Number> handle;
    QVERIFY(!handle);
    QVERIFY(!handle.GetFromTree("/a/b", m_tree.get()));
    Number* const value = put("b");
    QVERIFY(!handle);
    QVERIFY(handle.GetFromTree("/a/b", m_tree.get()));
    QCOMPARE(handle.get(), value);
    QCOMPARE(&*handle, value);
    QCOMPARE(handle->GetName(), QStringLiteral("b"));
    QVERIFY(!handle.GetFromTree("/a/c", m_tree.get()));
    QVERIFY(!handle);
}

void tst_ValuePtr::isNullOnAValueOfAnotherType()
{
    put("b");
    QVERIFY(!ValuePtr<Value<bool>>().GetFromTree("/a/b", m_tree.get()));
    QVERIFY(!ValuePtr<Number>().GetFromTree("/a", m_tree.get()));
    QVERIFY(ValuePtr<ValueBase>().GetFromTree("/a/b", m_tree.get()));
}

void tst_ValuePtr::turnsNullWithTheValue()
{
    ValuePtr<Number> handle(put("b"));
    const ValuePtr<Number> copy = handle;
    QVERIFY(copy);
    m_tree->Remove("/a/b");
    QVERIFY(!handle);
    QVERIFY(!copy);
    put("b");
    QVERIFY(!handle);
}

void tst_ValuePtr::isDroppedByNull()
{
    ValuePtr<Number> handle(put("b"));
    handle = nullptr;
    QVERIFY(!handle);
    handle = m_tree->Find<Number>("/a/b");
    QVERIFY(handle);
    handle.Reset();
    QVERIFY(!handle);

    ValueObservingPtr<Number> observing(&m_client);
    observing = m_tree->Find<Number>("/a/b");
    observing = nullptr;
    QVERIFY(!observing);
    QCOMPARE(m_tree->Find<Number>("/a/b")->ObserverCount(), std::size_t{0});
}

void tst_ValuePtr::observesOnlyWhatItPointsTo()
{
    Number* const one = put("one");
    Number* const two = put("two");
    ValueObservingPtr<Number> handle(&m_client);
    QVERIFY(handle.GetFromTree("/a/one", m_tree.get()));
    one->SetValue(1, nullptr);
    QVERIFY(handle.GetFromTree("/a/two", m_tree.get()));
    one->SetValue(2, nullptr);
    QCOMPARE(m_log, QStringList({"client 3"}));
    two->SetState(TValueState::Locked, nullptr);
    QCOMPARE(m_log, QStringList({"client 3", "client 2"}));
    QCOMPARE(one->ObserverCount(), std::size_t{0});
    QCOMPARE(two->ObserverCount(), std::size_t{2});
}

void tst_ValuePtr::observingEndsWithTheHandle()
{
    Number* const value = put("b");
    {
        ValueObservingPtr<Number> handle(&m_client);
        handle = value;
    }
    value->SetValue(1, nullptr);
    QCOMPARE(m_log, QStringList());
    QCOMPARE(value->ObserverCount(), std::size_t{0});
}

void tst_ValuePtr::observingEndsWithAFailedLookUp()
{
    Number* const value = put("b");
    ValueObservingPtr<Number> handle(&m_client);
    handle = value;
    QVERIFY(!handle.GetFromTree("/a/none", m_tree.get()));
    QVERIFY(!handle);
    QCOMPARE(value->ObserverCount(), std::size_t{0});
}

void tst_ValuePtr::pointingToTheSameAgainChangesNothing()
{
    ChangeLogger& other = logger("other");
    Number* const value = put("b");
    ValueObservingPtr<Number> handle(&m_client);
    handle = value;
    value->AddObserver(&other);
    handle = value;
    value->SetValue(1, nullptr);
    QCOMPARE(m_log, QStringList({"client 3", "other 3"}));
}

void tst_ValuePtr::clientStandsBeforeTheHandle()
{
    ValueObservingPtr<Number> handle(&m_client);
    handle = put("b");
    bool handleWasSet = false;
    m_client.react([&](Observable* source, TChangeCode) {
        handleWasSet =
            handle && handle.get() == dynamic_cast<Number*>(source) && handle->GetState() == TValueState::Deleted;
    });
    m_tree->Remove("/a/b");
    QVERIFY(handleWasSet);
    QVERIFY(!handle);
}

void tst_ValuePtr::turnsNullWhenTheValueAnnouncesItsEnd()
{
    ValueObservingPtr<Number> handle(&m_client);
    handle = put("b");
    ChangeLogger& last = logger("last");
    handle->AddObserver(&last);
    last.react([&](Observable*, TChangeCode) { QVERIFY(!handle); });
    m_tree->Remove("/a/b");
    QCOMPARE(m_log, QStringList({"client 2", "last 2"}));
}

void tst_ValuePtr::turnsNullOnTheStateAloneAndDetachesBoth()
{
    Number* const value = put("b");
    ValueObservingPtr<Number> handle(&m_client);
    handle = value;
    value->SetState(TValueState::Deleted, nullptr);
    QVERIFY(!handle);
    QCOMPARE(value->ObserverCount(), std::size_t{0});
    value->SetValue(4, nullptr);
    QCOMPARE(m_log, QStringList({"client 2"}));
}

void tst_ValuePtr::ignoresOtherStatesAndCodes()
{
    ValueObservingPtr<Number> handle(&m_client);
    handle = put("b");
    handle->SetState(TValueState::Locked, nullptr);
    handle->HasChanged(TChangeCode::StateChanged, nullptr);
    handle->HasChanged(TChangeCode::ChildRemoved, nullptr);
    handle->HasChanged(static_cast<TChangeCode>(1), nullptr);
    QVERIFY(handle);
    QCOMPARE(m_log, QStringList({"client 2", "client 2", "client 18", "client 1"}));
}

void tst_ValuePtr::clientMayDropTheHandleOnTheNoticeOfDeletion()
{
    ValueObservingPtr<Number> handle(&m_client);
    handle = put("b");
    m_client.react([&](Observable*, TChangeCode) { handle = nullptr; });
    m_tree->Remove("/a/b");
    QVERIFY(!handle);
    QCOMPARE(m_log, QStringList({"client 2"}));
}

void tst_ValuePtr::clientMayDestroyTheHandleOnTheNoticeOfDeletion()
{
    auto handle = std::make_unique<ValueObservingPtr<Number>>(&m_client);
    *handle = put("b");
    m_client.react([&](Observable*, TChangeCode) { handle.reset(); });
    m_tree->Remove("/a/b");
    QCOMPARE(m_log, QStringList({"client 2"}));
}

void tst_ValuePtr::clientMayPointTheHandleElsewhereOnTheNoticeOfDeletion()
{
    Number* const other = put("other");
    ValueObservingPtr<Number> handle(&m_client);
    handle = put("b");
    m_client.react([&](Observable*, TChangeCode code) {
        if (code == TChangeCode::StateChanged) {
            handle = other;
        }
    });
    m_tree->Remove("/a/b");
    QCOMPARE(handle.get(), other);
    other->SetValue(1, nullptr);
    QCOMPARE(m_log, QStringList({"client 2", "client 3"}));
}

void tst_ValuePtr::outlivesAValueThatWentWithoutNotice()
{
    ValueObservingPtr<Number> handle(&m_client);
    auto value = std::make_unique<Number>();
    handle = value.get();
    value.reset();
    QVERIFY(!handle);
    handle.Reset();
    Number next;
    handle = &next;
    next.SetValue(1, nullptr);
    QCOMPARE(m_log, QStringList({"client 3"}));
}

QTEST_GUILESS_MAIN(tst_ValuePtr)
#include "tst_valueptr.moc"
