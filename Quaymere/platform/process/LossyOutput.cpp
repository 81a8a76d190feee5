// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#include "platform/process/LossyOutput.h"

#include <algorithm>
#include <cerrno>
#include <climits>
#include <string>

#include <fcntl.h>
#include <poll.h>
#include <sys/stat.h>
#include <unistd.h>

namespace tidewick {

namespace {

/// A second, non-blocking access to what the descriptor writes to; none where there is no such
/// thing: files never make a writer wait for a reader, and sockets cannot be opened.
UniqueDescriptor reopened(int descriptor)
{
    struct stat kind
    {
    };
    if (::fstat(descriptor, &kind) != 0 || !(S_ISFIFO(kind.st_mode) || ::isatty(descriptor)))
        return {};
    const std::string name = "/proc/self/fd/" + std::to_string(descriptor);
    return UniqueDescriptor(::open(name.c_str(), O_WRONLY | O_NONBLOCK | O_NOCTTY | O_CLOEXEC));
}

} // namespace

LossyOutput::LossyOutput(int descriptor, QObject *parent)
    : QObject(parent), m_own(reopened(descriptor)), m_descriptor(m_own ? m_own.get() : descriptor)
{
}

LossyOutput::~LossyOutput()
{
    writeRest();
}

bool LossyOutput::write(const QByteArray &text)
{
    if (m_closed || !writeRest())
        return false;
    const qsizetype written = writeSome(text);
    if (written == 0 && !text.isEmpty())
        return false;
    m_rest = text.sliced(written);
    return true;
}

/// How much of it went out. Stops at the first sign that more would take a wait.
qsizetype LossyOutput::writeSome(const QByteArray &text)
{
    qsizetype written = 0;
    while (written < text.size()) {
        if (!mayWriteNow()) {
            awaitRoom();
            break;
        }
        const qsizetype left = text.size() - written;
        const qsizetype piece = m_own ? left : std::min<qsizetype>(left, PIPE_BUF);
        const ssize_t count = ::write(m_descriptor, text.constData() + written, size_t(piece));
        if (count >= 0) {
            written += count;
            m_written += quint64(count);
        } else if (errno == EAGAIN) {
            awaitRoom();
            break;
        } else if (errno != EINTR) {
            // Files become writable again when somebody clears up; readers do not come back.
            m_closed = errno != ENOSPC && errno != EDQUOT && errno != EFBIG;
            break;
        }
    }
    return written;
}

/// False while there is still some.
bool LossyOutput::writeRest()
{
    m_rest.remove(0, writeSome(m_rest));
    return m_rest.isEmpty();
}

bool LossyOutput::mayWriteNow() const
{
    pollfd room{m_descriptor, POLLOUT, 0};
    return m_own || ::poll(&room, 1, 0) != 0;
}

void LossyOutput::awaitRoom()
{
    if (!m_room) {
        m_room = std::make_unique<QSocketNotifier>(m_descriptor, QSocketNotifier::Write);
        connect(m_room.get(), &QSocketNotifier::activated, this, &LossyOutput::retry);
    }
    m_room->setEnabled(true);
}

/// Where this leads nowhere, room is no longer waited for until it is missed again: a terminal that
/// calls itself writable and takes nothing must not keep the event loop turning.
void LossyOutput::retry()
{
    m_room->setEnabled(false);
    const quint64 before = m_written;
    if (writeRest() && !m_closed)
        emit ready();
    if (m_written == before)
        m_room->setEnabled(false);
}

} // namespace tidewick
