// Calls of the recorder's service with any arguments, as they come from the network: each ends with an answer or the
// end of its connection, and the recorder goes on. The first byte says which operation is called, the others are its
// arguments in CDR. Operations that hand over a reference are not called: the recorder would call whatever it names.
#include "require.h"
#include "servicerecorder.h"

#include <omniORB4/omniORB.h>

#include <arpa/inet.h>
#include <sys/socket.h>
#include <unistd.h>

#include <cstdint>
#include <cstring>
#include <string>

using namespace ZelkoRecorder;

namespace {

struct Operation
{
    const char* key;
    const char* name;
};

constexpr Operation operations[] = {
    {adminKey, "removeHistoryEntry"},
    {adminKey, "addHistory"},
    {adminKey, "copyRecord"},
    {adminKey, "setRecordComment"},
    {adminKey, "setRecordDeletableFlag"},
    {adminKey, "addBookmarks"},
    {adminKey, "deleteBookmarks"},
    {adminKey, "getDeviceTime"},
    {adminKey, "setDeviceTime"},
    {adminKey, "getOverviewSpectrumStreamed"},
    {adminKey, "getRecord"},
    {adminKey, "requestRecordDataDetail"},
    {replayKey, "StartReplay"},
    {replayKey, "StartReplayReceivers"},
    {replayKey, "PauseReplay"},
    {replayKey, "ContinueReplay"},
    {replayKey, "StopReplay"},
    {entryKey, "getZelkoReplayInterface"},
    {entryKey, "getZelkoChannelInterface"},
    {entryKey, "getAllDevices"},
    {entryKey, "mapDeviceIdToAddress"},
    {entryKey, "mapAddressToDeviceId"},
    {entryKey, "getDeviceInformation"},
    {entryKey, "getMetaDataForRecord"},
    {entryKey, "getAllRecords"},
    {entryKey, "exportRecording"},
    {entryKey, "cancelExport"},
};

// Numbers as they stand in a message, which is aligned from its first byte on.
class Message
{
public:
    void align(std::size_t to) { m_bytes.resize((m_bytes.size() + to - 1) / to * to); }
    void raw(std::string_view bytes) { m_bytes += bytes; }
    void number(std::uint32_t value)
    {
        align(4);
        m_bytes.append(reinterpret_cast<const char*>(&value), sizeof value);
    }
    void text(std::string_view text, bool isString)
    {
        number(static_cast<std::uint32_t>(text.size() + (isString ? 1 : 0)));
        m_bytes += text;
        m_bytes.append(isString ? 1 : 0, '\0');
    }
    const std::string& finished()
    {
        const auto size = static_cast<std::uint32_t>(m_bytes.size() - 12);
        std::memcpy(m_bytes.data() + 8, &size, sizeof size);
        return m_bytes;
    }

private:
    std::string m_bytes;
};

std::string request(const Operation& operation, std::string_view arguments)
{
    Message message;
    message.raw(std::string_view("GIOP\1\2\1\0\0\0\0\0", 12));
    message.number(1);
    message.raw(std::string_view("\3\0\0\0\0\0", 6)); // an answer is wanted; the object is named by its key
    message.text(operation.key, false);
    message.text(operation.name, true);
    message.number(0);
    if (!arguments.empty()) {
        message.align(8);
        message.raw(arguments);
    }
    return message.finished();
}

class Caller
{
public:
    explicit Caller(quint16 port)
        : m_port(port)
    {}

    // Sends a message and waits until something comes back, or the connection ends.
    void call(const std::string& message)
    {
        if (m_socket < 0) {
            m_socket = ::socket(AF_INET, SOCK_STREAM, 0);
            sockaddr_in where{};
            where.sin_family = AF_INET;
            where.sin_port = htons(m_port);
            where.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
            require(::connect(m_socket, reinterpret_cast<const sockaddr*>(&where), sizeof where) == 0);
        }
        ::send(m_socket, message.data(), message.size(), MSG_NOSIGNAL);
        char answer[65536];
        ssize_t got = -1;
        while ((got = ::recv(m_socket, answer, sizeof answer, MSG_DONTWAIT)) < 0 && errno == EAGAIN) {
            QCoreApplication::processEvents(QEventLoop::AllEvents, 1);
        }
        while (got == sizeof answer) {
            got = ::recv(m_socket, answer, sizeof answer, MSG_DONTWAIT);
        }
        // An answer that is not the last of its connection says so by its type: 1.
        if (got < 12 || answer[7] != 1) {
            ::close(m_socket);
            m_socket = -1;
        }
    }

private:
    const quint16 m_port;
    int m_socket = -1;
};

struct Surroundings
{
    Surroundings()
    {
        omniORB::traceLevel = 0;
        qInstallMessageHandler([](QtMsgType, const QMessageLogContext&, const QString&) {});
        while (!recorder.isLoaded()) {
            QCoreApplication::processEvents();
        }
    }

    int argc = 0;
    QCoreApplication application{argc, nullptr};
    ZelkoTest::ServiceRecorder recorder{[](const QString& folder) {
        ZelkoTest::storeRecord(folder, ZelkoTest::finishedRecord(QStringLiteral("r1")), 4000);
    }};
    Caller caller{recorder.orb.port()};
};

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    static Surroundings* const surroundings = new Surroundings; // ends with the process
    if (size == 0) {
        return 0;
    }
    const std::string_view arguments(reinterpret_cast<const char*>(data) + 1, size - 1);
    surroundings->caller.call(request(operations[data[0] % std::size(operations)], arguments));
    return 0;
}
