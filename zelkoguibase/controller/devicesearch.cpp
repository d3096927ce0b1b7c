#include "devicesearch_p.h"

#include <observerbase/errorhandler.h>
#include <observerbase/trace.h>

#include <utility>

namespace ZelkoGUI {

namespace {

constexpr std::chrono::milliseconds interval(100);

// In the name of the controller, whose search it is.
void traceMissing(const QString& path)
{
    if (ErrorHandler::Instance()->traces(ErrorHandler::TraceWarning)) {
        _Q_Trace(QStringLiteral("ZelkoServerGUIController::connectVT: not all elements are available for VT-Path: %1")
                     .arg(path),
                 "zelkoserverguicontroller", __LINE__);
    }
}

} // namespace

DeviceSearch::DeviceSearch(QObject* owner)
    : m_timer(owner)
{
    m_timer.setObjectName(QStringLiteral("connectTimer"));
}

void DeviceSearch::begin(bool again)
{
    m_isAgain = again;
    m_tellsMissing = true;
    m_timer.start(interval);
}

// Each look tells what a new device lacks, for whoever waits for it. A device that was lost can be away for days: its
// search is told once, or it would drive all else from the log.
void DeviceSearch::stillMisses(const QString& path)
{
    if (std::exchange(m_tellsMissing, !m_isAgain)) {
        traceMissing(path);
    }
}

} // namespace ZelkoGUI
