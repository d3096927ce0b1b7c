#include <zelkoguibase/filter/framedcheckbox_p.h>

#include <QtTest>

#include <algorithm>

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
    QTest::addColumn<QColor>("window");
    QTest::addColumn<QColor>("base");
    QTest::addColumn<QColor>("text");
    QTest::newRow("a light one") << QColor(239, 239, 239) << QColor(Qt::white) << QColor(Qt::black);
    QTest::newRow("a dark one") << QColor(45, 48, 52) << QColor(27, 30, 33) << QColor(230, 233, 237);
    QTest::newRow("a black one") << QColor(Qt::black) << QColor(Qt::black) << QColor(Qt::white);
}

// From the left edge into the box, across its frame.
void FramedCheckBoxTest::theBoxStandsOutFromItsGround()
{
    QFETCH(QColor, window);
    QFETCH(QColor, base);
    QFETCH(QColor, text);
    QPalette palette(window);
    palette.setColor(QPalette::Base, base);
    palette.setColor(QPalette::Text, text);
    for (const bool enabled : {true, false}) {
        FramedCheckBox box;
        box.setPalette(palette);
        box.setEnabled(enabled);
        box.resize(box.sizeHint());
        const QImage line = box.grab(QRect(0, box.height() / 2, 10, 1)).toImage();
        int largest = 0;
        for (int x = 0; x < line.width(); ++x) {
            largest = std::max(largest, std::abs(line.pixelColor(x, 0).lightness() - window.lightness()));
        }
        QVERIFY2(largest >= 40, qPrintable(QStringLiteral("the frame differs by %1").arg(largest)));
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
