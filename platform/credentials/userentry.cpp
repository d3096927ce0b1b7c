#include <credentials/userentry.h>

#include <QList>
#include <QStringDecoder>

#include <algorithm>

namespace ZelkoCommon {
namespace {

std::nullopt_t refuse(QString* error, const QString& text)
{
    if (error) {
        *error = text;
    }
    return std::nullopt;
}

// Bytes that are no UTF-8 become nothing, not other characters.
std::optional<QString> decode(const QByteArray& bytes)
{
    QStringDecoder decoder(QStringDecoder::Utf8,
                           QStringDecoder::Flag::Stateless | QStringDecoder::Flag::ConvertInitialBom);
    QString text = decoder(bytes);
    return decoder.hasError() ? std::nullopt : std::optional(text);
}

// What shows as nothing, or changes how what stands beside it is shown, makes two names look the same.
bool isPlain(char32_t character)
{
    const QChar::Category category = QChar::category(character);
    return QChar::isPrint(character) && category != QChar::Other_Format && category != QChar::Separator_Line &&
           category != QChar::Separator_Paragraph;
}

} // namespace

bool UserEntry::canBeName(const QString& name)
{
    const auto characters = name.toUcs4();
    return !name.isEmpty() && name.isValidUtf16() && name.toUtf8().size() <= maximumName && name == name.trimmed() &&
           name == name.normalized(QString::NormalizationForm_C) && !name.contains(QLatin1Char(':')) &&
           !name.startsWith(QLatin1Char('#')) && std::all_of(characters.begin(), characters.end(), isPlain);
}

std::optional<UserEntry> UserEntry::fromLine(const QByteArray& line, QString* error)
{
    if (line.size() > maximumLine) {
        return refuse(error, QStringLiteral("it is longer than %1 bytes").arg(maximumLine));
    }
    const QList<QByteArray> fields = line.split(':');
    if (fields.size() != 3) {
        return refuse(error, QStringLiteral("it is not of the form name:role:hash"));
    }
    const auto name = decode(fields[0]);
    if (!name || !canBeName(*name)) {
        return refuse(error, QStringLiteral("it does not begin with what can be a name"));
    }
    const auto role = roleOfName(QString::fromLatin1(fields[1]));
    if (!role) {
        return refuse(error, QStringLiteral("the role is not viewer, operator or administrator"));
    }
    const auto hash = PasswordHash::fromText(fields[2]);
    if (!hash) {
        return refuse(error, QStringLiteral("the hash is none, or costs more than a recorder spends"));
    }
    return UserEntry{*name, *role, *hash};
}

QByteArray UserEntry::toLine() const
{
    return name.toUtf8() + ':' + QByteArray(roleName(role).data()) + ':' + hash.text();
}

} // namespace ZelkoCommon
