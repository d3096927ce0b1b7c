#include <console/treeobserver.h>

namespace ZelkoConsole {

TreeObserver::TreeObserver(Function function)
    : m_function(std::move(function))
{}

TreeObserver::~TreeObserver() = default;

void TreeObserver::Update(Observable*, TChangeCode code)
{
    m_function(code);
}

} // namespace ZelkoConsole
