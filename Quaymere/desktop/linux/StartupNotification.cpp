// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#include "desktop/StartupNotification.h"

#include <QtGlobal>

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <memory>

#include <xcb/xcb.h>

namespace tidewick::StartupNotification {

namespace {

constexpr const char *variable = "DESKTOP_STARTUP_ID";

using Connection = std::unique_ptr<xcb_connection_t, decltype(&xcb_disconnect)>;

xcb_atom_t atom(xcb_connection_t *connection, const char *name)
{
    const auto cookie =
        xcb_intern_atom(connection, 0, static_cast<std::uint16_t>(std::strlen(name)), name);
    const std::unique_ptr<xcb_intern_atom_reply_t, decltype(&std::free)> reply(
        xcb_intern_atom_reply(connection, cookie, nullptr), &std::free);
    return reply ? reply->atom : xcb_atom_t(XCB_ATOM_NONE);
}

/// The message in quotes, with a backslash before each character that is special there.
QByteArray quoted(const QByteArray &id)
{
    QByteArray text;
    for (const char character : id) {
        if (character == '"' || character == '\\')
            text += '\\';
        text += character;
    }
    return '"' + text + '"';
}

/// Sends the message to the root window, in pieces of 20 bytes, the last with a null byte.
void broadcast(xcb_connection_t *connection, const xcb_screen_t &screen, const QByteArray &message)
{
    const xcb_window_t sender = xcb_generate_id(connection);
    xcb_create_window(connection, 0, sender, screen.root, -1, -1, 1, 1, 0,
                      XCB_WINDOW_CLASS_INPUT_ONLY, XCB_COPY_FROM_PARENT, 0, nullptr);
    xcb_client_message_event_t piece{};
    piece.response_type = XCB_CLIENT_MESSAGE;
    piece.format = 8;
    piece.window = sender;
    piece.type = atom(connection, "_NET_STARTUP_INFO_BEGIN");
    const xcb_atom_t following = atom(connection, "_NET_STARTUP_INFO");
    constexpr qsizetype size = sizeof piece.data.data8;
    for (qsizetype begin = 0; begin <= message.size(); begin += size) {
        const QByteArray bytes = message.mid(begin, size).leftJustified(size, '\0');
        std::copy(bytes.begin(), bytes.end(), piece.data.data8);
        xcb_send_event(connection, 0, screen.root, XCB_EVENT_MASK_PROPERTY_CHANGE,
                       reinterpret_cast<const char *>(&piece));
        piece.type = following;
    }
    // A server that sees the connection closed at once drops what it has not read by then.
    std::free(xcb_request_check(connection, xcb_destroy_window_checked(connection, sender)));
}

} // namespace

QByteArray takeId()
{
    QByteArray id = qgetenv(variable);
    qunsetenv(variable);
    return id;
}

void finish(const QByteArray &id)
{
    if (id.isEmpty() || qEnvironmentVariableIsEmpty("DISPLAY"))
        return;
    int number = 0;
    const Connection connection(xcb_connect(nullptr, &number), &xcb_disconnect);
    if (xcb_connection_has_error(connection.get()) != 0)
        return;
    xcb_screen_iterator_t screens = xcb_setup_roots_iterator(xcb_get_setup(connection.get()));
    for (; number > 0 && screens.rem > 1; --number)
        xcb_screen_next(&screens);
    broadcast(connection.get(), *screens.data, "remove: ID=" + quoted(id));
}

} // namespace tidewick::StartupNotification
