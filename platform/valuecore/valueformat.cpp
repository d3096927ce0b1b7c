#include <valuecore/valueformat.h>

namespace {

template <typename T>
std::optional<T> ifOk(T value, bool ok)
{
    return ok ? std::optional<T>(value) : std::nullopt;
}

} // namespace

std::optional<int> ValueFormat<int>::fromText(const QString& text)
{
    bool ok = false;
    const int value = text.toInt(&ok);
    return ifOk(value, ok);
}

std::optional<bool> ValueFormat<bool>::fromText(const QString& text)
{
    return ifOk(text == toText(true), text == toText(true) || text == toText(false));
}

std::optional<double> ValueFormat<double>::fromText(const QString& text)
{
    bool ok = false;
    const double value = text.toDouble(&ok);
    return ifOk(value, ok);
}

std::optional<qint64> ValueFormat<qint64>::fromText(const QString& text)
{
    bool ok = false;
    const qint64 value = text.toLongLong(&ok);
    return ifOk(value, ok);
}
