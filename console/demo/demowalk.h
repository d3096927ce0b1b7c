#pragma once

#include <QString>
#include <QStringList>

#include <functional>
#include <memory>

class QModelIndex;

namespace ZelkoConsole {

class ConsoleSession;
class ConsoleWindow;
class RecordTableView;

/// Drives a console through a session as an operator would, with real events, against its own recorder; looks at what
/// is shown and leaves pictures: a growing record, finished records sorted and selected, the recorder killed, the list
/// back.
class DemoWalk
{
public:
    /// `records` is how many recordings have to show up before the recorder is killed, at least 2. Session and window
    /// outlive the walk.
    DemoWalk(ConsoleSession& session, ConsoleWindow& window, const QString& pictureFolder, int records);

    /// Takes some ten seconds. False when something was not shown that should have been; `failure()` tells what.
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

    bool waitFor(const char* what, const std::function<bool()>& condition);
    bool takePicture(const char* name);
    bool fail(const QString& text);
    QModelIndex recordWithStatus(int status) const;
    bool isSortedBySize() const;
    QStringList selectedIds() const;

    ConsoleSession& m_session;
    ConsoleWindow& m_window;
    RecordTableView& m_table;
    const QString m_folder;
    const int m_records;
    QStringList m_selected;
    int m_rowsBefore = 0;
    QString m_failure;
    QStringList m_pictures;
};

} // namespace ZelkoConsole
