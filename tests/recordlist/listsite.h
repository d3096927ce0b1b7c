#pragma once

#include "listedrecords.h"
#include "menuanswer.h"
#include "ownconfiguration.h"
#include "patience.h"
#include "scriptedcontroller.h"
#include "userlogin.h"

#include <console/hands/operatorhands.h>
#include <zelkoguibase/recordlist/recordlistwidget.h>

#include <QDialog>
#include <QLabel>
#include <QLineEdit>
#include <QProgressBar>
#include <QSignalSpy>
#include <QTableView>
#include <QToolButton>
#include <QtTest>

#include <optional>

using ZelkoGUI::RecordListWidget;

/// A controller whose list may become another one.
class ListController final : public ScriptedController
{
public:
    explicit ListController(ZelkoCommon::AbstractRecordListModel* model, UserActions offered = allActions)
        : ScriptedController(model, offered)
        , list(model)
    {}

    ZelkoCommon::AbstractRecordListModel* recordListModel() const override { return list; }

    ZelkoCommon::AbstractRecordListModel* list;
};

/// A record list that is shown, over a controller without a device and the records A, B, C ... Their names are "name of
/// A" and so on, and they stand in that order.
struct ListSite
{
    using Options = RecordListWidget::Options;
    using Columns = QFlags<ZelkoGUI::Filter::ExtendedFilterDialog::enFilterColumn>;

    static constexpr Options everything = Options(QFlag(1023));
    static constexpr Columns allColumns = Columns(QFlag(0x3fff));

    explicit ListSite(Options options = everything, int count = 5,
                      ListController::UserActions offered = ListController::allActions)
        : model(ids(count))
        , controller(std::in_place, &model, offered)
        , widget(std::in_place, &*controller, options, allColumns, nullptr, QStringLiteral("Records"))
        , view(*widget->findChild<QTableView*>(QStringLiteral("RecordTableView")))
    {
        view.sortByColumn(0, Qt::AscendingOrder);
        widget->resize(900, 400);
        widget->show();
        controller->take();
    }

    static QString id(int number) { return QString(QChar(u'A' + number)); }

    static QStringList ids(int count)
    {
        QStringList all;
        for (int number = 0; number < count; ++number) {
            all << id(number);
        }
        return all;
    }

    template <typename Part>
    Part* part(const char* name) const
    {
        return widget->findChild<Part*>(QLatin1String(name));
    }

    /// IDs from top to bottom, as "A B C".
    QString shown() const
    {
        QStringList all;
        for (int row = 0; row < view.model()->rowCount(); ++row) {
            all << idAt(row);
        }
        return all.join(u' ');
    }

    /// IDs of the rows that are selected in the view, from top to bottom.
    QString highlighted() const
    {
        QStringList all;
        for (int row = 0; row < view.model()->rowCount(); ++row) {
            if (view.selectionModel()->isRowSelected(row, {})) {
                all << idAt(row);
            }
        }
        return all.join(u' ');
    }

    QString idAt(int row) const { return view.model()->index(row, ListedRecords::RecordIDColumn).data().toString(); }

    void activate()
    {
        widget->activateWindow();
        QVERIFY(QTest::qWaitForWindowActive(&*widget, patience));
    }

    void click(int row, Qt::KeyboardModifiers modifiers = Qt::NoModifier)
    {
        ZelkoConsole::operatorhands::clickRow(view, row, modifiers);
    }

    /// Types into the name filter, in place of what stands there.
    void filterNames(const QString& text) const { type(*part<QWidget>("RecordNameFilterWidget"), text); }

    /// Opens the extended filter dialog and types into its filter for names.
    void filterByDialog(const QString& text) const
    {
        QTest::mouseClick(part<QToolButton>("ShowExtendedFilterButton"), Qt::LeftButton);
        type(*part<QDialog>("ExtendedFilterDialog")->findChild<QWidget*>(QStringLiteral("NameFilterWidget")), text);
    }

    QString count() const { return part<QLabel>("RecordCountLabel")->text(); }

    static void type(const QWidget& filter, const QString& text)
    {
        auto* const edit = filter.findChild<QLineEdit*>(QStringLiteral("TextEdit"));
        edit->window()->activateWindow();
        QVERIFY(QTest::qWaitForWindowActive(edit->window(), patience));
        edit->setFocus();
        edit->selectAll();
        QTest::keyClick(edit, Qt::Key_Delete);
        QTest::keyClicks(edit, text);
    }

    UserLogin login;
    OwnConfiguration configuration;
    ListedRecords model;
    std::optional<ListController> controller;
    std::optional<RecordListWidget> widget;
    QTableView& view;
};

/// Clicks with the right button onto a row, and does `answer` with the menu that opens.
inline bool withMenuOf(ListSite& site, int row, const std::function<void(QMenu&)>& answer)
{
    const MenuAnswer menu(answer);
    const QPoint place = site.view.visualRect(site.view.model()->index(row, 1)).center();
    QContextMenuEvent event(QContextMenuEvent::Mouse, place, site.view.viewport()->mapToGlobal(place));
    QCoreApplication::sendEvent(site.view.viewport(), &event);
    return menu.wasGiven();
}
