#include <recorder/source/signalsource.h>

#include <utility>

namespace ZelkoRecorder {

SignalSource::SignalSource(SourceDescription description)
    : m_description(std::move(description))
{}

SignalSource::~SignalSource() = default;

void SignalSource::fail(const QString& text)
{
    m_errorText = text;
}

} // namespace ZelkoRecorder
