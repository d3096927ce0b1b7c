#include <valuecore/valueselection.h>

#include <algorithm>

class ValueSelection::CommandKey final : public ValueBase::CommandOnValue
{
public:
    CommandKey(ValueSelection* value, int key, bool repeat, IObserver* origin)
        : CommandOnValue(CommandIdKey, value, origin)
        , m_key(key)
        , m_repeat(repeat)
    {}
    CommandKey(ValueSelection* value, CommandReader& reader, IObserver* origin)
        : CommandOnValue(CommandIdKey, value, origin)
        , m_key(reader.number<std::int32_t>())
        , m_repeat(reader.boolean())
    {
        reader.eatSemicolon();
    }

    void Execute() override
    {
        auto& selection = static_cast<ValueSelection&>(*value());
        const bool unknown = selection.indexOf(m_key) < 0; // the sender's choices changed under its key
        if (m_repeat || (unknown && m_key != selection.m_key)) {
            selection.apply(m_key, m_repeat, GetOrigin());
        } else if (!unknown) {
            selection.SetCurrentKey(m_key, GetOrigin());
        }
    }
    void AddCommandString(std::string& out) const override
    {
        CommandOnValue::AddCommandString(out);
        commandwriter::number(out, std::int32_t{m_key});
        commandwriter::number(out, static_cast<std::uint8_t>(m_repeat));
        out.push_back(';');
    }
    CommandKey* Clone() const override { return new CommandKey(*this); }
    bool IsKept() const override { return m_repeat; }
    bool Supersedes(const CommandOnValue& earlier) const override
    {
        return earlier.GetCommandId() == CommandIdKey && !earlier.IsKept();
    }

private:
    int m_key;
    bool m_repeat;
};

class ValueSelection::CommandChoices final : public ValueBase::CommandOnValue
{
public:
    CommandChoices(ValueSelection* value, const std::vector<Choice>& choices, IObserver* origin)
        : CommandOnValue(CommandIdChoices, value, origin)
        , m_choices(choices)
    {}
    CommandChoices(ValueSelection* value, CommandReader& reader, IObserver* origin)
        : CommandOnValue(CommandIdChoices, value, origin)
    {
        const auto count = reader.number<std::uint32_t>();
        for (std::uint32_t i = 0; i < count && reader.ok(); ++i) { // ends with the bytes, whatever the count says
            const auto key = reader.number<std::int32_t>();
            m_choices.push_back({key, reader.string()});
        }
        reader.eatSemicolon();
    }

    void Execute() override { static_cast<ValueSelection&>(*value()).SetChoices(m_choices, GetOrigin()); }
    void AddCommandString(std::string& out) const override
    {
        CommandOnValue::AddCommandString(out);
        commandwriter::number(out, static_cast<std::uint32_t>(m_choices.size()));
        for (const Choice& choice : m_choices) {
            commandwriter::number(out, std::int32_t{choice.key});
            commandwriter::string(out, choice.name);
        }
        out.push_back(';');
    }
    CommandChoices* Clone() const override { return new CommandChoices(*this); }
    bool Supersedes(const CommandOnValue& earlier) const override { return earlier.GetCommandId() == CommandIdChoices; }

private:
    std::vector<Choice> m_choices;
};

ValueSelection::ValueSelection(const QString& name, TValueState state)
    : ValueBase(name, state)
{}

ValueSelection::ValueSelection(const ValueDescriptor& descriptor, TValueState state)
    : ValueBase(QString::fromLatin1(descriptor.name), state)
{
    for (std::size_t i = 0; i < descriptor.choiceCount; ++i) {
        m_choices.push_back({descriptor.choices[i].key, QString::fromUtf8(descriptor.choices[i].name)});
    }
    if (!m_choices.empty()) {
        m_key = m_choices.front().key;
    }
}

ValueSelection::ValueSelection(const ValueSelection&) = default;

ValueSelection::~ValueSelection() = default;

ValueSelection& ValueSelection::operator=(const ValueSelection&) = default;

int ValueSelection::indexOf(int key) const
{
    const auto found =
        std::find_if(m_choices.begin(), m_choices.end(), [key](const Choice& c) { return c.key == key; });
    return found == m_choices.end() ? -1 : static_cast<int>(found - m_choices.begin());
}

int ValueSelection::GetCurrentIndex() const
{
    return indexOf(m_key);
}

QString ValueSelection::GetCurrentName() const
{
    const int index = GetCurrentIndex();
    return index < 0 ? QString() : m_choices[static_cast<std::size_t>(index)].name;
}

bool ValueSelection::SetCurrentKey(int key, IObserver* origin)
{
    if (indexOf(key) < 0) {
        return false;
    }
    if (key != m_key) {
        apply(key, false, origin);
    }
    return true;
}

void ValueSelection::SetChoices(const std::vector<Choice>& choices, IObserver* origin)
{
    if (choices == m_choices) {
        return;
    }
    m_choices = choices;
    if (Record()) {
        RecordCommand(new CommandChoices(this, choices, origin));
    }
    NotifyObservers(TChangeCode::ValueChanged, origin);
}

bool ValueSelection::operator==(const ValueSelection& other) const
{
    return m_key == other.m_key && m_choices == other.m_choices && ValueBase::operator==(other);
}

void ValueSelection::HasChanged(TChangeCode code, IObserver* origin)
{
    if (code == TChangeCode::ValueChanged) {
        apply(m_key, true, origin);
    } else {
        ValueBase::HasChanged(code, origin);
    }
}

bool ValueSelection::SetStringValue(const QString& text, IObserver* origin)
{
    const auto found =
        std::find_if(m_choices.begin(), m_choices.end(), [&](const Choice& c) { return c.name == text; });
    return found != m_choices.end() && SetCurrentKey(found->key, origin);
}

int ValueSelection::GetType() const
{
    return 8;
}

const char* ValueSelection::GetTypeName() const
{
    return "Selection";
}

void ValueSelection::Assign(const ValueBase& other)
{
    *this = dynamic_cast<const ValueSelection&>(other);
}

bool ValueSelection::Compare(const ValueBase* other) const
{
    const auto* const same = dynamic_cast<const ValueSelection*>(other);
    return same && *this == *same;
}

void ValueSelection::AddObjectStateStringForTransmission(std::string& out, unsigned int flags)
{
    ValueBase::AddObjectStateStringForTransmission(out, flags);
    CommandChoices(this, m_choices, nullptr).AddCommandString(out);
    CommandKey(this, m_key, false, nullptr).AddCommandString(out);
}

Command* ValueSelection::CreateNextCommand(int id, const char** stream, IObserver* origin, int available)
{
    CommandReader reader(stream, available);
    std::unique_ptr<Command> command;
    if (id == CommandIdKey) {
        command = std::make_unique<CommandKey>(this, reader, origin);
    } else if (id == CommandIdChoices) {
        command = std::make_unique<CommandChoices>(this, reader, origin);
    } else {
        return ValueBase::CreateNextCommand(id, stream, origin, available);
    }
    return reader.ok() ? command.release() : nullptr;
}

void ValueSelection::apply(int key, bool repeat, IObserver* origin)
{
    m_key = key;
    if (Record()) {
        RecordCommand(new CommandKey(this, key, repeat, origin));
    }
    NotifyObservers(TChangeCode::ValueChanged, origin);
}
