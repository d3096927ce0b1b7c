#pragma once

#include <valuecore/tree.h>
#include <valuecore/valuetypes.h>
#include <zelkobase/maps/recorditemmap.h>

namespace ZelkoTest {

/// The values of one device on a tree, looked up anew each time. `root` is the path that the recorder's branch stands
/// below: empty on the recorder's own tree.
class RecorderValues
{
public:
    RecorderValues(Tree& tree, const QString& root, const QString& device)
        : m_tree(tree)
        , m_device(root + QStringLiteral("/ZELKO/Device/") + device)
        , m_command(root + QStringLiteral("/ZELKO/Command/") + device + QLatin1Char('/'))
    {}

    zelko::recordmap::RecordItemMap* map() const { return find<zelko::recordmap::RecordItemMap>("/Records/Map"); }
    Value<int>* loadCount() const { return find<Value<int>>("/Records/LoadCount"); }
    bool isLoaded() const
    {
        const auto* const loaded = find<Value<bool>>("/Records/LoadedCompletly");
        return loaded && loaded->GetValue();
    }
    template <typename T>
    T* command(const char* name) const
    {
        return m_tree.Find<T>(m_command + QString::fromLatin1(name));
    }
    template <typename T>
    T* find(const char* below) const
    {
        return m_tree.Find<T>(m_device + QString::fromLatin1(below));
    }

    /// The record, or null.
    std::shared_ptr<ZELKO_XML::ZELKO_RecordData> record(const QString& id) const
    {
        return map() && map()->contains(id) ? map()->At(id).GetRecordData() : nullptr;
    }
    QStringList ids() const
    {
        QStringList result;
        for (const auto& entry : map()->data()) {
            result.append(entry.first);
        }
        result.sort();
        return result;
    }

private:
    Tree& m_tree;
    const QString m_device;
    const QString m_command;
};

} // namespace ZelkoTest
