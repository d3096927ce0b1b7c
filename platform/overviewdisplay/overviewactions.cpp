#include "overviewactions_p.h"

#include <QAction>
#include <QFile>

namespace SPECTRUM_OVERVIEW {

namespace {

// An icon that the application has not among its resources leaves room for the text.
QIcon iconAt(const QString& path)
{
    return QFile::exists(path) ? QIcon(path) : QIcon();
}

} // namespace

OverviewActions::OverviewActions(QWidget* parent)
    : QToolBar(parent)
    , zoomIn(add("ActionZoomIn", tr("Zoom &In"), tr("Show the selected range alone"), {}))
    , zoomOut(add("ActionZoomOut", tr("Zoom &Out"), tr("Show twice the range"), {}))
    , whole(add("ActionWhole", tr("&Whole Record"), tr("Show the whole record"), {}))
    , addBookmark(add("ActionAddBookmark", tr("&New Bookmark..."), tr("Set a bookmark at the cursor (Ins)"),
                      QStringLiteral(":/Zelko/Bookmarks/Add.svg")))
    , removeBookmark(add("ActionRemoveBookmark", tr("&Delete Bookmark"), tr("Delete the bookmark at the cursor"),
                         QStringLiteral(":/Zelko/Bookmarks/Delete.svg"), QKeySequence(Qt::Key_Delete)))
    , copyRange(add("ActionCopyRange", tr("&Copy Range..."), tr("Copy the selected range into a new record"),
                    QStringLiteral(":/Zelko/RecordList/EditCopy.svg"), QKeySequence(QKeySequence::Copy)))
    , savePicture(add("ActionSavePicture", tr("&Save Picture..."), tr("Save the picture with its scales as PNG"),
                      QStringLiteral(":/Zelko/Bite/SaveBite.svg"), QKeySequence(QKeySequence::Save)))
    , askAgain(add("ActionAskAgain", tr("Ask &Again"), tr("Ask the recorder for the spectra once more"),
                   QStringLiteral(":/Zelko/Archive/Reload.svg"), QKeySequence(QKeySequence::Refresh)))
{
    setObjectName(QStringLiteral("ActionBar"));
    setWindowTitle(tr("Actions"));
    insertSeparator(addBookmark);
    insertSeparator(copyRange);
}

OverviewActions::~OverviewActions() = default;

QAction* OverviewActions::add(const char* name, const QString& text, const QString& help, const QString& icon,
                              const QKeySequence& key)
{
    auto* const action = new QAction(iconAt(icon), text, this);
    action->setObjectName(QLatin1String(name));
    action->setShortcut(key);
    const QString keyText = key.toString(QKeySequence::NativeText);
    action->setToolTip(keyText.isEmpty() ? help : QStringLiteral("%1 (%2)").arg(help, keyText));
    action->setEnabled(false);
    addAction(action);
    return action;
}

} // namespace SPECTRUM_OVERVIEW
