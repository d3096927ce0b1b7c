#include <console/records/recordactions.h>

#include <console/records/recordsituation.h>

#include <host/userrights.h>
#include <zelkoguibase/controller/zelkoserverguicontroller.h>

#include <QAction>
#include <QMenu>

namespace ZelkoConsole {

using ZelkoGUI::IZelkoGUIController;

namespace {

constexpr IZelkoGUIController::enUserAction offeredActions[] = {
    IZelkoGUIController::UserActionReset,    IZelkoGUIController::UserActionHistory,
    IZelkoGUIController::UserActionRename,   IZelkoGUIController::UserActionBookmarks,
    IZelkoGUIController::UserActionCopy,     IZelkoGUIController::UserActionEdit,
    IZelkoGUIController::UserActionOverview, IZelkoGUIController::UserActionDelete,
    IZelkoGUIController::UserActionDeletable};

// What has not changed is not set: each setting is a change for whoever follows the action, this class included.
void setTip(QAction& action, const QString& tip)
{
    if (action.statusTip() != tip) {
        action.setStatusTip(tip);
    }
}

// Recorders do not synchronise for those who may only look.
QString whyNotSynchronized(const RecordSituation& situation)
{
    const QString noDevice = whyNoDevice(situation);
    return noDevice.isEmpty() && !mayChangeAnything() ? forbiddenText() : noDevice;
}

QString whyNotOnlyOne(int selected)
{
    return selected == 1 ? QString() : notOneText(selected);
}

} // namespace

IZelkoGUIController::UserActions RecordActions::offered()
{
    IZelkoGUIController::UserActions actions;
    for (const auto action : offeredActions) {
        actions |= action;
    }
    return actions;
}

RecordActions::RecordActions(Controller* controller, QWidget* owner)
    : QObject(owner)
    , m_controller(controller)
    , m_menu(new QMenu(tr("&Record"), owner))
    , m_synchronizeList(new QAction(tr("Synchronize &List"), this))
    , m_synchronizeRecord(new QAction(tr("&Synchronize Record"), this))
{
    m_menu->setObjectName(QStringLiteral("recordMenu"));
    m_synchronizeList->setObjectName(QStringLiteral("synchronizeList"));
    m_synchronizeRecord->setObjectName(QStringLiteral("synchronizeRecord"));
    fillMenu();
    followController();
    update();
}

RecordActions::~RecordActions() = default;

void RecordActions::fillMenu()
{
    m_menu->addActions(m_controller->recordActions());
    m_menu->addSeparator();
    m_menu->addAction(m_synchronizeRecord);
    m_menu->addAction(m_synchronizeList);
    connect(m_synchronizeList, &QAction::triggered, m_controller, &IZelkoGUIController::sl_resyncRecordList);
    connect(m_synchronizeRecord, &QAction::triggered, m_controller, [controller = m_controller] {
        const QStringList selected = controller->selectedRecords();
        if (selected.size() == 1) {
            controller->sl_resyncRecord(selected.constFirst());
        }
    });
}

// An action that stays off may do so for another reason than before, so its own signal is not enough.
void RecordActions::followController()
{
    for (const QAction* const action : m_controller->recordActions()) {
        connect(action, &QAction::changed, this, &RecordActions::lookSoon);
    }
    connect(m_controller, &IZelkoGUIController::si_selectedRecordsChanged, this, &RecordActions::lookSoon);
    connect(m_controller, &IZelkoGUIController::si_activeDeviceChanged, this, &RecordActions::lookSoon);
    connect(m_controller, &IZelkoGUIController::si_connectionEstablished, this, &RecordActions::lookSoon);
    connect(m_controller, &IZelkoGUIController::si_loadProgress, this, &RecordActions::connectionMayHaveChanged);
    connect(UserRights::Instance(), &UserRights::UpdateUserRights, this, &RecordActions::lookSoon);
    connect(m_controller->recordListModel(), &ZelkoCommon::AbstractRecordListModel::si_recordChanged, this,
            &RecordActions::recordChanged);
}

void RecordActions::lookSoon()
{
    m_soon.ask();
}

// The progress is told when a connection is lost too, but more often for other reasons.
void RecordActions::connectionMayHaveChanged()
{
    if (m_isConnected != m_controller->isConnected()) {
        lookSoon();
    }
}

// The controller looks at every record of a selection in which one has changed; once per change is enough of that.
void RecordActions::recordChanged(const QString& record)
{
    const QStringList selected = m_controller->selectedRecords();
    if (selected.size() == 1 && selected.constFirst() == record) {
        lookSoon();
    }
}

void RecordActions::update()
{
    m_isConnected = m_controller->isConnected();
    const RecordSituation situation = situationOf(*m_controller, m_isConnected);
    for (const auto flag : offeredActions) {
        QAction& action = *m_controller->recordAction(flag);
        setTip(action, tipOf(flag, action.isEnabled(), situation));
    }
    updateSynchronize(situation);
}

void RecordActions::updateSynchronize(const RecordSituation& situation)
{
    const QString whyNot = whyNotSynchronized(situation);
    m_synchronizeList->setEnabled(whyNot.isEmpty());
    setTip(*m_synchronizeList, whyNot.isEmpty() ? tr("Has the device send its whole list anew.") : whyNot);

    const QString whyNotOne = whyNot.isEmpty() ? whyNotOnlyOne(situation.selected) : whyNot;
    m_synchronizeRecord->setEnabled(whyNotOne.isEmpty());
    setTip(*m_synchronizeRecord,
           whyNotOne.isEmpty() ? tr("Has the device send all that it knows of the record.") : whyNotOne);
}

} // namespace ZelkoConsole
