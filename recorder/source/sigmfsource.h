#pragma once

#include <recorder/source/sigmfmetadata.h>
#include <recorder/source/signalsource.h>

#include <QFile>

namespace ZelkoRecorder {

/// The samples of a SigMF recording, a pair of files NAME.sigmf-meta and NAME.sigmf-data, in the type they have there.
///
/// Bytes behind the last whole frame of the data file are ignored. So are segments and marks that begin behind it, and
/// marks that reach over it end with it. The proposed name is NAME. Archives in one file (".sigmf") are not supported.
class SigmfSource final : public SignalSource
{
public:
    /// Opens the pair that `path` names by either file or without an ending. Blocks while it reads the data file once,
    /// if the metadata holds its hash. Null, and in `error` what is wrong, if one of the files is missing, not a
    /// regular file or not readable, if the metadata is refused (`SigmfMetadata::parse`), if it names a data file
    /// outside of its folder, if there is no whole frame, or if the hash differs. `error` may be null.
    static std::unique_ptr<SigmfSource> open(const QString& path, QString* error);

    /// The same text for each way to name a pair, another one when one of its files is another or has been written to
    /// since. Any text for a pair that `open` refuses. Reads the metadata only.
    static QString fingerprint(const QString& path);

    /// Fails if the file can no longer be read or has become shorter.
    qint64 read(char* buffer, qint64 frames) override;

private:
    SigmfSource(const SourceDescription& description, std::unique_ptr<QFile> data);

    const std::unique_ptr<QFile> m_data;
    qint64 m_frame = 0;
};

} // namespace ZelkoRecorder
