#include <zelkoguibase/controller/izelkoguiactionprovider.h>

#include <zelkoguibase/controller/izelkoguicontroller.h>

#include <QSet>

namespace ZelkoGUI {

struct IZelkoGuiActionProvider::Private
{
    QSet<IZelkoGUIController*> controllers;
};

IZelkoGuiActionProvider::IZelkoGuiActionProvider()
    : d(std::make_unique<Private>())
{}

IZelkoGuiActionProvider::~IZelkoGuiActionProvider()
{
    for (IZelkoGUIController* const controller : std::as_const(d->controllers)) {
        controller->forgetActionProvider();
    }
}

bool IZelkoGuiActionProvider::prependActions() const
{
    return false;
}

void IZelkoGuiActionProvider::addController(IZelkoGUIController* controller)
{
    d->controllers.insert(controller);
}

void IZelkoGuiActionProvider::removeController(IZelkoGUIController* controller)
{
    d->controllers.remove(controller);
}

} // namespace ZelkoGUI
