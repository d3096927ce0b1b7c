#include "boxground.h"

#include <zelkoguibase/filter/checkitemdelegate.h>

#include <QListView>
#include <QMouseEvent>
#include <QStandardItemModel>
#include <QStyle>
#include <QtTest>

#include <algorithm>
#include <cstdlib>

using CheckItemDelegate = ZelkoGUI::Filter::EnumerationFilterWidgetBase::CheckItemDelegate;

namespace {

constexpr Qt::ItemFlags checkable = Qt::ItemIsUserCheckable | Qt::ItemIsEnabled;

/// A list of one item.
struct List
{
    explicit List(Qt::ItemFlags flags = checkable)
        : item(new QStandardItem(QStringLiteral("Airband")))
    {
        item->setCheckState(Qt::Unchecked);
        item->setFlags(flags);
        model.appendRow(item);
        view.setModel(&model);
        view.setItemDelegate(new CheckItemDelegate(&view));
        view.resize(240, 120);
        view.show();
    }

    QRect row() const { return view.visualRect(model.index(0, 0)); }
    QPoint besideTheText() const { return {row().right() - 5, row().center().y()}; }
    QPoint onTheBox() const
    {
        QStyleOptionViewItem option;
        option.initFrom(&view);
        option.rect = row();
        option.features = QStyleOptionViewItem::HasCheckIndicator | QStyleOptionViewItem::HasDisplay;
        option.text = item->text();
        return view.style()->subElementRect(QStyle::SE_ItemViewItemCheckIndicator, &option, &view).center();
    }
    void press(const QPoint& place, Qt::MouseButton button = Qt::LeftButton)
    {
        QTest::mousePress(view.viewport(), button, Qt::NoModifier, place);
    }
    void release(const QPoint& place, Qt::MouseButton button = Qt::LeftButton)
    {
        QTest::mouseRelease(view.viewport(), button, Qt::NoModifier, place);
    }

    QStandardItemModel model;
    QListView view;
    QStandardItem* const item;
};

/// Takes events from whoever has them, as it takes those of its list.
struct OpenDelegate : CheckItemDelegate
{
    using CheckItemDelegate::CheckItemDelegate;
    using CheckItemDelegate::editorEvent;
};

} // namespace

class CheckItemDelegateTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void aPressAnywhereOnTheRowToggles();
    void aClickOnTheBoxTogglesOnce();
    void halfCheckedBecomesChecked();
    void theSpaceKeyToggles();
    void otherButtonsDoNotToggle();
    void leavesItemsAlone_data();
    void leavesItemsAlone();
    void leavesItemsWithoutABoxAlone();
    void leavesADisabledListAlone_data();
    void leavesADisabledListAlone();
    void boxesStandOutFromTheList_data();
    void boxesStandOutFromTheList();
    void boxesDoNotTouchEachOther();
};

void CheckItemDelegateTest::aPressAnywhereOnTheRowToggles()
{
    List list;
    list.press(list.besideTheText());
    QCOMPARE(list.item->checkState(), Qt::Checked);
    list.release(list.besideTheText());
    QCOMPARE(list.item->checkState(), Qt::Checked);
    list.press(list.besideTheText());
    list.release(list.besideTheText());
    QCOMPARE(list.item->checkState(), Qt::Unchecked);
}

void CheckItemDelegateTest::aClickOnTheBoxTogglesOnce()
{
    List list;
    list.press(list.onTheBox());
    list.release(list.onTheBox());
    QCOMPARE(list.item->checkState(), Qt::Checked);
}

void CheckItemDelegateTest::halfCheckedBecomesChecked()
{
    List list;
    list.item->setCheckState(Qt::PartiallyChecked);
    list.press(list.besideTheText());
    QCOMPARE(list.item->checkState(), Qt::Checked);
}

void CheckItemDelegateTest::theSpaceKeyToggles()
{
    List list;
    list.view.setCurrentIndex(list.model.index(0, 0));
    QTest::keyClick(&list.view, Qt::Key_Space);
    QCOMPARE(list.item->checkState(), Qt::Checked);
}

void CheckItemDelegateTest::otherButtonsDoNotToggle()
{
    List list;
    for (const Qt::MouseButton button : {Qt::RightButton, Qt::MiddleButton}) {
        list.press(list.besideTheText(), button);
        list.release(list.besideTheText(), button);
        QCOMPARE(list.item->checkState(), Qt::Unchecked);
    }
}

void CheckItemDelegateTest::leavesItemsAlone_data()
{
    QTest::addColumn<Qt::ItemFlags>("flags");
    QTest::newRow("that can be selected") << (checkable | Qt::ItemIsSelectable);
    QTest::newRow("that cannot be checked") << Qt::ItemFlags(Qt::ItemIsEnabled);
    QTest::newRow("that are disabled") << Qt::ItemFlags(Qt::ItemIsUserCheckable);
}

void CheckItemDelegateTest::leavesItemsAlone()
{
    QFETCH(Qt::ItemFlags, flags);
    List list(flags);
    list.press(list.besideTheText());
    QCOMPARE(list.item->checkState(), Qt::Unchecked);
}

void CheckItemDelegateTest::leavesItemsWithoutABoxAlone()
{
    List list;
    list.item->setData(QVariant(), Qt::CheckStateRole);
    list.press(list.besideTheText());
    QVERIFY(!list.item->data(Qt::CheckStateRole).isValid());
}

void CheckItemDelegateTest::leavesADisabledListAlone_data()
{
    QTest::addColumn<QStyle::State>("state");
    QTest::addColumn<Qt::CheckState>("checked");
    QTest::newRow("an enabled one is toggled") << QStyle::State(QStyle::State_Enabled) << Qt::Checked;
    QTest::newRow("a disabled one is not") << QStyle::State(QStyle::State_None) << Qt::Unchecked;
}

// A list view that is disabled keeps its events to itself, other views need not.
void CheckItemDelegateTest::leavesADisabledListAlone()
{
    QFETCH(QStyle::State, state);
    QFETCH(Qt::CheckState, checked);
    List list;
    OpenDelegate delegate(nullptr);
    QStyleOptionViewItem option;
    option.initFrom(&list.view);
    option.widget = &list.view;
    option.rect = list.row();
    option.state = state;
    const QPointF place(list.besideTheText());
    QMouseEvent press(QEvent::MouseButtonPress, place, place, Qt::LeftButton, Qt::LeftButton, Qt::NoModifier);
    QCOMPARE(delegate.editorEvent(&press, &list.model, option, list.model.index(0, 0)), checked == Qt::Checked);
    QCOMPARE(list.item->checkState(), checked);
}

void CheckItemDelegateTest::boxesStandOutFromTheList_data()
{
    boxground::addGrounds();
}

void CheckItemDelegateTest::boxesStandOutFromTheList()
{
    List list;
    list.view.setPalette(boxground::palette());
    const QPoint box = list.onTheBox();
    const QImage line = list.view.viewport()->grab(QRect(0, box.y(), box.x(), 1)).toImage();
    const int contrast = boxground::contrast(line, list.view.palette().color(QPalette::Base));
    QVERIFY2(contrast >= 60, qPrintable(QStringLiteral("the frame differs by %1").arg(contrast)));
}

void CheckItemDelegateTest::boxesDoNotTouchEachOther()
{
    List list;
    QStyleOptionViewItem option;
    option.initFrom(&list.view);
    const int box = list.view.style()->pixelMetric(QStyle::PM_IndicatorHeight, &option, &list.view);
    QVERIFY(list.view.sizeHintForRow(0) >= box + 4);
}

QTEST_MAIN(CheckItemDelegateTest)
#include "tst_checkitemdelegate.moc"
