#pragma once

#include <console/demo/expectedrecord.h>

#include <zelkoguibase/controller/izelkoguicontroller.h>

#include <QList>
#include <QString>
#include <QStringList>

#include <functional>

class QDialog;
class QModelIndex;
class QTableView;
class QWidget;

namespace ZelkoConsole {

class ConsoleSession;
class ConsoleWindow;

/// Drives a console through a session as an operator would, with real events, against its own recorder; looks at what
/// is shown and leaves pictures: a growing record, finished records sorted and selected, the recorder killed, the list
/// back, and then one of the finished records renamed, commented, bookmarked, copied in part, its spectrum seen, kept
/// from being deleted and deleted after all.
class DemoWalk
{
public:
    /// `expected` is what the recorder records from its start on, one after the other, before the recording that it is
    /// killed in; at least one. Session and window outlive the walk.
    DemoWalk(ConsoleSession& session, ConsoleWindow& window, const QString& pictureFolder,
             const QList<ExpectedRecord>& expected);

    /// Takes as long as the expected recordings and some seconds. False when something was not shown that should have
    /// been; `failure()` tells what.
    bool run();

    const QString& failure() const { return m_failure; }

    /// Files written so far.
    const QStringList& pictures() const { return m_pictures; }

private:
    bool seeLiveRecord();
    bool seeRecordGrow();
    bool seeFinishedRecords();
    bool sortBySize();
    bool selectTwo();
    bool killRecorder();
    bool seeListRestored();
    bool chooseRecord();
    bool renameRecord();
    bool commentRecord();
    bool addComment(QTableView& table);
    bool bookmarkRecord();
    bool copyRecord();
    bool seeSpectrum();
    bool keepRecord();
    bool deleteRecord();

    bool seeFinished(const ExpectedRecord& record);
    bool waitFor(const QString& what, const std::function<bool()>& condition, std::chrono::milliseconds longest = {});
    bool takePicture(const char* name);
    bool takePicture(QWidget& widget, const char* name);
    bool fail(const QString& text);
    bool clickAction(ZelkoGUI::IZelkoGUIController::enUserAction action);
    /// The window that an action opens, with that part in it. Null: there is none, and `failure()` says so.
    QDialog* openWindow(ZelkoGUI::IZelkoGUIController::enUserAction action, const char* part);
    /// Once there is a picture of it.
    bool closeWindow(QWidget* window, const char* name);
    QModelIndex chosen() const;
    QString chosenText(int column) const;
    QModelIndex recordWithStatus(int status) const;
    bool isSortedBySize() const;

    ConsoleSession& m_session;
    ConsoleWindow& m_window;
    QTableView& m_table;
    const QString m_folder;
    const QList<ExpectedRecord> m_expected;
    QStringList m_selected;
    QString m_chosen; // ID of the record that is worked on
    int m_rowsBefore = 0;
    QString m_failure;
    QStringList m_pictures;
};

} // namespace ZelkoConsole
