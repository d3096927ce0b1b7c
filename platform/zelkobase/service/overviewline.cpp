#include <zelkobase/service/overviewline.h>

#include <QtEndian>

#include <algorithm>
#include <cmath>
#include <cstring>

namespace ZelkoCommon {

namespace {

constexpr char magic[] = {'Z', 'O', 'V', 'L'};
constexpr quint16 version = 1;
constexpr quint16 lastFlag = 1;
constexpr qint16 levelLimit = 32767;

// What is no number is nothing that could be heard.
qint16 hundredths(float level)
{
    constexpr float limit = levelLimit;
    return level * 100 > -limit ? static_cast<qint16>(std::lround(std::min(level * 100, limit))) : -levelLimit;
}

template <typename T>
void put(QByteArray& bytes, std::size_t offset, T value)
{
    qToLittleEndian(value, bytes.data() + offset);
}

template <typename T>
T get(QByteArrayView bytes, std::size_t offset)
{
    return qFromLittleEndian<T>(bytes.data() + offset);
}

// Of this many bins, the levels in the datagram that begins with this one.
quint32 levelsFrom(quint32 firstBin, quint32 binCount)
{
    return std::min(static_cast<quint32>(OverviewLine::mostBins), binCount - firstBin);
}

QByteArray headOf(const OverviewLine& line, quint32 first, quint32 binCount)
{
    const quint32 count = levelsFrom(first, binCount);
    const bool isLast = line.line + 1 == line.lineCount && first + count == binCount;
    QByteArray bytes(static_cast<qsizetype>(OverviewLine::headSize + 2 * count), '\0');
    std::memcpy(bytes.data(), magic, sizeof magic);
    put(bytes, 4, version);
    put(bytes, 6, isLast ? lastFlag : quint16{0});
    put(bytes, 8, line.cookie);
    put(bytes, 16, line.line);
    put(bytes, 20, line.lineCount);
    put(bytes, 24, first);
    put(bytes, 28, binCount);
    put(bytes, 32, line.time);
    put(bytes, 40, line.centreFrequency);
    put(bytes, 48, line.span);
    put(bytes, 56, static_cast<quint16>(count));
    return bytes;
}

bool isOurs(QByteArrayView datagram)
{
    return datagram.size() >= static_cast<qsizetype>(OverviewLine::headSize) &&
           std::memcmp(datagram.data(), magic, sizeof magic) == 0 && get<quint16>(datagram, 4) == version &&
           get<quint16>(datagram, 58) == 0;
}

bool isWithinBounds(const OverviewPiece& piece)
{
    return piece.lineCount <= OverviewLine::mostLines && piece.line < piece.lineCount &&
           piece.binCount <= OverviewLine::mostLineBins && piece.firstBin < piece.binCount &&
           piece.firstBin % OverviewLine::mostBins == 0;
}

OverviewPiece headOf(QByteArrayView datagram)
{
    OverviewPiece piece;
    piece.cookie = get<quint64>(datagram, 8);
    piece.line = get<quint32>(datagram, 16);
    piece.lineCount = get<quint32>(datagram, 20);
    piece.firstBin = get<quint32>(datagram, 24);
    piece.binCount = get<quint32>(datagram, 28);
    piece.time = get<quint64>(datagram, 32);
    piece.centreFrequency = get<quint64>(datagram, 40);
    piece.span = get<quint64>(datagram, 48);
    return piece;
}

// Whether as many levels follow as the head says, and those that belong there. `piece` is within its bounds.
bool hasItsLevels(const OverviewPiece& piece, QByteArrayView datagram)
{
    const quint32 count = levelsFrom(piece.firstBin, piece.binCount);
    return get<quint16>(datagram, 56) == count &&
           datagram.size() == static_cast<qsizetype>(OverviewLine::headSize + 2 * std::size_t{count});
}

// False for flags that this piece does not have.
bool takeFlags(OverviewPiece* piece, QByteArrayView datagram)
{
    const bool endsLine = piece->firstBin + levelsFrom(piece->firstBin, piece->binCount) == piece->binCount;
    piece->isLast = endsLine && piece->line + 1 == piece->lineCount;
    return get<quint16>(datagram, 6) == (piece->isLast ? lastFlag : 0);
}

// False for levels that nobody writes.
bool takeLevels(OverviewPiece* piece, QByteArrayView datagram)
{
    const QByteArrayView bytes = datagram.sliced(static_cast<qsizetype>(OverviewLine::headSize));
    piece->levels.resize(bytes.size() / 2);
    qFromLittleEndian<qint16>(bytes.data(), piece->levels.size(), piece->levels.data());
    return std::none_of(piece->levels.cbegin(), piece->levels.cend(), [](qint16 level) { return level < -levelLimit; });
}

} // namespace

QList<QByteArray> OverviewLine::datagrams(const std::vector<float>& levels) const
{
    QList<QByteArray> result;
    for (std::size_t first = 0; first < levels.size(); first += mostBins) {
        QByteArray bytes = headOf(*this, static_cast<quint32>(first), static_cast<quint32>(levels.size()));
        for (std::size_t at = headSize, bin = first; at < static_cast<std::size_t>(bytes.size()); at += 2, ++bin) {
            put(bytes, at, hundredths(levels[bin]));
        }
        result.append(bytes);
    }
    return result;
}

std::optional<OverviewPiece> overviewPiece(QByteArrayView datagram)
{
    if (!isOurs(datagram)) {
        return std::nullopt;
    }
    OverviewPiece piece = headOf(datagram);
    if (!isWithinBounds(piece) || !hasItsLevels(piece, datagram) || !takeFlags(&piece, datagram) ||
        !takeLevels(&piece, datagram)) {
        return std::nullopt;
    }
    return piece;
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

} // namespace ZelkoCommon
