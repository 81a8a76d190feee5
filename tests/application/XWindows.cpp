// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#include "application/XWindows.h"

#include "ui/controls/linux/XcbReply.h"

#include <array>
#include <cstring>
#include <memory>
#include <optional>
#include <string_view>

#include <xcb/xcb.h>

namespace tidewick {

namespace {

QString titleOf(xcb_connection_t *connection, xcb_window_t window)
{
    const auto cookie = xcb_get_property(connection, 0, window, XCB_ATOM_WM_NAME,
                                         XCB_GET_PROPERTY_TYPE_ANY, 0, 256);
    const XcbReply<xcb_get_property_reply_t> reply(
        xcb_get_property_reply(connection, cookie, nullptr));
    if (!reply)
        return {};
    return QString::fromUtf8(static_cast<const char *>(xcb_get_property_value(reply.get())),
                             xcb_get_property_value_length(reply.get()));
}

bool isMapped(xcb_connection_t *connection, xcb_window_t window)
{
    const auto cookie = xcb_get_window_attributes(connection, window);
    const XcbReply<xcb_get_window_attributes_reply_t> reply(
        xcb_get_window_attributes_reply(connection, cookie, nullptr));
    return reply && reply->map_state == XCB_MAP_STATE_VIEWABLE;
}

using Connection = std::unique_ptr<xcb_connection_t, decltype(&xcb_disconnect)>;

Connection connectToServer()
{
    return {xcb_connect(nullptr, nullptr), &xcb_disconnect};
}

/// The visible window with this title.
std::optional<xcb_window_t> shownWindow(xcb_connection_t *connection, const QString &title)
{
    const xcb_window_t root = xcb_setup_roots_iterator(xcb_get_setup(connection)).data->root;
    const auto cookie = xcb_query_tree(connection, root);
    const XcbReply<xcb_query_tree_reply_t> tree(xcb_query_tree_reply(connection, cookie, nullptr));
    const xcb_window_t *windows = xcb_query_tree_children(tree.get());
    for (int at = 0; at < xcb_query_tree_children_length(tree.get()); ++at) {
        if (titleOf(connection, windows[at]) == title && isMapped(connection, windows[at]))
            return windows[at];
    }
    return std::nullopt;
}

xcb_atom_t atomOf(xcb_connection_t *connection, std::string_view name)
{
    const auto cookie =
        xcb_intern_atom(connection, 0, static_cast<std::uint16_t>(name.size()), name.data());
    const XcbReply<xcb_intern_atom_reply_t> reply(
        xcb_intern_atom_reply(connection, cookie, nullptr));
    return reply ? reply->atom : xcb_atom_t{XCB_ATOM_NONE};
}

} // namespace

bool isWindowShown(const QString &title)
{
    const Connection connection = connectToServer();
    return shownWindow(connection.get(), title).has_value();
}

void closeWindow(const QString &title)
{
    const Connection connection = connectToServer();
    const auto window = shownWindow(connection.get(), title);
    if (!window)
        return;
    xcb_client_message_event_t message{};
    message.response_type = XCB_CLIENT_MESSAGE;
    message.format = 32;
    message.window = *window;
    message.type = atomOf(connection.get(), "WM_PROTOCOLS");
    message.data.data32[0] = atomOf(connection.get(), "WM_DELETE_WINDOW");
    std::array<char, sizeof message> bytes{};
    std::memcpy(bytes.data(), &message, sizeof message);
    xcb_send_event(connection.get(), 0, message.window, XCB_EVENT_MASK_NO_EVENT, bytes.data());
    // Waits for a reply, because the server may discard requests of a client that disconnects at
    // once.
    (void)isMapped(connection.get(), message.window);
}

QImage windowPicture(const QString &title)
{
    const Connection connection = connectToServer();
    const auto window = shownWindow(connection.get(), title);
    if (!window)
        return {};
    const auto place = xcb_get_geometry(connection.get(), *window);
    const XcbReply<xcb_get_geometry_reply_t> size(
        xcb_get_geometry_reply(connection.get(), place, nullptr));
    if (!size)
        return {};
    const auto cookie = xcb_get_image(connection.get(), XCB_IMAGE_FORMAT_Z_PIXMAP, *window, 0, 0,
                                      size->width, size->height, ~0U);
    const XcbReply<xcb_get_image_reply_t> image(
        xcb_get_image_reply(connection.get(), cookie, nullptr));
    if (!image)
        return {};
    // Four bytes per pixel, as on every screen with a depth of 24 bits.
    return QImage(xcb_get_image_data(image.get()), size->width, size->height, QImage::Format_RGB32)
        .copy();
}

XEmbedPlace::XEmbedPlace() : m_connection(xcb_connect(nullptr, nullptr), &xcb_disconnect)
{
    xcb_connection_t *connection = m_connection.get();
    const xcb_screen_t *screen = xcb_setup_roots_iterator(xcb_get_setup(connection)).data;
    const xcb_window_t owner = xcb_generate_id(connection);
    xcb_create_window(connection, 0, owner, screen->root, -1, -1, 1, 1, 0,
                      XCB_WINDOW_CLASS_INPUT_ONLY, XCB_COPY_FROM_PARENT, 0, nullptr);
    const auto cookie = xcb_set_selection_owner_checked(
        connection, owner, atomOf(connection, "_NET_SYSTEM_TRAY_S0"), XCB_CURRENT_TIME);
    if (xcb_request_check(connection, cookie) != nullptr)
        qFatal("The place of the tray is not available");
}

LaunchMessages::LaunchMessages() : m_connection(xcb_connect(nullptr, nullptr), &xcb_disconnect)
{
    xcb_connection_t *connection = m_connection.get();
    const xcb_window_t root = xcb_setup_roots_iterator(xcb_get_setup(connection)).data->root;
    const std::uint32_t mask = XCB_EVENT_MASK_PROPERTY_CHANGE;
    const auto cookie =
        xcb_change_window_attributes_checked(connection, root, XCB_CW_EVENT_MASK, &mask);
    if (xcb_request_check(connection, cookie) != nullptr)
        qFatal("The root window cannot be watched");
}

bool LaunchMessages::contain(const QByteArray &message)
{
    while (xcb_generic_event_t *next = xcb_poll_for_event(m_connection.get())) {
        const XcbReply<xcb_generic_event_t> event(next);
        if ((event->response_type & 0x7f) != XCB_CLIENT_MESSAGE)
            continue;
        const auto *piece = reinterpret_cast<const xcb_client_message_event_t *>(event.get());
        const auto *bytes = reinterpret_cast<const char *>(piece->data.data8);
        m_text.append(bytes, qsizetype(qstrnlen(bytes, sizeof piece->data.data8)));
    }
    return m_text.contains(message);
}

} // namespace tidewick
