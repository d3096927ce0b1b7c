#pragma once

#include <valuecore/commandreader.h>
#include <valuecore/valuecore_export.h>

#include <QString>

#include <cstdint>
#include <optional>
#include <string>

/// How a plain value of type T stands in a command: specialised for each type of value.
///
///     void write(std::string& out, const T& value);
///     T read(CommandReader& reader);
///     QString toText(const T& value);
///     std::optional<T> fromText(const QString& text);
template <typename T>
struct ValueFormat;

template <>
struct VALUECORE_EXPORT ValueFormat<QString>
{
    static constexpr int type = 1;
    static constexpr const char* typeName = "Text";
    static void write(std::string& out, const QString& value) { commandwriter::string(out, value); }
    static QString read(CommandReader& reader) { return reader.string(); }
    static QString toText(const QString& value) { return value; }
    static std::optional<QString> fromText(const QString& text) { return text; }
};

template <>
struct VALUECORE_EXPORT ValueFormat<int>
{
    static constexpr int type = 2;
    static constexpr const char* typeName = "Integer";
    static void write(std::string& out, int value) { commandwriter::number(out, std::int32_t{value}); }
    static int read(CommandReader& reader) { return reader.number<std::int32_t>(); }
    static QString toText(int value) { return QString::number(value); }
    static std::optional<int> fromText(const QString& text);
};

template <>
struct VALUECORE_EXPORT ValueFormat<bool>
{
    static constexpr int type = 3;
    static constexpr const char* typeName = "Boolean";
    static void write(std::string& out, bool value) { commandwriter::number(out, static_cast<std::uint8_t>(value)); }
    static bool read(CommandReader& reader) { return reader.boolean(); }
    static QString toText(bool value) { return value ? QStringLiteral("true") : QStringLiteral("false"); }
    static std::optional<bool> fromText(const QString& text);
};

template <>
struct VALUECORE_EXPORT ValueFormat<double>
{
    static constexpr int type = 4;
    static constexpr const char* typeName = "Number";
    static void write(std::string& out, double value) { commandwriter::number(out, value); }
    static double read(CommandReader& reader) { return reader.number<double>(); }
    static QString toText(double value) { return QString::number(value, 'g', 17); }
    static std::optional<double> fromText(const QString& text);
};

template <>
struct VALUECORE_EXPORT ValueFormat<qint64>
{
    static constexpr int type = 5;
    static constexpr const char* typeName = "Integer64";
    static void write(std::string& out, qint64 value) { commandwriter::number(out, value); }
    static qint64 read(CommandReader& reader) { return reader.number<qint64>(); }
    static QString toText(qint64 value) { return QString::number(value); }
    static std::optional<qint64> fromText(const QString& text);
};
