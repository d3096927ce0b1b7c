#include <recorder/store/thinindex.h>

#include <algorithm>

namespace ZelkoRecorder {

using ZELKO_XML::IndexEntry;

namespace {

bool sameTuning(const IndexEntry& a, const IndexEntry& b)
{
    return a.GetTunerFrequency() == b.GetTunerFrequency() && a.GetSampleRate() == b.GetSampleRate() &&
           a.GetBandwidth() == b.GetBandwidth();
}

} // namespace

bool thinIndex(QVector<IndexEntry>& index)
{
    QVector<IndexEntry> kept;
    kept.reserve(index.size());
    bool keptOneBefore = false;
    for (qsizetype i = 0; i < index.size(); ++i) {
        const bool atEnd = i == 0 || i + 1 == index.size();
        const bool needed = atEnd || !sameTuning(index.at(i), index.at(i - 1));
        keptOneBefore = needed || !keptOneBefore;
        if (keptOneBefore) {
            kept.append(index.at(i));
        }
    }
    const bool thinner = kept.size() < index.size();
    index = std::move(kept);
    return thinner;
}

void halveIndex(QVector<IndexEntry>& index)
{
    QVector<IndexEntry> kept;
    kept.reserve(index.size() / 2 + 1);
    for (qsizetype i = 0; i < index.size(); ++i) {
        if (i % 2 == 0 || i + 1 == index.size()) {
            kept.append(index.at(i));
        }
    }
    index = std::move(kept);
}

} // namespace ZelkoRecorder
