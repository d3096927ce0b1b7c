#pragma once

#include <zelkoguibase/valueitemmap/valueitemmap.h>

#include <QStringList>

#include <limits>

/// The smallest item that a keyed map can hold: a key and one number.
template <typename K>
class SmallItem
{
public:
    using KeyType = K;

    SmallItem() = default;
    SmallItem(K key, int number)
        : m_key(std::move(key))
        , m_number(number)
    {}
    SmallItem(const SmallItem&) = default;
    SmallItem& operator=(const SmallItem&) = default;
    virtual ~SmallItem() = default;

    virtual K GetKey() const { return m_key; }
    int number() const { return m_number; }

    bool operator==(const SmallItem& other) const { return m_key == other.m_key && m_number == other.m_number; }

private:
    K m_key{};
    int m_number = 0;
};

template <typename K>
struct SmallItemFormat
{
    static std::string toStandardString(const SmallItem<K>& item)
    {
        std::string content;
        valueitemmap::KeyFormat<K>::write(content, item.GetKey());
        commandwriter::number(content, std::int32_t{item.number()});
        std::string result;
        commandwriter::number(result, static_cast<std::uint32_t>(content.size()));
        return result + content;
    }

    /// False, and the part of the item that was read, when the announced size is not that of an item.
    static bool fromCharStream(const char** stream, SmallItem<K>& item)
    {
        std::uint32_t size = 0;
        std::memcpy(&size, *stream, sizeof(size));
        *stream += sizeof(size);
        CommandReader reader(stream, size);
        K key = valueitemmap::KeyFormat<K>::read(reader);
        item = SmallItem<K>(std::move(key), reader.number<std::int32_t>());
        return reader.ok() && reader.remaining() == 0;
    }

    static QString GetString(const SmallItem<K>& item)
    {
        return QStringLiteral("%1").arg(item.GetKey()) + QLatin1Char('=') + QString::number(item.number());
    }
};

struct SmallItemAdapter
{};

using TextItem = SmallItem<QString>;
using NumberItem = SmallItem<unsigned int>;

/// A map whose keys cannot be made.
class TextItemMap final : public ValueItemMap<TextItem, SmallItemFormat<QString>, SmallItemAdapter>
{
public:
    using ValueItemMap::ValueItemMap;
    int GetType() const override { return 1001; }
    const char* GetTypeName() const override { return "TextItemMap"; }
};

/// A map that counts its keys up.
class NumberItemMap final : public ValueItemMap<NumberItem, SmallItemFormat<unsigned int>, SmallItemAdapter>
{
public:
    using ValueItemMap::ValueItemMap;
    int GetType() const override { return 1002; }
    const char* GetTypeName() const override { return "NumberItemMap"; }

protected:
    unsigned int CreateNewUniqueKey() override
    {
        while (Contains(m_next)) {
            ++m_next;
        }
        return m_next;
    }

private:
    unsigned int m_next = 0;
};

/// Reads all that a log has from `position` on: "1 key" for each change, "lost" where changes were lost.
template <typename K>
QStringList readLog(const ChangeLogTemplate<char, K>& log, std::uint64_t& position)
{
    QStringList result;
    char type = 0;
    K key{};
    for (signed char answer = 0; (answer = log.ReadNext(position, type, key)) != 0;) {
        result << (answer < 0 ? QStringLiteral("lost") : QStringLiteral("%1 %2").arg(int{type}).arg(key));
    }
    return result;
}
