#include "patience.h"

#include <zelkoguibase/filter/elidedlabel.h>

#include <QApplication>
#include <QHBoxLayout>
#include <QtTest>

using ElidedLabel = ZelkoGUI::Filter::EnumerationFilterWidgetBase::ElidedLabel;

namespace {

QString text()
{
    return QStringLiteral("finished, damaged, recording");
}

QString longText()
{
    return QStringLiteral("finished<br>damaged<br>recording");
}

QFont twiceAsLarge(const QFont& font)
{
    QFont large = font;
    large.setPointSizeF(font.pointSizeF() * 2);
    return large;
}

/// A label in a window of its own, where there is `room` for it.
struct Label
{
    explicit Label(int room)
    {
        label.setText(text(), longText());
        label.resize(room, 30);
        label.show();
    }

    int widthOf(const QString& what) const { return label.fontMetrics().horizontalAdvance(what); }
    QString elided() const { return label.fontMetrics().elidedText(text(), Qt::ElideRight, label.width()); }

    ElidedLabel label{1, nullptr};
};

} // namespace

class FilterElidedLabelTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void showsATextThatFits();
    void elidesATextThatDoesNotFit();
    void elidesAtTheLastPixel();
    void aTextWithoutALongOneStandsForIt();
    void followsItsWidth();
    void followsItsFont();
    void followsTheFontOfTheApplication();
    void keepsRoomForSomeCharacters();
    void canBeNarrowerThanItsTextInALayout();
    void showsPlainText();
};

void FilterElidedLabelTest::showsATextThatFits()
{
    const Label label(1000);
    QCOMPARE(label.label.text(), text());
    QCOMPARE(label.label.toolTip(), QString());
}

void FilterElidedLabelTest::elidesATextThatDoesNotFit()
{
    const Label label(80);
    QVERIFY(label.label.text().endsWith(QChar(0x2026)));
    QCOMPARE(label.label.text(), label.elided());
    QCOMPARE(label.label.toolTip(), longText());
    QCOMPARE(label.label.accessibleName(), text());
}

void FilterElidedLabelTest::elidesAtTheLastPixel()
{
    Label label(1000);
    label.label.resize(label.widthOf(text()), 30);
    QCOMPARE(label.label.text(), text());
    label.label.resize(label.widthOf(text()) - 1, 30);
    QVERIFY(label.label.text() != text());
    QCOMPARE(label.label.toolTip(), longText());
}

void FilterElidedLabelTest::aTextWithoutALongOneStandsForIt()
{
    Label label(80);
    label.label.setText(text(), QString());
    QCOMPARE(label.label.toolTip(), text());
}

void FilterElidedLabelTest::followsItsWidth()
{
    Label label(80);
    label.label.resize(1000, 30);
    QCOMPARE(label.label.text(), text());
    QCOMPARE(label.label.toolTip(), QString());
    label.label.resize(120, 30);
    QCOMPARE(label.label.text(), label.elided());
    QCOMPARE(label.label.toolTip(), longText());
}

void FilterElidedLabelTest::followsItsFont()
{
    Label label(1000);
    label.label.resize(label.widthOf(text()) + 5, 30);
    QCOMPARE(label.label.text(), text());
    label.label.setFont(twiceAsLarge(label.label.font()));
    QVERIFY(label.label.text() != text());
    QCOMPARE(label.label.text(), label.elided());
    QCOMPARE(label.label.minimumWidth(), label.label.fontMetrics().averageCharWidth());
}

void FilterElidedLabelTest::followsTheFontOfTheApplication()
{
    const QFont usual = QApplication::font();
    Label label(1000);
    label.label.resize(label.widthOf(text()) + 5, 30);
    const int least = label.label.minimumWidth();
    QApplication::setFont(twiceAsLarge(usual));
    QTRY_VERIFY_WITH_TIMEOUT(label.label.minimumWidth() > least, patience);
    QTRY_VERIFY_WITH_TIMEOUT(label.label.text() != text(), patience);
    QApplication::setFont(usual);
    QTRY_COMPARE_WITH_TIMEOUT(label.label.minimumWidth(), least, patience);
    QTRY_COMPARE_WITH_TIMEOUT(label.label.text(), text(), patience);
}

void FilterElidedLabelTest::keepsRoomForSomeCharacters()
{
    const ElidedLabel label(20, nullptr);
    QCOMPARE(label.minimumWidth(), 20 * label.fontMetrics().averageCharWidth());
}

void FilterElidedLabelTest::canBeNarrowerThanItsTextInALayout()
{
    QWidget window;
    auto* const label = new ElidedLabel(5, &window);
    auto* const row = new QHBoxLayout(&window);
    row->addWidget(label);
    label->setText(text(), longText());
    window.resize(100, 40);
    window.show();
    QVERIFY(QTest::qWaitForWindowExposed(&window, patience));
    QCOMPARE(window.width(), 100);
    QVERIFY(label->fontMetrics().horizontalAdvance(label->text()) <= label->width());
    QCOMPARE(label->toolTip(), longText());
}

void FilterElidedLabelTest::showsPlainText()
{
    ElidedLabel label(1, nullptr);
    label.resize(1000, 30);
    label.setText(QStringLiteral("<b>bold</b>"), QString());
    QCOMPARE(label.textFormat(), Qt::PlainText);
    QCOMPARE(label.text(), QStringLiteral("<b>bold</b>"));
}

QTEST_MAIN(FilterElidedLabelTest)
#include "tst_filterelidedlabel.moc"
