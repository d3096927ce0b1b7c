#include <recorder/service/channelmachine.h>

namespace ZelkoRecorder {

ChannelMachine::ChannelMachine(Work& work)
    : m_work(work)
{}

bool ChannelMachine::start()
{
    if (!isIdle()) {
        return false;
    }
    m_stopWanted = false;
    m_dataCame = false;
    m_connected = false;
    enter(State::Asking);
    m_work.ask();
    return true;
}

// While the manager is still being asked for something the wish waits for its answer.
bool ChannelMachine::stop()
{
    switch (m_state) {
    case State::Asking:
    case State::Connecting:
    case State::Starting:
        m_stopWanted = true;
        m_work.stateChanged();
        return true;
    case State::Recording:
        stopFlow();
        return true;
    case State::Stopping:
    case State::Closing:
        return true;
    case State::Idle:
    case State::Removed:
        break;
    }
    return false;
}

bool ChannelMachine::remove()
{
    if (!isIdle()) {
        return false;
    }
    removeForced();
    return true;
}

void ChannelMachine::removeForced()
{
    m_removeWanted = true;
    if (isIdle()) {
        rest();
    } else {
        stop();
    }
}

void ChannelMachine::asked(bool available, const QString& why)
{
    if (m_state != State::Asking) {
        return;
    }
    if (!available) {
        fail(Fault::NotAvailable, why);
    } else if (m_stopWanted) {
        rest();
    } else {
        enter(State::Connecting);
        m_work.connectSource();
    }
}

void ChannelMachine::connected(bool done, const QString& why)
{
    if (m_state != State::Connecting) {
        return;
    }
    m_connected = done;
    if (!done) {
        fail(Fault::NotConnected, why);
    } else if (m_stopWanted) {
        closeRecord();
    } else {
        enter(State::Starting);
        m_work.startFlow();
    }
}

void ChannelMachine::flowStarted(bool done, const QString& why)
{
    if (m_state != State::Starting) {
        return;
    }
    enter(State::Recording);
    if (!done) {
        m_work.tellFault(Fault::NoFlow, why);
        closeRecord();
    } else if (m_stopWanted) {
        stopFlow();
    }
}

bool ChannelMachine::dataCame()
{
    const bool isFirst = (m_state == State::Starting || m_state == State::Recording) && !m_dataCame;
    if (isFirst) {
        m_dataCame = true;
        m_work.stateChanged();
        m_work.tellStarted();
    }
    return isFirst;
}

void ChannelMachine::dataEnded()
{
    stopOnOwnAccord();
}

void ChannelMachine::dataMissing(const QString& why)
{
    if (m_state == State::Recording && !m_dataCame) {
        m_work.tellFault(Fault::NoFlow, why);
        stopOnOwnAccord();
    }
}

void ChannelMachine::diskRefused(const QString& why)
{
    if (m_state == State::Starting || m_state == State::Recording) {
        m_work.tellFault(Fault::Disk, why);
        stopOnOwnAccord();
    }
}

void ChannelMachine::timeIsOver()
{
    stopOnOwnAccord();
}

void ChannelMachine::stopOnOwnAccord()
{
    if (m_state == State::Recording) {
        m_work.tellStopping();
    }
    stop();
}

void ChannelMachine::stopFlow()
{
    enter(State::Stopping);
    m_work.stopFlow();
}

void ChannelMachine::flowStopped()
{
    if (m_state == State::Stopping) {
        closeRecord();
    }
}

void ChannelMachine::closeRecord()
{
    enter(State::Closing);
    m_work.closeRecord();
}

void ChannelMachine::recordClosed()
{
    if (m_state != State::Closing) {
        return;
    }
    if (m_connected && !m_managerLost) {
        m_work.disconnectSource();
        m_work.tellFinished();
    }
    rest();
}

// What was recorded so far is kept.
void ChannelMachine::managerLost()
{
    if (isRemoved()) {
        return;
    }
    m_managerLost = true;
    m_removeWanted = true;
    switch (m_state) {
    case State::Starting:
    case State::Recording:
    case State::Stopping:
        closeRecord();
        break;
    case State::Closing:
        break;
    default:
        rest();
    }
}

void ChannelMachine::fail(Fault fault, const QString& why)
{
    m_work.tellFault(fault, why);
    rest();
}

void ChannelMachine::rest()
{
    m_stopWanted = false;
    m_dataCame = false;
    enter(State::Idle);
    if (m_removeWanted) {
        endRemoved();
    }
}

void ChannelMachine::enter(State state)
{
    m_state = state;
    m_work.stateChanged();
}

void ChannelMachine::endRemoved()
{
    enter(State::Removed);
    if (!m_managerLost) {
        m_work.tellRemoved();
    }
    m_work.ended();
}

} // namespace ZelkoRecorder
