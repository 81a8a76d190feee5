// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#pragma once

#include <QObject>
#include <QSocketNotifier>

#include <initializer_list>
#include <vector>

namespace tidewick {

/// Turns signals sent to the process into a Qt signal in the main thread. The handler itself only
/// writes the number to a socket pair. Only one instance may exist at a time. Its destructor
/// restores the default action of the signals. SIGHUP stays ignored if the caller had it ignored,
/// as nohup does.
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
