// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#include "application/XWindows.h"

#include "ui/linux/XcbReply.h"

#include <memory>

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

} // namespace

bool isWindowShown(const QString &title)
{
    const std::unique_ptr<xcb_connection_t, decltype(&xcb_disconnect)> connection(
        xcb_connect(nullptr, nullptr), &xcb_disconnect);
    const xcb_window_t root = xcb_setup_roots_iterator(xcb_get_setup(connection.get())).data->root;
    const auto cookie = xcb_query_tree(connection.get(), root);
    const XcbReply<xcb_query_tree_reply_t> tree(
        xcb_query_tree_reply(connection.get(), cookie, nullptr));
    const xcb_window_t *windows = xcb_query_tree_children(tree.get());
    for (int at = 0; at < xcb_query_tree_children_length(tree.get()); ++at) {
        if (titleOf(connection.get(), windows[at]) == title
            && isMapped(connection.get(), windows[at]))
            return true;
    }
    return false;
}

} // namespace tidewick
