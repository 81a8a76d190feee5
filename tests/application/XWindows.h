// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#pragma once

#include <QByteArray>
#include <QImage>
#include <QString>

#include <cstdint>
#include <memory>

struct xcb_connection_t;

namespace tidewick {

/// Whether a window with this title is visible on the X server that the environment points to.
bool isWindowShown(const QString &title);

/// Asks the program that owns the window to close it, as a window manager does.
void closeWindow(const QString &title);

/// The window's contents, provided that it is entirely on the screen and not covered; a null image
/// if there is no such window.
QImage windowPicture(const QString &title);

/// What the topmost menu, list or tooltip draws, with its transparency; a null image if there is
/// none.
QImage popupPicture();

/// Owns the selection of compositing managers, so that programs draw as if there were one.
class CompositingPlace
{
public:
    CompositingPlace();

private:
    std::unique_ptr<xcb_connection_t, void (*)(xcb_connection_t *)> m_connection;
};

/// An XEmbed tray with room for one icon.
class XEmbedSlot
{
public:
    XEmbedSlot();

    /// Whether an icon has been docked. Docks it.
    bool hasIcon();

    /// Clicks the icon with this button of the mouse: 1 for the primary, 3 for the secondary.
    void click(int button);

private:
    std::unique_ptr<xcb_connection_t, void (*)(xcb_connection_t *)> m_connection;
    std::uint32_t m_slot;
    std::uint32_t m_icon = 0;
};

/// Owns the place of an XEmbed tray on the X server, without showing what is docked there.
class XEmbedPlace
{
public:
    XEmbedPlace();

private:
    std::unique_ptr<xcb_connection_t, void (*)(xcb_connection_t *)> m_connection;
};

/// Reads, as a launcher does, the messages by which programs report that they have started.
class LaunchMessages
{
public:
    /// Messages sent from now on are read.
    LaunchMessages();

    /// Whether this message has arrived.
    bool contain(const QByteArray &message);

private:
    std::unique_ptr<xcb_connection_t, void (*)(xcb_connection_t *)> m_connection;
    /// The pieces of all messages so far, without the padding of their ends.
    QByteArray m_text;
};

} // namespace tidewick
