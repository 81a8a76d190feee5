// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#include "application/SessionManager.h"

#include <QSocketNotifier>

#include <array>
#include <cstdlib>
#include <functional>
#include <map>
#include <vector>

#include <X11/ICE/ICElib.h>
#include <X11/ICE/ICEutil.h>
#include <X11/SM/SMlib.h>

namespace tidewick {

struct SessionManager::State
{
    std::vector<std::unique_ptr<QSocketNotifier>> listeners;
    std::map<IceConn, std::unique_ptr<QSocketNotifier>> connections;
    std::vector<SmsConn> clients;
    IceListenObj *listenObjects = nullptr;
    int listenCount = 0;
    int saved = 0;
};

namespace {

SessionManager::State &stateOf(SmPointer data)
{
    return *static_cast<SessionManager::State *>(data);
}

Status registerClient(SmsConn client, SmPointer data, char *previousId)
{
    // No client of an earlier session is known here.
    if (previousId != nullptr) {
        std::free(previousId);
        return 0;
    }
    char *id = SmsGenerateClientID(client);
    SmsRegisterClientReply(client, id);
    std::free(id);
    stateOf(data).clients.push_back(client);
    // A new client is asked once to save its own state.
    SmsSaveYourself(client, SmSaveLocal, False, SmInteractStyleNone, False);
    return 1;
}

void interactRequest(SmsConn client, SmPointer, int)
{
    SmsInteract(client);
}

void interactDone(SmsConn, SmPointer, Bool) {}

void saveYourselfRequest(SmsConn, SmPointer, int, Bool, int, Bool, Bool) {}

void phase2Request(SmsConn client, SmPointer)
{
    SmsSaveYourselfPhase2(client);
}

void saveYourselfDone(SmsConn client, SmPointer data, Bool)
{
    ++stateOf(data).saved;
    SmsSaveComplete(client);
}

void closeConnection(SmsConn client, SmPointer data, int count, char **reasons)
{
    SmFreeReasons(count, reasons);
    std::erase(stateOf(data).clients, client);
    IceConn connection = SmsGetIceConnection(client);
    SmsCleanUp(client);
    IceSetShutdownNegotiation(connection, False);
    IceCloseConnection(connection);
    stateOf(data).connections[connection].release()->deleteLater();
    stateOf(data).connections.erase(connection);
}

void setProperties(SmsConn, SmPointer, int count, SmProp **properties)
{
    for (int i = 0; i < count; ++i)
        SmFreeProperty(properties[i]);
    std::free(static_cast<void *>(properties));
}

void deleteProperties(SmsConn, SmPointer, int count, char **names)
{
    for (int i = 0; i < count; ++i)
        std::free(names[i]);
    std::free(static_cast<void *>(names));
}

void getProperties(SmsConn client, SmPointer)
{
    SmsReturnProperties(client, 0, nullptr);
}

Status newClient(SmsConn, SmPointer data, unsigned long *mask, SmsCallbacks *callbacks, char **)
{
    *mask = SmsRegisterClientProcMask | SmsInteractRequestProcMask | SmsInteractDoneProcMask
            | SmsSaveYourselfRequestProcMask | SmsSaveYourselfP2RequestProcMask
            | SmsSaveYourselfDoneProcMask | SmsCloseConnectionProcMask | SmsSetPropertiesProcMask
            | SmsDeletePropertiesProcMask | SmsGetPropertiesProcMask;
    callbacks->register_client = {registerClient, data};
    callbacks->interact_request = {interactRequest, data};
    callbacks->interact_done = {interactDone, data};
    callbacks->save_yourself_request = {saveYourselfRequest, data};
    callbacks->save_yourself_phase2_request = {phase2Request, data};
    callbacks->save_yourself_done = {saveYourselfDone, data};
    callbacks->close_connection = {closeConnection, data};
    callbacks->set_properties = {setProperties, data};
    callbacks->delete_properties = {deleteProperties, data};
    callbacks->get_properties = {getProperties, data};
    return 1;
}

Bool acceptsAnyone(char *)
{
    return True;
}

std::unique_ptr<QSocketNotifier> notifier(int descriptor, const std::function<void()> &readable)
{
    auto made = std::make_unique<QSocketNotifier>(descriptor, QSocketNotifier::Read);
    QObject::connect(made.get(), &QSocketNotifier::activated, made.get(), readable);
    return made;
}

/// Drops a connection whose client has died without closing it.
void dropConnection(SessionManager::State &state, IceConn connection)
{
    std::erase_if(state.clients,
                  [&](SmsConn client) { return SmsGetIceConnection(client) == connection; });
    IceSetShutdownNegotiation(connection, False);
    IceCloseConnection(connection);
    state.connections[connection].release()->deleteLater();
    state.connections.erase(connection);
}

void accept(SessionManager::State &state, IceListenObj listener)
{
    IceAcceptStatus status = IceAcceptFailure;
    IceConn connection = IceAcceptConnection(listener, &status);
    if (connection == nullptr)
        return;
    state.connections[connection] = notifier(IceConnectionNumber(connection), [&state, connection] {
        if (IceProcessMessages(connection, nullptr, nullptr) == IceProcessMessagesIOError)
            dropConnection(state, connection);
    });
}

} // namespace

SessionManager::SessionManager() : m_state(std::make_unique<State>())
{
    std::array<char, 256> error{};
    const auto size = static_cast<int>(error.size());
    // IceProcessMessages reports I/O errors; the library's default handler would end the program.
    IceSetIOErrorHandler([](IceConn) {});
    if (SmsInitialize("Tidewick's tests", "1", newClient, m_state.get(), acceptsAnyone, size,
                      error.data())
            == 0
        || IceListenForConnections(&m_state->listenCount, &m_state->listenObjects, size,
                                   error.data())
               == 0)
        qFatal("Cannot start the session manager: %s", error.data());
    for (int i = 0; i < m_state->listenCount; ++i) {
        IceListenObj listener = m_state->listenObjects[i];
        IceSetHostBasedAuthProc(listener, acceptsAnyone);
        m_state->listeners.push_back(notifier(IceGetListenConnectionNumber(listener),
                                              [this, listener] { accept(*m_state, listener); }));
    }
    char *addresses = IceComposeNetworkIdList(m_state->listenCount, m_state->listenObjects);
    qputenv("SESSION_MANAGER", addresses);
    std::free(addresses);
}

SessionManager::~SessionManager()
{
    qunsetenv("SESSION_MANAGER");
    while (!m_state->connections.empty())
        dropConnection(*m_state, m_state->connections.begin()->first);
    m_state->listeners.clear();
    IceFreeListenObjs(m_state->listenCount, m_state->listenObjects);
}

int SessionManager::clients() const
{
    return static_cast<int>(m_state->clients.size());
}

int SessionManager::saved() const
{
    return m_state->saved;
}

void SessionManager::askToSave(bool beforeTheEnd)
{
    for (SmsConn client : m_state->clients)
        SmsSaveYourself(client, SmSaveBoth, beforeTheEnd ? True : False, SmInteractStyleAny, False);
}

void SessionManager::cancelTheEnd()
{
    for (SmsConn client : m_state->clients)
        SmsShutdownCancelled(client);
}

void SessionManager::endTheSession()
{
    for (SmsConn client : m_state->clients)
        SmsDie(client);
}

} // namespace tidewick
