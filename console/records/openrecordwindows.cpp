#include <console/records/openrecordwindows.h>

#include <overviewdisplay/spectrumoverviewwidget.h>
#include <zelkoguibase/editrecord/editrecorddialog.h>
#include <zelkoguibase/history/historydialog.h>

#include <QApplication>

#include <algorithm>

namespace ZelkoConsole {

using ZelkoGUI::EditRecordDialog;
using ZelkoGUI::HistoryDialog;

namespace {

bool isOnRecord(const QWidget& window)
{
    return qobject_cast<const EditRecordDialog*>(&window) || qobject_cast<const HistoryDialog*>(&window);
}

bool isOverview(const QWidget& window)
{
    return qobject_cast<const SPECTRUM_OVERVIEW::SpectrumOverviewWidget*>(&window);
}

bool closeOne(const QPointer<QWidget>& window)
{
    return !window || !window->isVisible() || window->close();
}

} // namespace

OpenRecordWindows::OpenRecordWindows(QWidget* owner)
    : m_owner(owner)
{}

OpenRecordWindows::~OpenRecordWindows()
{
    for (const QPointer<QWidget>& window : overviews()) {
        delete window;
    }
}

OpenRecordWindows::Windows OpenRecordWindows::dialogs() const
{
    Windows found;
    for (QWidget* const window : m_owner->findChildren<QWidget*>(QString(), Qt::FindDirectChildrenOnly)) {
        if (window->isVisible() && isOnRecord(*window)) {
            found.append(window);
        }
    }
    return found;
}

OpenRecordWindows::Windows OpenRecordWindows::overviews()
{
    Windows found;
    for (QWidget* const window : QApplication::topLevelWidgets()) {
        if (isOverview(*window)) {
            found.append(window);
        }
    }
    return found;
}

bool OpenRecordWindows::close(Leaving leaving)
{
    return closeThese(leaving == Leaving::Device ? dialogs() : dialogs() + overviews());
}

// While the user is asked, windows may go, and all of this with them.
bool OpenRecordWindows::closeThese(const Windows& windows)
{
    if (m_isClosing || windows.isEmpty()) {
        return !m_isClosing;
    }
    const QPointer<OpenRecordWindows> self(this);
    m_isClosing = true;
    const bool areClosed = std::all_of(windows.begin(), windows.end(), closeOne);
    if (!self) {
        return false;
    }
    m_isClosing = false;
    QMetaObject::invokeMethod(this, &OpenRecordWindows::answered, Qt::QueuedConnection);
    return areClosed;
}

} // namespace ZelkoConsole
