// A session manager for tests. Prints the address it listens at, obeys the commands "save" and
// "shutdown" on standard input, and prints what its one client does. The client is told to die
// when it has saved for a shutdown.
#include <X11/ICE/ICElib.h>
#include <X11/ICE/ICEutil.h>
#include <X11/SM/SMlib.h>
#include <array>
#include <cstdio>
#include <cstdlib>
#include <poll.h>
#include <string>
#include <unistd.h>

namespace {

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

void onClose(SmsConn /*from*/, SmPointer /*data*/, int count, char** reasons)
{
    SmFreeReasons(count, reasons);
    client = nullptr;
    std::puts("closed");
}

void onProperties(SmsConn /*from*/, SmPointer /*data*/, int count, SmProp** properties)
{
    for (int i = 0; i < count; ++i)
        SmFreeProperty(properties[i]);
    std::free(properties);
}

/// Answers what the toolkit sends; it asks for nothing else.
Status onNewClient(SmsConn /*from*/, SmPointer /*data*/, unsigned long* mask,
                   SmsCallbacks* callbacks, char** /*reason*/)
{
    *mask = SmsRegisterClientProcMask | SmsSaveYourselfDoneProcMask | SmsCloseConnectionProcMask |
            SmsSetPropertiesProcMask | SmsInteractRequestProcMask | SmsInteractDoneProcMask |
            SmsDeletePropertiesProcMask;
    callbacks->register_client.callback = onRegister;
    callbacks->save_yourself_done.callback = onSaved;
    callbacks->close_connection.callback = onClose;
    callbacks->set_properties.callback = onProperties;
    callbacks->interact_request.callback = [](SmsConn from, SmPointer, int) { SmsInteract(from); };
    callbacks->interact_done.callback = [](SmsConn, SmPointer, Bool) {};
    callbacks->delete_properties.callback = [](SmsConn, SmPointer, int, char**) {};
    return 1;
}

Bool letIn(char* /*host*/)
{
    return True;
}

void obey(const std::string& command)
{
    shuttingDown = command == "shutdown";
    if (client && (shuttingDown || command == "save"))
        SmsSaveYourself(client, SmSaveBoth, shuttingDown, SmInteractStyleAny, False);
}

std::string readLine()
{
    std::string line;
    for (char c = 0; read(STDIN_FILENO, &c, 1) == 1 && c != '\n';)
        line += c;
    return line;
}

/// Serves the client until it leaves, or standard input ends.
void serve(IceConn connection)
{
    std::array<pollfd, 2> waiting{
        {{STDIN_FILENO, POLLIN, 0}, {IceConnectionNumber(connection), POLLIN, 0}}};
    bool wantsMore = true;
    while (wantsMore && poll(waiting.data(), waiting.size(), -1) > 0) {
        if (waiting[1].revents)
            wantsMore =
                IceProcessMessages(connection, nullptr, nullptr) == IceProcessMessagesSuccess;
        else
            obey(readLine());
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
    // The last one is the local socket.
    IceListenObj listener = listeners[count - 1];
    IceSetHostBasedAuthProc(listener, letIn);
    char* address = IceGetListenConnectionString(listener);
    std::puts(address);
    std::free(address);
    IceAcceptStatus status = IceAcceptSuccess;
    IceConn connection = IceAcceptConnection(listener, &status);
    while (connection && IceConnectionStatus(connection) == IceConnectPending)
        IceProcessMessages(connection, nullptr, nullptr);
    if (connection)
        serve(connection);
    IceFreeListenObjs(count, listeners);
}
