#include "patience.h"

#include <console/widgets/usable.h>

#include <QHBoxLayout>
#include <QPushButton>
#include <QTest>

using namespace ZelkoConsole;
using namespace Qt::StringLiterals;

namespace {

/// Buttons in a window that has the focus.
struct Buttons
{
    Buttons()
    {
        auto* const layout = new QHBoxLayout(&window);
        for (QPushButton* const button : {first, second, third}) {
            layout->addWidget(button);
        }
        window.show();
        window.activateWindow();
    }
    bool isActive() { return QTest::qWaitForWindowActive(&window, patience); }

    QWidget window;
    QPushButton* const first = new QPushButton(u"first"_s);
    QPushButton* const second = new QPushButton(u"second"_s);
    QPushButton* const third = new QPushButton(u"third"_s);
};

} // namespace

class TestUsable : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void saysWhatItDoes();
    void saysWhyItCannotBeDone();
    void goesOnWithTheFirstThatCanBeUsed();
    void passesOverWhatCannotBeUsed();
    void leavesTheFocusWhereItIs();
    void losesTheFocusWhereNothingCanBeUsed();
};

void TestUsable::saysWhatItDoes()
{
    QPushButton button;
    button.setEnabled(false);
    setUsable({&button, u"Starts it."_s, QString()});
    QVERIFY(button.isEnabled());
    QCOMPARE(button.statusTip(), u"Starts it."_s);
}

void TestUsable::saysWhyItCannotBeDone()
{
    QPushButton button;
    setUsable({&button, u"Starts it."_s, u"It runs already."_s});
    QVERIFY(!button.isEnabled());
    QCOMPARE(button.statusTip(), u"It runs already."_s);
}

void TestUsable::goesOnWithTheFirstThatCanBeUsed()
{
    Buttons buttons;
    QVERIFY(buttons.isActive());
    buttons.first->setEnabled(false);
    buttons.second->setFocus();
    setUsable({{buttons.second, {}, u"It holds."_s}, {buttons.third, {}, {}}, {buttons.first, {}, {}}});
    QVERIFY(buttons.third->hasFocus());
    QVERIFY(buttons.first->isEnabled());
}

void TestUsable::passesOverWhatCannotBeUsed()
{
    Buttons buttons;
    QVERIFY(buttons.isActive());
    buttons.third->setEnabled(false);
    buttons.first->setFocus();
    setUsable(
        {{buttons.first, {}, u"It runs."_s}, {buttons.second, {}, u"Nothing to hold."_s}, {buttons.third, {}, {}}});
    QVERIFY(buttons.third->hasFocus());
}

void TestUsable::leavesTheFocusWhereItIs()
{
    Buttons buttons;
    QVERIFY(buttons.isActive());
    buttons.second->setFocus();
    setUsable({{buttons.first, {}, {}}, {buttons.second, {}, {}}, {buttons.third, {}, u"Nothing runs."_s}});
    QVERIFY(buttons.second->hasFocus());
}

void TestUsable::losesTheFocusWhereNothingCanBeUsed()
{
    Buttons buttons;
    QVERIFY(buttons.isActive());
    buttons.second->setFocus();
    const QString none = u"There is no channel."_s;
    setUsable({{buttons.first, {}, none}, {buttons.second, {}, none}});
    QVERIFY(!buttons.second->hasFocus());
    QVERIFY(!buttons.first->isEnabled());
    QVERIFY(!buttons.second->isEnabled());
}

QTEST_MAIN(TestUsable)
#include "tst_usable.moc"
