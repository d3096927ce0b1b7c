#pragma once

#include <QString>

#include <memory>

namespace ZelkoRecorder {

/// What records of a device are being used for, so that none is deleted or changed while somebody works on it. Any
/// thread.
class RecordUses
{
public:
    enum class Kind {
        Recording,
        Replay,
        Copy,
        Export,
        Deletion ///< alone: not beside another use
    };

private:
    struct State;

public:
    /// A use that lasts as long as the object, which may outlive the register.
    class Use
    {
    public:
        ~Use();
        Use(const Use&) = delete;
        Use& operator=(const Use&) = delete;

    private:
        friend class RecordUses;
        Use(const std::shared_ptr<State>& state, const QString& recordID, Kind kind);

        const std::shared_ptr<State> m_state;
        const QString m_recordID;
        const Kind m_kind;
    };
    using Handle = std::unique_ptr<Use>;

    RecordUses();
    ~RecordUses();
    RecordUses(const RecordUses&) = delete;
    RecordUses& operator=(const RecordUses&) = delete;

    /// Null if the record is about to be deleted, or for a deletion if it is used in any way. The record need not
    /// exist.
    Handle begin(const QString& recordID, Kind kind);

private:
    const std::shared_ptr<State> m_state;
};

} // namespace ZelkoRecorder
