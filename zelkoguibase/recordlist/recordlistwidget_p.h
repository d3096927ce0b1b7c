#pragma once

#include "filteredoutnote_p.h"
#include "proxiedrecords_p.h"
#include "scrollanchor_p.h"
#include "selectionkeeper_p.h"

#include <widgetbase/qheaderviewcolumnhandler.h>
#include <zelkoguibase/filter/multifiltersortproxymodel.h>
#include <zelkoguibase/filter/stringfiltercondition.h>
#include <zelkoguibase/filter/textfilterwidget.h>
#include <zelkoguibase/recordlist/recordlistwidget.h>

#include <QHeaderView>
#include <QLabel>
#include <QMenu>
#include <QPointer>
#include <QProgressBar>
#include <QTableView>
#include <QToolBar>
#include <QToolButton>

class QLayout;

namespace ZelkoGUI {

class ColumnHeaderView;

/// The parts of the widget, and what it knows of its list.
struct RecordListWidget::Private
{
    static constexpr int allColumns = -1; // in the data of an action of the clipboard menu

    /// Where the records are.
    struct Place
    {
        QString device;
        QString subSystem;

        bool operator==(const Place&) const = default;
    };

    Private(RecordListWidget* widget, IZelkoGUIController* itsController);

    // recordlistparts.cpp
    void makeView(Options options);
    void keepColumns();
    void takeColumns();
    void resetColumns();
    void makeRoomForTexts();
    void makeToolbar();
    void makeNameFilter();
    void makeExtendedFilter(QFlags<Filter::ExtendedFilterDialog::enFilterColumn> columns);
    void makeCountLabel();
    void makeDeviceLabel();
    void makeProgress();
    void makeActionMenu();
    void makeClipboardMenu();
    void makeOwnClipboardMenu();
    void offerColumnsForClipboard();
    void addClipboardAction(const QString& text, const QString& name, int column);
    void makeParts(Options options, QFlags<Filter::ExtendedFilterDialog::enFilterColumn> columns);
    void arrange();
    QWidget* lastAboveRow() const;
    QLayout* filterRow() const;

    void followSelection();
    void countRowsOf(const QAbstractItemModel* model) const;
    void setSource();
    void replaceSource();
    Place place() const;
    QString deviceText() const;
    bool isSingleSelection() const { return view->selectionMode() == QAbstractItemView::SingleSelection; }
    QStringList shownOf(const QStringList& ids) const;
    void updateClipboardMenu();
    bool selectShown(const QString& id);
    void resetFilters();
    int columnInSight() const;
    void scrollTo(const QModelIndex& row);
    void lookAtPlace();
    QString textOf(const QModelIndex& sourceRow, int column) const;
    QStringList highlighted() const;
    void tellWhatIsLeft();

    RecordListWidget* const owner;
    const QPointer<IZelkoGUIController> controller;
    QList<QPointer<Filter::AbstractFilterCondition>> fixedFilters;
    QTableView* const view;
    Filter::MultiFilterSortProxyModel* const proxy;
    ColumnHeaderView* header = nullptr;
    guiHelper::QHeaderViewColumnHandler* columnHandler = nullptr;
    Filter::StringFilterCondition* nameCondition = nullptr;
    Filter::TextFilterWidget* nameFilter = nullptr;
    Filter::ExtendedFilterDialog* filterDialog = nullptr;
    QToolButton* filterButton = nullptr;
    QLabel* countLabel = nullptr;
    QProgressBar* progressBar = nullptr;
    QLabel* progressLabel = nullptr;
    QToolBar* toolbar = nullptr;
    QMenu* popupMenu = nullptr;
    QMenu* clipboardMenu = nullptr;
    QLabel* deviceLabel = nullptr;
    QStringList selected;
    int totalCount = -1;
    int shownCount = -1;
    bool isDialogPlaced = false;
    bool hasTakenColumns = false;

    const ProxiedRecords records;
    ScrollAnchor* anchor = nullptr;
    SelectionKeeper* keeper = nullptr;
    QMetaObject::Connection selectionChanges;
    QMetaObject::Connection sourceDeath;
    Place lastPlace;
    const QObject lifetime; // of this; the children of the owner live a little longer
};

} // namespace ZelkoGUI
