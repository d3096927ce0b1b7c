#include "editorhands.h"

#include <zelkoguibase/filter/lineeditex.h>

#include <QClipboard>
#include <QDropEvent>
#include <QMenu>
#include <QMimeData>
#include <QPalette>
#include <QtTest>

using LineEditEx = ZelkoGUI::Filter::TextFilterWidget::LineEditEx;

namespace {

QString hint()
{
    return QStringLiteral("what to look for");
}

/// A form with such a field, which does not have the focus at first.
struct Field : editorhands::Form
{
    Field()
        : Form(new LineEditEx(hint(), nullptr))
        , edit(*window.findChild<LineEditEx*>())
    {}

    void enter() { edit.setFocus(); }
    void leave() { elsewhere.setFocus(); }
    int alpha(QPalette::ColorGroup group = QPalette::Active) const
    {
        return edit.palette().color(group, QPalette::Text).alpha();
    }

    LineEditEx& edit;
};

/// Drags a text there with the mouse, and drops it.
void drop(LineEditEx& edit, const QString& text)
{
    QMimeData data;
    data.setText(text);
    const QPoint place(40, 8);
    QDragEnterEvent enter(place, Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
    QApplication::sendEvent(&edit, &enter);
    QDropEvent drop(place, Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
    QApplication::sendEvent(&edit, &drop);
}

/// Chooses an entry of the context menu by a word of it, as soon as the menu is open.
void chooseFromMenu(LineEditEx& edit, const QString& word)
{
    edit.setFocus();
    QContextMenuEvent event(QContextMenuEvent::Mouse, QPoint(5, 5), edit.mapToGlobal(QPoint(5, 5)));
    QApplication::sendEvent(&edit, &event);
    QPointer<QMenu> menu;
    QTRY_VERIFY_WITH_TIMEOUT((menu = qobject_cast<QMenu*>(QApplication::activePopupWidget())), patience);
    for (QAction* const action : menu->actions()) {
        if (action->text().contains(word)) {
            QTest::mouseClick(menu, Qt::LeftButton, Qt::NoModifier, menu->actionGeometry(action).center());
            return;
        }
    }
    QFAIL("no such entry");
}

} // namespace

class LineEditExTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void hintsWhileItIsEmptyAndWithoutTheFocus();
    void makesRoomForAnEntry();
    void keepsAnEntryWhenItIsLeft();
    void hintsAgainWhenItIsLeftEmpty();
    void aTypedHintIsAText();
    void showsATextThatIsSet();
    void isEmptiedWhereverTheFocusIs();
    void settingATextEmitsNoEdit();
    void typingReportsWhatWasTyped();
    void isPaleWithoutTheFocus();
    void hasTheColoursOfItsSurroundings();
    void isAsWideAsTheHint();
    void aDroppedTextReplacesTheHint();
    void aTextPastedFromTheMenuReplacesTheHint();
    void eatsNoEvents();
};

void LineEditExTest::hintsWhileItIsEmptyAndWithoutTheFocus()
{
    const LineEditEx edit(hint(), nullptr);
    QCOMPARE(edit.text(), hint());
    QCOMPARE(edit.realText(), QString());
    QCOMPARE(edit.placeholderText(), QString());
}

void LineEditExTest::makesRoomForAnEntry()
{
    Field field;
    QVERIFY(field.isActive());
    QTest::mouseClick(&field.edit, Qt::LeftButton);
    QVERIFY(field.edit.hasFocus());
    QCOMPARE(field.edit.text(), QString());
    QTest::keyClicks(&field.edit, QStringLiteral("tower"));
    QCOMPARE(field.edit.text(), QStringLiteral("tower"));
    QCOMPARE(field.edit.realText(), QStringLiteral("tower"));
}

void LineEditExTest::keepsAnEntryWhenItIsLeft()
{
    Field field;
    QVERIFY(field.isActive());
    field.enter();
    QTest::keyClicks(&field.edit, QStringLiteral("tower"));
    field.leave();
    QCOMPARE(field.edit.text(), QStringLiteral("tower"));
    field.enter();
    QCOMPARE(field.edit.text(), QStringLiteral("tower"));
    QCOMPARE(field.edit.realText(), QStringLiteral("tower"));
}

void LineEditExTest::hintsAgainWhenItIsLeftEmpty()
{
    Field field;
    QVERIFY(field.isActive());
    field.enter();
    QTest::keyClicks(&field.edit, QStringLiteral("t"));
    QTest::keyClick(&field.edit, Qt::Key_Backspace);
    QCOMPARE(field.edit.text(), QString());
    QTest::keyClick(&field.edit, Qt::Key_Tab, Qt::ShiftModifier);
    QVERIFY(field.elsewhere.hasFocus());
    QCOMPARE(field.edit.text(), hint());
    QCOMPARE(field.edit.realText(), QString());
}

void LineEditExTest::aTypedHintIsAText()
{
    Field field;
    QVERIFY(field.isActive());
    field.enter();
    QTest::keyClicks(&field.edit, hint());
    field.leave();
    QCOMPARE(field.edit.realText(), hint());
    field.enter();
    QCOMPARE(field.edit.text(), hint());
}

void LineEditExTest::showsATextThatIsSet()
{
    Field field;
    QVERIFY(field.isActive());
    field.edit.setText(QStringLiteral("tower"));
    QCOMPARE(field.edit.text(), QStringLiteral("tower"));
    QCOMPARE(field.edit.realText(), QStringLiteral("tower"));
    field.enter();
    field.edit.setText(QStringLiteral("ground"));
    QCOMPARE(field.edit.text(), QStringLiteral("ground"));
}

void LineEditExTest::isEmptiedWhereverTheFocusIs()
{
    Field field;
    QVERIFY(field.isActive());
    field.edit.setText(QStringLiteral("tower"));
    field.edit.resetText();
    QCOMPARE(field.edit.text(), hint());
    QCOMPARE(field.edit.realText(), QString());
    field.enter();
    field.edit.setText(QStringLiteral("tower"));
    field.edit.resetText();
    QCOMPARE(field.edit.text(), QString());
    QCOMPARE(field.edit.realText(), QString());
}

void LineEditExTest::settingATextEmitsNoEdit()
{
    LineEditEx edit(hint(), nullptr);
    const QSignalSpy edits(&edit, &QLineEdit::textEdited);
    edit.setText(QStringLiteral("tower"));
    edit.resetText();
    QCOMPARE(edits.size(), 0);
}

void LineEditExTest::typingReportsWhatWasTyped()
{
    Field field;
    QVERIFY(field.isActive());
    QStringList reported;
    connect(&field.edit, &QLineEdit::textEdited, &field.edit,
            [&](const QString& text) { reported << text + u'/' + field.edit.realText(); });
    field.enter();
    QTest::keyClicks(&field.edit, QStringLiteral("to"));
    QCOMPARE(reported, (QStringList{QStringLiteral("t/t"), QStringLiteral("to/to")}));
}

void LineEditExTest::isPaleWithoutTheFocus()
{
    Field field;
    QVERIFY(field.isActive());
    QCOMPARE(field.alpha(), 150);
    field.enter();
    QCOMPARE(field.alpha(), 255);
    field.edit.setText(QStringLiteral("tower"));
    field.leave();
    QCOMPARE(field.alpha(), 150);
}

void LineEditExTest::hasTheColoursOfItsSurroundings()
{
    QPalette dark = QApplication::palette();
    dark.setColor(QPalette::Active, QPalette::Text, Qt::white);
    dark.setColor(QPalette::Disabled, QPalette::Text, Qt::darkGray);
    QWidget window;
    window.setPalette(dark);
    const auto* const edit = new LineEditEx(hint(), &window);
    QCOMPARE(edit->palette().color(QPalette::Active, QPalette::Text), QColor(255, 255, 255, 150));
    QCOMPARE(edit->palette().color(QPalette::Disabled, QPalette::Text), QColor(128, 128, 128, 150));
    dark.setColor(QPalette::Active, QPalette::Text, Qt::yellow);
    window.setPalette(dark);
    QTRY_COMPARE_WITH_TIMEOUT(edit->palette().color(QPalette::Active, QPalette::Text), QColor(255, 255, 0, 150),
                              patience);
}

void LineEditExTest::isAsWideAsTheHint()
{
    LineEditEx edit(hint(), nullptr);
    QCOMPARE(edit.minimumSizeHint(), QSize(edit.fontMetrics().horizontalAdvance(hint()) + 10, 0));
    edit.setText(QStringLiteral("another text, and one that is longer than the hint"));
    QCOMPARE(edit.minimumSizeHint(), QSize(edit.fontMetrics().horizontalAdvance(hint()) + 10, 0));
}

void LineEditExTest::aDroppedTextReplacesTheHint()
{
    Field field;
    QVERIFY(field.isActive());
    drop(field.edit, QStringLiteral("tower"));
    QCOMPARE(field.edit.realText(), QStringLiteral("tower"));
    QCOMPARE(field.edit.text(), QStringLiteral("tower"));
}

void LineEditExTest::aTextPastedFromTheMenuReplacesTheHint()
{
    QGuiApplication::clipboard()->setText(QStringLiteral("tower"));
    Field field;
    QVERIFY(field.isActive());
    chooseFromMenu(field.edit, QStringLiteral("Paste"));
    QTRY_COMPARE_WITH_TIMEOUT(field.edit.realText(), QStringLiteral("tower"), patience);
    QCOMPARE(field.edit.text(), QStringLiteral("tower"));
}

void LineEditExTest::eatsNoEvents()
{
    LineEditEx edit(hint(), nullptr);
    for (const QEvent::Type type : {QEvent::FocusIn, QEvent::FocusOut, QEvent::KeyPress, QEvent::MouseButtonPress}) {
        QEvent event(type);
        QVERIFY(!edit.eventFilter(&edit, &event));
    }
}

QTEST_MAIN(LineEditExTest)
#include "tst_lineeditex.moc"
