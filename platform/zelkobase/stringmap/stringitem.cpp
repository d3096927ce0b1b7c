#include <zelkobase/stringmap/stringitem.h>

#include <valuecore/commandreader.h>

#include <cstdint>
#include <cstring>

StringItem::StringItem() = default;

StringItem::StringItem(const QString& key, const QString& text)
    : m_key(key)
    , m_text(text)
{}

StringItem::StringItem(const StringItem&) = default;

StringItem::~StringItem() = default;

StringItem& StringItem::operator=(const StringItem&) = default;

std::string StringItemFormat::toStandardString(const StringItem& item)
{
    std::string content;
    commandwriter::string(content, item.GetKey());
    commandwriter::string(content, item.GetString());
    std::string result;
    result.reserve(sizeof(std::uint32_t) + content.size());
    commandwriter::number(result, static_cast<std::uint32_t>(content.size()));
    return result += content;
}

bool StringItemFormat::fromCharStream(const char** stream, StringItem& item)
{
    std::uint32_t size = 0;
    std::memcpy(&size, *stream, sizeof(size));
    *stream += sizeof(size);
    CommandReader reader(stream, size);
    const QString key = reader.string();
    const QString text = reader.string();
    item = StringItem(key, text);
    return reader.ok() && reader.remaining() == 0;
}
