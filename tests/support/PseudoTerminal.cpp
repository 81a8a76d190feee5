// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#include "support/PseudoTerminal.h"

#include <array>
#include <cstdlib>

#include <fcntl.h>
#include <poll.h>
#include <sys/ioctl.h>
#include <unistd.h>

namespace tidewick {

PseudoTerminal::PseudoTerminal(int columns, int rows)
    : m_window(::posix_openpt(O_RDWR | O_NOCTTY | O_CLOEXEC)), m_screen(columns, rows)
{
    std::array<char, 64> name{};
    if (!m_window || ::grantpt(m_window.get()) != 0 || ::unlockpt(m_window.get()) != 0
        || ::ptsname_r(m_window.get(), name.data(), name.size()) != 0)
        qFatal("Cannot create a pseudo-terminal");
    m_program = UniqueDescriptor(::open(name.data(), O_RDWR | O_NOCTTY | O_CLOEXEC));
    if (!m_program)
        qFatal("Cannot open the pseudo-terminal");
    setSize(columns, rows);
}

void PseudoTerminal::resize(int columns, int rows)
{
    receive();
    setSize(columns, rows);
    m_screen.resize(columns, rows);
}

void PseudoTerminal::setSize(int columns, int rows) const
{
    winsize size{};
    size.ws_col = static_cast<unsigned short>(columns);
    size.ws_row = static_cast<unsigned short>(rows);
    ::ioctl(m_window.get(), TIOCSWINSZ, &size);
}

void PseudoTerminal::write(const QByteArray &text) const
{
    if (!Files::writeAll(m_program.get(), text.constData(), std::size_t(text.size())))
        qFatal("Cannot write to the pseudo-terminal");
}

const ScreenModel &PseudoTerminal::screen()
{
    receive();
    return m_screen;
}

qsizetype PseudoTerminal::received()
{
    receive();
    return m_received;
}

/// The kernel passes the bytes on asynchronously, so a mark is written after them; once it arrives,
/// all bytes before it have arrived too.
void PseudoTerminal::receive()
{
    constexpr char mark = '\x05';
    write(QByteArray(1, mark));
    QByteArray bytes;
    while (!bytes.endsWith(mark)) {
        pollfd ready{m_window.get(), POLLIN, 0};
        std::array<char, 4096> buffer{};
        if (::poll(&ready, 1, 10'000) != 1)
            qFatal("Timed out reading from the pseudo-terminal");
        const ssize_t count = ::read(m_window.get(), buffer.data(), buffer.size());
        if (count <= 0)
            qFatal("Cannot read from the pseudo-terminal");
        bytes.append(buffer.data(), count);
    }
    bytes.chop(1);
    m_received += bytes.size();
    m_screen.feed(bytes);
}

} // namespace tidewick
