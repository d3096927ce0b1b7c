#include "patience.h"

#include <console/hands/operatorhands.h>
#include <widgetbase/elidedlabel.h>

#include <QHBoxLayout>
#include <QTest>
#include <QTextDocument>
#include <QToolTip>

using guiHelper::ElidedLabel;
namespace operatorhands = ZelkoConsole::operatorhands;

namespace {

const QString longText(100, QLatin1Char('m'));

/// The smallest rectangle with all that differs from the background.
QRect inkOf(QWidget& widget)
{
    const QImage image = widget.grab().toImage();
    const QRgb background = image.pixel(image.width() - 1, image.height() - 1);
    QRect ink;
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) {
            ink = image.pixel(x, y) == background ? ink : ink.united(QRect(x, y, 1, 1));
        }
    }
    return ink;
}

} // namespace

class TestElidedLabel : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void wantsRoomForItsTextAndNeedsLittle()
    {
        const ElidedLabel label(longText);
        QVERIFY(label.sizeHint().width() >= label.fontMetrics().horizontalAdvance(longText));
        QVERIFY(label.minimumSizeHint().width() < label.sizeHint().width() / 5);
    }

    void needsNoMoreThanAShortText()
    {
        const ElidedLabel label(QStringLiteral("i"));
        QVERIFY(label.minimumSizeHint().width() <= label.sizeHint().width());
    }

    void needsRoomForItsFewestCharacters()
    {
        ElidedLabel label(longText);
        const int character = label.fontMetrics().averageCharWidth();
        QCOMPARE(label.minimumSizeHint().width(), 6 * character);
        label.setFewestCharacters(20);
        QCOMPARE(label.minimumSizeHint().width(), 20 * character);
        label.setText(QStringLiteral("i"));
        QVERIFY(label.minimumSizeHint().width() < 20 * character);
    }

    void neverWidensItsWindow()
    {
        QWidget window;
        auto* const label = new ElidedLabel(QStringLiteral("short"));
        (new QHBoxLayout(&window))->addWidget(label);
        window.resize(150, 40);
        window.show();
        QVERIFY(QTest::qWaitForWindowExposed(&window, patience));
        label->setText(longText);
        window.layout()->activate();
        QCOMPARE(window.width(), 150);
        QVERIFY(label->isElided());
    }

    void standsWhereItIsAligned_data()
    {
        QTest::addColumn<Qt::Alignment>("alignment");
        QTest::addColumn<Qt::LayoutDirection>("direction");
        QTest::addColumn<bool>("isLeft");
        QTest::addColumn<bool>("isTop");
        using A = Qt::Alignment;
        QTest::newRow("as it is at first") << A(Qt::AlignLeft | Qt::AlignVCenter) << Qt::LeftToRight << true << false;
        QTest::newRow("on the right") << A(Qt::AlignRight | Qt::AlignVCenter) << Qt::LeftToRight << false << false;
        QTest::newRow("at the top") << A(Qt::AlignLeft | Qt::AlignTop) << Qt::LeftToRight << true << true;
        QTest::newRow("at first, read from the right")
            << A(Qt::AlignLeft | Qt::AlignVCenter) << Qt::RightToLeft << false << false;
        QTest::newRow("on the right, read from the right")
            << A(Qt::AlignRight | Qt::AlignVCenter) << Qt::RightToLeft << true << false;
    }

    void standsWhereItIsAligned()
    {
        QFETCH(Qt::Alignment, alignment);
        QFETCH(Qt::LayoutDirection, direction);
        ElidedLabel label(QStringLiteral("HHH"));
        label.resize(400, 200);
        label.setLayoutDirection(direction);
        label.setAlignment(alignment);
        const QRect ink = inkOf(label);
        QVERIFY(ink.isValid());
        QTEST(ink.right() < 200, "isLeft");
        QCOMPARE(ink.left() > 200, ink.right() >= 200);
        QTEST(ink.bottom() < 50, "isTop");
    }

    void leavesOutWhatDoesNotFit()
    {
        ElidedLabel label(longText);
        label.resize(label.sizeHint());
        QVERIFY(!label.isElided());
        label.resize(100, label.sizeHint().height());
        QVERIFY(label.isElided());
        const QImage shown = label.grab().toImage();
        ElidedLabel as(label.fontMetrics().elidedText(longText, Qt::ElideRight, 100));
        as.resize(label.size());
        QCOMPARE(shown, as.grab().toImage());
        label.setElideMode(Qt::ElideMiddle);
        QVERIFY(label.grab().toImage() != shown);
    }

    void showsMarkupAsText()
    {
        ElidedLabel label(QStringLiteral("<b></b>"));
        ElidedLabel empty;
        for (ElidedLabel* const one : {&label, &empty}) {
            one->resize(100, 30);
        }
        QVERIFY(label.grab().toImage() != empty.grab().toImage());
    }

    void tellsAllOfATextThatIsLeftOut()
    {
        ElidedLabel label(longText);
        label.resize(100, 30);
        label.show();
        operatorhands::rest(label, label.rect().center());
        QTRY_COMPARE_WITH_TIMEOUT(QToolTip::text(), longText, patience);
    }

    void tellsOfMarkupAsText()
    {
        const QString markup = QStringLiteral("<b>%1</b> & more").arg(longText);
        ElidedLabel label(markup);
        label.resize(100, 30);
        label.show();
        operatorhands::rest(label, label.rect().center());
        QTRY_COMPARE_WITH_TIMEOUT(QToolTip::text(), QStringLiteral("<qt>%1</qt>").arg(markup.toHtmlEscaped()),
                                  patience);
    }

    void tellsTheToolTipThatWasSetToo_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<QString>("toolTip");
        QTest::addColumn<QString>("shown"); // as who reads it sees it
        const QString markup = QStringLiteral("<b>") + longText;
        const QString both = longText + QStringLiteral("\nRecord ID: 7");
        QTest::newRow("text") << longText << QStringLiteral("Record ID: 7") << both;
        QTest::newRow("text of two lines")
            << longText << QStringLiteral("Record\nID: 7") << longText + QStringLiteral("\nRecord\nID: 7");
        QTest::newRow("markup") << longText << QStringLiteral("<qt>Record <b>ID</b>: 7</qt>") << both;
        QTest::newRow("what looks like markup, and text")
            << markup << QStringLiteral("Record <ID>: 7") << markup + QStringLiteral("\nRecord <ID>: 7");
        QTest::newRow("what looks like markup, and markup")
            << markup << QStringLiteral("<qt>&lt;i&gt;7</qt>") << markup + QStringLiteral("\n<i>7");
    }

    void tellsTheToolTipThatWasSetToo()
    {
        QFETCH(const QString, text);
        QFETCH(const QString, toolTip);
        ElidedLabel label(text);
        label.setToolTip(toolTip);
        label.resize(100, 30);
        label.show();
        QToolTip::hideText();
        operatorhands::rest(label, label.rect().center());
        QTRY_VERIFY_WITH_TIMEOUT(QToolTip::isVisible(), patience);
        QTextDocument read;
        read.setHtml(QToolTip::text());
        QTEST(Qt::mightBeRichText(QToolTip::text()) ? read.toPlainText() : QToolTip::text(), "shown");
        QCOMPARE(label.toolTip(), toolTip);
    }

    void tellsTheToolTipThatWasSetOfATextThatIsShown()
    {
        ElidedLabel label(QStringLiteral("short"));
        label.setToolTip(QStringLiteral("Record ID: 7"));
        label.resize(100, 30);
        label.show();
        operatorhands::rest(label, label.rect().center());
        QTRY_COMPARE_WITH_TIMEOUT(QToolTip::text(), label.toolTip(), patience);
    }

    void tellsNothingOfATextThatIsShown()
    {
        QToolTip::hideText();
        QTRY_COMPARE_WITH_TIMEOUT(QToolTip::text(), QString(), patience);
        ElidedLabel label(QStringLiteral("short"));
        label.resize(100, 30);
        label.show();
        operatorhands::rest(label, label.rect().center());
        QCOMPARE(QToolTip::text(), QString());
    }
};

QTEST_MAIN(TestElidedLabel)
#include "tst_elidedlabel.moc"
