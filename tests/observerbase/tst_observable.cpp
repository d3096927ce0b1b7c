#include "changelogger.h"

#include <observerbase/observable.h>

#include <QTest>

#include <memory>
#include <stdexcept>

namespace {
constexpr TChangeCode changed = TChangeCode::ValueChanged;
}

class tst_Observable : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void tellsItsObserversInTheOrderInWhichTheyCame();
    void tellsAnObserverOnceThatWasAddedTwice();
    void tellsTheCodeAndTheSource();
    void skipsTheOrigin();
    void doesNotMindNullAndStrangers();
    void putsTheFirstObserverFirst();
    void removesOneOrAll();
    void doesNotCallAnObserverThatWasRemovedMeanwhile();
    void letsAnObserverRemoveItself();
    void callsWhoWasAddedMeanwhileFromTheNextNotificationOn();
    void callsWhoWasRemovedAndAddedAgainOnlyNextTime();
    void movesToTheFrontAfterTheNotification();
    void forgetsAMoveToTheFrontOfWhoWasRemoved();
    void letsEveryoneGoInTheMiddle();
    void diesInTheMiddleOfANotification();
    void diesInANestedNotification();
    void keepsItsOrderThroughNestedNotifications();
    void staysUsableAfterAnObserverThrew();
    void copiesNoObservers();

private:
    QStringList m_log;
    ChangeLogger m_a{"a", m_log};
    ChangeLogger m_b{"b", m_log};
    ChangeLogger m_c{"c", m_log};
    std::unique_ptr<Observable> m_source;
};

void tst_Observable::init()
{
    m_log.clear();
    m_source = std::make_unique<Observable>();
    for (ChangeLogger* const observer : {&m_a, &m_b, &m_c}) {
        observer->react({});
        m_source->AddObserver(observer);
    }
}

void tst_Observable::tellsItsObserversInTheOrderInWhichTheyCame()
{
    m_source->NotifyObservers(changed, nullptr);
    QCOMPARE(m_log, QStringList({"a 3", "b 3", "c 3"}));
    QCOMPARE(m_source->ObserverCount(), std::size_t{3});
}

void tst_Observable::tellsAnObserverOnceThatWasAddedTwice()
{
    m_source->AddObserver(&m_a);
    m_source->NotifyObservers(changed, nullptr);
    QCOMPARE(m_log, QStringList({"a 3", "b 3", "c 3"}));
}

void tst_Observable::tellsTheCodeAndTheSource()
{
    Observable* told = nullptr;
    m_b.react([&](Observable* source, TChangeCode) { told = source; });
    m_source->NotifyObservers(TChangeCode::ChildRemoved, nullptr);
    m_source->NotifyObservers(static_cast<TChangeCode>(99), nullptr);
    QCOMPARE(told, m_source.get());
    QCOMPARE(m_log, QStringList({"a 18", "b 18", "c 18", "a 99", "b 99", "c 99"}));
}

void tst_Observable::skipsTheOrigin()
{
    m_source->NotifyObservers(changed, &m_b);
    QCOMPARE(m_log, QStringList({"a 3", "c 3"}));
}

void tst_Observable::doesNotMindNullAndStrangers()
{
    ChangeLogger stranger("stranger", m_log);
    m_source->AddObserver(nullptr);
    m_source->DeleteObserver(nullptr);
    m_source->DeleteObserver(&stranger);
    m_source->MakeFirstObserver(nullptr);
    m_source->MakeFirstObserver(&stranger);
    m_source->NotifyObservers(changed, &stranger);
    QCOMPARE(m_log, QStringList({"a 3", "b 3", "c 3"}));

    Observable lonely;
    lonely.DeleteObserver(&m_a);
    lonely.DeleteObservers();
    lonely.MakeFirstObserver(&m_a);
    lonely.NotifyObservers(changed, nullptr);
    QCOMPARE(lonely.ObserverCount(), std::size_t{0});
    QCOMPARE(m_log.size(), 3);
}

void tst_Observable::putsTheFirstObserverFirst()
{
    m_source->MakeFirstObserver(&m_c);
    m_source->NotifyObservers(changed, nullptr);
    QCOMPARE(m_log, QStringList({"c 3", "a 3", "b 3"}));
}

void tst_Observable::removesOneOrAll()
{
    m_source->DeleteObserver(&m_b);
    m_source->NotifyObservers(changed, nullptr);
    QCOMPARE(m_log, QStringList({"a 3", "c 3"}));
    m_source->DeleteObservers();
    m_source->NotifyObservers(changed, nullptr);
    QCOMPARE(m_log, QStringList({"a 3", "c 3"}));
    QCOMPARE(m_source->ObserverCount(), std::size_t{0});
}

void tst_Observable::doesNotCallAnObserverThatWasRemovedMeanwhile()
{
    m_a.react([&](Observable* source, TChangeCode) { source->DeleteObserver(&m_b); });
    m_source->NotifyObservers(changed, nullptr);
    QCOMPARE(m_log, QStringList({"a 3", "c 3"}));
    QCOMPARE(m_source->ObserverCount(), std::size_t{2});
}

void tst_Observable::letsAnObserverRemoveItself()
{
    m_b.react([&](Observable* source, TChangeCode) { source->DeleteObserver(&m_b); });
    m_source->NotifyObservers(changed, nullptr);
    m_source->NotifyObservers(changed, nullptr);
    QCOMPARE(m_log, QStringList({"a 3", "b 3", "c 3", "a 3", "c 3"}));
}

void tst_Observable::callsWhoWasAddedMeanwhileFromTheNextNotificationOn()
{
    ChangeLogger late("late", m_log);
    m_a.react([&](Observable* source, TChangeCode) { source->AddObserver(&late); });
    m_source->NotifyObservers(changed, nullptr);
    m_source->NotifyObservers(changed, nullptr);
    QCOMPARE(m_log, QStringList({"a 3", "b 3", "c 3", "a 3", "b 3", "c 3", "late 3"}));
}

void tst_Observable::callsWhoWasRemovedAndAddedAgainOnlyNextTime()
{
    m_a.react([&](Observable* source, TChangeCode) {
        source->DeleteObserver(&m_b);
        source->AddObserver(&m_b);
        m_a.react({});
    });
    m_source->NotifyObservers(changed, nullptr);
    QCOMPARE(m_log, QStringList({"a 3", "c 3"}));
    m_source->NotifyObservers(changed, nullptr);
    QCOMPARE(m_log, QStringList({"a 3", "c 3", "a 3", "c 3", "b 3"}));
}

void tst_Observable::movesToTheFrontAfterTheNotification()
{
    m_a.react([&](Observable* source, TChangeCode) { source->MakeFirstObserver(&m_c); });
    m_source->NotifyObservers(changed, nullptr);
    QCOMPARE(m_log, QStringList({"a 3", "b 3", "c 3"}));
    m_log.clear();
    m_source->NotifyObservers(changed, nullptr);
    QCOMPARE(m_log, QStringList({"c 3", "a 3", "b 3"}));
}

void tst_Observable::forgetsAMoveToTheFrontOfWhoWasRemoved()
{
    m_a.react([&](Observable* source, TChangeCode) {
        source->MakeFirstObserver(&m_c);
        source->DeleteObserver(&m_c);
        source->AddObserver(&m_c);
        m_a.react({});
    });
    m_source->NotifyObservers(changed, nullptr);
    m_log.clear();
    m_source->NotifyObservers(changed, nullptr);
    QCOMPARE(m_log, QStringList({"a 3", "b 3", "c 3"}));
}

void tst_Observable::letsEveryoneGoInTheMiddle()
{
    m_a.react([&](Observable* source, TChangeCode) { source->DeleteObservers(); });
    m_source->NotifyObservers(changed, nullptr);
    m_source->NotifyObservers(changed, nullptr);
    QCOMPARE(m_log, QStringList({"a 3"}));
}

void tst_Observable::diesInTheMiddleOfANotification()
{
    m_b.react([&](Observable*, TChangeCode) { m_source.reset(); });
    m_source->NotifyObservers(changed, nullptr);
    QCOMPARE(m_log, QStringList({"a 3", "b 3"}));
    QVERIFY(!m_source);
}

void tst_Observable::diesInANestedNotification()
{
    m_a.react([&](Observable* source, TChangeCode code) {
        if (code == changed) {
            source->NotifyObservers(TChangeCode::StateChanged, nullptr);
        }
    });
    m_b.react([&](Observable*, TChangeCode) { m_source.reset(); });
    m_source->NotifyObservers(changed, nullptr);
    QCOMPARE(m_log, QStringList({"a 3", "a 2", "b 2"}));
}

void tst_Observable::keepsItsOrderThroughNestedNotifications()
{
    ChangeLogger late("late", m_log);
    m_a.react([&](Observable* source, TChangeCode code) {
        if (code == changed) {
            source->DeleteObserver(&m_b);
            source->AddObserver(&late);
            source->NotifyObservers(TChangeCode::StateChanged, nullptr);
        }
    });
    m_source->NotifyObservers(changed, nullptr);
    QCOMPARE(m_log, QStringList({"a 3", "a 2", "c 2", "late 2", "c 3"}));
    QCOMPARE(m_source->ObserverCount(), std::size_t{3});
}

void tst_Observable::staysUsableAfterAnObserverThrew()
{
    m_b.react([&](Observable* source, TChangeCode) {
        source->DeleteObserver(&m_b);
        source->MakeFirstObserver(&m_c);
        throw std::runtime_error("out of order");
    });
    QVERIFY_EXCEPTION_THROWN(m_source->NotifyObservers(changed, nullptr), std::runtime_error);
    m_log.clear();
    m_source->NotifyObservers(changed, nullptr);
    QCOMPARE(m_log, QStringList({"c 3", "a 3"}));
    m_source->MakeFirstObserver(&m_a);
    m_log.clear();
    m_source->NotifyObservers(changed, nullptr);
    QCOMPARE(m_log, QStringList({"a 3", "c 3"}));
}

void tst_Observable::copiesNoObservers()
{
    struct Copyable : Observable
    {};
    Copyable original;
    original.AddObserver(&m_a);
    Copyable copy(original);
    QCOMPARE(copy.ObserverCount(), std::size_t{0});
    copy.AddObserver(&m_b);
    copy = original;
    copy.NotifyObservers(changed, nullptr);
    original.NotifyObservers(changed, nullptr);
    QCOMPARE(m_log, QStringList({"b 3", "a 3"}));
}

QTEST_GUILESS_MAIN(tst_Observable)
#include "tst_observable.moc"
