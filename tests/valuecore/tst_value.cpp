#include "changelogger.h"
#include "sentcommands.h"

#include <valuecore/iobjectstatecursor.h>
#include <valuecore/valuefactory.h>
#include <valuecore/valuetypes.h>

#include <QTest>

#include <limits>

namespace {

// Kinds of plain values with a content each that is not the first one, as a text.
void eachPlainKind()
{
    QTest::addColumn<std::string>("typeName");
    QTest::addColumn<int>("type");
    QTest::addColumn<QString>("first");
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("other");
    QTest::newRow("text") << std::string("Text") << 1 << QString() << "Grüße; \"x\"\n"
                          << "other";
    QTest::newRow("int") << std::string("Integer") << 2 << "0"
                         << "-2147483648"
                         << "17";
    QTest::newRow("bool") << std::string("Boolean") << 3 << "false"
                          << "true"
                          << "false";
    QTest::newRow("double") << std::string("Number") << 4 << "0"
                            << "0.10000000000000001"
                            << "-1e+300";
    QTest::newRow("64-bit integer") << std::string("Integer64") << 5 << "0"
                                    << "9223372036854775807"
                                    << "-1";
    QTest::newRow("double with limits") << std::string("NumericDouble") << 6 << "0"
                                        << "101700000.5"
                                        << "1e-9";
    QTest::newRow("64-bit integer with limits") << std::string("NumericInteger64") << 7 << "0"
                                                << "1625140800123456"
                                                << "-9223372036854775808";
}

} // namespace

class tst_Value : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void startsWithTheFirstContent_data() { eachPlainKind(); }
    void startsWithTheFirstContent();
    void takesAndGivesText_data() { eachPlainKind(); }
    void takesAndGivesText();
    void tellsOfAChangeAndOfNothingElse_data() { eachPlainKind(); }
    void tellsOfAChangeAndOfNothingElse();
    void givesACommandTwice_data() { eachPlainKind(); }
    void givesACommandTwice();
    void comparesAndAssignsItsOwnTypeOnly_data() { eachPlainKind(); }
    void comparesAndAssignsItsOwnTypeOnly();
    void rebuildsItselfFromItsState_data() { eachPlainKind(); }
    void rebuildsItselfFromItsState();
    void refusesTextThatDoesNotFit_data();
    void refusesTextThatDoesNotFit();
    void keepsNameAndStateOfItsConstructor();
    void setsTypedContent();
    void holdsNothingThatIsNotANumber();
    void passesOtherCodesOnWithoutContent();
    void copiesContentButNoObservers();
    void repeatedCommandBringsItsContentAlong();

private:
    QStringList m_log;
    ChangeLogger m_observer{"a", m_log};
};

void tst_Value::init()
{
    m_log.clear();
}

void tst_Value::startsWithTheFirstContent()
{
    QFETCH(std::string, typeName);
    const auto value = valuefactory::create(typeName);
    QTEST(value->GetStringValue(), "first");
    QTEST(value->GetType(), "type");
    QCOMPARE(std::string(value->GetTypeName()), typeName);
    QCOMPARE(value->GetState(), TValueState::Open);
    QCOMPARE(value->ChangeLogCapacity(), std::size_t{0});
}

void tst_Value::takesAndGivesText()
{
    QFETCH(std::string, typeName);
    QFETCH(QString, text);
    const auto value = valuefactory::create(typeName);
    QVERIFY(value->SetStringValue(text, nullptr));
    QCOMPARE(value->GetStringValue(), text);
}

void tst_Value::tellsOfAChangeAndOfNothingElse()
{
    QFETCH(std::string, typeName);
    QFETCH(QString, text);
    QFETCH(QString, other);
    SentCommands sent;
    const auto value = valuefactory::create(typeName);
    value->AddObserver(&m_observer);
    value->SetTransmitter(&sent);
    QVERIFY(value->SetStringValue(text, nullptr));
    QVERIFY(value->SetStringValue(text, nullptr));
    QCOMPARE(m_log, QStringList({"a 3"}));
    QVERIFY(value->SetStringValue(other, &m_observer));
    QCOMPARE(m_log, QStringList({"a 3"}));
    QCOMPARE(sent.ids(), std::vector<int>({10, 10}));
    QCOMPARE(sent.sent().back().origin, static_cast<IObserver*>(&m_observer));
}

void tst_Value::givesACommandTwice()
{
    QFETCH(std::string, typeName);
    QFETCH(QString, text);
    SentCommands sent;
    const auto value = valuefactory::create(typeName);
    value->SetStringValue(text, nullptr);
    value->AddObserver(&m_observer);
    value->SetTransmitter(&sent);
    value->HasChanged(TChangeCode::ValueChanged, nullptr);
    value->HasChanged(TChangeCode::ValueChanged, &m_observer);
    QCOMPARE(value->GetStringValue(), text);
    QCOMPARE(m_log, QStringList({"a 3"}));
    QCOMPARE(sent.sent().size(), std::size_t{2});

    QStringList peerLog;
    ChangeLogger peerObserver("peer", peerLog);
    const auto peer = valuefactory::create(typeName);
    peer->AddObserver(&peerObserver);
    QVERIFY(peer->SetCommandString(sent.stream(), nullptr));
    QCOMPARE(peer->GetStringValue(), text);
    QCOMPARE(peerLog, QStringList({"peer 3", "peer 3"}));
}

void tst_Value::comparesAndAssignsItsOwnTypeOnly()
{
    QFETCH(std::string, typeName);
    QFETCH(QString, text);
    const auto value = valuefactory::create(typeName);
    value->SetStringValue(text, nullptr);
    value->AddObserver(&m_observer);
    for (const char* name :
         {"Text", "Integer", "Boolean", "Number", "Integer64", "NumericDouble", "NumericInteger64", "Selection"}) {
        const auto other = valuefactory::create(name);
        QVERIFY(!value->Compare(other.get()));
        if (typeName == name) {
            other->Assign(*value);
            QVERIFY(value->Compare(other.get()));
            other->SetState(TValueState::Locked, nullptr);
            QVERIFY(!value->Compare(other.get()));
        } else {
            QVERIFY_EXCEPTION_THROWN(other->Assign(*value), std::bad_cast);
            QVERIFY_EXCEPTION_THROWN(value->Assign(*other), std::bad_cast);
        }
    }
    QVERIFY(!value->Compare(nullptr));
    QCOMPARE(value->GetStringValue(), text);
    QCOMPARE(m_log, QStringList());
}

void tst_Value::rebuildsItselfFromItsState()
{
    QFETCH(std::string, typeName);
    QFETCH(QString, text);
    const auto value = valuefactory::create(typeName);
    value->SetStringValue(text, nullptr);
    value->SetState(TValueState::Locked, nullptr);
    std::string state;
    value->AddObjectStateStringForTransmission(state, 0);
    const auto fresh = valuefactory::create(typeName);
    QVERIFY(fresh->SetCommandString(state, nullptr));
    QVERIFY(fresh->Compare(value.get()));
    QVERIFY(value->Compare(fresh.get()));

    std::string recorded;
    value->AddObjectStateStringForRecording(recorded);
    QCOMPARE(recorded, state);
    std::string inPieces;
    QVERIFY(!value->OpenObjectState()->AppendNext(inPieces, 1));
    QCOMPARE(inPieces, state);
}

void tst_Value::refusesTextThatDoesNotFit_data()
{
    QTest::addColumn<std::string>("typeName");
    QTest::addColumn<QString>("present");
    QTest::addColumn<QString>("text");
    QTest::newRow("no number") << std::string("Integer") << "5"
                               << "five";
    QTest::newRow("empty") << std::string("Integer") << "5"
                           << "";
    QTest::newRow("a fraction") << std::string("Integer") << "5"
                                << "5.5";
    QTest::newRow("too large an int") << std::string("Integer") << "5"
                                      << "2147483648";
    QTest::newRow("neither true nor false") << std::string("Boolean") << "true"
                                            << "yes";
    QTest::newRow("empty bool") << std::string("Boolean") << "true"
                                << "";
    QTest::newRow("capital false") << std::string("Boolean") << "true"
                                   << "False";
    QTest::newRow("no double") << std::string("Number") << "5"
                               << "5,5";
    QTest::newRow("not a number") << std::string("Number") << "5"
                                  << "nan";
    QTest::newRow("too large an integer") << std::string("Integer64") << "5"
                                          << "9223372036854775808";
    QTest::newRow("not a number with limits") << std::string("NumericDouble") << "5"
                                              << "nan";
    QTest::newRow("endless with limits") << std::string("NumericDouble") << "5"
                                         << "inf";
}

void tst_Value::refusesTextThatDoesNotFit()
{
    QFETCH(std::string, typeName);
    QFETCH(QString, present);
    QFETCH(QString, text);
    const auto value = valuefactory::create(typeName);
    QVERIFY(value->SetStringValue(present, nullptr));
    value->AddObserver(&m_observer);
    QVERIFY(!value->SetStringValue(text, nullptr));
    QCOMPARE(value->GetStringValue(), present);
    QCOMPARE(m_log, QStringList());
}

void tst_Value::keepsNameAndStateOfItsConstructor()
{
    const Value<int> value("LoadCount", TValueState::Locked);
    QCOMPARE(value.GetName(), QStringLiteral("LoadCount"));
    QCOMPARE(value.GetState(), TValueState::Locked);
}

void tst_Value::setsTypedContent()
{
    Value<QString> text;
    QVERIFY(text.SetValue("a@b", nullptr));
    QCOMPARE(text.GetValue(), QStringLiteral("a@b"));
    Value<bool> flag;
    QVERIFY(flag.SetValue(true, nullptr));
    QVERIFY(flag.GetValue());
    Value<qint64> number;
    QVERIFY(number.SetValue(std::numeric_limits<qint64>::min(), nullptr));
    QCOMPARE(number.GetValue(), std::numeric_limits<qint64>::min());
}

void tst_Value::holdsNothingThatIsNotANumber()
{
    Value<double> value;
    value.AddObserver(&m_observer);
    QVERIFY(!value.SetValue(qQNaN(), nullptr));
    QCOMPARE(value.GetValue(), 0.0);
    QVERIFY(value.SetValue(-qInf(), nullptr));
    QCOMPARE(value.GetValue(), -qInf());
    QCOMPARE(m_log, QStringList({"a 3"}));
}

void tst_Value::passesOtherCodesOnWithoutContent()
{
    SentCommands sent;
    Value<int> value;
    value.AddObserver(&m_observer);
    value.SetTransmitter(&sent);
    value.HasChanged(TChangeCode::ValueRefreshed, nullptr);
    QCOMPARE(m_log, QStringList({"a 23"}));
    QCOMPARE(sent.ids(), std::vector<int>({ValueBase::CommandIdHasChanged}));

    Value<int> peer;
    peer.SetValue(4, nullptr);
    peer.AddObserver(&m_observer);
    QVERIFY(peer.SetCommandString(sent.stream(), nullptr));
    QCOMPARE(m_log, QStringList({"a 23", "a 23"}));
    QCOMPARE(peer.GetValue(), 4);
}

void tst_Value::copiesContentButNoObservers()
{
    Value<int> value("name", TValueState::Locked);
    value.SetValue(4, nullptr);
    value.AddObserver(&m_observer);
    Value<int> copy(value);
    QVERIFY(copy == value);
    QCOMPARE(copy.GetName(), QStringLiteral("name"));
    QCOMPARE(copy.ObserverCount(), std::size_t{0});

    Value<int> assigned("own");
    assigned = value;
    QVERIFY(assigned == value);
    QCOMPARE(assigned.GetName(), QStringLiteral("own"));
    assigned.SetValue(5, nullptr);
    QCOMPARE(m_log, QStringList());
    QCOMPARE(value.GetValue(), 4);
}

void tst_Value::repeatedCommandBringsItsContentAlong()
{
    SentCommands sent;
    Value<int> value;
    value.SetValue(4, nullptr);
    value.SetTransmitter(&sent);
    value.HasChanged(TChangeCode::ValueChanged, nullptr);
    Value<int> peer;
    peer.SetValue(9, nullptr);
    QVERIFY(peer.SetCommandString(sent.stream(), nullptr));
    QCOMPARE(peer.GetValue(), 4);
}

QTEST_GUILESS_MAIN(tst_Value)
#include "tst_value.moc"
