#pragma once

#include <recorder/source/signalsource.h>

#include <memory>

namespace ZelkoRecorder {

/// Makes the source that a text names:
/// - "generator:" and the text of `GeneratorParameters::parse`,
/// - "sigmf:" and a path as `SigmfSource::open` takes it,
/// - the path of a file that ends in ".sigmf-meta" or ".sigmf-data".
class SourceFactory
{
public:
    /// Null, and in `error` a sentence for people, for any other text and for what the source itself refuses. `error`
    /// may be null. Blocks as long as `SigmfSource::open`.
    static std::unique_ptr<SignalSource> create(const QString& description, QString* error);

    /// The same text for descriptions of the same signal, another one for other signals, also when the files of a
    /// recording have been replaced or written to. For what `create` refuses any text. Reads metadata, but no samples.
    static QString fingerprint(const QString& description);
};

} // namespace ZelkoRecorder
