#include <recorder/service/overviewline.h>

#include <QtEndian>

#include <algorithm>
#include <cmath>
#include <cstring>

namespace ZelkoRecorder {

namespace {

constexpr char magic[] = {'Z', 'O', 'V', 'L'};
constexpr quint16 version = 1;
constexpr quint16 lastFlag = 1;

qint16 hundredths(float level)
{
    constexpr float limit = 32767;
    return static_cast<qint16>(std::lround(std::clamp(level * 100, -limit, limit)));
}

template <typename T>
void put(QByteArray& bytes, qsizetype offset, T value)
{
    qToLittleEndian(value, bytes.data() + offset);
}

} // namespace

QList<QByteArray> OverviewLine::datagrams(const std::vector<float>& levels) const
{
    QList<QByteArray> result;
    for (std::size_t first = 0; first < levels.size(); first += mostBins) {
        const std::size_t count = std::min(mostBins, levels.size() - first);
        const bool isLast = line + 1 == lineCount && first + count == levels.size();
        const std::size_t size = headSize + 2 * count;
        QByteArray bytes(static_cast<qsizetype>(size), '\0');
        std::memcpy(bytes.data(), magic, sizeof magic);
        put(bytes, 4, version);
        put(bytes, 6, isLast ? lastFlag : quint16{0});
        put(bytes, 8, cookie);
        put(bytes, 16, line);
        put(bytes, 20, lineCount);
        put(bytes, 24, static_cast<quint32>(first));
        put(bytes, 28, static_cast<quint32>(levels.size()));
        put(bytes, 32, time);
        put(bytes, 40, centreFrequency);
        put(bytes, 48, span);
        put(bytes, 56, static_cast<quint16>(count));
        for (std::size_t i = 0; i < count; ++i) {
            const std::size_t place = headSize + 2 * i;
            put(bytes, static_cast<qsizetype>(place), hundredths(levels[first + i]));
        }
        result.append(bytes);
    }
    return result;
}

quint64 overviewCookie(const QString& device, const QString& record)
{
    quint64 hash = 0xcbf29ce484222325;
    const QByteArray place = (device + QLatin1Char('/') + record).toUtf8();
    for (const char byte : place) {
        hash = (hash ^ static_cast<quint8>(byte)) * 0x100000001b3;
    }
    return hash;
}

} // namespace ZelkoRecorder
