#include <overviewdisplay/spectrumoverviewwidget.h>

#include "automaticlevels_p.h"
#include "bookmarkchanges_p.h"
#include "overviewactions_p.h"
#include "overviewquestions_p.h"
#include "overviewsession_p.h"
#include "overviewsettingsbar_p.h"
#include "overviewstatus_p.h"

#include <overviewdisplay/waterfallview.h>

#include <QAction>
#include <QEvent>
#include <QFileInfo>
#include <QMenu>
#include <QPointer>
#include <QVBoxLayout>
#include <QtMath>

#include <algorithm>
#include <utility>

namespace SPECTRUM_OVERVIEW {

using ZELKO_XML::BookmarkEntry;

namespace {

constexpr QSize firstSize(1000, 700);

// So long the record is waited for after its bookmarks were sent; if it does not come, they were not taken.
constexpr std::chrono::milliseconds unlockDelay{2000};

// A bookmark is at the cursor if it is not further away than so many parts of what is shown.
constexpr quint64 cursorReach = 50;

// A window's title has a place holder, which a name must not bring in.
QString titleText(QString name)
{
    return name.replace(QStringLiteral("[*]"), QStringLiteral("[*][*]"));
}

} // namespace

struct SpectrumOverviewWidget::Private
{
    Private(SpectrumOverviewWidget* owner, QString path);

    void createLayout();
    void connectSession();
    void connectView();
    void connectActions();
    void begin();

    void recordChanged();
    void cutSelection();
    void showRange();
    void emptied();
    void linesArrived(int first, int last);
    void takeSettings();
    void showLevels();
    void showTitle();
    void updateActions();
    void extendMenu(QMenu* menu);

    void ask(const OverviewWish& wish, const QString& address, uint port);
    void zoomToSelection();
    void zoomOut();
    std::optional<BookmarkEntry> bookmarkAtCursor() const;
    bool canSetBookmarks() const { return session.isUsable() && !areBookmarksSent; }
    bool canSetBookmark(quint64 time) const { return canSetBookmarks() && session.facts().has(time); }
    void askBookmark(quint64 time);
    void removeBookmark();
    void send(const Bookmarks& bookmarks);
    void askCopy();
    void askPicture();
    void save(const QString& fileName);

    SpectrumOverviewWidget* const q;
    const QString cfgPath;
    QString deviceID;
    OverviewSession session;
    AutomaticLevels levels;
    OverviewActions* const actions;
    OverviewSettingsBar* const settingsBar;
    WaterfallView* const view;
    OverviewStatus* const status;
    OverviewLoader::SingleShot singleShot = Vorn::callLater;
    Bookmarks bookmarks; // as they are drawn
    int sendings = 0;    // number of the last one, so that older ones unlock nothing
    bool areBookmarksSent = false;
};

SpectrumOverviewWidget::Private::Private(SpectrumOverviewWidget* owner, QString path)
    : q(owner)
    , cfgPath(std::move(path))
    , actions(new OverviewActions(owner))
    , settingsBar(new OverviewSettingsBar(owner))
    , view(new WaterfallView(owner))
    , status(new OverviewStatus(owner))
{
    createLayout();
    connectSession();
    connectView();
    connectActions();
}

void SpectrumOverviewWidget::Private::createLayout()
{
    view->setObjectName(QStringLiteral("WaterfallView"));
    status->setObjectName(QStringLiteral("StatusLine"));
    auto* const layout = new QVBoxLayout(q);
    layout->addWidget(actions);
    layout->addWidget(settingsBar);
    layout->addWidget(view, 1);
    layout->addWidget(status);
}

void SpectrumOverviewWidget::Private::connectSession()
{
    connect(&session, &OverviewSession::si_resyncRecord, q,
            [this](const QString& recordID) { Q_EMIT q->si_resyncRecord(recordID, deviceID); });
    connect(&session, &OverviewSession::si_ask, q,
            [this](const OverviewWish& wish, const QString& address, uint port) { ask(wish, address, port); });
    connect(&session, &OverviewSession::si_recordChanged, q, [this] { recordChanged(); });
    connect(&session, &OverviewSession::si_rangeChanged, q, [this] { showRange(); });
    connect(&session, &OverviewSession::si_emptied, q, [this] { emptied(); });
    connect(&session, &OverviewSession::si_linesArrived, q, [this](int first, int last) { linesArrived(first, last); });
    connect(&session, &OverviewSession::si_loaderChanged, q, [this] { updateActions(); });
}

void SpectrumOverviewWidget::Private::connectView()
{
    connect(view, &WaterfallView::si_cursorMoved, q, [this] { updateActions(); });
    connect(view, &WaterfallView::si_selectionChanged, q, [this] { updateActions(); });
    connect(view, &WaterfallView::si_zoomAsked, q, [this](quint64 start, quint64 stop) {
        session.show({start, stop});
    });
    connect(view, &WaterfallView::si_zoomOutAsked, q, [this] { session.showWhole(); });
    connect(view, &WaterfallView::si_bookmarkAsked, q, [this](quint64 time) { askBookmark(time); });
    connect(view, &WaterfallView::si_menuAboutToShow, q, [this](QMenu* menu) { extendMenu(menu); });
}

void SpectrumOverviewWidget::Private::connectActions()
{
    const auto onTrigger = [this](const QAction* action, void (Private::*operation)()) {
        connect(action, &QAction::triggered, q, [this, operation] { (this->*operation)(); });
    };
    onTrigger(actions->zoomIn, &Private::zoomToSelection);
    onTrigger(actions->zoomOut, &Private::zoomOut);
    onTrigger(actions->removeBookmark, &Private::removeBookmark);
    onTrigger(actions->copyRange, &Private::askCopy);
    onTrigger(actions->savePicture, &Private::askPicture);
    connect(actions->whole, &QAction::triggered, &session, &OverviewSession::showWhole);
    connect(actions->askAgain, &QAction::triggered, &session, &OverviewSession::askAgain);
    connect(actions->addBookmark, &QAction::triggered, q, [this] {
        if (const auto cursor = view->cursor()) {
            askBookmark(cursor->time);
        }
    });
    connect(settingsBar, &OverviewSettingsBar::si_settingsChanged, q, [this] { takeSettings(); });
}

void SpectrumOverviewWidget::Private::begin()
{
    settingsBar->setSettings(OverviewSettings::read(cfgPath));
    takeSettings();
    if (!q->restoreGeometry(settingsBar->settings().geometry)) {
        q->resize(firstSize);
    }
    view->installEventFilter(q);
    recordChanged();
}

// What the session tells

void SpectrumOverviewWidget::Private::recordChanged()
{
    const Bookmarks before = std::exchange(bookmarks, session.facts().bookmarks);
    if (bookmarks != before) {
        areBookmarksSent = false;
    }
    if (session.record().state() == FollowedRecord::State::Deleted) {
        bookmarks.clear();
        view->clearSelection();
    }
    cutSelection();
    view->setBookmarks(bookmarks);
    showTitle();
    updateActions();
}

// What a record does not have any more cannot be copied out of it.
void SpectrumOverviewWidget::Private::cutSelection()
{
    const auto selection = view->selection();
    if (!selection || !session.isUsable() || session.facts().has(*selection)) {
        return;
    }
    const TimeRange extent = session.facts().extent;
    view->clearSelection();
    view->setSelection(std::max(selection->start, extent.start), std::min(selection->stop, extent.stop));
}

void SpectrumOverviewWidget::Private::showTitle()
{
    const QString name = session.facts().name.isEmpty() ? session.record().recordID() : session.facts().name;
    q->setWindowTitle(name.isEmpty() ? tr("Spectrum Overview") : tr("Spectrum Overview: %1").arg(titleText(name)));
}

void SpectrumOverviewWidget::Private::showRange()
{
    if (session.range() == TimeRange()) {
        view->clearTimeRange();
    } else {
        view->setTimeRange(session.range().start, session.range().stop);
    }
    updateActions();
}

// Levels that belong to no record any more leave nothing behind; those of a wish that is over leave their picture
// until finer ones come.
void SpectrumOverviewWidget::Private::emptied()
{
    levels = AutomaticLevels();
    const OverviewLevels& all = session.loader().levels();
    if (all.wish() == OverviewWish()) {
        view->setLevels(nullptr);
    } else {
        view->setLevels(&all);
    }
    updateActions();
}

void SpectrumOverviewWidget::Private::linesArrived(int first, int last)
{
    levels.addLines(session.loader().levels(), first, last);
    view->linesArrived(first, last);
    showLevels();
    updateActions();
}

// What the user chooses

void SpectrumOverviewWidget::Private::takeSettings()
{
    session.setSettings(settingsBar->settings());
    showLevels();
}

void SpectrumOverviewWidget::Private::showLevels()
{
    settingsBar->showLevels(levels.range());
    view->setLevelRange(settingsBar->settings().lowestLevel, settingsBar->settings().highestLevel);
}

void SpectrumOverviewWidget::Private::updateActions()
{
    const bool isUsable = session.isUsable();
    const auto cursor = view->cursor();
    const bool hasSelection = isUsable && view->selection();
    const bool hasPicture = session.loader().levels().completeLines() > 0;
    actions->zoomIn->setEnabled(hasSelection);
    actions->zoomOut->setEnabled(isUsable && !session.isWhole());
    actions->whole->setEnabled(isUsable && !session.isWhole());
    actions->addBookmark->setEnabled(cursor && canSetBookmark(cursor->time));
    actions->removeBookmark->setEnabled(canSetBookmarks() && bookmarkAtCursor());
    actions->copyRange->setEnabled(hasSelection && session.facts().canBeCopied);
    actions->savePicture->setEnabled(hasPicture);
    actions->askAgain->setEnabled(isUsable);
    status->showSession(session);
    view->setEmptyText(status->text());
    status->showCursor(view->cursorText());
}

void SpectrumOverviewWidget::Private::extendMenu(QMenu* menu)
{
    menu->addSeparator();
    menu->addActions({actions->removeBookmark, actions->copyRange, actions->savePicture, actions->askAgain});
}

void SpectrumOverviewWidget::Private::ask(const OverviewWish& wish, const QString& address, uint port)
{
    Q_EMIT q->si_overviewSpectrumStreamed(session.record().recordID(), static_cast<qint64>(wish.start),
                                          static_cast<qint64>(wish.stop), wish.lineCount, wish.fftLength, wish.window,
                                          address, port, deviceID);
}

void SpectrumOverviewWidget::Private::zoomToSelection()
{
    if (const auto selection = view->selection()) {
        session.show(*selection);
        view->clearSelection();
    }
}

void SpectrumOverviewWidget::Private::zoomOut()
{
    const TimeRange shown = session.range();
    const quint64 half = (shown.stop - shown.start) / 2;
    session.show({shown.start - std::min(half, shown.start), shown.stop + half});
}

std::optional<BookmarkEntry> SpectrumOverviewWidget::Private::bookmarkAtCursor() const
{
    const auto cursor = view->cursor();
    const quint64 reach = (session.range().stop - session.range().start) / cursorReach;
    return cursor ? nearestBookmark(bookmarks, cursor->time, reach) : std::nullopt;
}

// The record may have changed, or gone, when the user is done with the question.
void SpectrumOverviewWidget::Private::askBookmark(quint64 time)
{
    if (canSetBookmark(time)) {
        askText(q, tr("New Bookmark"), tr("Text of the bookmark:"), QString(), [this, time](const QString& text) {
            if (canSetBookmark(time)) {
                send(withBookmark(bookmarks, time, text));
            }
        });
    }
}

void SpectrumOverviewWidget::Private::removeBookmark()
{
    const auto bookmark = bookmarkAtCursor();
    if (bookmark && canSetBookmarks()) {
        send(withoutBookmark(bookmarks, *bookmark));
    }
}

// Until the record comes back with them nothing more is sent: a second list would not have the change of the first.
void SpectrumOverviewWidget::Private::send(const Bookmarks& changed)
{
    const QPointer<SpectrumOverviewWidget> self(q);
    areBookmarksSent = true;
    singleShot(unlockDelay, q, [this, number = ++sendings] {
        if (number == sendings) {
            areBookmarksSent = false;
            updateActions();
        }
    });
    Q_EMIT q->si_setBookmarkEntries(session.record().recordID(), changed, deviceID);
    if (self) {
        updateActions();
    }
}

void SpectrumOverviewWidget::Private::askCopy()
{
    const auto selection = view->selection();
    if (!selection) {
        return;
    }
    askText(q, tr("Copy Range"), tr("Name of the new record:"), session.facts().name + QStringLiteral("_Copy"),
            [this, range = *selection](const QString& name) {
                if (!name.isEmpty() && session.isUsable() && session.facts().has(range)) {
                    Q_EMIT q->si_copyRecord(session.record().recordID(), range.start, range.stop, name, deviceID);
                }
            });
}

void SpectrumOverviewWidget::Private::askPicture()
{
    askPictureFile(q, settingsBar->settings().pictureFolder, session.facts().name,
                   [this](const QString& fileName) { save(fileName); });
}

void SpectrumOverviewWidget::Private::save(const QString& fileName)
{
    const QString problem = savePicture(view->image(), fileName);
    if (!problem.isEmpty()) {
        Q_EMIT q->si_errorText(tr("The picture could not be saved."), problem);
        return;
    }
    OverviewSettings settings = settingsBar->settings();
    settings.pictureFolder = QFileInfo(fileName).absolutePath();
    settingsBar->setSettings(settings);
}

SpectrumOverviewWidget::SpectrumOverviewWidget(const QString& cfgPath, QWidget* parent)
    : QWidget(parent)
    , d(std::make_unique<Private>(this, cfgPath))
{
    d->begin();
}

// A box in which a level stands half typed takes it when it is hidden, which QWidget would do when all here is gone.
SpectrumOverviewWidget::~SpectrumOverviewWidget()
{
    const QByteArray geometry = saveGeometry();
    hide();
    OverviewSettings settings = d->settingsBar->settings();
    settings.geometry = geometry;
    settings.write(d->cfgPath);
    d->view->setLevels(nullptr);
}

// A line of the picture for each row of the screen.
bool SpectrumOverviewWidget::eventFilter(QObject* watched, QEvent* event)
{
    if (watched == d->view && event->type() == QEvent::Resize) {
        d->session.setRoom(qCeil(d->view->height() * d->view->devicePixelRatioF()));
    }
    return QWidget::eventFilter(watched, event);
}

void SpectrumOverviewWidget::setRecord(const QString& deviceID, const QString& recordID,
                                       ZelkoCommon::AbstractRecordListModel* model, const QString& ipAddress)
{
    closeTextQuestions(*this);
    d->deviceID = deviceID;
    d->areBookmarksSent = false;
    d->view->clearSelection();
    d->view->removeCursor();
    d->session.setRecord(deviceID, recordID, model, ipAddress);
}

void SpectrumOverviewWidget::setSingleShot(const OverviewLoader::SingleShot& singleShot)
{
    d->singleShot = singleShot;
    d->session.setSingleShot(singleShot);
}

} // namespace SPECTRUM_OVERVIEW
