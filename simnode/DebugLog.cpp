// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#include "simnode/DebugLog.h"

#include "platform/process/StandardStreams.h"
#include "simnode/DateText.h"

#include <fcntl.h>

namespace tidewick::sim {

namespace {

const char *codeOf(DebugLog::Severity severity)
{
    switch (severity) {
    case DebugLog::Severity::Info:
        return "NFO";
    case DebugLog::Severity::Warning:
        return "WRN";
    case DebugLog::Severity::Error:
        return "ERR";
    case DebugLog::Severity::Fatal:
        return "FTL";
    }
    Q_UNREACHABLE();
}

} // namespace

DebugLog::DebugLog(const std::filesystem::path &file)
{
    if (file.empty())
        return;
    m_file =
        UniqueDescriptor(::open(file.c_str(), O_WRONLY | O_CREAT | O_APPEND | O_CLOEXEC, 0644));
    if (!m_file) {
        const FileError error = FileError::fromErrno(file);
        StandardStreams::printError(std::string("cannot open the debug log ") + error.what()
                                    + '\n');
    }
}

void DebugLog::write(const char *partition, Severity severity, const QString &text)
{
    const QByteArray event =
        QByteArray(partition) + ':' + codeOf(severity) + ' ' + text.simplified().toUtf8() + '\n';
    if (severity != Severity::Info)
        StandardStreams::printError({event.constData(), static_cast<std::size_t>(event.size())});
    if (!m_file)
        return;
    const QString time = DateText::human(std::chrono::system_clock::now(), 9);
    const QByteArray line = time.toLatin1() + ' ' + event;
    // In a single call, so that lines stay whole even if another process writes to the file.
    (void)Files::writeAll(m_file.get(), line.constData(), static_cast<std::size_t>(line.size()));
}

void DebugLog::command(const QString &name)
{
    constexpr qsizetype longest = 64;
    info("RPCHandler", name.left(longest));
}

} // namespace tidewick::sim
