#include <zelkoguibase/filter/enumerationfilterwidgetbase.h>

#include <zelkoguibase/filter/checkitemdelegate.h>
#include <zelkoguibase/filter/elidedlabel.h>
#include <zelkoguibase/filter/selectableenummodelbase.h>

#include <QDialog>
#include <QHBoxLayout>
#include <QListView>
#include <QMainWindow>
#include <QPointer>
#include <QPushButton>
#include <QShortcut>
#include <QTimer>

#include <algorithm>

namespace ZelkoGUI::Filter {
namespace {

constexpr int minimumChars = 20;

/// The window that a list of values belongs to, as its user sees it.
const QWidget* centralAncestor(const QWidget* widget)
{
    while (const QWidget* const parent = widget->parentWidget()) {
        widget = parent;
        if (qobject_cast<const QMainWindow*>(widget) || qobject_cast<const QDialog*>(widget)) {
            break;
        }
    }
    return widget;
}

// As many rows as can be taken in at a glance.
void showManyRows(QListView& list)
{
    constexpr int mostRows = 18;
    const int rows = std::min(list.model()->rowCount(), mostRows);
    list.resize(list.sizeHint().width(), rows * list.sizeHintForRow(0) + 2 * list.frameWidth());
}

void centre(QWidget& window, const QWidget& on)
{
    QRect frame = window.frameGeometry();
    frame.moveCenter(on.mapToGlobal(on.rect().center()));
    window.move(frame.topLeft());
}

} // namespace

class EnumerationFilterWidgetBase::Private
{
public:
    explicit Private(QWidget* parent)
        : infoLabel(new ElidedLabel(minimumChars, parent))
        , selectButton(new QPushButton(EnumerationFilterWidgetBase::tr("Select..."), parent))
    {
        infoLabel->setObjectName(QStringLiteral("InfoLabel"));
        selectButton->setObjectName(QStringLiteral("SelectButton"));
    }

    ElidedLabel* const infoLabel;
    QPushButton* const selectButton;
    QPointer<QListView> listView; // deletes itself when it is closed
};

EnumerationFilterWidgetBase::EnumerationFilterWidgetBase(QWidget* parent)
    : QWidget(parent)
    , d(std::make_unique<Private>(this))
{
    setObjectName(QStringLiteral("EnumerationFilterWidget"));
    auto* const row = new QHBoxLayout(this);
    row->addWidget(d->infoLabel, 1);
    row->addWidget(d->selectButton);
    connect(d->selectButton, &QPushButton::clicked, this, &EnumerationFilterWidgetBase::sl_showModel);
    // What it asks for is answered by the derived class, which is not there yet.
    QTimer::singleShot(0, this, &EnumerationFilterWidgetBase::sl_validateFilter);
}

EnumerationFilterWidgetBase::~EnumerationFilterWidgetBase() = default;

QListView* EnumerationFilterWidgetBase::makeListView()
{
    auto* const view = new QListView;
    view->setObjectName(QStringLiteral("ValuesListView"));
    view->setWindowTitle(tr("Select Values to show"));
    view->setAccessibleName(accessibleName().isEmpty() ? view->windowTitle()
                                                       : tr("%1: %2").arg(accessibleName(), view->windowTitle()));
    view->setAttribute(Qt::WA_DeleteOnClose);
    view->setWindowModality(Qt::WindowModal);
    view->setModel(model());
    view->setItemDelegate(new CheckItemDelegate(view));
    showManyRows(*view);
    connect(this, &QObject::destroyed, view, &QObject::deleteLater);
    new QShortcut(QKeySequence::Cancel, view, view, &QWidget::close);
    view->setFocus(); // as soon as its window is active, so that keys find a current row
    return view;
}

void EnumerationFilterWidgetBase::sl_showModel()
{
    const bool isNew = !d->listView;
    if (isNew) {
        d->listView = makeListView();
    }
    if (d->listView->isMinimized()) {
        d->listView->showNormal();
    }
    d->listView->show();
    d->listView->raise();
    if (isNew) {
        centre(*d->listView, *centralAncestor(this));
    }
}

void EnumerationFilterWidgetBase::sl_modelChanged()
{
    applySelection();
    const QStringList names = selectedNames();
    const QString count = tr("%1 values shown: ").arg(names.size(), 0, 10, QLatin1Char(' '));
    d->infoLabel->setText(count + names.join(QStringLiteral(", ")), names.join(QStringLiteral("<br>")));
}

void EnumerationFilterWidgetBase::sl_validateFilter()
{
    setEnabled(filterEnabled());
    if (!filterEnabled() && d->listView) {
        d->listView->close();
    }
}

// The reset of the model that follows shows the new names.
void EnumerationFilterWidgetBase::sl_filterContentChanged()
{
    sl_validateFilter();
    loadSelection();
}

// A window that is merely minimized hides its widgets too, but they stay visible for Qt.
void EnumerationFilterWidgetBase::hideEvent(QHideEvent* event)
{
    QWidget::hideEvent(event);
    if (!isVisible() && d->listView) {
        d->listView->deleteLater();
        d->listView.clear();
    }
}

} // namespace ZelkoGUI::Filter
