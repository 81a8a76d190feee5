// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#pragma once

#include <QAbstractNativeEventFilter>

#include <functional>

#include <xcb/xcb.h>

namespace tidewick {

/// Watches the owner of the selection that represents an XEmbed tray on the X11 screen. On other
/// window systems there is no such tray.
class XEmbedTray final : public QAbstractNativeEventFilter
{
public:
    explicit XEmbedTray(std::function<void()> changed);
    XEmbedTray(const XEmbedTray &) = delete;
    XEmbedTray &operator=(const XEmbedTray &) = delete;
    ~XEmbedTray() override;

    bool exists() const { return m_exists; }

    bool nativeEventFilter(const QByteArray &eventType, void *message, qintptr *result) override;

private:
    void watch();
    void look();

    xcb_connection_t *m_connection = nullptr;
    xcb_atom_t m_selection = XCB_ATOM_NONE;
    /// The number of the first event of the extension that reports selection changes.
    int m_firstEvent = -1;
    bool m_exists = false;
    std::function<void()> m_changed;
};

} // namespace tidewick
