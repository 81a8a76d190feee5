// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#pragma once

#include "platform/files/Files.h"
#include "platform/time/Clock.h"

#include <QObject>
#include <QSocketNotifier>
#include <QTimer>

#include <memory>

namespace tidewick {

/// Emits `elapsed` once, when the continuous clock reaches a given time: immediately on waking if
/// it passed during sleep, and from the event loop if it is already past. Never early.
class ContinuousTimer final : public QObject
{
    Q_OBJECT

public:
    explicit ContinuousTimer(ContinuousClock::time_point when, QObject *parent = nullptr);

signals:
    void elapsed();

private:
    bool startKernelTimer();
    void startFallback();
    void fire();

    ContinuousClock::time_point m_when;
    UniqueDescriptor m_descriptor;
    std::unique_ptr<QSocketNotifier> m_notifier;
    QTimer m_fallback;
};

} // namespace tidewick
