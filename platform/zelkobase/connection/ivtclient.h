#pragma once

class ValueBase;

/// The writing end of a link: values that are added to it travel to the server when they are written; others do not.
class IVtClient
{
public:
    virtual ~IVtClient() = default;

    /// From here on each change of `value` that did not come from the server is sent to it, in order and without
    /// waiting for an answer. What the server refuses comes back as the server has it, and so does a change that makes
    /// more than 8 MiB; the connection says so. `flags` is reserved and 0. Only values that the server announced can be
    /// added; for any other, and for one that is added already, nothing happens. Ends with the value, or with the
    /// connection.
    virtual void AddValue(ValueBase* value, int flags) = 0;

    /// Ends what `AddValue` began.
    virtual void RemoveValue(ValueBase* value) = 0;
};
