#pragma once

#include <zelkoguibase/zelkoguibase_export.h>

namespace ZelkoGUI::Filter {

/// An editor of filter conditions, as a window that has several of them sees it.
class ZELKOGUIBASE_EXPORT IFilterUI
{
public:
    IFilterUI();
    virtual ~IFilterUI();
    IFilterUI(const IFilterUI&) = delete;
    IFilterUI& operator=(const IFilterUI&) = delete;

    /// Lets the conditions reject nothing any more, as a user would do it in the editor. An editor that is disabled
    /// because a condition of its pair is gone leaves the other one as it is.
    virtual void resetFilter() = 0;
};

} // namespace ZelkoGUI::Filter
