#pragma once

#include "watch.h"

#include <valuecore/tree.h>
#include <valuecore/valuetypes.h>

#include <QStringList>

namespace ZelkoTest {

/// The values of one channel on a tree, looked up anew each time. `root` is the path that the recorder's branch stands
/// below: empty on the recorder's own tree.
class ShownChannel
{
public:
    ShownChannel(Tree& tree, const QString& root, const QString& id)
        : m_tree(tree)
        , m_path(root + QStringLiteral("/ZELKO/Channel/") + id + QLatin1Char('/'))
    {}

    template <typename T>
    T* find(const char* name) const
    {
        return m_tree.Find<T>(m_path + QString::fromLatin1(name));
    }
    /// As a client does: whoever keeps the tree hears of it.
    template <typename T, typename Content>
    void write(const char* name, const Content& content) const
    {
        find<Value<T>>(name)->SetValue(content, nullptr);
    }
    /// Whether the last of its values is there.
    bool isThere() const { return find<Value<QString>>("RecordID"); }

    ValueSelection* recordingState() const { return find<ValueSelection>("AllRecordReplayModes"); }
    ValueSelection* replayState() const { return find<ValueSelection>("ReplayMode"); }
    QString recording() const { return recordingState()->GetCurrentName(); }
    QString replay() const { return replayState()->GetCurrentName(); }
    QString text(const char* name) const { return find<Value<QString>>(name)->GetValue(); }
    QString error() const { return text("ErrorCode"); }
    qint64 number(const char* name) const { return find<Value<qint64>>(name)->GetValue(); }
    double position() const { return find<Value<double>>("CurrentReplayPosition")->GetValue(); }

private:
    Tree& m_tree;
    const QString m_path;
};

/// The choices that a selection comes to, one after the other, by their names.
class ChoiceLog
{
public:
    explicit ChoiceLog(ValueSelection* value)
        : m_watch([this, value] { note(value->GetCurrentName()); })
    {
        m_watch.on(value);
    }
    const QStringList& names() const { return m_names; }

private:
    void note(const QString& name)
    {
        if (m_names.isEmpty() || m_names.constLast() != name) {
            m_names.append(name);
        }
    }

    QStringList m_names;
    Watch m_watch;
};

} // namespace ZelkoTest
