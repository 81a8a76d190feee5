// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#pragma once

#include <QByteArray>
#include <QImage>
#include <QString>

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
