#include <valuecore/valuefactory.h>
#include <valuecore/valuetypes.h>

#include <QTest>

#include <set>

namespace {

class Registered final : public Value<int>
{
public:
    const char* GetTypeName() const override { return "Registered"; }
};

template <typename V>
std::unique_ptr<ValueBase> make()
{
    return std::make_unique<V>();
}

} // namespace

class tst_ValueFactory : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void makesEveryKindByItsName();
    void knowsNoOtherNames();
    void makesWhatWasRegistered();
    void keepsTheFirstMakerOfAName();
};

void tst_ValueFactory::makesEveryKindByItsName()
{
    std::set<int> types;
    for (const char* name :
         {"Text", "Integer", "Boolean", "Number", "Integer64", "NumericDouble", "NumericInteger64", "Selection"}) {
        const auto value = valuefactory::create(name);
        QVERIFY(value);
        QCOMPARE(value->GetTypeName(), name);
        QCOMPARE(value->GetName(), QString());
        types.insert(value->GetType());
    }
    QCOMPARE(types.size(), std::size_t{8});
    QVERIFY(dynamic_cast<ValueNumeric<qint64>*>(valuefactory::create("NumericInteger64").get()));
}

void tst_ValueFactory::knowsNoOtherNames()
{
    QVERIFY(!valuefactory::create("text"));
    QVERIFY(!valuefactory::create(""));
    QVERIFY(!valuefactory::create("Text "));
}

void tst_ValueFactory::makesWhatWasRegistered()
{
    QVERIFY(!valuefactory::create("Registered"));
    valuefactory::registerType("Registered", &make<Registered>);
    QVERIFY(dynamic_cast<Registered*>(valuefactory::create("Registered").get()));
}

void tst_ValueFactory::keepsTheFirstMakerOfAName()
{
    valuefactory::registerType("Integer", &make<Registered>);
    QVERIFY(!dynamic_cast<Registered*>(valuefactory::create("Integer").get()));
}

QTEST_GUILESS_MAIN(tst_ValueFactory)
#include "tst_valuefactory.moc"
