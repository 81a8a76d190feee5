// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#pragma once

#include <QObject>
#include <QSocketNotifier>

#include <initializer_list>
#include <vector>

namespace tidewick {

/// Turns signals sent to the process into a Qt signal in the main thread. The handler itself only
/// writes the number to a socket pair. One at a time in a process; when it goes, the signals have
/// their default effect again. SIGHUP stays ignored where the caller had it so, as nohup does.
class SignalListener final : public QObject
{
    Q_OBJECT

public:
    explicit SignalListener(std::initializer_list<int> signalNumbers, QObject *parent = nullptr);
    ~SignalListener() override;

signals:
    void received(int signalNumber);

private:
    void readSignal();

    std::vector<int> m_numbers;
    QSocketNotifier m_notifier;
};

} // namespace tidewick
