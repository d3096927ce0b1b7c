#include <vornappstartup/initext_p.h>

#include <QStringList>
#include <QUrl>

#include <algorithm>
#include <array>
#include <utility>

namespace {

constexpr QLatin1String noGroup("General");

constexpr std::array escapes{std::pair('\\', '\\'), std::pair('"', '"'), std::pair('\n', 'n'), std::pair('\r', 'r'),
                             std::pair('\t', 't')};

// A name between brackets or before "=", with nothing in it that means something there. A group that is called as those
// without one are gets its first letter written otherwise.
QByteArray encodedName(const QString& name)
{
    return name == noGroup ? QByteArray("%47eneral") : QUrl::toPercentEncoding(name, "/");
}

QString decodedName(const QString& name)
{
    return QUrl::fromPercentEncoding(name.toUtf8());
}

QString escaped(QChar character)
{
    const auto* const found = std::find_if(escapes.begin(), escapes.end(),
                                           [&](const auto& escape) { return character == QLatin1Char(escape.first); });
    if (found != escapes.end()) {
        return QStringLiteral("\\%1").arg(QLatin1Char(found->second));
    }
    return character < QLatin1Char(' ') || character.isSurrogate()
               ? QStringLiteral("\\u%1").arg(character.unicode(), 4, 16, QLatin1Char('0'))
               : QString(character);
}

// In quotes where it would not come back as it is.
QString valueText(const QString& value)
{
    QString quoted;
    for (const QChar character : value) {
        quoted += escaped(character);
    }
    const bool isPlain = quoted == value && value == value.trimmed();
    return isPlain ? value : QLatin1Char('"') + quoted + QLatin1Char('"');
}

// What stands behind a backslash, which `position` is moved over. None where nothing has that meaning.
std::optional<QChar> unescaped(const QString& text, qsizetype& position)
{
    constexpr int digits = 4;
    const QChar letter = position < text.size() ? text[position++] : QChar();
    if (letter == QLatin1Char('u')) {
        bool isNumber = false;
        const ushort code = QStringView(text).mid(position, digits).toUShort(&isNumber, 16);
        position += digits;
        return isNumber && position <= text.size() ? std::optional(QChar(code)) : std::nullopt;
    }
    const auto* const found = std::find_if(escapes.begin(), escapes.end(),
                                           [&](const auto& escape) { return letter == QLatin1Char(escape.second); });
    return found == escapes.end() ? std::nullopt : std::optional(QChar(QLatin1Char(found->first)));
}

// Between the quotes.
std::optional<QString> unquoted(const QString& text)
{
    QString value;
    for (qsizetype position = 0; position < text.size();) {
        const QChar character = text[position++];
        const auto meant = character == QLatin1Char('\\') ? unescaped(text, position) : std::optional(character);
        if (!meant || character == QLatin1Char('"')) {
            return std::nullopt;
        }
        value += *meant;
    }
    return value;
}

// Without quotes it is as somebody wrote it.
std::optional<QString> valueOf(const QString& text)
{
    if (!text.startsWith(QLatin1Char('"'))) {
        return text;
    }
    const bool isClosed = text.size() > 1 && text.endsWith(QLatin1Char('"'));
    return isClosed ? unquoted(text.mid(1, text.size() - 2)) : std::nullopt;
}

// 0 without one. A name is never empty, so that a key which ends with a slash is a name as a whole.
qsizetype sizeOfGroup(const QString& key)
{
    const qsizetype slash = key.lastIndexOf(QLatin1Char('/'));
    return slash > 0 && slash + 1 < key.size() ? slash : 0;
}

class IniParser
{
public:
    bool read(const QString& line)
    {
        if (line.isEmpty() || line.startsWith(QLatin1Char(';')) || line.startsWith(QLatin1Char('#'))) {
            return true;
        }
        return line.startsWith(QLatin1Char('[')) ? readGroup(line) : readValue(line);
    }

    const IniValues& values() const { return m_values; }

private:
    bool readGroup(const QString& line)
    {
        const QString name = line.mid(1, line.size() - 2);
        m_prefix = name == noGroup ? QString() : decodedName(name) + QLatin1Char('/');
        return line.endsWith(QLatin1Char(']')) && !name.isEmpty();
    }

    bool readValue(const QString& line)
    {
        const qsizetype sign = line.indexOf(QLatin1Char('='));
        const auto value = valueOf(line.mid(sign + 1).trimmed());
        if (sign < 1 || !value) {
            return false;
        }
        m_values[m_prefix + decodedName(line.left(sign).trimmed())] = *value;
        return true;
    }

    QString m_prefix;
    IniValues m_values;
};

} // namespace

QByteArray iniText(const IniValues& values)
{
    QMap<QString, QByteArray> groups; // those without a group come first
    for (auto it = values.begin(); it != values.end(); ++it) {
        const qsizetype groupSize = sizeOfGroup(it.key());
        const QString name = groupSize == 0 ? it.key() : it.key().mid(groupSize + 1);
        groups[it.key().left(groupSize)] += encodedName(name) + '=' + valueText(it.value()).toUtf8() + '\n';
    }
    QByteArray text;
    for (auto it = groups.begin(); it != groups.end(); ++it) {
        text += '[' + (it.key().isEmpty() ? QByteArray("General") : encodedName(it.key())) + "]\n" + it.value();
    }
    return text;
}

std::optional<IniValues> parseIni(const QByteArray& bytes)
{
    if (!bytes.isValidUtf8() || bytes.contains('\0')) {
        return std::nullopt;
    }
    IniParser parser;
    const QStringList lines = QString::fromUtf8(bytes).split(QLatin1Char('\n'));
    const bool isWhole =
        std::all_of(lines.begin(), lines.end(), [&](const QString& line) { return parser.read(line.trimmed()); });
    return isWhole ? std::optional(parser.values()) : std::nullopt;
}
