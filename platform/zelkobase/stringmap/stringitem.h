#pragma once

#include <zelkobase/stringmap/basestringmap_export.h>

#include <QString>

#include <string>

/// A text under a key, for instance the announcement of a device under its address.
class BASESTRINGMAP_EXPORT StringItem
{
public:
    using KeyType = QString;

    StringItem();
    StringItem(const QString& key, const QString& text);
    StringItem(const StringItem&);
    virtual ~StringItem();
    StringItem& operator=(const StringItem&);

    /// The key under which a map holds the item; an empty one is none.
    virtual QString GetKey() const { return m_key; }

    const QString& GetString() const { return m_text; }

    bool operator==(const StringItem& other) const { return m_key == other.m_key && m_text == other.m_text; }

private:
    QString m_key;
    QString m_text;
};

/// How a StringItem stands in a command: its size, then key and text, each as a count of UTF-16 code units and the
/// units.
struct BASESTRINGMAP_EXPORT StringItemFormat
{
    static constexpr int mapType = 22;
    static constexpr const char* mapTypeName = "StringItemFrequencyMap";

    static std::string toStandardString(const StringItem& item);

    /// Reads an item of which the announced size is known to be there, and advances `*stream` behind what was read.
    /// False when the bytes do not hold exactly one item; `item` then holds what was read.
    static bool fromCharStream(const char** stream, StringItem& item);

    /// The text of the item.
    static QString GetString(const StringItem& item) { return item.GetString(); }
};

/// Names the items as text for the type of a map; maps do not call it.
struct BASESTRINGMAP_EXPORT StringItemAdapter
{
    static QString toText(const StringItem& item) { return item.GetString(); }
};
