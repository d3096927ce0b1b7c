#include <console/records/recordsituation.h>

#include <console/translation.h>

#include <host/userrights.h>
#include <zelkobase/data/recordstate.h>

namespace ZelkoConsole {

using Controller = ZelkoGUI::IZelkoGUIController;
using Record = ZELKO_XML::ZELKO_RecordData;

namespace {

bool isAllowed(Controller::enUserAction action)
{
    switch (action) {
    case Controller::UserActionDelete:
    case Controller::UserActionDeletable:
        return UserRights::DeleteRecordsAllowed();
    case Controller::UserActionReset:
        return UserRights::ResetRecordAllowed();
    case Controller::UserActionHistory:
        return UserRights::HistoryCommentAllowed();
    case Controller::UserActionRename: // of these the library knows no right
    case Controller::UserActionBookmarks:
    case Controller::UserActionCopy:
    case Controller::UserActionEdit:
    case Controller::UserActionOverview:
        return mayChangeAnything();
    default:
        return true;
    }
}

bool takesSeveral(Controller::enUserAction action)
{
    return action == Controller::UserActionDelete || action == Controller::UserActionDeletable;
}

QString notAvailableText()
{
    return tr("This is not available for this record.");
}

QString notAvailableForSelectedText()
{
    return tr("This is not available for the selected records.");
}

// Of records that the list does not hold nothing can be said, and so nothing of a selection with one of them.
QString notKnownText(const RecordSituation& situation)
{
    return situation.selected == 1 ? tr("This record is not in the list at the moment.")
                                   : tr("Some of the selected records are not in the list at the moment.");
}

// Of one record of which the samples are not complete.
QString inWorkText(const RecordSituation& situation)
{
    return situation.recording > 0 ? tr("This record is being recorded.") : tr("This record is not finished.");
}

// Of one record that is not at rest.
QString notAtRestText(const RecordSituation& situation)
{
    if (situation.replaying > 0) {
        return tr("This record is being replayed.");
    }
    if (situation.transferring > 0) {
        return tr("This record is being transferred.");
    }
    return situation.damaged > 0 ? tr("This record is damaged.") : inWorkText(situation);
}

QString refusedText()
{
    const QString user = UserRights::Instance()->GetUser();
    return user.isEmpty() ? tr("The recorder will refuse this: log in to do it.")
                          : tr("User %1 may not do this: the recorder will refuse it.").arg(user);
}

QString whyNotDeleted(const RecordSituation& situation)
{
    if (situation.known < situation.selected) {
        return notKnownText(situation);
    }
    if (situation.deletable > 0) {
        return notAvailableForSelectedText();
    }
    return situation.selected == 1 ? tr("This record is not deletable.")
                                   : tr("None of the selected records is deletable.");
}

QString whyNotToggled(const RecordSituation& situation)
{
    if (situation.known < situation.selected) {
        return notKnownText(situation);
    }
    if (situation.finished < situation.selected) {
        return situation.selected == 1 ? notAtRestText(situation)
                                       : tr("Some of the selected records are damaged, in use, or not finished.");
    }
    if (situation.deletable != 0 && situation.deletable != situation.selected) {
        return tr("Some of the selected records are deletable and others are not.");
    }
    return notAvailableForSelectedText();
}

// What the device takes is known to the controller alone; when nothing else stands in the way it must be that.
QString whyNotRenamed(const RecordSituation& situation)
{
    if (situation.known < situation.selected) {
        return notKnownText(situation);
    }
    if (situation.inWork > 0) {
        return inWorkText(situation);
    }
    return tr("The device does not take new names of records.");
}

QString whyNotCopied(const RecordSituation& situation)
{
    if (situation.known < situation.selected) {
        return notKnownText(situation);
    }
    return situation.rawStream > 0 ? tr("No part of a raw stream can be copied.") : notAvailableText();
}

// As with names, it must be the device when nothing else stands in the way.
QString whyNoOverview(const RecordSituation& situation)
{
    if (situation.known < situation.selected) {
        return notKnownText(situation);
    }
    if (situation.inWork > 0 || situation.recording > 0) {
        return inWorkText(situation);
    }
    return situation.withSpectrum > 0 ? tr("The device does not send spectra.")
                                      : tr("This record has no samples of which spectra can be made.");
}

// Of the selection alone.
QString whyNotForSelection(Controller::enUserAction action, const RecordSituation& situation)
{
    switch (action) {
    case Controller::UserActionDelete:
        return whyNotDeleted(situation);
    case Controller::UserActionDeletable:
        return whyNotToggled(situation);
    case Controller::UserActionRename:
        return whyNotRenamed(situation);
    case Controller::UserActionCopy:
    case Controller::UserActionEdit:
        return whyNotCopied(situation);
    case Controller::UserActionOverview:
        return whyNoOverview(situation);
    default:
        return situation.known < situation.selected ? notKnownText(situation) : notAvailableText();
    }
}

void count(RecordSituation& situation, const Record& record)
{
    using Status = Record::RecordStatus;
    const auto counts = [&record](Status status) { return record.GetRecordStatus() == status ? 1 : 0; };
    ++situation.known;
    situation.deletable += record.GetDeletable() ? 1 : 0;
    situation.finished += counts(Status::Finished);
    situation.inWork += isFinished(record) ? 0 : 1;
    situation.recording += isBeingRecorded(record) ? 1 : 0;
    situation.replaying += counts(Status::Replaying);
    situation.transferring += counts(Status::Transferring);
    situation.damaged += counts(Status::Damaged);
    situation.rawStream += record.GetDataRate() == Record::DataRate::RawStream ? 1 : 0;
    situation.withSpectrum += hasSpectrum(record) ? 1 : 0;
}

} // namespace

RecordSituation situationOf(const Controller& controller, bool isConnected)
{
    RecordSituation situation;
    situation.isDeviceChosen = !controller.activeDevice().isEmpty();
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

QString whyNoDevice(const RecordSituation& situation)
{
    if (!situation.isDeviceChosen) {
        return tr("No device is chosen.");
    }
    return situation.isConnected ? QString() : tr("There is no connection to the device.");
}

bool mayChangeAnything()
{
    return UserRights::Instance()->GetRights() != UserRights::Rights();
}

QString forbiddenText()
{
    const QString user = UserRights::Instance()->GetUser();
    return user.isEmpty() ? tr("Log in to do this.") : tr("User %1 may not do this.").arg(user);
}

QString notOneText(int selected)
{
    return selected == 0 ? tr("No record is selected.") : tr("More than one record is selected.");
}

QString whyUnavailable(Controller::enUserAction action, const RecordSituation& situation)
{
    if (QString noDevice = whyNoDevice(situation); !noDevice.isEmpty()) {
        return noDevice;
    }
    if (!isAllowed(action)) {
        return forbiddenText();
    }
    if (situation.selected == 0 || (situation.selected > 1 && !takesSeveral(action))) {
        return notOneText(situation.selected);
    }
    return whyNotForSelection(action, situation);
}

QString tipOf(Controller::enUserAction action, bool isEnabled, const RecordSituation& situation)
{
    if (!isEnabled) {
        return whyUnavailable(action, situation);
    }
    return isAllowed(action) ? whatItDoes(action) : refusedText();
}

QString whatItDoes(Controller::enUserAction action)
{
    switch (action) {
    case Controller::UserActionReset:
        return tr("Puts a record to rest that hangs in another state.");
    case Controller::UserActionRename:
        return tr("Gives the record another name.");
    case Controller::UserActionDelete:
        return tr("Deletes those of the selected records that are deletable, after a question.");
    case Controller::UserActionDeletable:
        return tr("Makes the selected records deletable, or not deletable.");
    case Controller::UserActionHistory:
        return tr("Shows the comments on the record, adds and deletes them.");
    case Controller::UserActionBookmarks:
        return tr("Shows the bookmarks of the record on an axis and in a table, and changes them.");
    case Controller::UserActionCopy:
        return tr("Makes a new record of a part of this one.");
    case Controller::UserActionEdit:
        return tr("Changes the bookmarks of the record, and makes a new one of a part of it.");
    case Controller::UserActionOverview:
        return tr("Shows the spectrum of the record over its whole time.");
    default:
        return {};
    }
}

} // namespace ZelkoConsole
