#pragma once

#include <zelkoguibase/zelkoguibase_export.h>

#include <QList>

#include <memory>

class QAction;

namespace ZelkoGUI {

class IZelkoGUIController;

/// Adds actions of an application to the record actions of controllers, and keeps them up to date. A provider may serve
/// several controllers; it and they may go in any order. GUI thread only.
class ZELKOGUIBASE_EXPORT IZelkoGuiActionProvider
{
public:
    IZelkoGuiActionProvider();

    /// Each controller that still uses this provider does without one from here on.
    virtual ~IZelkoGuiActionProvider();

    IZelkoGuiActionProvider(const IZelkoGuiActionProvider&) = delete;
    IZelkoGuiActionProvider& operator=(const IZelkoGuiActionProvider&) = delete;

    /// The actions to be listed with those of a controller, in this order. They stay the provider's, and are expected
    /// to live as long as somebody may show them.
    virtual QList<QAction*> providedActions() = 0;

    /// Called whenever `controller` has looked at its own actions anew: after a change of the selection, of the user or
    /// of anything else that availability rests on. Not called any more once the destructor of `controller` runs.
    virtual void updateActions(IZelkoGUIController* controller) = 0;

    /// True if the provided actions stand in front of the controller's own; false, unless overridden.
    virtual bool prependActions() const;

private:
    friend class IZelkoGUIController;

    void addController(IZelkoGUIController* controller);
    void removeController(IZelkoGUIController* controller);

    struct Private;
    const std::unique_ptr<Private> d;
};

} // namespace ZelkoGUI
