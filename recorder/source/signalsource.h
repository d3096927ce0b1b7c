#pragma once

#include <recorder/source/sourcedescription.h>

namespace ZelkoRecorder {

/// Where a recording's samples come from. The reader pulls frames at its own pace: a source neither waits nor paces,
/// and is used by one thread at a time.
class SignalSource
{
public:
    virtual ~SignalSource();
    SignalSource(const SignalSource&) = delete;
    SignalSource& operator=(const SignalSource&) = delete;

    /// Does not change while the source lives.
    const SourceDescription& description() const { return m_description; }

    /// Writes up to `frames` frames of `description().format.bytesPerFrame()` bytes each to `buffer` and returns how
    /// many; fewer than asked for only at the end. 0 at the end, for `frames` <= 0, and after a failure: then
    /// `errorText()` is set, and every later call returns 0 too. Throws nothing.
    virtual qint64 read(char* buffer, qint64 frames) = 0;

    /// Why reading failed, for people; empty as long as it did not.
    QString errorText() const { return m_errorText; }

protected:
    explicit SignalSource(SourceDescription description);
    void fail(const QString& text);

private:
    const SourceDescription m_description;
    QString m_errorText;
};

} // namespace ZelkoRecorder
