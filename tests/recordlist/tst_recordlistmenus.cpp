#include "listsite.h"

#include <resources/zelkoicons.h>

#include <QClipboard>
#include <QToolBar>

using namespace Qt::StringLiterals;
using Controller = ZelkoGUI::IZelkoGUIController;

namespace {

QAction* actionOf(const QMenu& menu, const QString& name)
{
    return menu.findChild<QAction*>(name);
}

QString clipboardText()
{
    return QGuiApplication::clipboard()->text();
}

/// A controller whose actions are as the test says.
class ActionController final : public ScriptedController
{
public:
    using ScriptedController::ScriptedController;
    QList<QAction*> recordActions() const override { return actions; }

    QList<QAction*> actions;
};

/// A list that counts how often it is read while the user is told to wait.
class WatchedRecords final : public ListedRecords
{
public:
    using ListedRecords::ListedRecords;

    QVariant data(const QModelIndex& index, int role) const override
    {
        const QCursor* const cursor = QGuiApplication::overrideCursor();
        if (cursor && cursor->shape() == Qt::WaitCursor) {
            ++readsInWaiting;
        }
        return ListedRecords::data(index, role);
    }

    mutable int readsInWaiting = 0;
};

/// Opens the context menu of a row by the mouse and in it that of the columns by keys, and does `answer` with that.
bool withCopyMenuOf(ListSite& site, const std::function<void(QMenu&)>& answer)
{
    return withMenuOf(site, 1, [&](QMenu& popup) {
        QTest::keyClick(&popup, Qt::Key_Up); // the last entry
        QTest::keyClick(&popup, Qt::Key_Right);
        auto* const menu = site.part<QMenu>("CopyToClipboardMenu");
        QVERIFY(menu->isVisible());
        answer(*menu);
    });
}

} // namespace

class RecordListMenusTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { registerZelkoIcons(); }

    void barsActionsWithoutAnIconFromTheToolbar();
    void barsNoSeparatorFromTheToolbar_data();
    void barsNoSeparatorFromTheToolbar();
    void opensTheMenuOfActionsWithAClick();
    void hasNoMenuWithoutActions();
    void headsAMenuOfColumnsAlone();
    void offersEachColumnToBeCopied();
    void opensNoMenuOfColumnsAloneForNoRecord();
    void copiesAColumn();
    void showsThatItIsAtWork();
    void copiesAllColumns();
    void copiesNothingOfWhatIsGone();
    void countsWhatIsToBeCopied();
};

void RecordListMenusTest::barsActionsWithoutAnIconFromTheToolbar()
{
    ListedRecords model;
    ListController controller(&model, Controller::UserActionRename | Controller::UserActionDelete);
    controller.recordAction(Controller::UserActionDelete)->setIcon(QIcon());
    RecordListWidget widget(&controller, ListSite::everything, ListSite::allColumns, nullptr, u"Records"_s);
    const auto* const toolbar = widget.findChild<QToolBar*>(u"ActionToolbar"_s);
    QCOMPARE(toolbar->orientation(), Qt::Vertical);
    QCOMPARE(toolbar->actions(), QList<QAction*>{controller.recordAction(Controller::UserActionRename)});
    const auto* const menu = widget.findChild<QMenu*>(u"RecordListWidgetPopupMenu"_s);
    QCOMPARE(menu->actions().first(2), controller.recordActions());
}

void RecordListMenusTest::barsNoSeparatorFromTheToolbar_data()
{
    QTest::addColumn<QString>("actions");
    QTest::addColumn<QString>("inToolbar");
    QTest::newRow("icons on either side of a separator") << u"icon separator icon"_s << u"icon separator icon"_s;
    QTest::newRow("no icon on one side of a separator") << u"icon separator plain"_s << u"icon separator"_s;
    QTest::newRow("no icons, but a separator") << u"plain separator plain"_s << u"separator"_s;
    QTest::newRow("no icons, and so no tool bar") << u"plain plain"_s << QString();
}

void RecordListMenusTest::barsNoSeparatorFromTheToolbar()
{
    QFETCH(QString, actions);
    ListedRecords model;
    ActionController controller(&model);
    QObject owner;
    for (const QString& kind : actions.split(u' ')) {
        auto* const action = new QAction(kind, &owner);
        action->setSeparator(kind == u"separator"_s);
        action->setIcon(kind == u"icon"_s ? QIcon(u":/Filter/Icons/Filter.svg"_s) : QIcon());
        controller.actions << action;
    }
    const RecordListWidget widget(&controller, RecordListWidget::OptionToolbar, {}, nullptr, u"Records"_s);
    QStringList inToolbar;
    const auto* const toolbar = widget.findChild<QToolBar*>(u"ActionToolbar"_s);
    for (const QAction* const action : toolbar ? toolbar->actions() : QList<QAction*>()) {
        inToolbar << action->text();
    }
    QTEST(inToolbar.join(u' '), "inToolbar");
    QCOMPARE(toolbar != nullptr, !inToolbar.isEmpty());
}

void RecordListMenusTest::opensTheMenuOfActionsWithAClick()
{
    ListSite site;
    site.click(1);
    site.controller->take();
    QVERIFY(withMenuOf(site, 1, [&](QMenu& menu) {
        QCOMPARE(menu.actions().first(10), site.controller->recordActions());
        QCOMPARE(MenuAnswer::texts(menu).last(2), (QStringList{u"-"_s, u"Copy to Clipboard (1)"_s}));
        MenuAnswer::click(menu, site.controller->recordAction(Controller::UserActionReset));
    }));
    QCOMPARE(site.controller->take().value(0), u"reset B"_s);
}

void RecordListMenusTest::hasNoMenuWithoutActions()
{
    ListSite site(ListSite::Options(33), 5, {});
    QVERIFY(!site.part<QMenu>("RecordListWidgetPopupMenu"));
    QCOMPARE(site.view.contextMenuPolicy(), Qt::DefaultContextMenu);
}

void RecordListMenusTest::headsAMenuOfColumnsAlone()
{
    ListSite site(ListSite::Options(32 | 64), 5, {});
    site.click(1);
    QVERIFY(withMenuOf(site, 1, [&](QMenu& menu) {
        const QStringList texts = MenuAnswer::texts(menu);
        QCOMPARE(texts.first(3), (QStringList{u"Copy to Clipboard"_s, u"-"_s, u"Name"_s}));
        QCOMPARE(texts.size(), 2 + ListedRecords::ColumnCount + 1);
        QVERIFY(!menu.actions().constFirst()->isEnabled());
        MenuAnswer::click(menu, actionOf(menu, u"Copy_Name_toClipboard"_s));
    }));
    QCOMPARE(clipboardText(), u"name of B"_s);
}

void RecordListMenusTest::opensNoMenuOfColumnsAloneForNoRecord()
{
    ListSite site(ListSite::Options(32 | 64), 5, {});
    const auto* const menu = site.part<QMenu>("RecordListWidgetPopupMenu");
    QCOMPARE(menu->title(), u"Copy to Clipboard"_s);
    QVERIFY(!menu->isEnabled());
    QGuiApplication::clipboard()->setText(u"before"_s);
    QVERIFY(withMenuOf(site, 1, [](QMenu& popup) {
        QTest::mouseClick(popup.windowHandle(), Qt::LeftButton, Qt::NoModifier,
                          popup.actionGeometry(actionOf(popup, u"Copy_Name_toClipboard"_s)).center());
    }));
    QCOMPARE(clipboardText(), u"before"_s);
    site.click(1);
    QCOMPARE(menu->title(), u"Copy to Clipboard (1)"_s);
    QVERIFY(menu->isEnabled());
}

void RecordListMenusTest::offersEachColumnToBeCopied()
{
    ListSite site;
    const auto* const menu = site.part<QMenu>("CopyToClipboardMenu");
    const QList<QAction*> actions = menu->actions();
    QCOMPARE(actions.size(), ListedRecords::ColumnCount + 1);
    for (int column = 0; column < ListedRecords::ColumnCount; ++column) {
        const QString text = site.model.headerData(column, Qt::Horizontal).toString();
        QCOMPARE(actions[column]->text(), text);
        QCOMPARE(actions[column]->objectName(), u"Copy_%1_toClipboard"_s.arg(text));
        QCOMPARE(actions[column]->data(), QVariant(column));
        QVERIFY(!actions[column]->font().bold());
    }
    QCOMPARE(actions.last()->text(), u"All Columns"_s);
    QCOMPARE(actions.last()->objectName(), u"Copy_All_toClipboard"_s);
    QCOMPARE(actions.last()->data(), QVariant(-1));
    QVERIFY(actions.last()->font().bold());
}

void RecordListMenusTest::copiesAColumn()
{
    ListSite site;
    site.click(3);
    site.click(1, Qt::ControlModifier);
    QVERIFY(withCopyMenuOf(
        site, [](QMenu& menu) { MenuAnswer::click(menu, actionOf(menu, u"Copy_Record ID_toClipboard"_s)); }));
    QCOMPARE(clipboardText(), u"D\r\nB"_s);
}

void RecordListMenusTest::showsThatItIsAtWork()
{
    ListSite site;
    WatchedRecords records(ListSite::ids(5));
    site.controller->list = &records;
    Q_EMIT site.controller->si_activeDeviceChanged({}, {});
    site.click(3);
    site.click(1, Qt::ControlModifier);
    QCOMPARE(records.readsInWaiting, 0);
    QVERIFY(withCopyMenuOf(
        site, [](QMenu& menu) { MenuAnswer::click(menu, actionOf(menu, u"Copy_Record ID_toClipboard"_s)); }));
    QCOMPARE(records.readsInWaiting, 2);
    QVERIFY(!QGuiApplication::overrideCursor());
}

void RecordListMenusTest::copiesAllColumns()
{
    ListSite site;
    site.click(3);
    site.click(1, Qt::ControlModifier);
    QVERIFY(
        withCopyMenuOf(site, [](QMenu& menu) { MenuAnswer::click(menu, actionOf(menu, u"Copy_All_toClipboard"_s)); }));
    QStringList lines;
    for (const int row : {3, 1}) {
        QStringList cells;
        for (int column = 0; column < ListedRecords::ColumnCount; ++column) {
            cells << site.model.index(row, column).data().toString();
        }
        lines << cells.join(u';');
    }
    QCOMPARE(clipboardText(), lines.join(u"\r\n"_s));
    QVERIFY(lines.constFirst().startsWith(u"name of D;"_s));
}

// All rows went while the menu was open, which is told a turn of the event loop later.
void RecordListMenusTest::copiesNothingOfWhatIsGone()
{
    ListSite site;
    site.click(3);
    QGuiApplication::clipboard()->setText(u"before"_s);
    QVERIFY(withCopyMenuOf(site, [&](QMenu& menu) {
        site.model.replace({});
        MenuAnswer::click(menu, actionOf(menu, u"Copy_All_toClipboard"_s));
    }));
    QCOMPARE(clipboardText(), QString());
}

void RecordListMenusTest::countsWhatIsToBeCopied()
{
    ListSite site;
    const auto* const menu = site.part<QMenu>("CopyToClipboardMenu");
    QCOMPARE(menu->title(), u"Copy to Clipboard"_s);
    QVERIFY(!menu->isEnabled());
    site.click(3);
    site.click(1, Qt::ControlModifier);
    QCOMPARE(menu->title(), u"Copy to Clipboard (2)"_s);
    QVERIFY(menu->isEnabled());
    site.controller->sl_selectedRecordsChanged({u"A"_s, u"B"_s, u"C"_s});
    QCOMPARE(menu->title(), u"Copy to Clipboard (3)"_s);
    site.controller->sl_selectedRecordsChanged({});
    QCOMPARE(menu->title(), u"Copy to Clipboard"_s);
    QVERIFY(!menu->isEnabled());
}

QTEST_MAIN(RecordListMenusTest)
#include "tst_recordlistmenus.moc"
