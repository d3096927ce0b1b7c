#pragma once

#include <valuecore/tree.h>
#include <valuecore/valuetypes.h>
#include <zelkobase/connection/abstractserverconnectiondata.h>
#include <zelkobase/maps/recorditemmap.h>

/// What a recorder serves of a device, put on the client's tree by hand.
class DeviceBranch
{
public:
    DeviceBranch(const ZelkoCommon::AbstractServerConnectionData& data, const QString& device)
        : m_records(data.GetDeviceBasePath(device) + QStringLiteral("/Records"))
        , m_commands(data.GetBasePath(device))
    {}

    /// The values by their names, in the order in which a client looks for them.
    static QStringList names()
    {
        return QStringLiteral("Map LoadCount LoadedCompletly Synchronize SyncOneRecord Extended IpAddress "
                              "DeleteRecordingList SetRecordIdle")
            .split(QLatin1Char(' '));
    }

    /// An extended device at 192.0.2.7 whose list, which is empty, is loaded.
    void putAll() { putAllBut(QString()); }
    void putAllBut(const QString& missing)
    {
        for (const QString& name : names()) {
            if (name != missing) {
                put(name);
            }
        }
        set<bool>("LoadedCompletly", true);
        set<bool>("Extended", true);
        set<QString>("IpAddress", QStringLiteral("192.0.2.7"));
    }

    void put(const QString& name)
    {
        if (name == QLatin1String("Map")) {
            insert(std::make_unique<zelko::recordmap::RecordItemMap>(name, TValueState::Open));
        } else if (name == QLatin1String("LoadCount")) {
            insert(std::make_unique<Value<int>>(name));
        } else if (name == QLatin1String("LoadedCompletly") || name == QLatin1String("Synchronize") ||
                   name == QLatin1String("Extended")) {
            insert(std::make_unique<Value<bool>>(name));
        } else {
            insert(std::make_unique<Value<QString>>(name));
        }
    }

    void remove(const QString& name) { Tree::Instance()->Remove(path(name)); }
    void removeAll()
    {
        Tree::Instance()->Remove(m_records);
        Tree::Instance()->Remove(m_commands);
    }

    zelko::recordmap::RecordItemMap* map() const
    {
        return Tree::Instance()->Find<zelko::recordmap::RecordItemMap>(path(QStringLiteral("Map")));
    }
    template <typename T>
    Value<T>* value(const char* name) const
    {
        return Tree::Instance()->Find<Value<T>>(path(QLatin1String(name)));
    }
    template <typename T>
    void set(const char* name, const T& content)
    {
        if (Value<T>* const found = value<T>(name)) {
            found->SetValue(content, nullptr);
        }
    }

    /// Puts a record into the map, or in the place of the one with its ID.
    void setRecord(const std::shared_ptr<ZELKO_XML::ZELKO_RecordData>& record)
    {
        map()->SetAt(record->GetRecordID(), zelko::recordmap::RecordMapData(record), nullptr);
    }

private:
    QString folder(const QString& name) const { return names().indexOf(name) < 3 ? m_records : m_commands; }
    QString path(const QString& name) const
    {
        return names().indexOf(name) < 3 ? m_records + QLatin1Char('/') + name : m_commands + name;
    }

    template <typename T>
    void insert(std::unique_ptr<T> value)
    {
        const QString parent = folder(value->GetName());
        Tree::Instance()->Emplace(parent, std::move(value));
    }

    const QString m_records;
    const QString m_commands;
};
