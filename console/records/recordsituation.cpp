#include <console/records/recordsituation.h>

#include <host/userrights.h>

#include <QCoreApplication>

namespace ZelkoConsole {

using Controller = ZelkoGUI::IZelkoGUIController;
using Record = ZELKO_XML::ZELKO_RecordData;

namespace {

QString tr(const char* text)
{
    return QCoreApplication::translate("ZelkoConsole::RecordSituation", text);
}

bool isAllowed(Controller::enUserAction action)
{
    switch (action) {
    case Controller::UserActionDelete:
    case Controller::UserActionDeletable:
        return UserRights::DeleteRecordsAllowed();
    case Controller::UserActionReset:
        return UserRights::ResetRecordAllowed();
    default:
        return true;
    }
}

bool takesSeveral(Controller::enUserAction action)
{
    return action == Controller::UserActionDelete || action == Controller::UserActionDeletable;
}

QString whyNotDeleted(const RecordSituation& situation)
{
    return situation.selected == 1 ? tr("This recording is not deletable.")
                                   : tr("None of the selected recordings is deletable.");
}

QString whyNotToggled(const RecordSituation& situation)
{
    if (situation.finished < situation.selected) {
        return situation.selected == 1 ? tr("This recording is not finished.")
                                       : tr("Not all of the selected recordings are finished.");
    }
    if (situation.deletable != 0 && situation.deletable != situation.selected) {
        return tr("Some of the selected recordings are deletable and others are not.");
    }
    return tr("This is not available for the selected recordings.");
}

QString whyNotForOne(Controller::enUserAction action, const RecordSituation& situation)
{
    return action == Controller::UserActionRename && situation.inWork > 0
               ? tr("This recording is being recorded.")
               : tr("This is not available for this recording.");
}

// Of the selection alone.
QString whyNotForSelection(Controller::enUserAction action, const RecordSituation& situation)
{
    switch (action) {
    case Controller::UserActionDelete:
        return whyNotDeleted(situation);
    case Controller::UserActionDeletable:
        return whyNotToggled(situation);
    default:
        return whyNotForOne(action, situation);
    }
}

void count(RecordSituation& situation, const Record& record)
{
    situation.deletable += record.GetDeletable() ? 1 : 0;
    situation.finished += record.GetRecordStatus() == Record::RecordStatus::Finished ? 1 : 0;
    situation.inWork += record.IsFinishedSet() && !record.GetFinished() ? 1 : 0;
}

} // namespace

RecordSituation situationOf(const Controller& controller, bool isConnected)
{
    RecordSituation situation;
    situation.isConnected = isConnected;
    const QStringList selected = controller.selectedRecords();
    situation.selected = static_cast<int>(selected.size());
    for (const QString& id : selected) {
        if (const auto record = controller.recordListModel()->getRecordData(id)) {
            count(situation, *record);
        }
    }
    return situation;
}

QString noConnectionText()
{
    return tr("There is no connection to the device.");
}

QString forbiddenText()
{
    const QString user = UserRights::Instance()->GetUser();
    return user.isEmpty() ? tr("Log in to do this.") : tr("User %1 may not do this.").arg(user);
}

QString notOneText(int selected)
{
    return selected == 0 ? tr("No recording is selected.") : tr("More than one recording is selected.");
}

QString whyUnavailable(Controller::enUserAction action, const RecordSituation& situation)
{
    if (!situation.isConnected) {
        return noConnectionText();
    }
    if (!isAllowed(action)) {
        return forbiddenText();
    }
    if (situation.selected == 0 || (situation.selected > 1 && !takesSeveral(action))) {
        return notOneText(situation.selected);
    }
    return whyNotForSelection(action, situation);
}

QString whatItDoes(Controller::enUserAction action)
{
    switch (action) {
    case Controller::UserActionReset:
        return tr("Puts a recording to rest that hangs in another state.");
    case Controller::UserActionRename:
        return tr("Gives the recording another name.");
    case Controller::UserActionDelete:
        return tr("Deletes those of the selected recordings that are deletable, after a question.");
    case Controller::UserActionDeletable:
        return tr("Makes the selected recordings deletable, or not deletable.");
    default:
        return {};
    }
}

} // namespace ZelkoConsole
