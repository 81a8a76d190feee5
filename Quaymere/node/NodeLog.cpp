// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#include "node/NodeLog.h"

#include "platform/text/Utf8.h"

#include <QDateTime>
#include <QTimeZone>

#include <algorithm>
#include <cerrno>
#include <optional>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace tidewick {

namespace fs = std::filesystem;

namespace {

constexpr std::uintmax_t rotateAbove = std::uintmax_t{64} * 1024 * 1024;
constexpr int tailLines = 20;
constexpr qint64 tailBytes = qint64{1024} * 1024;

/// Reads `size` bytes at `offset`; fewer if the file ends earlier or an error occurs.
QByteArray readAt(int file, qint64 offset, qint64 size)
{
    QByteArray bytes(size, Qt::Uninitialized);
    qint64 got = 0;
    while (got < size) {
        const ssize_t count =
            ::pread(file, bytes.data() + got, static_cast<std::size_t>(size - got), offset + got);
        if (count == 0 || (count < 0 && errno != EINTR))
            break;
        got += std::max<ssize_t>(count, 0);
    }
    bytes.truncate(got);
    return bytes;
}

/// Returns where the last `lines` pieces between line feeds begin, or nothing if there are fewer.
std::optional<qsizetype> beginOfLast(int lines, const QByteArray &bytes)
{
    qsizetype at = bytes.size();
    for (int seen = 0; seen < lines; ++seen) {
        if (at == 0)
            return std::nullopt;
        at = bytes.lastIndexOf('\n', at - 1);
        if (at < 0)
            return std::nullopt;
    }
    return at + 1;
}

/// Drops the rest of a character at the beginning: the text may have been cut in the middle of one.
QByteArray fromCharacterStart(const QByteArray &bytes)
{
    qsizetype at = 0;
    while (at < bytes.size() && at < 3 && (static_cast<uchar>(bytes[at]) & 0xC0) == 0x80)
        ++at;
    return bytes.mid(at);
}

} // namespace

NodeLog::NodeLog(const fs::path &dataDirectory) : m_path(dataDirectory / "xrpld.stdout.log") {}

void NodeLog::rotate(const fs::path &log)
{
    std::error_code error;
    const std::uintmax_t size = fs::file_size(log, error);
    if (error || size <= rotateAbove)
        return;
    fs::path old = log;
    old += ".1";
    fs::rename(log, old, error);
}

UniqueDescriptor NodeLog::open() const
{
    UniqueDescriptor log(::open(m_path.c_str(), O_WRONLY | O_CREAT | O_APPEND | O_CLOEXEC, 0644));
    if (!log)
        throw FileError::fromErrno(m_path);
    return log;
}

qint64 NodeLog::length(const UniqueDescriptor &log)
{
    return std::max<qint64>(::lseek(log.get(), 0, SEEK_END), 0);
}

QString NodeLog::tail(qint64 offset) const
{
    const UniqueDescriptor file(::open(m_path.c_str(), O_RDONLY | O_CLOEXEC));
    const qint64 end = file ? ::lseek(file.get(), 0, SEEK_END) : 0;
    if (end <= offset)
        return {};

    // Most tails are short, so the part read from the end grows until it contains the lines.
    const qint64 longest = std::min(end - offset, tailBytes);
    for (qint64 size = std::min<qint64>(longest, 4096);; size = std::min(longest, size * 16)) {
        const QByteArray bytes = readAt(file.get(), end - size, size);
        if (const auto begin = beginOfLast(tailLines, bytes))
            return Utf8::decodeLossy(bytes.mid(*begin));
        if (size == longest)
            return Utf8::decodeLossy(end - size > offset ? fromCharacterStart(bytes) : bytes);
    }
}

void NodeLog::note(const QString &text, WallClock::time_point now) const
{
    const UniqueDescriptor log(::open(m_path.c_str(), O_WRONLY | O_APPEND | O_CLOEXEC));
    if (!log)
        return;
    const auto seconds = std::chrono::floor<std::chrono::seconds>(now.time_since_epoch());
    const QDateTime date = QDateTime::fromSecsSinceEpoch(seconds.count(), QTimeZone::utc());
    const QByteArray line = "[Tidewick] " + date.toString(u"yyyy-MM-dd HH:mm:ss").toLatin1()
                            + " +0000 " + text.toUtf8() + '\n';
    (void)Files::writeAll(log.get(), line.constData(), static_cast<std::size_t>(line.size()));
}

} // namespace tidewick
