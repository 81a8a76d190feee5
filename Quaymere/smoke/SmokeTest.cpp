// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#include "smoke/SmokeTest.h"

#include "platform/process/StandardStreams.h"
#include "platform/text/DisplayText.h"

#include <cstdlib>

namespace tidewick {

namespace {

using namespace std::chrono_literals;

constexpr std::chrono::seconds answerLimit = 180s;
constexpr std::chrono::seconds memoryLimit = 60s;
constexpr std::chrono::milliseconds lookInterval = 500ms;

} // namespace

SmokeTest::SmokeTest(const std::filesystem::path &dataDirectory, NodeHost host)
    : SmokeTest(dataDirectory, std::move(host),
                [](const std::string &line) { return StandardStreams::printLine(line); })
{
}

SmokeTest::SmokeTest(const std::filesystem::path &dataDirectory, NodeHost host, Print print)
    : m_clock(host.clock), m_print(std::move(print)), m_node(dataDirectory, std::move(host))
{
}

void SmokeTest::start()
{
    run(m_task.renew());
}

QCoro::Task<> SmokeTest::run(TaskToken token)
{
    // The path's raw bytes, so that a script can use it.
    m_transcriptLost |= !m_print("smoke: data " + m_node.dataDirectory().string());
    m_node.start();
    co_await waitWhile(
        [this] { return !m_node.status().hasServerInfo && !m_node.status().errorText; },
        answerLimit, token);
    if (token.cancelled())
        co_return;
    if (m_node.status().hasServerInfo && !m_node.status().errorText)
        co_await pass(token);
    else
        co_await giveUp(token);
}

QCoro::Task<> SmokeTest::waitWhile(std::function<bool()> condition, std::chrono::seconds limit,
                                   TaskToken token)
{
    const ContinuousClock::time_point deadline = m_clock->continuousNow() + limit;
    while (!token.cancelled() && condition() && m_clock->continuousNow() < deadline)
        co_await sleepUntil(m_clock, m_clock->continuousNow() + lookInterval, token);
}

QCoro::Task<> SmokeTest::pass(TaskToken token)
{
    print(QStringLiteral("smoke: server_info answered (%1)").arg(detail()));
    co_await waitWhile(
        [this] {
            return m_node.status().memory == NodeStatus::unknown() && !m_node.status().errorText;
        },
        memoryLimit, token);
    if (token.cancelled())
        co_return;
    print(QLatin1String("smoke: memory ") + m_node.status().memory);

    co_await m_node.stopAndWait(QStringLiteral("smoke done"));
    if (token.cancelled())
        co_return;
    if (const auto error = m_node.status().errorText) {
        print(QLatin1String("smoke: FAIL after stop: ") + *error);
        finish(EXIT_FAILURE);
    } else {
        print(QStringLiteral("smoke: ok, stopped (%1)").arg(detail()));
        finish(EXIT_SUCCESS);
    }
}

QCoro::Task<> SmokeTest::giveUp(TaskToken token)
{
    print(QLatin1String("smoke: FAIL no server_info: ")
          + m_node.status().errorText.value_or(QStringLiteral("timed out")));
    co_await m_node.stopAndWait(QStringLiteral("smoke failed"));
    if (!token.cancelled())
        finish(EXIT_FAILURE);
}

void SmokeTest::interrupt(int signalNumber)
{
    if (std::exchange(m_interrupted, true))
        return;
    if (m_node.status().hasProcess) {
        StandardStreams::printError("smoke: waiting for the node to stop, for at most "
                                    + std::to_string(NodeController::killAfter.count()) + " s\n");
    }
    stopInterrupted(signalNumber, m_task.renew());
}

QCoro::Task<> SmokeTest::stopInterrupted(int signalNumber, TaskToken token)
{
    co_await m_node.stopAndWait(QStringLiteral("smoke interrupted"));
    if (token.cancelled())
        co_return;
    constexpr int signalStatus = 128; // the way shells report death by a signal
    finish(signalStatus + signalNumber);
}

QString SmokeTest::detail() const
{
    return DisplayText::singleLine(m_node.status().detail);
}

/// Prints a text and keeps its line breaks, because an error includes lines of the node's log.
void SmokeTest::print(const QString &text)
{
    QStringList lines = text.split(u'\n');
    for (QString &line : lines)
        line = DisplayText::singleLine(line);
    m_transcriptLost |= !m_print(lines.join(u'\n').toStdString());
}

void SmokeTest::finish(int status)
{
    emit finished(status == EXIT_SUCCESS && m_transcriptLost ? EXIT_FAILURE : status);
}

} // namespace tidewick
