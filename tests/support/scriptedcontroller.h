#pragma once

#include <zelkoguibase/controller/izelkoguiactionprovider.h>
#include <zelkoguibase/controller/izelkoguicontroller.h>
#include <zelkoguibase/transfer/abstracttransferscheduler.h>

#include <functional>

/// A record controller without a device: what is available is as the test says, and whatever is called or signalled is
/// written down in order, "rename A" or "signal selected A,B".
class ScriptedController : public ZelkoGUI::IZelkoGUIController
{
public:
    static constexpr UserActions allActions = UserActions(QFlag(1023));

    explicit ScriptedController(ZelkoCommon::AbstractRecordListModel* model, UserActions offered = allActions,
                                ZelkoGUI::IZelkoGuiActionProvider* provider = nullptr)
        : IZelkoGUIController(provider, offered, nullptr)
        , m_model(model)
    {
        connect(this, &IZelkoGUIController::si_selectedRecordsChanged, this,
                [this](const QStringList& ids) { note(QStringLiteral("signal selected ") + text(ids)); });
        connect(this, &IZelkoGUIController::si_userActionTriggered, this,
                [this](const QStringList& ids, enUserAction action) {
                    note(QStringLiteral("signal action %1 ").arg(action) + text(ids));
                });
    }

    UserActions available = allActions;
    bool resyncIsAvailable = true;
    bool skipsRights = false;
    QString device = QStringLiteral("device");
    QString subSystem = QStringLiteral("north");
    std::function<void()> duringOperation;                           ///< run in each operation
    std::function<void(enUserAction, const QStringList&)> whenAsked; ///< run in each question for availability

    /// What came since the last call.
    QStringList take() { return std::exchange(m_log, {}); }
    void note(const QString& entry) { m_log.append(entry); }

    using IZelkoGUIController::sl_copyRecord;
    using IZelkoGUIController::transferScheduler;

    ZelkoCommon::AbstractRecordListModel* recordListModel() const override { return m_model; }
    QString activeDevice() const override { return device; }
    QString activeSubsystem() const override { return subSystem; }
    void sl_activeDeviceChanged(const QString& changedDevice, const QString& itsSubSystem) override
    {
        note(QStringLiteral("device %1 in %2").arg(changedDevice, itsSubSystem));
    }
    void sl_copyRecord(QString id, quint64 start, quint64 stop, QString name, QString source) override
    {
        note(QStringLiteral("copy %1 %2-%3 %4 on '%5'").arg(id).arg(start).arg(stop).arg(name, source));
    }
    void sl_addHistoryEntry(QString, QString) override {}
    void sl_deleteHistoryEntry(QString, quint64) override {}
    void sl_setBookmarkEntries(QString id, QVector<ZELKO_XML::BookmarkEntry> bookmarks, QString source) override
    {
        note(QStringLiteral("%1 bookmarks of %2 on '%3'").arg(bookmarks.size()).arg(id, source));
    }
    void sl_setDeletableFlag(QString id, bool flag, bool delayed) override
    {
        note(QStringLiteral("flag %1 %2 delayed %3").arg(id).arg(flag).arg(delayed));
    }
    void sl_overviewSpectrumStreamed(QString id, qint64, qint64, uint, ulong, ZelkoDataTypes::eFFT_Window, QString,
                                     uint, QString source) override
    {
        note(QStringLiteral("spectrum of %1 on '%2'").arg(id, source));
    }
    void sl_errorText(QString, QString) override {}

protected:
    bool isResetAvailable(const QString& id) const override { return ask(UserActionReset, {id}); }
    void resetRecord(const QString& id) override { operate(QStringLiteral("reset ") + id); }
    bool isDownloadRecordAvailable(const QStringList& ids) const override { return ask(UserActionDownload, ids); }
    void downloadRecord(const QStringList& ids) override { operate(QStringLiteral("download ") + text(ids)); }
    bool isHistoryAvailable(const QString& id) const override { return ask(UserActionHistory, {id}); }
    void showHistory(const QString& id) override { operate(QStringLiteral("history ") + id); }
    bool isRenameRecordAvailable(const QString& id) const override { return ask(UserActionRename, {id}); }
    void renameRecord(const QString& id) override { operate(QStringLiteral("rename ") + id); }
    bool isEditBookmarksAvailable(const QString& id) const override { return ask(UserActionBookmarks, {id}); }
    void editBookmarks(const QString& id) override { operate(QStringLiteral("bookmarks ") + id); }
    bool isCopyRecordAvailable(const QString& id) const override { return ask(UserActionCopy, {id}); }
    void copyRecord(const QString& id) override { operate(QStringLiteral("copy ") + id); }
    bool isEditRecordAvailable(const QString& id) const override { return ask(UserActionEdit, {id}); }
    void editRecord(const QString& id) override { operate(QStringLiteral("edit ") + id); }
    bool isSpectrumOverviewAvailable(const QString& id) const override { return ask(UserActionOverview, {id}); }
    void showSpectrumOverview(const QString& id) override { operate(QStringLiteral("overview ") + id); }
    bool isDeleteRecordAvailable(const QStringList& ids) const override { return ask(UserActionDelete, ids); }
    void deleteRecording(const QStringList& ids, const QString& source) override
    {
        operate(QStringLiteral("delete %1 from '%2'").arg(text(ids), source));
    }
    bool isToggleDeletableAvailable(const QStringList& ids) const override { return ask(UserActionDeletable, ids); }
    void toggleDeletable(const QStringList& ids) override { operate(QStringLiteral("toggle ") + text(ids)); }
    bool isResynchRecordListAvailable() const override { return resyncIsAvailable; }
    void resynchRecordList() override { operate(QStringLiteral("resync list")); }
    bool isResynchRecordAvailable(const QString&, const QString&) const override { return resyncIsAvailable; }
    void resynchRecord(const QString& id, const QString& source) override
    {
        operate(QStringLiteral("resync %1 on '%2'").arg(id, source));
    }
    bool skipUserRightsForReset() const override { return skipsRights; }

private:
    static QString text(const QStringList& ids) { return ids.join(QLatin1Char(',')); }

    bool ask(enUserAction action, const QStringList& ids) const
    {
        if (whenAsked) {
            whenAsked(action, ids);
        }
        return available.testFlag(action);
    }

    void operate(const QString& entry)
    {
        note(entry);
        // A copy, for it may be the end of this controller.
        if (const auto during = duringOperation) {
            during();
        }
    }

    ZelkoCommon::AbstractRecordListModel* const m_model;
    QStringList m_log;
};

/// A queue of transfers of which nothing is known but that it is there.
class SilentScheduler final : public ZelkoGUI::AbstractTransferScheduler
{
public:
    SilentScheduler() = default;
};
