#include <zelkoguibase/filter/framedcheckbox_p.h>

#include "boxground.h"

#include <QtTest>

using ZelkoGUI::Filter::FramedCheckBox;

class FramedCheckBoxTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void theBoxStandsOutFromItsGround_data();
    void theBoxStandsOutFromItsGround();
    void aLightOneLooksLikeAnyOther();
    void isCheckedByAClickAndByASpace();
};

void FramedCheckBoxTest::theBoxStandsOutFromItsGround_data()
{
    boxground::addGrounds();
}

// From the left edge into the box, across its frame.
void FramedCheckBoxTest::theBoxStandsOutFromItsGround()
{
    for (const bool enabled : {true, false}) {
        FramedCheckBox box;
        box.setPalette(boxground::palette());
        box.setEnabled(enabled);
        box.resize(box.sizeHint());
        const QImage line = box.grab(QRect(0, box.height() / 2, 10, 1)).toImage();
        const int contrast = boxground::contrast(line, box.palette().color(QPalette::Window));
        QVERIFY2(contrast >= 40, qPrintable(QStringLiteral("the frame differs by %1").arg(contrast)));
    }
}

void FramedCheckBoxTest::aLightOneLooksLikeAnyOther()
{
    const QString text = QStringLiteral("from");
    for (const bool checked : {false, true}) {
        FramedCheckBox box(text, nullptr);
        QCheckBox other(text, nullptr);
        box.setChecked(checked);
        other.setChecked(checked);
        QCOMPARE(box.sizeHint(), other.sizeHint());
        QCOMPARE(box.grab().toImage(), other.grab().toImage());
    }
}

void FramedCheckBoxTest::isCheckedByAClickAndByASpace()
{
    FramedCheckBox box(QStringLiteral("from"), nullptr);
    box.show();
    QTest::mouseClick(&box, Qt::LeftButton, Qt::NoModifier, QPoint(8, box.height() / 2));
    QVERIFY(box.isChecked());
    QTest::keyClick(&box, Qt::Key_Space);
    QVERIFY(!box.isChecked());
}

QTEST_MAIN(FramedCheckBoxTest)
#include "tst_framedcheckbox.moc"
