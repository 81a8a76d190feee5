// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#include "ui/tray/linux/XEmbedTray.h"

#include "ui/controls/linux/XcbReply.h"

#include <QGuiApplication>

#include <xcb/xfixes.h>

namespace tidewick {

namespace {

xcb_atom_t atom(xcb_connection_t *connection, const QByteArray &name)
{
    const auto cookie =
        xcb_intern_atom(connection, 0, static_cast<std::uint16_t>(name.size()), name.constData());
    const XcbReply<xcb_intern_atom_reply_t> reply(
        xcb_intern_atom_reply(connection, cookie, nullptr));
    return reply ? reply->atom : xcb_atom_t{XCB_ATOM_NONE};
}

} // namespace

XEmbedTray::XEmbedTray(std::function<void()> changed) : m_changed(std::move(changed))
{
    if (const auto *x11 = qGuiApp->nativeInterface<QNativeInterface::QX11Application>())
        m_connection = x11->connection();
    if (!m_connection)
        return;
    watch();
    look();
    qGuiApp->installNativeEventFilter(this);
}

XEmbedTray::~XEmbedTray()
{
    if (qGuiApp)
        qGuiApp->removeNativeEventFilter(this);
}

void XEmbedTray::watch()
{
    // Qt uses only one screen, the first.
    m_selection = atom(m_connection, "_NET_SYSTEM_TRAY_S0");
    const xcb_query_extension_reply_t *extension =
        xcb_get_extension_data(m_connection, &xcb_xfixes_id);
    if (!extension || !extension->present)
        return;
    m_firstEvent = extension->first_event;
    // The extension serves only clients that have asked for its version.
    const auto cookie = xcb_xfixes_query_version(m_connection, 1, 0);
    const XcbReply<xcb_xfixes_query_version_reply_t> version(
        xcb_xfixes_query_version_reply(m_connection, cookie, nullptr));
    const xcb_window_t root = xcb_setup_roots_iterator(xcb_get_setup(m_connection)).data->root;
    xcb_xfixes_select_selection_input(m_connection, root, m_selection,
                                      XCB_XFIXES_SELECTION_EVENT_MASK_SET_SELECTION_OWNER
                                          | XCB_XFIXES_SELECTION_EVENT_MASK_SELECTION_WINDOW_DESTROY
                                          | XCB_XFIXES_SELECTION_EVENT_MASK_SELECTION_CLIENT_CLOSE);
    xcb_flush(m_connection);
}

void XEmbedTray::look()
{
    const auto cookie = xcb_get_selection_owner(m_connection, m_selection);
    const XcbReply<xcb_get_selection_owner_reply_t> owner(
        xcb_get_selection_owner_reply(m_connection, cookie, nullptr));
    m_exists = owner && owner->owner != XCB_WINDOW_NONE;
}

bool XEmbedTray::nativeEventFilter(const QByteArray &eventType, void *message, qintptr * /*result*/)
{
    if (eventType != "xcb_generic_event_t" || m_firstEvent < 0)
        return false;
    const auto *event = static_cast<const xcb_generic_event_t *>(message);
    if ((event->response_type & 0x7F) != m_firstEvent + XCB_XFIXES_SELECTION_NOTIFY)
        return false;
    const auto *notice = static_cast<const xcb_xfixes_selection_notify_event_t *>(message);
    if (notice->selection == m_selection) {
        look();
        m_changed();
    }
    return false;
}

} // namespace tidewick
