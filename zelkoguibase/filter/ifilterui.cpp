#include <zelkoguibase/filter/ifilterui.h>

namespace ZelkoGUI::Filter {

IFilterUI::IFilterUI() = default;

IFilterUI::~IFilterUI() = default;

} // namespace ZelkoGUI::Filter
