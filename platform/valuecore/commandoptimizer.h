#pragma once

#include <valuecore/command.h>
#include <valuecore/valuebase.h>
#include <valuecore/valuecore_export.h>

#include <cstddef>
#include <memory>
#include <unordered_map>

/// Collects the commands of one value in order and leaves out those that a later one makes superfluous.
class VALUECORE_EXPORT ICommandListOptimizer
{
public:
    virtual ~ICommandListOptimizer();

    virtual void Add(std::unique_ptr<Command> command) = 0;

    /// The commands that are left, in order; the optimizer is empty afterwards.
    virtual CommandList Take() = 0;
};

/// The optimizer of all values: asks the commands themselves (ValueBase::CommandOnValue::Supersedes). The cost of a
/// command does not grow with the length of the list.
class VALUECORE_EXPORT CommandListOptimizer final : public ICommandListOptimizer
{
public:
    CommandListOptimizer();
    ~CommandListOptimizer() override;

    void Add(std::unique_ptr<Command> command) override;
    CommandList Take() override;

private:
    void remember(const ValueBase::CommandOnValue& command, std::size_t position);
    void dropContent();
    void dropSuperseded(const Command& command);

    CommandList m_commands;                                      // left-out ones are null
    std::unordered_multimap<std::size_t, std::size_t> m_targets; // hash of a target (or command id) to positions
};
