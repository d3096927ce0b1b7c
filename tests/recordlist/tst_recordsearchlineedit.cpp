#include <zelkoguibase/recordlist/recordsearchlineedit.h>

#include "patience.h"

#include <QPalette>
#include <QPushButton>
#include <QVBoxLayout>
#include <QtTest>

namespace {

QString invitation()
{
    return QStringLiteral("Search record name...");
}

/// A window with the field, and a button that can have the focus in its place.
struct Form
{
    Form()
        : search(*new RecordSearchLineEdit(&window))
        , button(*new QPushButton(QStringLiteral("Other"), &window))
    {
        auto* const layout = new QVBoxLayout(&window);
        layout->addWidget(&button);
        layout->addWidget(&search);
        button.setFocus();
        window.show();
        window.activateWindow();
    }

    int alpha(QPalette::ColorGroup group = QPalette::Active) const
    {
        return search.palette().color(group, QPalette::Text).alpha();
    }

    QWidget window;
    RecordSearchLineEdit& search;
    QPushButton& button;
};

} // namespace

class RecordSearchLineEditTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void invitesToSearch();
    void makesRoomForAnEntry();
    void keepsAnEntryWhenItIsLeft();
    void invitesAgainWhenItIsLeftEmpty();
    void anEntryOfTheInvitationItselfIsNone();
    void stepsInAndOutByKeys();
    void aDisabledFieldLooksSo();
    void followsThePalette();
    void eatsNoEvents();
};

void RecordSearchLineEditTest::invitesToSearch()
{
    const RecordSearchLineEdit search(nullptr);
    QCOMPARE(search.text(), invitation());
    QCOMPARE(search.placeholderText(), QString());
    QCOMPARE(search.minimumWidth(), 250);
    QCOMPARE(search.maximumWidth(), 250);
    QCOMPARE(search.objectName(), QStringLiteral("RecordPanelSearchLineEdit"));
    QCOMPARE(search.toolTip(), QStringLiteral("Search for a record name"));
    QCOMPARE(search.accessibleName(), QStringLiteral("Search for a record name"));
    QCOMPARE(search.palette().color(QPalette::Text).alpha(), 150);
}

void RecordSearchLineEditTest::makesRoomForAnEntry()
{
    Form form;
    QVERIFY(QTest::qWaitForWindowActive(&form.window, patience));
    QTest::mouseClick(&form.search, Qt::LeftButton);
    QVERIFY(form.search.hasFocus());
    QCOMPARE(form.search.text(), QString());
    QCOMPARE(form.alpha(), 255);
    QTest::keyClicks(&form.search, QStringLiteral("tower"));
    QCOMPARE(form.search.text(), QStringLiteral("tower"));
}

void RecordSearchLineEditTest::keepsAnEntryWhenItIsLeft()
{
    Form form;
    QVERIFY(QTest::qWaitForWindowActive(&form.window, patience));
    form.search.setFocus();
    QTest::keyClicks(&form.search, QStringLiteral("tower"));
    form.button.setFocus();
    QCOMPARE(form.search.text(), QStringLiteral("tower"));
    QCOMPARE(form.alpha(), 150);
    form.search.setFocus();
    QCOMPARE(form.search.text(), QStringLiteral("tower"));
    QCOMPARE(form.alpha(), 255);
}

void RecordSearchLineEditTest::invitesAgainWhenItIsLeftEmpty()
{
    Form form;
    QVERIFY(QTest::qWaitForWindowActive(&form.window, patience));
    form.search.setFocus();
    QTest::keyClicks(&form.search, QStringLiteral("t"));
    QTest::keyClick(&form.search, Qt::Key_Backspace);
    form.button.setFocus();
    QCOMPARE(form.search.text(), invitation());
    QCOMPARE(form.alpha(), 150);
}

void RecordSearchLineEditTest::anEntryOfTheInvitationItselfIsNone()
{
    Form form;
    QVERIFY(QTest::qWaitForWindowActive(&form.window, patience));
    form.search.setFocus();
    QTest::keyClicks(&form.search, invitation());
    form.button.setFocus();
    QCOMPARE(form.search.text(), invitation());
    form.search.setFocus();
    QCOMPARE(form.search.text(), QString());
}

void RecordSearchLineEditTest::stepsInAndOutByKeys()
{
    Form form;
    QVERIFY(QTest::qWaitForWindowActive(&form.window, patience));
    QTest::keyClick(&form.button, Qt::Key_Tab, Qt::ShiftModifier);
    QVERIFY(form.search.hasFocus());
    QCOMPARE(form.search.text(), QString());
    QTest::keyClick(&form.search, Qt::Key_Tab);
    QVERIFY(form.button.hasFocus());
    QCOMPARE(form.search.text(), invitation());
}

void RecordSearchLineEditTest::aDisabledFieldLooksSo()
{
    Form form;
    const QPalette usual = form.button.palette();
    for (const QPalette::ColorGroup group : {QPalette::Active, QPalette::Inactive, QPalette::Disabled}) {
        QColor color = usual.color(group, QPalette::Text);
        color.setAlpha(150);
        QCOMPARE(form.search.palette().color(group, QPalette::Text), color);
    }
}

// As pale as ever, or it could not be read on a dark field.
void RecordSearchLineEditTest::followsThePalette()
{
    Form form;
    const QPalette light = QApplication::palette();
    QPalette dark = light;
    dark.setColor(QPalette::Text, QColor(240, 230, 220));
    dark.setColor(QPalette::Base, QColor(10, 20, 30));
    QApplication::setPalette(dark);
    QTRY_COMPARE_WITH_TIMEOUT(form.search.palette().color(QPalette::Text), QColor(240, 230, 220, 150), patience);
    QCOMPARE(form.search.palette().color(QPalette::Base), QColor(10, 20, 30));
    QApplication::setPalette(light);
    QColor usual = light.color(QPalette::Text);
    usual.setAlpha(150);
    QTRY_COMPARE_WITH_TIMEOUT(form.search.palette().color(QPalette::Text), usual, patience);
}

void RecordSearchLineEditTest::eatsNoEvents()
{
    RecordSearchLineEdit search(nullptr);
    for (const QEvent::Type type : {QEvent::FocusIn, QEvent::FocusOut, QEvent::KeyPress, QEvent::MouseButtonPress}) {
        QEvent event(type);
        QVERIFY(!search.eventFilter(&search, &event));
    }
}

QTEST_MAIN(RecordSearchLineEditTest)
#include "tst_recordsearchlineedit.moc"
