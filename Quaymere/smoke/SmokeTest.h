// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#pragma once

#include "node/NodeController.h"
#include "platform/tasks/Task.h"

#include <QObject>

#include <filesystem>
#include <functional>
#include <string>

namespace tidewick {

/// Checks that the bundle's node can be configured, started, queried and stopped with the same
/// NodeController that the application uses. Prints a transcript. Needs a running event loop. Call
/// start() only once.
class SmokeTest final : public QObject
{
    Q_OBJECT

public:
    /// Writes one line of the transcript. Returns false if the line is lost.
    using Print = std::function<bool(const std::string &line)>;

    /// The node's data goes into `dataDirectory` and stays there.
    SmokeTest(const std::filesystem::path &dataDirectory, NodeHost host);
    SmokeTest(const std::filesystem::path &dataDirectory, NodeHost host, Print print);

    void start();

    /// Stops the node, then finishes with 128 + the signal number. Further calls do nothing.
    void interrupt(int signalNumber);

signals:
    /// Reports the exit status: 0 if every step passed, 128 + the signal number after interrupt(),
    /// otherwise 1. The node is no longer running.
    void finished(int status);

private:
    QCoro::Task<> run(TaskToken token);
    QCoro::Task<> waitWhile(std::function<bool()> condition, std::chrono::seconds limit,
                            TaskToken token);
    QCoro::Task<> pass(TaskToken token);
    QCoro::Task<> giveUp(TaskToken token);
    QCoro::Task<> stopInterrupted(int signalNumber, TaskToken token);
    QString detail() const;
    void print(const QString &text);
    void finish(int status);

    const std::shared_ptr<Clock> m_clock;
    const Print m_print;
    NodeController m_node;
    bool m_interrupted = false;
    /// An incomplete transcript proves nothing, so losing a line fails the test.
    bool m_transcriptLost = false;
    TaskOwner m_task;
};

} // namespace tidewick
