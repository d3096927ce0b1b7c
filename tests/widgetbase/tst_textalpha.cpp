#include <widgetbase/textalpha.h>

#include "patience.h"

#include <QApplication>
#include <QLineEdit>
#include <QtTest>

using guiHelper::TextAlpha;

namespace {

constexpr QPalette::ColorGroup groups[] = {QPalette::Active, QPalette::Inactive, QPalette::Disabled};

/// A field in a window, with a pale text.
struct Field
{
    Field() { window.show(); }
    ~Field() { QApplication::setPalette(usual); }

    QColor text(QPalette::ColorGroup group = QPalette::Active) const
    {
        return edit.palette().color(group, QPalette::Text);
    }

    const QPalette usual = QApplication::palette();
    QWidget window;
    QLineEdit edit{&window};
    TextAlpha& alpha = *new TextAlpha(&edit, 150);
};

QPalette with(QPalette palette, const QColor& text, const QColor& base)
{
    palette.setColor(QPalette::Text, text);
    palette.setColor(QPalette::Base, base);
    return palette;
}

} // namespace

class TextAlphaTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void paintsInEachColourWithItsAlpha()
    {
        const Field field;
        for (const QPalette::ColorGroup group : groups) {
            QColor expected = field.usual.color(group, QPalette::Text);
            expected.setAlpha(150);
            QCOMPARE(field.text(group), expected);
        }
    }

    void changesItsAlpha()
    {
        Field field;
        field.alpha.setAlpha(255);
        QCOMPARE(field.text(), field.usual.color(QPalette::Text));
        field.alpha.setAlpha(0);
        QCOMPARE(field.text().alpha(), 0);
    }

    void followsTheApplication()
    {
        Field field;
        QApplication::setPalette(with(field.usual, QColor(250, 240, 230), QColor(1, 2, 3)));
        QTRY_COMPARE_WITH_TIMEOUT(field.text(), QColor(250, 240, 230, 150), patience);
        QCOMPARE(field.edit.palette().color(QPalette::Base), QColor(1, 2, 3));
        field.alpha.setAlpha(255);
        QCOMPARE(field.text(), QColor(250, 240, 230));
    }

    void followsTheWidgetsAround()
    {
        Field field;
        field.window.setPalette(with(field.usual, QColor(250, 240, 230), QColor(1, 2, 3)));
        QTRY_COMPARE_WITH_TIMEOUT(field.text(), QColor(250, 240, 230, 150), patience);
        field.window.setPalette(with(field.usual, QColor(10, 20, 30), QColor(4, 5, 6)));
        QTRY_COMPARE_WITH_TIMEOUT(field.text(), QColor(10, 20, 30, 150), patience);
        QCOMPARE(field.edit.palette().color(QPalette::Base), QColor(4, 5, 6));
    }

    void followsAChangeOfNothingButTheText()
    {
        Field field;
        QPalette changed = field.usual;
        changed.setColor(QPalette::Text, QColor(250, 240, 230));
        QApplication::setPalette(changed);
        QTRY_COMPARE_WITH_TIMEOUT(field.text(), QColor(250, 240, 230, 150), patience);
        QPalette around;
        around.setColor(QPalette::Text, QColor(10, 20, 30));
        field.window.setPalette(around);
        QTRY_COMPARE_WITH_TIMEOUT(field.text(), QColor(10, 20, 30, 150), patience);
        around.setColor(QPalette::Text, QColor(40, 50, 60));
        field.window.setPalette(around);
        QTRY_COMPARE_WITH_TIMEOUT(field.text(), QColor(40, 50, 60, 150), patience);
    }

    void keepsWhatSomebodyGaveTheWidget()
    {
        Field field;
        field.edit.setPalette(with(QPalette(), QColor(200, 0, 0), QColor(255, 255, 0)));
        QCOMPARE(field.text(), QColor(200, 0, 0, 150));
        field.alpha.setAlpha(255);
        QCOMPARE(field.text(), QColor(200, 0, 0));
        QApplication::setPalette(with(field.usual, QColor(250, 240, 230), QColor(1, 2, 3)));
        QCoreApplication::processEvents();
        QCOMPARE(field.text(), QColor(200, 0, 0));
        QCOMPARE(field.edit.palette().color(QPalette::Base), QColor(255, 255, 0));
        field.edit.setPalette(QPalette());
        QTRY_COMPARE_WITH_TIMEOUT(field.text(), QColor(250, 240, 230), patience);
        QCOMPARE(field.edit.palette().color(QPalette::Base), QColor(1, 2, 3));
    }

    void followsToAnotherParent()
    {
        QWidget other;
        Field field;
        other.setPalette(with(field.usual, QColor(10, 20, 30), QColor(4, 5, 6)));
        field.edit.setParent(&other);
        QTRY_COMPARE_WITH_TIMEOUT(field.text(), QColor(10, 20, 30, 150), patience);
    }
};

QTEST_MAIN(TextAlphaTest)
#include "tst_textalpha.moc"
