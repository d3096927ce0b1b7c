#pragma once

#include <valuecore/valuebase.h>
#include <valuecore/valuecore_export.h>
#include <valuecore/valuedescriptor.h>

#include <QString>

#include <vector>

/// A value that is one of several named choices, each with a key.
class VALUECORE_EXPORT ValueSelection : public ValueBase
{
public:
    struct Choice
    {
        int key;
        QString name;
        bool operator==(const Choice&) const = default;
    };
    enum CommandId : int { CommandIdKey = 10, CommandIdChoices = 11 };

    explicit ValueSelection(const QString& name = QString(), TValueState state = TValueState::Open);
    /// Takes name and choices from a static description and selects the first choice.
    explicit ValueSelection(const ValueDescriptor& descriptor, TValueState state = TValueState::Open);
    ValueSelection(const ValueSelection&);
    ~ValueSelection() override;
    ValueSelection& operator=(const ValueSelection&);

    /// The key that is selected; 0 at first, whether it is among the choices or not.
    int GetCurrentKey() const { return m_key; }

    /// Position of the selected choice; -1 when the key is not among the choices.
    int GetCurrentIndex() const;

    /// Name of the selected choice; empty when the key is not among the choices.
    QString GetCurrentName() const;

    const std::vector<Choice>& GetChoices() const { return m_choices; }

    /// Selects by key. False, and no change, when there is no such choice; true also when nothing changed. A command
    /// from a peer may carry a key without a choice, since the peer's choices may have been replaced under its key.
    virtual bool SetCurrentKey(int key, IObserver* origin);

    /// Replaces the choices; the key stays. Observers hear ValueChanged if they differ.
    void SetChoices(const std::vector<Choice>& choices, IObserver* origin);

    bool operator==(const ValueSelection& other) const;

    void HasChanged(TChangeCode code, IObserver* origin) override;
    /// Selects by name.
    bool SetStringValue(const QString& text, IObserver* origin) override;
    QString GetStringValue() const override { return GetCurrentName(); }
    int GetType() const override;
    const char* GetTypeName() const override;
    void Assign(const ValueBase& other) override;
    bool Compare(const ValueBase* other) const override;
    void AddObjectStateStringForTransmission(std::string& out, unsigned int flags) override;
    Command* CreateNextCommand(int id, const char** stream, IObserver* origin, int available) override;

private:
    class CommandKey;
    class CommandChoices;

    int indexOf(int key) const;
    void apply(int key, bool repeat, IObserver* origin);

    std::vector<Choice> m_choices;
    int m_key = 0;
};
