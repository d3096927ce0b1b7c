#include "accessibilitylog.h"
#include "shownwaterfall.h"

#include <QAccessible>
#include <QtTest>

using ZelkoTest::ShownWaterfall;

class WaterfallAccessibleTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void isAChartWhoseValueIsTheCursor();
    void tellsWhatAKeyMoves();
    void tellsWhatIsSelectedWithKeys();
    void isSilentWhileTheMouseMoves();
};

void WaterfallAccessibleTest::isAChartWhoseValueIsTheCursor()
{
    ShownWaterfall shown;
    shown.takeAll();
    shown.view.image();
    QAccessibleInterface& interface = *QAccessible::queryAccessibleInterface(&shown.view);
    QCOMPARE(interface.role(), QAccessible::Chart);
    QCOMPARE(interface.text(QAccessible::Name), QStringLiteral("Spectrum overview"));
    QCOMPARE(interface.text(QAccessible::Value), QString());
    QCOMPARE(interface.text(QAccessible::Description), QString());
    shown.move(shown.at(300, 150));
    shown.view.setSelection(ShownWaterfall::begin, ShownWaterfall::begin + 1000);
    QCOMPARE(interface.text(QAccessible::Value),
             QStringLiteral("2023-11-14 23:13:20.005250 CET, 100.087 MHz, -75.5 dBFS"));
    QCOMPARE(interface.text(QAccessible::Description),
             QStringLiteral("Selected: 2023-11-14 23:13:20.000000 CET to 2023-11-14 23:13:20.001000 CET"));
}

void WaterfallAccessibleTest::tellsWhatAKeyMoves()
{
    ShownWaterfall shown;
    shown.takeAll();
    shown.view.image();
    shown.move(shown.at(300, 150));
    AccessibilityLog told(shown.view);
    QTest::keyClick(&shown.view, Qt::Key_Down);
    QCOMPARE(told.take(), QStringList(QStringLiteral("value 2023-11-14 23:13:20.005320 CET, 100.087 MHz, -76.5 dBFS")));
}

void WaterfallAccessibleTest::tellsWhatIsSelectedWithKeys()
{
    ShownWaterfall shown;
    shown.takeAll();
    shown.view.image();
    shown.move(shown.at(300, 0));
    AccessibilityLog told(shown.view);
    QTest::keyClick(&shown.view, Qt::Key_Down, Qt::ShiftModifier);
    QCOMPARE(told.take().constLast(),
             QStringLiteral("description Selected: 2023-11-14 23:13:20.000000 CET to 2023-11-14 23:13:20.000105 CET"));
}

void WaterfallAccessibleTest::isSilentWhileTheMouseMoves()
{
    ShownWaterfall shown;
    shown.takeAll();
    AccessibilityLog told(shown.view);
    shown.move(shown.at(300, 0));
    shown.move(shown.at(300, 90));
    QCOMPARE(told.take(), QStringList());
}

QTEST_MAIN(WaterfallAccessibleTest)
#include "tst_waterfallaccessible.moc"
