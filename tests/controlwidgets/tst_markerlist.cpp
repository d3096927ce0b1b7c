#include <controlwidgets/guicentral.h>
#include <controlwidgets/markerlist.h>

#include <valuecore/tree.h>
#include <valuecore/valuenumeric.h>

#include <QtTest>

namespace {

/// Markers without an axis, with a log of what changed.
class Markers final : public MarkerList
{
public:
    using MarkerList::addMarker;
    using MarkerList::removeMarker;

    QStringList takeLog() { return std::exchange(m_log, {}); }

protected:
    void markerChanged(int number, bool moved) override
    {
        m_log << QString::number(number) + QLatin1String(moved ? " moved" : " changed");
    }

private:
    QStringList m_log;
};

} // namespace

class MarkerListTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();

    void aNewMarkerIsShownEnabledAndFixed();
    void aMarkerWithoutAValueIsNotVisible();
    void standsWhereItsValueSays();
    void movingWritesTheValueInItsGrain();
    void movesNowhereThatTheValueRefuses();
    void movesNowhereWhileItsValueIsLocked();
    void isNotVisibleWhenItsValueGoes();
    void letsGoOfTheOldValue();
    void passesOverNumbersThatAreNone();
    void namesAndEnables();
    void oneMarkerIsTheCurrentOne();

private:
    ValueNumeric<double>& value() const { return *Tree::Instance()->Find<ValueNumeric<double>>(m_path); }

    QString m_path;
    std::unique_ptr<Markers> m_markers;
};

void MarkerListTest::init()
{
    m_path = GuiCentral::Instance().CreateUniqueValueFloat(0, 0, 100, 0.5);
    m_markers = std::make_unique<Markers>();
}

void MarkerListTest::cleanup()
{
    GuiCentral::Instance().RemoveValue(m_path);
}

void MarkerListTest::aNewMarkerIsShownEnabledAndFixed()
{
    const Marker& marker = m_markers->addMarker(1);
    QVERIFY(marker.IsShown() && marker.IsEnabled() && !marker.IsMoveable());
    QCOMPARE(m_markers->GetMarker(1), &marker);
    QCOMPARE(&m_markers->addMarker(1), &marker);
    QCOMPARE(m_markers->takeLog(), QStringList());
}

void MarkerListTest::aMarkerWithoutAValueIsNotVisible()
{
    Marker& marker = m_markers->addMarker(1);
    QVERIFY(!marker.IsVisible());
    QCOMPARE(marker.GetPosition(), 0.0);
    QVERIFY(!marker.MoveTo(5));
    marker.SetValueTreePath(m_path);
    QVERIFY(marker.IsVisible());
    marker.SetShowMarker(false);
    QVERIFY(!marker.IsVisible());
    marker.SetValueTreePath(QStringLiteral("/missing"));
    QCOMPARE(marker.GetValueTreePath(), QString());
}

void MarkerListTest::standsWhereItsValueSays()
{
    Marker& marker = m_markers->addMarker(4);
    marker.SetValueTreePath(m_path);
    QCOMPARE(m_markers->GetValueTreePath(4), m_path);
    m_markers->takeLog();
    value().SetValue(7, nullptr);
    QCOMPARE(marker.GetPosition(), 7.0);
    QCOMPARE(m_markers->takeLog(), QStringList{"4 moved"});
    value().HasChanged(TChangeCode::ValueRefreshed, nullptr);
    QCOMPARE(m_markers->takeLog(), QStringList{"4 moved"});
}

void MarkerListTest::movingWritesTheValueInItsGrain()
{
    Marker& marker = m_markers->addMarker(1);
    marker.SetValueTreePath(m_path);
    m_markers->takeLog();
    QVERIFY(marker.MoveTo(7.3));
    QCOMPARE(value().GetValue(), 7.5);
    QCOMPARE(m_markers->takeLog(), QStringList{"1 moved"});
}

void MarkerListTest::movesNowhereThatTheValueRefuses()
{
    Marker& marker = m_markers->addMarker(1);
    marker.SetValueTreePath(m_path);
    QVERIFY(!marker.MoveTo(101));
    QVERIFY(!marker.MoveTo(qQNaN()));
    QCOMPARE(marker.GetPosition(), 0.0);
}

void MarkerListTest::movesNowhereWhileItsValueIsLocked()
{
    Marker& marker = m_markers->addMarker(1);
    QVERIFY(!marker.IsLocked());
    marker.SetValueTreePath(m_path);
    QVERIFY(!marker.IsLocked());
    value().SetState(TValueState::Locked, nullptr);
    QVERIFY(marker.IsLocked());
    QVERIFY(!marker.MoveTo(5));
    QCOMPARE(value().GetValue(), 0.0);
    value().SetState(TValueState::Open, nullptr);
    QVERIFY(marker.MoveTo(5));
    QCOMPARE(value().GetValue(), 5.0);
}

void MarkerListTest::isNotVisibleWhenItsValueGoes()
{
    Marker& marker = m_markers->addMarker(1);
    marker.SetValueTreePath(m_path);
    m_markers->takeLog();
    GuiCentral::Instance().RemoveValue(m_path);
    QVERIFY(!marker.IsVisible());
    QCOMPARE(m_markers->takeLog(), QStringList{"1 changed"});
}

void MarkerListTest::letsGoOfTheOldValue()
{
    const QString other = GuiCentral::Instance().CreateUniqueValueFloat(3, 0, 100, 1);
    Marker& marker = m_markers->addMarker(1);
    marker.SetValueTreePath(m_path);
    marker.SetValueTreePath(other);
    QCOMPARE(marker.GetPosition(), 3.0);
    m_markers->takeLog();
    value().SetValue(9, nullptr);
    QCOMPARE(m_markers->takeLog(), QStringList());
    m_markers->removeMarker(1);
    QCOMPARE(m_markers->takeLog(), QStringList{"1 changed"});
    Tree::Instance()->Find<ValueNumeric<double>>(other)->SetValue(4, nullptr);
    QCOMPARE(m_markers->takeLog(), QStringList());
    GuiCentral::Instance().RemoveValue(other);
}

void MarkerListTest::passesOverNumbersThatAreNone()
{
    m_markers->SetMarkerName(6, QStringLiteral("name"));
    m_markers->SetEnableMarker(6, false);
    m_markers->SetCurrentMarker(6);
    m_markers->removeMarker(6);
    QCOMPARE(m_markers->GetMarker(6), nullptr);
    QCOMPARE(m_markers->GetValueTreePath(6), QString());
    QCOMPARE(m_markers->GetCurrentMarker(), 0);
    QCOMPARE(m_markers->takeLog(), QStringList());
}

void MarkerListTest::namesAndEnables()
{
    m_markers->addMarker(6);
    m_markers->SetMarkerName(6, QStringLiteral("name"));
    m_markers->SetEnableMarker(6, false);
    QCOMPARE(m_markers->GetMarker(6)->GetName(), QStringLiteral("name"));
    QVERIFY(!m_markers->GetMarker(6)->IsEnabled());
    QCOMPARE(m_markers->takeLog(), (QStringList{"6 changed", "6 changed"}));
}

void MarkerListTest::oneMarkerIsTheCurrentOne()
{
    m_markers->addMarker(2);
    m_markers->addMarker(1);
    QCOMPARE(m_markers->GetCurrentMarker(), 2);
    m_markers->SetCurrentMarker(1);
    m_markers->SetCurrentMarker(1);
    QCOMPARE(m_markers->takeLog(), QStringList{"1 changed"});
    m_markers->removeMarker(1);
    QCOMPARE(m_markers->GetCurrentMarker(), 2);
    m_markers->removeMarker(2);
    QCOMPARE(m_markers->GetCurrentMarker(), 0);
    QVERIFY(m_markers->GetMarkerNumbers().empty());
}

QTEST_GUILESS_MAIN(MarkerListTest)
#include "tst_markerlist.moc"
