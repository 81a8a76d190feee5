// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#include "desktop/Display.h"

#include "platform/files/Files.h"
#include "platform/process/StandardStreams.h"

#include <QByteArray>
#include <QLibraryInfo>

#include <algorithm>

#include <sys/socket.h>
#include <sys/un.h>
#include <xcb/xcb.h>

namespace tidewick::Display {

namespace {

bool canConnect(const QByteArray &socketPath)
{
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    if (static_cast<std::size_t>(socketPath.size()) >= sizeof address.sun_path)
        return false;
    std::copy(socketPath.begin(), socketPath.end(), address.sun_path);
    const UniqueDescriptor socket(::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0));
    return socket
           && ::connect(socket.get(), reinterpret_cast<const sockaddr *>(&address), sizeof address)
                  == 0;
}

bool hasWayland()
{
    if (qEnvironmentVariableIsSet("WAYLAND_SOCKET"))
        return true;
    const QByteArray display = qgetenv("WAYLAND_DISPLAY");
    if (display.isEmpty())
        return false;
    return canConnect(display.startsWith('/') ? display
                                              : qgetenv("XDG_RUNTIME_DIR") + '/' + display);
}

bool hasX11()
{
    if (qEnvironmentVariableIsEmpty("DISPLAY"))
        return false;
    xcb_connection_t *connection = xcb_connect(nullptr, nullptr);
    const bool connected = xcb_connection_has_error(connection) == 0;
    xcb_disconnect(connection);
    return connected;
}

/// Qt's plugin for X11 is part of Qt itself, its plugins for Wayland are a package of their own.
bool hasWaylandPlugin(const std::filesystem::path &plugins)
{
    std::error_code error;
    const std::filesystem::directory_iterator files(plugins, error);
    return std::any_of(begin(files), end(files), [](const auto &file) {
        return file.path().filename().string().starts_with("libqwayland");
    });
}

} // namespace

std::filesystem::path platformPlugins()
{
    const QString plugins = QLibraryInfo::path(QLibraryInfo::PluginsPath);
    return std::filesystem::path(plugins.toStdString()) / "platforms";
}

bool isThere(const std::filesystem::path &plugins)
{
    // If the environment names a Qt platform, that choice is not questioned.
    if (!qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        return true;
    // Wayland first: many compositors start Xwayland only when something connects to it.
    const bool wayland = hasWayland();
    if ((wayland && hasWaylandPlugin(plugins)) || hasX11())
        return true;
    if (wayland) {
        StandardStreams::printError(
            "Tidewick cannot show windows on Wayland, since Qt's plugin for it is missing: install "
            "the package qt6-wayland. It runs in the terminal instead.\n");
    }
    return false;
}

} // namespace tidewick::Display
