// A session manager for tests. Prints the address it listens at, obeys the commands "save",
// "shutdown" and "die" on standard input, and prints what its one client does. The client is told
// to die when it has saved for a shutdown.
#include <X11/ICE/ICElib.h>
#include <X11/ICE/ICEutil.h>
#include <X11/SM/SMlib.h>
#include <array>
#include <cstdio>
#include <cstdlib>
#include <poll.h>
#include <string>
#include <string_view>
#include <unistd.h>
#include <vector>

namespace {

IceConn connection = nullptr;
SmsConn client = nullptr;
bool shuttingDown = false;

Status onRegister(SmsConn from, SmPointer /*data*/, char* previousId)
{
    client = from;
    char* id = SmsGenerateClientID(from);
    SmsRegisterClientReply(from, id);
    std::free(id);
    std::free(previousId);
    SmsSaveYourself(from, SmSaveLocal, False, SmInteractStyleNone, False);
    std::puts("registered");
    return 1;
}

void onSaved(SmsConn from, SmPointer /*data*/, Bool /*success*/)
{
    std::puts("saved");
    if (shuttingDown)
        SmsDie(from);
    else
        SmsSaveComplete(from);
}

void onClose(SmsConn from, SmPointer /*data*/, int count, char** reasons)
{
    SmFreeReasons(count, reasons);
    SmsCleanUp(from);
    IceSetShutdownNegotiation(connection, False);
    IceCloseConnection(connection);
    connection = nullptr;
    client = nullptr;
    std::puts("closed");
}

void onProperties(SmsConn /*from*/, SmPointer /*data*/, int count, SmProp** properties)
{
    for (int i = 0; i < count; ++i)
        SmFreeProperty(properties[i]);
    std::free(properties);
}

Status onNewClient(SmsConn /*from*/, SmPointer /*data*/, unsigned long* mask,
                   SmsCallbacks* callbacks, char** /*reason*/)
{
    *mask = SmsRegisterClientProcMask | SmsInteractRequestProcMask | SmsInteractDoneProcMask |
            SmsSaveYourselfRequestProcMask | SmsSaveYourselfP2RequestProcMask |
            SmsSaveYourselfDoneProcMask | SmsCloseConnectionProcMask | SmsSetPropertiesProcMask |
            SmsDeletePropertiesProcMask | SmsGetPropertiesProcMask;
    callbacks->register_client.callback = onRegister;
    callbacks->save_yourself_done.callback = onSaved;
    callbacks->close_connection.callback = onClose;
    callbacks->set_properties.callback = onProperties;
    callbacks->interact_request.callback = [](SmsConn from, SmPointer, int) { SmsInteract(from); };
    callbacks->interact_done.callback = [](SmsConn, SmPointer, Bool) {};
    callbacks->save_yourself_request.callback = [](SmsConn, SmPointer, int, Bool, int, Bool, Bool) {
    };
    callbacks->save_yourself_phase2_request.callback = [](SmsConn from, SmPointer) {
        SmsSaveYourselfPhase2(from);
    };
    callbacks->delete_properties.callback = [](SmsConn, SmPointer, int, char**) {};
    callbacks->get_properties.callback = [](SmsConn from, SmPointer) {
        SmsReturnProperties(from, 0, nullptr);
    };
    return 1;
}

Bool letIn(char* /*host*/)
{
    return True;
}

void accept(IceListenObj listener)
{
    IceAcceptStatus status = IceAcceptSuccess;
    connection = IceAcceptConnection(listener, &status);
    while (connection && IceConnectionStatus(connection) == IceConnectPending)
        IceProcessMessages(connection, nullptr, nullptr);
}

/// Returns whether to go on.
bool obey(std::string_view command)
{
    if (command == "die" && client)
        SmsDie(client);
    else if ((command == "save" || command == "shutdown") && client) {
        shuttingDown = command == "shutdown";
        SmsSaveYourself(client, SmSaveBoth, shuttingDown, SmInteractStyleAny, False);
    }
    return !command.empty();
}

std::string readLine()
{
    std::string line;
    for (char c = 0; read(STDIN_FILENO, &c, 1) == 1 && c != '\n';)
        line += c;
    return line;
}

void run(const std::vector<IceListenObj>& listeners)
{
    for (;;) {
        std::vector<pollfd> waiting{{STDIN_FILENO, POLLIN, 0}};
        for (IceListenObj listener : listeners)
            waiting.push_back({IceGetListenConnectionNumber(listener), POLLIN, 0});
        if (connection)
            waiting.push_back({IceConnectionNumber(connection), POLLIN, 0});
        poll(waiting.data(), waiting.size(), -1);

        if (waiting.front().revents && !obey(readLine()))
            return;
        if (connection && waiting.size() > listeners.size() + 1 && waiting.back().revents &&
            IceProcessMessages(connection, nullptr, nullptr) == IceProcessMessagesIOError) {
            std::puts("lost");
            return;
        }
        for (size_t i = 0; i < listeners.size(); ++i) {
            if (waiting[i + 1].revents)
                accept(listeners[i]);
        }
    }
}

} // namespace

int main()
{
    std::setvbuf(stdout, nullptr, _IOLBF, 0);
    IceSetIOErrorHandler([](IceConn) {});
    std::array<char, 256> error{};
    int count = 0;
    IceListenObj* listeners = nullptr;
    if (!SmsInitialize("testmanager", "1", onNewClient, nullptr, letIn, error.size(),
                       error.data()) ||
        !IceListenForConnections(&count, &listeners, error.size(), error.data())) {
        std::puts(error.data());
        return 1;
    }
    for (int i = 0; i < count; ++i)
        IceSetHostBasedAuthProc(listeners[i], letIn);
    char* address = IceComposeNetworkIdList(count, listeners);
    std::puts(address);
    std::free(address);
    run({listeners, listeners + count});
    IceFreeListenObjs(count, listeners);
}
