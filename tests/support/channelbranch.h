#pragma once

#include <valuecore/tree.h>
#include <valuecore/valueselection.h>
#include <valuecore/valuetypes.h>

#include <QStringList>

/// What a recorder serves of a channel, put on a tree by hand: stopped, without a record, may record.
class ChannelBranch
{
public:
    /// On the client's tree. `channel` is what stands behind ".../ZELKO/Channel/": an ID, or "device/ID".
    ChannelBranch(const QString& subSystem, const QString& channel)
        : m_tree(*Tree::Instance())
        , m_path(QStringLiteral("/SubSystems/%1/ZELKO/Channel/%2").arg(subSystem, channel))
    {}

    /// On the recorder's own.
    ChannelBranch(Tree& tree, const QString& channel)
        : m_tree(tree)
        , m_path(QStringLiteral("/ZELKO/Channel/") + channel)
    {}

    static QStringList selections()
    {
        return QStringLiteral("AllRecordReplayModes ReplayMode RecordReplayModes").split(QLatin1Char(' '));
    }
    static QStringList flags() { return QStringLiteral("RecordFlag ReplayFlag IsDeletable").split(QLatin1Char(' ')); }
    static QStringList numbers() { return QStringLiteral("RecordTimeout FileSizeInKB").split(QLatin1Char(' ')); }
    static QStringList longNumbers()
    {
        return QStringLiteral("FileSize StartTime StopTime StartPosition StopPosition LoopSize")
            .split(QLatin1Char(' '));
    }
    static QStringList texts()
    {
        return QStringLiteral("ErrorCode DeviceID RecordName DataRateClass RecordStatus ReplayDataRateClass DataFormat "
                              "RecordID")
            .split(QLatin1Char(' '));
    }
    static QString position() { return QStringLiteral("CurrentReplayPosition"); }
    static QStringList names()
    {
        return selections() + flags() + numbers() + longNumbers() + texts() + QStringList(position());
    }

    void putAll() const
    {
        for (const QString& name : names()) {
            put(name);
        }
        value<bool>("RecordFlag")->SetValue(true, nullptr);
        selection("AllRecordReplayModes")->SetCurrentKey(4, nullptr);
    }
    void put(const QString& name) const
    {
        if (selections().contains(name)) {
            putSelection(name);
        } else if (flags().contains(name)) {
            emplace<Value<bool>>(name);
        } else if (numbers().contains(name)) {
            emplace<Value<int>>(name);
        } else if (longNumbers().contains(name)) {
            emplace<Value<qint64>>(name);
        } else if (name == position()) {
            emplace<Value<double>>(name);
        } else {
            emplace<Value<QString>>(name);
        }
    }
    void remove(const QString& name) const { m_tree.Remove(m_path + QLatin1Char('/') + name); }
    void removeAll() const { m_tree.Remove(m_path); }

    template <typename T>
    Value<T>* value(const char* name) const
    {
        return m_tree.Find<Value<T>>(m_path + QLatin1Char('/') + QLatin1String(name));
    }
    ValueSelection* selection(const char* name) const
    {
        return m_tree.Find<ValueSelection>(m_path + QLatin1Char('/') + QLatin1String(name));
    }

private:
    template <typename T>
    T* emplace(const QString& name) const
    {
        return m_tree.Emplace(m_path, std::make_unique<T>(name));
    }

    // With one more key than there are states, as a newer recorder may have.
    void putSelection(const QString& name) const
    {
        std::vector<ValueSelection::Choice> choices;
        for (int key = 0; key <= 6; ++key) {
            choices.push_back({key, QStringLiteral("state %1").arg(key)});
        }
        emplace<ValueSelection>(name)->SetChoices(choices, nullptr);
    }

    Tree& m_tree;
    const QString m_path;
};
