#pragma once

#include <console/soon.h>

#include <zelkoguibase/controller/izelkoguicontroller.h>

class QMenu;

namespace ZelkoGUI {
class ZelkoServerGUIController;
}

namespace ZelkoConsole {

struct RecordSituation;

/// What can be done to the records of a device view, as a menu: the actions of its controller in the controller's
/// order, and what has the recorder look at its disk again.
///
/// The status tip of an action says what it does or, while it cannot be done, why not; it follows within a turn of the
/// event loop. GUI thread.
class RecordActions : public QObject
{
    Q_OBJECT

public:
    using Controller = ZelkoGUI::ZelkoServerGUIController;

    /// All that a device can do to a record. A download goes into an archive, which the console has none of.
    static ZelkoGUI::IZelkoGUIController::UserActions offered();

    /// `controller` offers these actions and outlives this object or dies with it; the menu becomes a child of `owner`.
    RecordActions(Controller* controller, QWidget* owner);
    ~RecordActions() override;

    QMenu* menu() const { return m_menu; }

    /// Has the whole list sent anew.
    QAction* synchronizeList() const { return m_synchronizeList; }

    /// Has the one selected record sent anew, with all that is known of it.
    QAction* synchronizeRecord() const { return m_synchronizeRecord; }

private:
    void fillMenu();
    void followController();
    void lookSoon();
    void connectionMayHaveChanged();
    void recordChanged(const QString& record);
    void update();
    void updateSynchronize(const RecordSituation& situation);

    Controller* const m_controller;
    QMenu* m_menu;
    QAction* m_synchronizeList;
    QAction* m_synchronizeRecord;
    bool m_isConnected = false; // at the last look
    Soon m_soon{[this] { update(); }};
};

} // namespace ZelkoConsole
