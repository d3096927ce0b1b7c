#include <valuecore/valuebase.h>

#include <valuecore/commandoptimizer.h>
#include <valuecore/icommandtransmitter.h>
#include <valuecore/iobjectstatecursor.h>

#include <QTimer>

#include <string_view>
#include <typeinfo>
#include <utility>

namespace {

// A state that is small enough to be given in one piece.
class WholeStateCursor final : public IObjectStateCursor
{
public:
    explicit WholeStateCursor(ValueBase& value)
        : m_value(value)
    {}

    bool AppendNext(std::string& out, std::size_t) override
    {
        m_value.AddObjectStateStringForTransmission(out, 0);
        return false;
    }

private:
    ValueBase& m_value;
};

} // namespace

// What a value with an update time needs besides.
struct ValueBase::Waiting
{
    CommandList commands;
    QTimer timer;
    int milliseconds = 0;
    bool overridden = false;
};

ValueBase::ValueBase(const QString& name, TValueState state)
    : TreeItem(name)
    , m_state(state)
{}

// A copy has observers of its own.
// NOLINTNEXTLINE(bugprone-copy-constructor-init)
ValueBase::ValueBase(const ValueBase& other)
    : Observable() // NOLINT(readability-redundant-member-init)
    , ISupportTransaction()
    , TreeItem(other)
    , IValue()
    , IDeleteSubject()
    , IHasTimerCallback()
    , IOptimizeTrigger()
    , m_state(other.m_state)
{}

ValueBase::~ValueBase() = default;

// NOLINTNEXTLINE(bugprone-unhandled-self-assignment)
ValueBase& ValueBase::operator=(const ValueBase& other)
{
    m_state = other.m_state;
    return *this;
}

bool ValueBase::operator==(const ValueBase& other) const
{
    return m_state == other.m_state;
}

bool ValueBase::SetStringValue(const QString&, IObserver*)
{
    return false;
}

void ValueBase::SetState(TValueState state, IObserver* origin)
{
    if (state == m_state) {
        return;
    }
    m_state = state;
    if (Record() && state != TValueState::Deleted) {
        RecordCommand(new CommandState(this, state, origin));
    }
    NotifyObservers(TChangeCode::StateChanged, origin);
}

void ValueBase::HasChanged(TChangeCode code, IObserver* origin)
{
    if (Record()) {
        RecordCommand(new CommandHasChanged(this, code, origin));
    }
    NotifyObservers(code, origin);
}

std::string ValueBase::GetCommandStringForTransmission()
{
    std::string stream;
    if (m_waiting) {
        CommandList commands = std::exchange(m_waiting->commands, {});
        PreWorkCommandList(commands);
        for (const auto& command : commands) {
            command->AddCommandString(stream);
        }
    }
    return stream;
}

void ValueBase::SetCommandString(const CommandList& commands)
{
    const auto alive = lifeline();
    for (const auto& command : commands) {
        if (alive.expired()) {
            return;
        }
        command->Execute();
    }
}

bool ValueBase::SetCommandString(std::string_view stream, IObserver* origin)
{
    const char* position = stream.data();
    CommandReader reader(&position, static_cast<std::ptrdiff_t>(stream.size()));
    CommandList commands;
    while (reader.remaining() > 0) {
        auto command = ReadCommand(reader, origin);
        if (!command) {
            return false;
        }
        commands.push_back(std::move(command));
    }
    SetCommandString(commands);
    return true;
}

void ValueBase::Assign(const ValueBase& other)
{
    if (typeid(*this) != typeid(other)) {
        throw std::bad_cast();
    }
    *this = other;
}

bool ValueBase::Compare(const ValueBase* other) const
{
    return other && typeid(*this) == typeid(*other) && *this == *other;
}

std::string ValueBase::GetCommandStringForRecording()
{
    std::string stream;
    for (const auto& command : std::exchange(m_recorded, {})) {
        command->AddCommandString(stream);
    }
    return stream;
}

ValueBase::Waiting& ValueBase::waiting()
{
    if (!m_waiting) {
        m_waiting = std::make_unique<Waiting>();
        m_waiting->timer.setSingleShot(true);
        QObject::connect(&m_waiting->timer, &QTimer::timeout, &m_waiting->timer, [this] { OnTimer(); });
    }
    return *m_waiting;
}

void ValueBase::SetUpdateTimerTime(int milliseconds)
{
    waiting().milliseconds = milliseconds;
    if (milliseconds <= 0) {
        passOnWaiting();
    }
}

void ValueBase::OverrideTimer()
{
    waiting().overridden = true;
    passOnWaiting();
}

void ValueBase::KillOverrideTimer()
{
    if (m_waiting) {
        m_waiting->overridden = false;
    }
}

std::unique_ptr<ICommandListOptimizer> ValueBase::CreateCommandListOptimizer() const
{
    return std::make_unique<CommandListOptimizer>();
}

void ValueBase::OptimizeCommandList(ICommandListOptimizer& optimizer)
{
    if (m_waiting) {
        for (auto& command : std::exchange(m_waiting->commands, {})) {
            optimizer.Add(std::move(command));
        }
        m_waiting->commands = optimizer.Take();
    }
}

void ValueBase::OptimizeCommandList(CommandList& commands)
{
    const auto optimizer = CreateCommandListOptimizer();
    for (auto& command : std::exchange(commands, {})) {
        optimizer->Add(std::move(command));
    }
    commands = optimizer->Take();
}

void ValueBase::PreWorkCommandList(CommandList& commands)
{
    OptimizeCommandList(commands);
}

void ValueBase::AddObjectStateStringForTransmission(std::string& out, unsigned int)
{
    if (m_state != TValueState::Deleted) {
        CommandState(this, m_state, nullptr).AddCommandString(out);
    }
}

std::unique_ptr<IObjectStateCursor> ValueBase::OpenObjectState()
{
    return std::make_unique<WholeStateCursor>(*this);
}

void ValueBase::AddObjectStateStringForRecording(std::string& out)
{
    AddObjectStateStringForTransmission(out, 0);
}

void ValueBase::AddCommand(Command* command)
{
    if (m_recording) {
        m_recorded.emplace_back(m_transmitter ? command->Clone() : std::exchange(command, nullptr));
    }
    if (command) {
        AddCommandForTransmission(command);
    }
}

void ValueBase::AddCommandForTransmission(Command* command)
{
    std::unique_ptr<Command> owned(command);
    if (!m_transmitter) {
        return;
    }
    if (!m_waiting || m_waiting->milliseconds <= 0 || m_waiting->overridden) {
        transmit(*owned);
        return;
    }
    m_waiting->commands.push_back(std::move(owned));
    if (!m_waiting->timer.isActive()) {
        m_waiting->timer.start(m_waiting->milliseconds);
    }
}

Command* ValueBase::CreateNextCommand(int id, const char** stream, IObserver* origin, int available)
{
    CommandReader reader(stream, available);
    std::unique_ptr<Command> command;
    if (id == CommandIdState) {
        command = std::make_unique<CommandState>(this, reader, origin);
    } else if (id == CommandIdHasChanged) {
        command = std::make_unique<CommandHasChanged>(this, reader, origin);
    } else if (id == CommandIdExpectSize) {
        command = std::make_unique<CommandExpectSize>(this, reader, origin);
    }
    return reader.ok() ? command.release() : nullptr;
}

void ValueBase::NotifyObservers(TChangeCode code, IObserver* origin)
{
    // The end of a value cannot wait for the end of a transaction: handles would be left pointing to nothing.
    if (m_transactionDepth == 0 || code == TChangeCode::StateChanged) {
        Observable::NotifyObservers(code, origin);
    }
}

void ValueBase::StartTransaction(IObserver*)
{
    ++m_transactionDepth;
}

void ValueBase::EndTransaction(TChangeCode code, IObserver* origin)
{
    if (m_transactionDepth > 0 && --m_transactionDepth == 0) {
        NotifyObservers(code, origin);
    }
}

bool ValueBase::IsTransactionActive() const
{
    return m_transactionDepth > 0;
}

void ValueBase::AnnounceDeletion()
{
    if (std::exchange(m_deletionAnnounced, true)) {
        return;
    }
    SetTransmitter(nullptr); // whoever copies the tree learns of the removal from the tree
    m_state = TValueState::Deleted;
    NotifyObservers(TChangeCode::StateChanged, nullptr);
}

void ValueBase::OnTimer()
{
    passOnWaiting();
}

void ValueBase::TriggerOptimization()
{
    passOnWaiting();
}

std::unique_ptr<Command> ValueBase::ReadCommand(CommandReader& reader, IObserver* origin)
{
    const int id = reader.commandId();
    if (!reader.ok()) {
        return nullptr;
    }
    return std::unique_ptr<Command>(CreateNextCommand(id, reader.stream(), origin, reader.remainingAsInt()));
}

void ValueBase::SetTransmitter(ICommandTransmitter* transmitter)
{
    if (transmitter == m_transmitter) {
        return;
    }
    m_transmitter = transmitter;
    if (m_waiting) {
        m_waiting->timer.stop();
        m_waiting->commands.clear();
    }
}

void ValueBase::SetRecording(bool on)
{
    m_recording = on;
    m_recorded.clear();
}

void ValueBase::ExpectSize(std::uint64_t) {}

std::size_t ValueBase::ChangeLogCapacity() const
{
    return 0;
}

void ValueBase::transmit(const Command& command)
{
    const auto* const onValue = dynamic_cast<const CommandOnValue*>(&command);
    m_transmitter->Transmit(*this, command, onValue ? onValue->GetOrigin() : nullptr);
}

void ValueBase::passOnWaiting()
{
    if (!m_waiting) {
        return;
    }
    m_waiting->timer.stop();
    CommandList commands = std::exchange(m_waiting->commands, {});
    PreWorkCommandList(commands);
    for (const auto& command : commands) {
        if (m_transmitter) {
            transmit(*command);
        }
    }
}

ValueBase::CommandOnValue::CommandOnValue(int id, ValueBase* value, IObserver* origin)
    : m_id(id)
    , m_value(value)
    , m_origin(origin)
{}

void ValueBase::CommandOnValue::AddCommandString(std::string& out) const
{
    appendHeader(out, m_id);
}

void ValueBase::CommandOnValue::appendHeader(std::string& out, int id)
{
    commandwriter::commandId(out, id);
}

bool ValueBase::CommandOnValue::Supersedes(const CommandOnValue&) const
{
    return false;
}

bool ValueBase::CommandOnValue::SupersedesContent() const
{
    return false;
}

bool ValueBase::CommandOnValue::IsKept() const
{
    return false;
}

CommandState::CommandState(ValueBase* value, TValueState state, IObserver* origin)
    : CommandOnValue(ValueBase::CommandIdState, value, origin)
    , m_state(state)
{}

// A peer may lock and open a value. That a value is gone is for its tree to say.
CommandState::CommandState(ValueBase* value, CommandReader& reader, IObserver* origin)
    : CommandOnValue(ValueBase::CommandIdState, value, origin)
    , m_state(static_cast<TValueState>(reader.number<std::uint8_t>()))
{
    reader.eatSemicolon();
    if (m_state != TValueState::Open && m_state != TValueState::Locked) {
        reader.fail();
    }
}

void CommandState::Execute()
{
    value()->SetState(m_state, GetOrigin());
}

void CommandState::AddCommandString(std::string& out) const
{
    CommandOnValue::AddCommandString(out);
    commandwriter::number(out, static_cast<std::uint8_t>(m_state));
    out.push_back(';');
}

CommandState* CommandState::Clone() const
{
    return new CommandState(*this);
}

bool CommandState::Supersedes(const CommandOnValue& earlier) const
{
    return earlier.GetCommandId() == GetCommandId();
}

CommandHasChanged::CommandHasChanged(ValueBase* value, TChangeCode code, IObserver* origin)
    : CommandOnValue(ValueBase::CommandIdHasChanged, value, origin)
    , m_code(code)
{}

CommandHasChanged::CommandHasChanged(ValueBase* value, CommandReader& reader, IObserver* origin)
    : CommandOnValue(ValueBase::CommandIdHasChanged, value, origin)
    , m_code(static_cast<TChangeCode>(reader.number<std::int32_t>()))
{
    reader.eatSemicolon();
}

void CommandHasChanged::Execute()
{
    value()->HasChanged(m_code, GetOrigin());
}

void CommandHasChanged::AddCommandString(std::string& out) const
{
    CommandOnValue::AddCommandString(out);
    commandwriter::number(out, static_cast<std::int32_t>(m_code));
    out.push_back(';');
}

CommandHasChanged* CommandHasChanged::Clone() const
{
    return new CommandHasChanged(*this);
}

CommandExpectSize::CommandExpectSize(ValueBase* value, std::uint64_t parts)
    : CommandOnValue(ValueBase::CommandIdExpectSize, value, nullptr)
    , m_parts(parts)
{}

CommandExpectSize::CommandExpectSize(ValueBase* value, CommandReader& reader, IObserver* origin)
    : CommandOnValue(ValueBase::CommandIdExpectSize, value, origin)
    , m_parts(reader.number<std::uint64_t>())
{
    reader.eatSemicolon();
}

void CommandExpectSize::Execute()
{
    value()->ExpectSize(m_parts);
}

void CommandExpectSize::AddCommandString(std::string& out) const
{
    CommandOnValue::AddCommandString(out);
    commandwriter::number(out, m_parts);
    out.push_back(';');
}

CommandExpectSize* CommandExpectSize::Clone() const
{
    return new CommandExpectSize(*this);
}
