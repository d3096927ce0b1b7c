#pragma once

#include <observerbase/changecode.h>
#include <valuecore/command.h>
#include <valuecore/valuestate.h>

#include <QString>

#include <memory>
#include <string>
#include <string_view>

class ICommandListOptimizer;
class IObserver;
class ValueBase;

/// What every value can do. ValueBase says what each operation means.
class IValue
{
public:
    virtual ~IValue() = default;

    virtual bool SetStringValue(const QString& text, IObserver* origin) = 0;
    virtual QString GetStringValue() const = 0;
    virtual TValueState GetState() const = 0;
    virtual void SetState(TValueState state, IObserver* origin) = 0;
    virtual void HasChanged(TChangeCode code, IObserver* origin) = 0;
    virtual std::string GetCommandStringForTransmission() = 0;
    virtual void SetCommandString(const CommandList& commands) = 0;
    virtual bool SetCommandString(std::string_view stream, IObserver* origin) = 0;
    virtual int GetType() const = 0;
    virtual const char* GetTypeName() const = 0;
    virtual void Assign(const ValueBase& other) = 0;
    virtual bool Compare(const ValueBase* other) const = 0;
    virtual std::string GetCommandStringForRecording() = 0;
    virtual void SetUpdateTimerTime(int milliseconds) = 0;
    virtual void OverrideTimer() = 0;
    virtual void KillOverrideTimer() = 0;
    virtual std::unique_ptr<ICommandListOptimizer> CreateCommandListOptimizer() const = 0;
    virtual void OptimizeCommandList(ICommandListOptimizer& optimizer) = 0;
    virtual void OptimizeCommandList(CommandList& commands) = 0;
    virtual void PreWorkCommandList(CommandList& commands) = 0;
    virtual void AddObjectStateStringForTransmission(std::string& out, unsigned int flags) = 0;
    virtual void AddObjectStateStringForRecording(std::string& out) = 0;
    virtual void AddCommand(Command* command) = 0;
    virtual void AddCommandForTransmission(Command* command) = 0;
    virtual Command* CreateNextCommand(int id, const char** stream, IObserver* origin, int available) = 0;
};
