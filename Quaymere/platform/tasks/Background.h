// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#pragma once

#include "platform/tasks/Handover.h"
#include "platform/tasks/Task.h"

#include <QCoreApplication>
#include <QThreadPool>

namespace tidewick {

/// Runs work that may take long on another thread and resumes the calling task with its result. If
/// the task is cancelled first, resumes it with nothing; the work still runs to completion. The
/// work must not access anything that belongs to the main thread. Call from the main thread.
template <typename Result>
QCoro::Task<std::optional<Result>> inBackground(std::function<Result()> work, TaskToken token)
{
    if (token.cancelled())
        co_return std::nullopt;
    const auto done = std::make_shared<OneShot<std::optional<Result>>>();
    QThreadPool::globalInstance()->start(Handover([done, work] {
        const Result result = work();
        QMetaObject::invokeMethod(QCoreApplication::instance(),
                                  Handover([done, result] { done->resolve(result); }),
                                  Qt::QueuedConnection);
    }));
    const auto registration = token.onCancel([done] { done->resolve(std::nullopt); });
    co_return co_await *done;
}

} // namespace tidewick
