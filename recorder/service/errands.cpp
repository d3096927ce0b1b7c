#include <recorder/service/errands.h>

#include <utility>

namespace ZelkoRecorder {

Errands::Errands(std::function<void()> wakeUp, std::chrono::milliseconds patience)
    : m_gate(std::move(wakeUp))
    , m_patience(patience)
{}

void Errands::run()
{
    m_gate.run();
}

void Errands::close()
{
    m_gate.close();
}

} // namespace ZelkoRecorder
