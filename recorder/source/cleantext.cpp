#include <recorder/source/cleantext.h>

namespace ZelkoRecorder {

namespace {

bool isForbidden(QChar character)
{
    return character.category() == QChar::Other_Control || character.unicode() >= 0xFFFE;
}

/// A surrogate that is not half of a pair, at `index` of `text`.
bool isLoneSurrogate(const QString& text, qsizetype index)
{
    const QChar character = text.at(index);
    if (character.isHighSurrogate()) {
        return index + 1 == text.size() || !text.at(index + 1).isLowSurrogate();
    }
    return character.isLowSurrogate() && (index == 0 || !text.at(index - 1).isHighSurrogate());
}

} // namespace

QString cleanText(QString text, qsizetype maximumLength)
{
    text.truncate(maximumLength);
    for (qsizetype index = 0; index < text.size(); ++index) {
        if (isForbidden(text.at(index)) || isLoneSurrogate(text, index)) {
            text[index] = u' ';
        }
    }
    return text.simplified();
}

} // namespace ZelkoRecorder
