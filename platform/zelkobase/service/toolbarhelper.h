#pragma once

#include <zelkobase/service/zelkobaseservice_export.h>

#include <QString>

namespace ZelkoCommon {

/// What the actions of toolbars and menus have in common: the texts of their errors. One per process; any thread.
class ZELKOBASESERVICE_EXPORT ToolbarHelper
{
public:
    /// Whose numbers an error code is from.
    enum Context : int {
        ServiceContext = 1 ///< ServiceStatus
    };

    static ToolbarHelper* Instance();

    ToolbarHelper(const ToolbarHelper&) = delete;
    ToolbarHelper& operator=(const ToolbarHelper&) = delete;

    /// What happened and what to do, for people. Empty for 0, never empty for anything else: of a code or context that
    /// is not known the text names the numbers.
    QString ErrorId2Text(unsigned long code, int context) const;

private:
    ToolbarHelper() = default;
};

} // namespace ZelkoCommon
