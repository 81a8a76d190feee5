// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#include "ui/controls/Compositing.h"

#include "ui/controls/linux/XcbReply.h"

#include <QGuiApplication>

#include <string_view>

#include <xcb/xcb.h>

namespace tidewick {

namespace {

/// Compositing managers own this selection. Qt uses only one screen, the first.
constexpr std::string_view selection = "_NET_WM_CM_S0";

bool hasManager(xcb_connection_t *connection)
{
    const auto asked =
        xcb_intern_atom(connection, 1, std::uint16_t(selection.size()), selection.data());
    const XcbReply<xcb_intern_atom_reply_t> atom(xcb_intern_atom_reply(connection, asked, nullptr));
    if (!atom || atom->atom == XCB_ATOM_NONE)
        return false;
    const auto cookie = xcb_get_selection_owner(connection, atom->atom);
    const XcbReply<xcb_get_selection_owner_reply_t> owner(
        xcb_get_selection_owner_reply(connection, cookie, nullptr));
    return owner && owner->owner != XCB_WINDOW_NONE;
}

} // namespace

bool Compositing::isOn()
{
    const auto *x11 = qGuiApp->nativeInterface<QNativeInterface::QX11Application>();
    xcb_connection_t *connection = x11 ? x11->connection() : nullptr;
    return !connection || hasManager(connection);
}

} // namespace tidewick
