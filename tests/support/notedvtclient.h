#pragma once

#include <valuecore/icommandtransmitter.h>
#include <valuecore/valuebase.h>
#include <zelkobase/connection/ivtclient.h>

#include <QStringList>

#include <utility>

/// The writing end of a link that writes down what it was given, "added Synchronize 0", and what was written to that,
/// "DeleteRecordingList=A@B".
class NotedVtClient final : public IVtClient, public ICommandTransmitter
{
public:
    ~NotedVtClient() override = default;

    void AddValue(ValueBase* value, int flags) override
    {
        m_texts.append(QStringLiteral("added %1 %2").arg(value->GetName()).arg(flags));
        value->SetTransmitter(this);
    }
    void RemoveValue(ValueBase* value) override { value->SetTransmitter(nullptr); }
    void Transmit(ValueBase& value, const Command&, IObserver*) override
    {
        m_texts.append(value.GetName() + QLatin1Char('=') + value.GetStringValue());
    }

    QStringList take() { return std::exchange(m_texts, {}); }

private:
    QStringList m_texts;
};
