#pragma once

#include <observerbase/observable.h>
#include <observerbase/supporttransaction.h>
#include <observerbase/timercallback.h>
#include <valuecore/command.h>
#include <valuecore/commandreader.h>
#include <valuecore/ideletesubject.h>
#include <valuecore/ioptimizetrigger.h>
#include <valuecore/ivalue.h>
#include <valuecore/treeitem.h>
#include <valuecore/valuecore_export.h>
#include <valuecore/valuestate.h>

#include <memory>
#include <optional>

class ICommandTransmitter;
class IObjectStateCursor;

/// A value of the tree: a name, a state, observers, and content that a derived class holds.
///
/// Content changes by commands, whether a setter is called here or a command arrives in a peer's stream; both run the
/// same code. A value that is bound to a transmitter passes each executed command on to it, and a value that records
/// keeps each in a list of its own. An operation that would change nothing does nothing: no command, no notification.
///
/// Not thread safe: a value lives on the thread of its tree.
class VALUECORE_EXPORT ValueBase : public TreeItem,
                                   public IValue,
                                   public IDeleteSubject,
                                   public Vorn::IHasTimerCallback,
                                   public IOptimizeTrigger,
                                   public virtual Observable,
                                   public virtual ISupportTransaction
{
public:
    class CommandOnValue;

    /// Command ids that every value knows. A derived class has ids from 10 on.
    enum BaseCommandId : int { CommandIdState = 1, CommandIdHasChanged = 2, CommandIdExpectSize = 3 };

    explicit ValueBase(const QString& name = QString(), TValueState state = TValueState::Open);
    ValueBase(const ValueBase& other);
    ~ValueBase() override;

    /// Takes over the state of `other`. Name, place, observers, transmitter and recordings stay; nobody is told.
    ValueBase& operator=(const ValueBase& other);

    /// True if the states are equal.
    bool operator==(const ValueBase& other) const;

    // IValue

    /// Sets the content from a text; false, and no change, when the text does not fit. The base class takes none.
    bool SetStringValue(const QString& text, IObserver* origin) override;

    TValueState GetState() const override { return m_state; }

    /// Sets the state; observers other than `origin` hear StateChanged if it differs. State Deleted stays on this side:
    /// that a value is gone is for its tree to say, and no stream carries it.
    void SetState(TValueState state, IObserver* origin) override;

    /// Notifies observers other than `origin` and passes the value on if it is bound, without any change of content:
    /// gives a command twice.
    void HasChanged(TChangeCode code, IObserver* origin) override;

    /// The commands that wait for their update time, as a stream; they wait no longer.
    std::string GetCommandStringForTransmission() override;

    /// Executes the commands in order. An observer may take the value out of its tree meanwhile, which ends it.
    void SetCommandString(const CommandList& commands) override;

    /// Reads commands up to the end of `stream` and executes them. False when the stream is malformed or truncated:
    /// then none of its commands was executed.
    bool SetCommandString(std::string_view stream, IObserver* origin) override;

    /// Takes over the content of a value of the same type; throws std::bad_cast on any other.
    void Assign(const ValueBase& other) override;

    /// True if `other` is of the same type and equal.
    bool Compare(const ValueBase* other) const override;

    /// The commands recorded since recording was switched on or this was called last, as a stream.
    std::string GetCommandStringForRecording() override;

    /// Passes commands on at most once in `milliseconds`, superfluous ones left out; 0, the default, passes each at
    /// once.
    void SetUpdateTimerTime(int milliseconds) override;

    /// Passes on what waits, and everything from now on at once, whatever the update time.
    void OverrideTimer() override;

    /// Ends what OverrideTimer began.
    void KillOverrideTimer() override;

    /// Something that leaves superfluous commands of this value out of a list.
    std::unique_ptr<ICommandListOptimizer> CreateCommandListOptimizer() const override;

    /// Feeds the waiting commands through `optimizer`.
    void OptimizeCommandList(ICommandListOptimizer& optimizer) override;

    /// Leaves superfluous commands out of `commands`, in place.
    void OptimizeCommandList(CommandList& commands) override;

    /// Called on a list of commands right before it is passed on. The base class optimises it.
    void PreWorkCommandList(CommandList& commands) override;

    /// Appends commands that bring a fresh value of the same type to the present state. `flags` is reserved and 0.
    void AddObjectStateStringForTransmission(std::string& out, unsigned int flags) override;

    /// The same commands in pieces, for a state too large to be built at once.
    virtual std::unique_ptr<IObjectStateCursor> OpenObjectState();

    /// The same for a recording.
    void AddObjectStateStringForRecording(std::string& out) override;

    /// Takes ownership of an executed command: records it and passes it on, as far as either is wanted.
    void AddCommand(Command* command) override;

    /// Takes ownership of an executed command and passes it on, at once or after the update time.
    void AddCommandForTransmission(Command* command) override;

    /// Reads the command `id`, of which the header is read already, from `*stream`, advances the pointer and gives the
    /// command to the caller. At most `available` bytes are read. Null when the id is unknown or the bytes do not fit.
    Command* CreateNextCommand(int id, const char** stream, IObserver* origin, int available) override;

    // Observable: notifications but those of the state are folded while a transaction is active

    void NotifyObservers(TChangeCode code, IObserver* origin) override;

    // ISupportTransaction

    void StartTransaction(IObserver* origin) override;
    void EndTransaction(TChangeCode code, IObserver* origin) override;
    bool IsTransactionActive() const override;

    // IDeleteSubject, Vorn::IHasTimerCallback, IOptimizeTrigger

    /// State Deleted, and StateChanged to all observers, also in the middle of a transaction. Unbinds the value.
    void AnnounceDeletion() override;
    void OnTimer() override;
    void TriggerOptimization() override;

    // Stream, recording and binding

    /// Reads one command with its header; null when it does not parse. The caller owns it.
    std::unique_ptr<Command> ReadCommand(CommandReader& reader, IObserver* origin);

    /// Binds the value to who carries its commands away; null unbinds it. Not owned. Commands that wait are dropped.
    void SetTransmitter(ICommandTransmitter* transmitter);
    ICommandTransmitter* GetTransmitter() const { return m_transmitter; }

    /// Switches the list for GetCommandStringForRecording on or off; switching empties it.
    void SetRecording(bool on);

    /// Told before the parts of an object state come, and how many there will be: a value may make room. It is a hint
    /// of a peer and nothing more: it changes nothing that can be read.
    virtual void ExpectSize(std::uint64_t parts);

    /// How many changes a notification may fold so that an observer can still read each of them; 0 when the value keeps
    /// no log of its changes and notifications about it are not to be folded from outside.
    virtual std::size_t ChangeLogCapacity() const;

protected:
    /// True if somebody wants the commands of this value: only then need one be made.
    bool Record() const { return m_transmitter || m_recording; }

    /// Takes ownership of an executed command. Called only when `Record()`.
    void RecordCommand(Command* command) { AddCommand(command); }

private:
    struct Waiting;

    Waiting& waiting();
    void transmit(const Command& command);
    void passOnWaiting();

    TValueState m_state;
    bool m_recording = false;
    bool m_deletionAnnounced = false;
    int m_transactionDepth = 0;
    ICommandTransmitter* m_transmitter = nullptr;
    CommandList m_recorded;
    std::unique_ptr<Waiting> m_waiting; // only for a value with an update time
};

/// A command on one value, made by `origin` (null: nobody in particular).
class VALUECORE_EXPORT ValueBase::CommandOnValue : public Command
{
public:
    CommandOnValue(int id, ValueBase* value, IObserver* origin);

    int GetCommandId() const override { return m_id; }

    /// Writes the header. A derived class calls it first and appends its parts, each closed by ";".
    void AddCommandString(std::string& out) const override;

    IObserver* GetOrigin() const { return m_origin; }

    /// True if `earlier`, a command on the same value, changes nothing that this one does not replace.
    virtual bool Supersedes(const CommandOnValue& earlier) const;

    /// True if this replaces whatever came before it in the value's content.
    virtual bool SupersedesContent() const;

    /// True if this is never left out in favour of a later command on the same target: an order given on purpose.
    virtual bool IsKept() const;

protected:
    /// Writes the header of a command with that id.
    static void appendHeader(std::string& out, int id);

    /// The value; commands live no longer than it.
    ValueBase* value() const { return m_value; }

private:
    int m_id;
    ValueBase* m_value;
    IObserver* m_origin;
};

/// Sets the state of a value.
class VALUECORE_EXPORT CommandState final : public ValueBase::CommandOnValue
{
public:
    CommandState(ValueBase* value, TValueState state, IObserver* origin);
    CommandState(ValueBase* value, CommandReader& reader, IObserver* origin);

    void Execute() override;
    void AddCommandString(std::string& out) const override;
    CommandState* Clone() const override;
    bool Supersedes(const CommandOnValue& earlier) const override;

private:
    TValueState m_state;
};

/// Repeats a notification without a change of content.
class VALUECORE_EXPORT CommandHasChanged final : public ValueBase::CommandOnValue
{
public:
    CommandHasChanged(ValueBase* value, TChangeCode code, IObserver* origin);
    CommandHasChanged(ValueBase* value, CommandReader& reader, IObserver* origin);

    void Execute() override;
    void AddCommandString(std::string& out) const override;
    CommandHasChanged* Clone() const override;
    bool IsKept() const override { return true; }

private:
    TChangeCode m_code;
};

/// Announces how many parts of a content follow.
class VALUECORE_EXPORT CommandExpectSize final : public ValueBase::CommandOnValue
{
public:
    CommandExpectSize(ValueBase* value, std::uint64_t parts);
    CommandExpectSize(ValueBase* value, CommandReader& reader, IObserver* origin);

    void Execute() override;
    void AddCommandString(std::string& out) const override;
    CommandExpectSize* Clone() const override;

private:
    std::uint64_t m_parts;
};
