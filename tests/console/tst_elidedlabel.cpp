#include "patience.h"

#include <console/hands/operatorhands.h>
#include <console/widgets/elidedlabel.h>

#include <QTest>
#include <QToolTip>

using ZelkoConsole::ElidedLabel;
namespace operatorhands = ZelkoConsole::operatorhands;

namespace {

const QString longText(100, QLatin1Char('m'));

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
};

QTEST_MAIN(TestElidedLabel)
#include "tst_elidedlabel.moc"
