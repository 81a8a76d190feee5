// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#pragma once

#include <QAbstractNativeEventFilter>

#include <functional>

#include <xcb/xcb.h>

namespace tidewick {

/// Watches who owns the selection that stands for an XEmbed tray on the X11 screen. On other window
/// systems there is none.
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
    /// Number of the first event of the extension that tells of selections.
    int m_firstEvent = -1;
    bool m_exists = false;
    std::function<void()> m_changed;
};

} // namespace tidewick
