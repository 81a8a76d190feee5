// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#include "simnode/Chatter.h"

#include "platform/files/Files.h"
#include "platform/process/StandardStreams.h"

#include <algorithm>
#include <charconv>
#include <string>

#include <fcntl.h>
#include <unistd.h>

namespace tidewick::sim::Chatter {

namespace {

constexpr std::size_t blockSize = 64UL * 1024;

/// Collects text and prints it in large blocks.
class Printer
{
public:
    Printer() { m_block.reserve(2 * blockSize); }
    Printer(const Printer &) = delete;
    Printer &operator=(const Printer &) = delete;
    ~Printer() { flush(); }

    void print(std::string_view text)
    {
        m_block += text;
        if (m_block.size() >= blockSize)
            flush();
    }

private:
    void flush()
    {
        StandardStreams::printError(m_block);
        m_block.clear();
    }

    std::string m_block;
};

} // namespace

void printLines(qint64 count)
{
    Printer printer;
    for (qint64 number = 1; number <= count; ++number)
        printer.print("line " + std::to_string(number) + '\n');
}

void printBytes(qint64 bytes, const std::stop_token &stop)
{
    constexpr std::string_view title = "output line ";
    constexpr std::size_t lineLength = 100;
    std::string line = std::string(title) + std::string(lineLength - title.size() - 1, '.') + '\n';

    Printer printer;
    qint64 left = bytes;
    for (qint64 number = 1; left > 0 && !stop.stop_requested(); ++number) {
        // Numbers only get longer, so each overwrites the one before and no dots need restoring.
        std::to_chars(line.data() + title.size(), line.data() + lineLength, number);
        const auto length = std::min(left, static_cast<qint64>(lineLength));
        printer.print({line.data() + lineLength - length, static_cast<std::size_t>(length)});
        left -= length;
    }
}

std::jthread flood(qint64 bytes)
{
    return std::jthread([bytes](const std::stop_token &stop) { printBytes(bytes, stop); });
}

void closeStreams()
{
    const UniqueDescriptor nowhere(::open("/dev/null", O_WRONLY | O_CLOEXEC));
    ::dup2(nowhere.get(), STDOUT_FILENO);
    ::dup2(nowhere.get(), STDERR_FILENO);
}

pid_t startGrandchild(Seconds lifetime)
{
    if (const pid_t grandchild = ::fork(); grandchild != 0)
        return grandchild;
    ::setsid();
    std::this_thread::sleep_for(lifetime);
    ::_exit(0);
}

} // namespace tidewick::sim::Chatter
