#include <console/demo/paintedspectra.h>

#include <algorithm>
#include <array>
#include <cmath>

namespace ZelkoConsole {
namespace {

using SPECTRUM_OVERVIEW::OverviewWish;
using ZelkoCommon::OverviewLine;

constexpr double floorLevel = -104;

// The same for the same place, so that pictures of two days can be compared.
double noise(quint64 number)
{
    quint64 mixed = number * 0x9E37'79B9'7F4A'7C15U;
    mixed = (mixed ^ (mixed >> 29)) * 0xBF58'476D'1CE4'E5B9U;
    return static_cast<double>((mixed ^ (mixed >> 32)) & 0xFFFF) / 0xFFFF - 0.5;
}

// A hill of this height above full scale at its place; `wide` is a share of all frequencies.
double hill(double place, double middle, double wide, double height)
{
    const double away = (place - middle) / wide;
    return height - 12 * away * away;
}

double talk(double time, double place)
{
    const double minute = std::fmod(time, 97.0);
    const bool isOn = (minute > 6 && minute < 21) || (minute > 34 && minute < 41) || (minute > 60 && minute < 83);
    return isOn ? hill(place, 0.36, 0.004, -38 + 8 * std::sin(time * 7)) : floorLevel;
}

double bursts(double time, double place)
{
    const auto slot = static_cast<quint64>(time / 2.5);
    const double channel = 0.62 + 0.012 * std::floor(8 * (noise(slot) + 0.5));
    const bool isOn = std::fmod(time, 2.5) < 0.9 && time > 120 && time < 470;
    return isOn ? hill(place, channel, 0.002, -46) : floorLevel;
}

double sweep(double time, double place)
{
    return time > 250 && time < 430 ? hill(place, 0.06 + (time - 250) / 180 * 0.22, 0.0015, -62) : floorLevel;
}

double carriers(double time, double place)
{
    return std::max({hill(place, 0.5, 0.0012, -24), hill(place, 0.81 + 0.0015 * std::sin(time / 40), 0.0012, -71),
                     hill(place, 0.9, 0.006, -58 + 5 * std::sin(time / 9))});
}

} // namespace

PaintedSpectra::PaintedSpectra(double seconds, int lines, int bins)
    : PaintedSpectra(OverviewWish{begin, begin + static_cast<quint64>(seconds * static_cast<double>(second)),
                                  static_cast<quint32>(lines), static_cast<quint32>(bins),
                                  ZelkoDataTypes::eFFT_Window::Hann})
{}

PaintedSpectra::PaintedSpectra(const OverviewWish& wish)
{
    m_levels.begin(wish);
}

void PaintedSpectra::setCentre(quint64 centre, quint64 span)
{
    m_centre = centre;
    m_span = span;
}

qint16 PaintedSpectra::level(double time, double place) const
{
    const auto number = static_cast<quint64>(time * 1e6) * 65'537 + static_cast<quint64>(place * 1e6);
    const double edge = std::min({place / 0.05, (1 - place) / 0.05, 1.0});
    const double ground = floorLevel - 12 * (1 - edge) * (1 - edge) + 9 * noise(number);
    const double level =
        std::max({ground, carriers(time, place), talk(time, place), bursts(time, place), sweep(time, place)});
    return static_cast<qint16>(std::lround((level + 2 * noise(number + 1)) * 100));
}

void PaintedSpectra::take(int first, int last)
{
    const OverviewWish& wish = m_levels.wish();
    ZelkoCommon::OverviewPiece piece;
    piece.lineCount = wish.lineCount;
    piece.binCount = wish.fftLength;
    piece.centreFrequency = m_centre;
    piece.span = m_span;
    for (int line = first; line <= last; ++line) {
        piece.line = static_cast<quint32>(line);
        piece.time = wish.start + (wish.stop - wish.start) * piece.line / wish.lineCount;
        const double time = static_cast<double>(piece.time - begin) / static_cast<double>(second);
        for (piece.firstBin = 0; piece.firstBin < piece.binCount; piece.firstBin += OverviewLine::mostBins) {
            piece.levels.clear();
            const quint32 end = std::min<quint32>(piece.firstBin + OverviewLine::mostBins, piece.binCount);
            for (quint32 bin = piece.firstBin; bin < end; ++bin) {
                piece.levels << level(time, (bin + 0.5) / piece.binCount);
            }
            m_levels.take(piece);
        }
    }
}

QVector<ZELKO_XML::BookmarkEntry> PaintedSpectra::bookmarks(int count) const
{
    static constexpr std::array texts{"Tower",
                                      "Answer",
                                      "Hopping begins",
                                      "",
                                      "Ground, second voice",
                                      "A remark that goes on for longer than any flag should be, and then some more"};
    QVector<ZELKO_XML::BookmarkEntry> all;
    for (int i = 0; i < count; ++i) {
        ZELKO_XML::BookmarkEntry bookmark;
        bookmark.SetTimestamp(start() +
                              (stop() - start()) * static_cast<quint64>(2 * i + 1) / static_cast<quint64>(2 * count));
        bookmark.SetBookmark(QLatin1String(texts[static_cast<std::size_t>(i) % texts.size()]));
        all << bookmark;
    }
    return all;
}

} // namespace ZelkoConsole
