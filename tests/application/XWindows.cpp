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

namespace {

QImage pictureOf(xcb_connection_t *connection, xcb_window_t window, QImage::Format format)
{
    const auto place = xcb_get_geometry(connection, window);
    const XcbReply<xcb_get_geometry_reply_t> size(
        xcb_get_geometry_reply(connection, place, nullptr));
    if (!size)
        return {};
    const auto cookie = xcb_get_image(connection, XCB_IMAGE_FORMAT_Z_PIXMAP, window, 0, 0,
                                      size->width, size->height, ~0U);
    const XcbReply<xcb_get_image_reply_t> image(xcb_get_image_reply(connection, cookie, nullptr));
    if (!image)
        return {};
    // Four bytes per pixel, as in all windows with a depth of 24 or 32 bits.
    return QImage(xcb_get_image_data(image.get()), size->width, size->height, format).copy();
}

/// The topmost visible window that asks window managers to leave it alone.
std::optional<xcb_window_t> shownPopup(xcb_connection_t *connection)
{
    const xcb_window_t root = xcb_setup_roots_iterator(xcb_get_setup(connection)).data->root;
    const auto cookie = xcb_query_tree(connection, root);
    const XcbReply<xcb_query_tree_reply_t> tree(xcb_query_tree_reply(connection, cookie, nullptr));
    const xcb_window_t *windows = xcb_query_tree_children(tree.get());
    for (int at = xcb_query_tree_children_length(tree.get()) - 1; at >= 0; --at) {
        const auto asked = xcb_get_window_attributes(connection, windows[at]);
        const XcbReply<xcb_get_window_attributes_reply_t> reply(
            xcb_get_window_attributes_reply(connection, asked, nullptr));
        if (reply && reply->override_redirect && reply->map_state == XCB_MAP_STATE_VIEWABLE
            && reply->_class == XCB_WINDOW_CLASS_INPUT_OUTPUT)
            return windows[at];
    }
    return std::nullopt;
}

/// Makes a window that owns the selection.
xcb_window_t ownSelection(xcb_connection_t *connection, std::string_view selection)
{
    const xcb_screen_t *screen = xcb_setup_roots_iterator(xcb_get_setup(connection)).data;
    const xcb_window_t owner = xcb_generate_id(connection);
    xcb_create_window(connection, 0, owner, screen->root, -1, -1, 1, 1, 0,
                      XCB_WINDOW_CLASS_INPUT_ONLY, XCB_COPY_FROM_PARENT, 0, nullptr);
    const auto cookie = xcb_set_selection_owner_checked(
        connection, owner, atomOf(connection, selection), XCB_CURRENT_TIME);
    if (xcb_request_check(connection, cookie) != nullptr)
        qFatal("A selection is not available");
    return owner;
}

} // namespace

QImage windowPicture(const QString &title)
{
    const Connection connection = connectToServer();
    const auto window = shownWindow(connection.get(), title);
    return window ? pictureOf(connection.get(), *window, QImage::Format_RGB32) : QImage();
}

QImage popupPicture()
{
    const Connection connection = connectToServer();
    const auto window = shownPopup(connection.get());
    return window ? pictureOf(connection.get(), *window, QImage::Format_ARGB32_Premultiplied)
                  : QImage();
}

XEmbedPlace::XEmbedPlace() : m_connection(connectToServer())
{
    ownSelection(m_connection.get(), "_NET_SYSTEM_TRAY_S0");
}

CompositingPlace::CompositingPlace() : m_connection(connectToServer())
{
    ownSelection(m_connection.get(), "_NET_WM_CM_S0");
}

XEmbedSlot::XEmbedSlot() : m_connection(connectToServer())
{
    xcb_connection_t *connection = m_connection.get();
    const xcb_screen_t *screen = xcb_setup_roots_iterator(xcb_get_setup(connection)).data;
    m_slot = xcb_generate_id(connection);
    xcb_create_window(connection, XCB_COPY_FROM_PARENT, m_slot, screen->root, 600, 0, 24, 24, 0,
                      XCB_WINDOW_CLASS_INPUT_OUTPUT, XCB_COPY_FROM_PARENT, 0, nullptr);
    xcb_map_window(connection, m_slot);
    ownSelection(connection, "_NET_SYSTEM_TRAY_S0");
}

bool XEmbedSlot::hasIcon()
{
    constexpr std::uint32_t requestDock = 0;
    xcb_connection_t *connection = m_connection.get();
    const xcb_atom_t opcode = atomOf(connection, "_NET_SYSTEM_TRAY_OPCODE");
    while (xcb_generic_event_t *next = xcb_poll_for_event(connection)) {
        const XcbReply<xcb_generic_event_t> event(next);
        const auto *message = reinterpret_cast<const xcb_client_message_event_t *>(event.get());
        if ((event->response_type & 0x7f) != XCB_CLIENT_MESSAGE || message->type != opcode
            || message->data.data32[1] != requestDock)
            continue;
        m_icon = message->data.data32[2];
        const std::array<std::uint32_t, 2> size{24, 24};
        xcb_reparent_window(connection, m_icon, m_slot, 0, 0);
        xcb_configure_window(connection, m_icon, XCB_CONFIG_WINDOW_WIDTH | XCB_CONFIG_WINDOW_HEIGHT,
                             size.data());
        xcb_map_window(connection, m_icon);
    }
    return m_icon != 0 && isMapped(connection, m_icon);
}

void XEmbedSlot::click(int button)
{
    xcb_connection_t *connection = m_connection.get();
    xcb_button_press_event_t event{};
    event.detail = xcb_button_t(button);
    event.root = xcb_setup_roots_iterator(xcb_get_setup(connection)).data->root;
    event.event = m_icon;
    event.root_x = 612;
    event.root_y = 12;
    event.event_x = 12;
    event.event_y = 12;
    event.same_screen = 1;
    for (const int type : {XCB_BUTTON_PRESS, XCB_BUTTON_RELEASE}) {
        event.response_type = std::uint8_t(type);
        std::array<char, sizeof event> bytes{};
        std::memcpy(bytes.data(), &event, sizeof event);
        xcb_send_event(connection, 0, m_icon, XCB_EVENT_MASK_NO_EVENT, bytes.data());
    }
    xcb_flush(connection);
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
