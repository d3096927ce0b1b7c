#pragma once

#include <valuecore/valuecore_export.h>

#include <cstddef>
#include <memory>
#include <optional>
#include <string>
#include <vector>

/// One change, made locally or read from a peer's stream; both go through `Execute` or `Spend`.
class VALUECORE_EXPORT Command
{
public:
    virtual ~Command();

    /// Makes the change.
    virtual void Execute() = 0;

    /// As `Execute`, for the last time: what the command holds may go over to what it changes.
    virtual void Spend() { Execute(); }

    /// The number that tells the commands of one value apart in a stream.
    virtual int GetCommandId() const = 0;

    /// Appends the command to a stream, in the form that ValueBase::CreateNextCommand reads back.
    virtual void AddCommandString(std::string& out) const = 0;

    /// Hash of what the command is about within its value, the key of an item for instance; empty when it is about the
    /// value as a whole.
    virtual std::optional<std::size_t> TargetHash() const;

    /// A copy; the caller owns it.
    virtual Command* Clone() const = 0;

protected:
    Command() = default;
    Command(const Command&) = default;
    Command& operator=(const Command&) = default;
};

using CommandList = std::vector<std::unique_ptr<Command>>;
