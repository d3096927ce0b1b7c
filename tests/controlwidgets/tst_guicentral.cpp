#include <controlwidgets/guicentral.h>

#include <valuecore/tree.h>
#include <valuecore/valuenumeric.h>

#include <QtTest>

class GuiCentralTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void makesAValueWithLimits();
    void eachValueIsAnother();
    void makesNothingThatCannotBe_data();
    void makesNothingThatCannotBe();
    void knowsTheGrainOfItsValues();
    void removesItsOwnValuesOnly();

private:
    static ValueNumeric<double>* find(const QString& path)
    {
        return Tree::Instance()->Find<ValueNumeric<double>>(path);
    }
};

void GuiCentralTest::makesAValueWithLimits()
{
    const double largest = static_cast<double>(std::numeric_limits<quint64>::max());
    const QString path = GuiCentral::Instance().CreateUniqueValueFloat(5, 0, largest, 1);
    const ValueNumeric<double>* const value = find(path);
    QVERIFY(value);
    QCOMPARE(value->GetPathName(), path);
    QCOMPARE(value->GetValue(), 5.0);
    QCOMPARE(value->GetMinimum(), 0.0);
    QCOMPARE(value->GetMaximum(), largest);
}

void GuiCentralTest::eachValueIsAnother()
{
    const QString one = GuiCentral::Instance().CreateUniqueValueFloat(0, 0, 1, 1);
    const QString two = GuiCentral::Instance().CreateUniqueValueFloat(0, 0, 1, 1);
    QVERIFY(one != two && find(one) != find(two));
    GuiCentral::Instance().RemoveValue(one);
    const QString three = GuiCentral::Instance().CreateUniqueValueFloat(0, 0, 1, 1);
    QVERIFY(three != one && three != two);
}

void GuiCentralTest::makesNothingThatCannotBe_data()
{
    QTest::addColumn<double>("value");
    QTest::addColumn<double>("minimum");
    QTest::addColumn<double>("maximum");
    QTest::newRow("limits the wrong way round") << 0.0 << 1.0 << -1.0;
    QTest::newRow("a value below") << -2.0 << -1.0 << 1.0;
    QTest::newRow("a value above") << 2.0 << -1.0 << 1.0;
    QTest::newRow("not a number") << qQNaN() << -1.0 << 1.0;
}

void GuiCentralTest::makesNothingThatCannotBe()
{
    QFETCH(double, value);
    QFETCH(double, minimum);
    QFETCH(double, maximum);
    QCOMPARE(GuiCentral::Instance().CreateUniqueValueFloat(value, minimum, maximum, 1), QString());
}

void GuiCentralTest::knowsTheGrainOfItsValues()
{
    const QString path = GuiCentral::Instance().CreateUniqueValueFloat(0, 0, 1, 0.25);
    QCOMPARE(GuiCentral::Instance().GetStep(path), 0.25);
    QCOMPARE(GuiCentral::Instance().GetStep(QStringLiteral("/Other")), 0.0);
    GuiCentral::Instance().RemoveValue(path);
    QCOMPARE(GuiCentral::Instance().GetStep(path), 0.0);
}

void GuiCentralTest::removesItsOwnValuesOnly()
{
    const QString path = GuiCentral::Instance().CreateUniqueValueFloat(0, 0, 1, 1);
    GuiCentral::Instance().RemoveValue(path);
    QVERIFY(!find(path));
    GuiCentral::Instance().RemoveValue(path);
    Tree::Instance()->Emplace(QStringLiteral("/A"), std::make_unique<ValueNumeric<double>>(QStringLiteral("B")));
    GuiCentral::Instance().RemoveValue(QStringLiteral("/A/B"));
    QVERIFY(find(QStringLiteral("/A/B")));
}

QTEST_GUILESS_MAIN(GuiCentralTest)
#include "tst_guicentral.moc"
