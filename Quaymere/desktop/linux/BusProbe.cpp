// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#include "desktop/BusProbe.h"

#include "platform/files/Files.h"

#include <QByteArrayList>

#include <cerrno>
#include <cstddef>
#include <cstring>
#include <optional>
#include <string_view>

#include <poll.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

namespace tidewick::BusProbe {

namespace {

/// A bus that is busy, as at the start of a session, must not count as silent.
constexpr std::chrono::seconds patience{10};
constexpr const char *variable = "DBUS_SESSION_BUS_ADDRESS";

struct Place
{
    sockaddr_un address{};
    socklen_t length = 0;
};

/// The Unix socket of the first address in a list of addresses; nothing if that address has none.
std::optional<Place> placeOf(const QByteArray &addresses)
{
    const QByteArray first = addresses.split(';').constFirst();
    if (!first.startsWith("unix:"))
        return std::nullopt;
    for (const QByteArray &pair : first.mid(5).split(',')) {
        const bool isAbstract = pair.startsWith("abstract=");
        if (!isAbstract && !pair.startsWith("path="))
            continue;
        QByteArray name = QByteArray::fromPercentEncoding(pair.mid(pair.indexOf('=') + 1));
        if (isAbstract)
            name.prepend('\0');
        Place place;
        place.address.sun_family = AF_UNIX;
        const auto size = static_cast<std::size_t>(name.size());
        if (size >= sizeof place.address.sun_path)
            return std::nullopt;
        std::memcpy(place.address.sun_path, name.constData(), size);
        place.length = static_cast<socklen_t>(offsetof(sockaddr_un, sun_path) + size);
        return place;
    }
    return std::nullopt;
}

} // namespace

bool answers(const QByteArray &address, std::chrono::milliseconds limit)
{
    const auto place = placeOf(address);
    if (!place)
        return true;
    const UniqueDescriptor socket(::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0));
    // A bus that refuses connections does so immediately, for the D-Bus library too. A bus with no
    // room for another connection has not accepted the previous ones.
    if (::connect(socket.get(), reinterpret_cast<const sockaddr *>(&place->address), place->length)
        != 0)
        return errno != EAGAIN;
    // A client begins with this, to learn which authentication mechanisms are available.
    constexpr std::string_view greeting("\0AUTH\r\n", 7);
    if (::send(socket.get(), greeting.data(), greeting.size(), MSG_NOSIGNAL) < 0)
        return true;
    return Files::waitForEvents(socket.get(), POLLIN, limit) != 0;
}

void avoidIfSilent()
{
    QByteArray address = qgetenv(variable);
    if (address.isEmpty() && qEnvironmentVariableIsSet("XDG_RUNTIME_DIR"))
        address = "unix:path=" + qgetenv("XDG_RUNTIME_DIR") + "/bus";
    if (!answers(address, patience))
        qputenv(variable, "disabled:");
}

} // namespace tidewick::BusProbe
