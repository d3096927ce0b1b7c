#include "contrast.h"
#include "patience.h"

#include <console/demo/appearance.h>
#include <console/widgets/roomystyle.h>

#include <QApplication>
#include <QHBoxLayout>
#include <QListWidget>
#include <QTest>

using namespace ZelkoConsole;

namespace {

// Two lists side by side, each with its first row selected, the left one with the focus.
struct Setting
{
    Setting()
    {
        auto* const layout = new QHBoxLayout(&window);
        for (QListWidget* const list : {left, right}) {
            RoomyStyle::apply(list);
            list->addItem(QStringLiteral("a"));
            list->setCurrentRow(0);
            layout->addWidget(list);
        }
        window.show();
        window.activateWindow();
        left->setFocus();
        QVERIFY(QTest::qWaitForWindowActive(&window, patience));
        QTRY_VERIFY_WITH_TIMEOUT(left->hasFocus(), patience);
    }

    // The colour behind the text of the row.
    static QRgb rowColor(QListWidget& list)
    {
        const QRect row = list.visualItemRect(list.item(0));
        return list.viewport()->grab().toImage().pixelColor(QPoint(row.right() - 4, row.center().y())).rgb();
    }

    QWidget window;
    QListWidget* const left = new QListWidget;
    QListWidget* const right = new QListWidget;
};

} // namespace

class TestRoomyStyle : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { QApplication::setStyle(QStringLiteral("fusion")); }

    void showsWhichListHasTheFocus()
    {
        const Setting setting;
        const QPalette palette = setting.left->palette();
        QCOMPARE(Setting::rowColor(*setting.left), palette.color(QPalette::Highlight).rgb());
        QCOMPARE(Setting::rowColor(*setting.right), RoomyStyle::restingHighlight(palette).rgb());
        QTest::keyClick(setting.left, Qt::Key_Tab);
        QVERIFY(setting.right->hasFocus());
        QCOMPARE(Setting::rowColor(*setting.left), RoomyStyle::restingHighlight(palette).rgb());
        QCOMPARE(Setting::rowColor(*setting.right), palette.color(QPalette::Highlight).rgb());
    }

    void keepsWhatIsSelectedReadable_data()
    {
        QTest::addColumn<QPalette>("palette");
        QTest::newRow("light") << QApplication::palette();
        QTest::newRow("dark") << darkPalette();
    }

    void keepsWhatIsSelectedReadable()
    {
        QFETCH(const QPalette, palette);
        const QColor resting = RoomyStyle::restingHighlight(palette);
        QVERIFY(resting != palette.color(QPalette::Highlight));
        QVERIFY(contrast(resting, palette.color(QPalette::HighlightedText)) > 3.5);
        QVERIFY(contrast(resting, palette.color(QPalette::Base)) > 2);
    }

    void givesRowsMoreRoomThanTheirText()
    {
        const Setting setting;
        const int height = setting.left->visualItemRect(setting.left->item(0)).height();
        QCOMPARE(height, RoomyStyle::rowHeight(setting.left));
        QVERIFY(height > setting.left->fontMetrics().height());
    }
};

QTEST_MAIN(TestRoomyStyle)
#include "tst_roomystyle.moc"
