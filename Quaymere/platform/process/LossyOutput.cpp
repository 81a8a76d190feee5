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

/// Opens a second, non-blocking descriptor for what the given one writes to. Empty for files, which
/// never make a writer wait for a reader, and for sockets, which cannot be opened.
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

/// Returns the number of bytes written. Stops at the first sign that writing more would block.
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
            // Files become writable again when somebody frees space; readers do not come back.
            m_closed = errno != ENOSPC && errno != EDQUOT && errno != EFBIG;
            break;
        }
    }
    return written;
}

/// Returns false while part of the rest remains.
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

/// If this makes no progress, stops waiting for room until a write runs out of it again: a terminal
/// that reports itself writable but accepts nothing must not keep the event loop busy.
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
