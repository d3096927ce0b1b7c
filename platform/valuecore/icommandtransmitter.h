#pragma once

class Command;
class IObserver;
class ValueBase;

/// Carries the commands of the values that are bound to it away, to a server or to the clients of one.
class ICommandTransmitter
{
public:
    virtual ~ICommandTransmitter() = default;

    /// `command` was executed on `value` by `origin` (null: nobody in particular). Valid during the call; must not
    /// change the value. A transmitter that is itself the origin has the change already and does not send it back.
    virtual void Transmit(ValueBase& value, const Command& command, IObserver* origin) = 0;
};
