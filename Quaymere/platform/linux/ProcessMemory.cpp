// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#include "platform/process/ProcessMemory.h"

#include "platform/files/Files.h"
#include "platform/text/NumberText.h"

#include <QByteArrayList>

#include <malloc.h>

namespace tidewick {

namespace {

/// The value of a line such as "VmRSS:	   12345 kB", in bytes.
std::optional<qint64> figure(const QByteArray &status, const QByteArray &name)
{
    const qsizetype begin = status.indexOf('\n' + name + ':');
    if (begin < 0)
        return std::nullopt;
    const qsizetype value = begin + name.size() + 2;
    const qsizetype end = status.indexOf('\n', value);
    const QByteArrayList words = status.mid(value, end - value).simplified().split(' ');
    if (words.size() != 2 || words[1] != "kB")
        return std::nullopt;
    const std::optional<qint64> kibibytes = NumberText::integer(QString::fromLatin1(words[0]));
    return kibibytes ? std::optional(*kibibytes * 1024) : std::nullopt;
}

} // namespace

std::optional<ProcessMemory> ProcessMemory::of(pid_t process)
{
    QByteArray status;
    try {
        status = Files::read("/proc/" + std::to_string(process) + "/status");
    } catch (const FileError &) {
        return std::nullopt;
    }
    const auto footprint = figure(status, "VmRSS");
    const auto peak = figure(status, "VmHWM");
    if (!footprint || !peak)
        return std::nullopt;
    return ProcessMemory{*footprint, *peak};
}

void ProcessMemory::giveBackFreed()
{
    // By default, the allocator ends up keeping twice the size of the largest block ever freed, at
    // most 64 MiB, for each thread. Setting the threshold to its initial value stops that
    // adjustment. The allocator then also continues to map every block of 128 KiB or more
    // separately.
    constexpr int kept = 128 * 1024;
    ::mallopt(M_TRIM_THRESHOLD, kept);
}

} // namespace tidewick
