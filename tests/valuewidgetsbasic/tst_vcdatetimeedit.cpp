#include <valuewidgetsbasic/vcdatetimeedit.h>

#include "microseconds.h"

#include <valuecore/tree.h>
#include <valuecore/valuenumeric.h>

#include <QtTest>

namespace {

constexpr double morning = 1'700'000'000'123'456; // 2023-11-14T22:13:20.123456Z

} // namespace

class VCDateTimeEditTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup() { Tree::Instance()->Remove(QStringLiteral("/Edit")); }

    void showsTheValueInLocalTime();
    void followsTheValue();
    void showingDoesNotWrite();
    void writesWhatIsEntered();
    void showsTheValueAgainThatRefusesAnEntry_data();
    void showsTheValueAgainThatRefusesAnEntry();
    void limitsHoldBackWhatIsShownAndNotTheValue();
    void limitsThatComeLaterDoNotWrite();
    void enterAloneDoesNotWrite();
    void aValueBeforeTheEpochOrBeyondAllTimesIsHarmless();
    void isTiedToNothingWhereThereIsNoFloatValue();
    void staysAsItIsWhenTheValueGoes();

private:
    QString m_path;
    ValueNumeric<double>* m_value = nullptr;
};

void VCDateTimeEditTest::init()
{
    m_value = Tree::Instance()->Emplace(QStringLiteral("/Edit"),
                                        std::make_unique<ValueNumeric<double>>(QStringLiteral("Time")));
    m_value->SetValue(morning, nullptr);
    m_path = m_value->GetPathName();
}

void VCDateTimeEditTest::showsTheValueInLocalTime()
{
    VCDateTimeEdit edit;
    edit.setDisplayFormat(QStringLiteral("yyyy-MM-dd hh:mm:ss.zzz"));
    edit.SetDateTime_ValuePath(m_path);
    QCOMPARE(edit.GetDateTime_ValuePath(), m_path);
    QCOMPARE(edit.text(), QStringLiteral("2023-11-14 23:13:20.123"));
}

void VCDateTimeEditTest::followsTheValue()
{
    VCDateTimeEdit edit;
    edit.SetDateTime_ValuePath(m_path);
    m_value->SetValue(morning + 5e6, nullptr);
    QCOMPARE(edit.dateTime().toMSecsSinceEpoch(), 1'700'000'005'123);
    m_value->HasChanged(TChangeCode::ValueRefreshed, nullptr);
    QCOMPARE(edit.dateTime().toMSecsSinceEpoch(), 1'700'000'005'123);
}

void VCDateTimeEditTest::showingDoesNotWrite()
{
    VCDateTimeEdit edit;
    edit.SetDateTime_ValuePath(m_path);
    m_value->SetValue(morning + 1, nullptr);
    QCOMPARE(microseconds(m_value->GetValue()), microseconds(morning + 1));
}

void VCDateTimeEditTest::writesWhatIsEntered()
{
    VCDateTimeEdit edit;
    edit.setDisplayFormat(QStringLiteral("yyyy-MM-dd hh:mm:ss"));
    edit.SetDateTime_ValuePath(m_path);
    edit.setSelectedSection(QDateTimeEdit::SecondSection);
    QTest::keyClick(&edit, Qt::Key_Up);
    QCOMPARE(microseconds(m_value->GetValue()), microseconds(1'700'000'001'123'000.0));
}

void VCDateTimeEditTest::showsTheValueAgainThatRefusesAnEntry_data()
{
    QTest::addColumn<bool>("locked");
    QTest::addColumn<double>("maximum");
    QTest::newRow("it is locked") << true << 1e18;
    QTest::newRow("it has limits") << false << morning;
}

void VCDateTimeEditTest::showsTheValueAgainThatRefusesAnEntry()
{
    QFETCH(bool, locked);
    QFETCH(double, maximum);
    QVERIFY(m_value->SetLimits(0, maximum, nullptr));
    m_value->SetState(locked ? TValueState::Locked : TValueState::Open, nullptr);
    VCDateTimeEdit edit;
    edit.setDisplayFormat(QStringLiteral("yyyy-MM-dd hh:mm:ss"));
    edit.SetDateTime_ValuePath(m_path);
    edit.setSelectedSection(QDateTimeEdit::SecondSection);
    QTest::keyClick(&edit, Qt::Key_Up);
    QCOMPARE(microseconds(m_value->GetValue()), microseconds(morning));
    QCOMPARE(edit.text(), QStringLiteral("2023-11-14 23:13:20"));
    edit.setDateTime(edit.dateTime().addDays(1));
    QCOMPARE(microseconds(m_value->GetValue()), microseconds(morning));
    QCOMPARE(edit.text(), QStringLiteral("2023-11-14 23:13:20"));
}

void VCDateTimeEditTest::limitsHoldBackWhatIsShownAndNotTheValue()
{
    VCDateTimeEdit edit;
    edit.setMaximumDateTime(QDateTime::fromMSecsSinceEpoch(1'600'000'000'000));
    edit.SetDateTime_ValuePath(m_path);
    QCOMPARE(edit.dateTime().toMSecsSinceEpoch(), 1'600'000'000'000);
    QCOMPARE(microseconds(m_value->GetValue()), microseconds(morning));
}

void VCDateTimeEditTest::limitsThatComeLaterDoNotWrite()
{
    VCDateTimeEdit edit;
    edit.SetDateTime_ValuePath(m_path);
    edit.setMaximumDateTime(QDateTime::fromMSecsSinceEpoch(1'600'000'000'000));
    QCOMPARE(edit.dateTime().toMSecsSinceEpoch(), 1'600'000'000'000);
    QCOMPARE(microseconds(m_value->GetValue()), microseconds(morning));
    edit.setDateTime(QDateTime::fromMSecsSinceEpoch(1'500'000'000'000));
    QCOMPARE(microseconds(m_value->GetValue()), microseconds(1'500'000'000'000'000.0));
}

void VCDateTimeEditTest::enterAloneDoesNotWrite()
{
    VCDateTimeEdit edit;
    edit.setDisplayFormat(QStringLiteral("yyyy-MM-dd hh:mm:ss"));
    edit.SetDateTime_ValuePath(m_path);
    QTest::keyClick(&edit, Qt::Key_Return);
    QCOMPARE(microseconds(m_value->GetValue()), microseconds(morning));
}

void VCDateTimeEditTest::aValueBeforeTheEpochOrBeyondAllTimesIsHarmless()
{
    VCDateTimeEdit edit;
    edit.SetDateTime_ValuePath(m_path);
    m_value->SetValue(-5e6, nullptr);
    QCOMPARE(edit.dateTime().toMSecsSinceEpoch(), 0);
    m_value->SetValue(1e300, nullptr);
    QCOMPARE(m_value->GetValue(), 1e300);
    m_value->SetValue(morning, nullptr);
    QCOMPARE(edit.dateTime().toMSecsSinceEpoch(), 1'700'000'000'123);
}

void VCDateTimeEditTest::isTiedToNothingWhereThereIsNoFloatValue()
{
    Tree::Instance()->Emplace(QStringLiteral("/Edit"), std::make_unique<Value<QString>>(QStringLiteral("Text")));
    VCDateTimeEdit edit;
    for (const char* const path : {"/Edit/Missing", "/Edit/Text", "/Edit", ""}) {
        edit.SetDateTime_ValuePath(QLatin1String(path));
        QCOMPARE(edit.GetDateTime_ValuePath(), QString());
    }
    edit.setDateTime(QDateTime::currentDateTime());
}

void VCDateTimeEditTest::staysAsItIsWhenTheValueGoes()
{
    VCDateTimeEdit edit;
    edit.SetDateTime_ValuePath(m_path);
    const QDateTime before = edit.dateTime();
    Tree::Instance()->Remove(m_path);
    QCOMPARE(edit.dateTime(), before);
    QCOMPARE(edit.GetDateTime_ValuePath(), QString());
    edit.setDateTime(before.addDays(1));
}

QTEST_MAIN(VCDateTimeEditTest)
#include "tst_vcdatetimeedit.moc"
