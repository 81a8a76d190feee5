// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#include "desktop/WaylandClipboard.h"

#include <QProcess>
#include <QStandardPaths>
#include <QTimer>

#include <array>
#include <chrono>
#include <memory>
#include <string_view>

#include <wayland-client.h>

namespace tidewick {

namespace {

using namespace std::chrono_literals;

/// It copies at once, unless it waits for something that will not happen.
constexpr std::chrono::seconds patience = 3s;

/// The same protocol, before and after it became common to all compositors.
constexpr std::array<std::string_view, 2> protocols{"zwlr_data_control_manager_v1",
                                                    "ext_data_control_manager_v1"};

void noteProtocol(void *found, wl_registry *, std::uint32_t, const char *interface, std::uint32_t)
{
    for (const std::string_view protocol : protocols)
        *static_cast<bool *>(found) |= protocol == interface;
}

void ignoreRemoval(void *, wl_registry *, std::uint32_t) {}

/// Whether the compositor lets any program set the clipboard. Without that, wl-copy would open a
/// window of its own.
bool isOpenToAll()
{
    const std::unique_ptr<wl_display, decltype(&wl_display_disconnect)> display(
        wl_display_connect(nullptr), &wl_display_disconnect);
    if (!display)
        return false;
    bool found = false;
    constexpr wl_registry_listener listener{noteProtocol, ignoreRemoval};
    wl_registry *registry = wl_display_get_registry(display.get());
    wl_registry_add_listener(registry, &listener, &found);
    wl_display_roundtrip(display.get());
    wl_registry_destroy(registry);
    return found;
}

} // namespace

void WaylandClipboard::copy(const QString &text, QObject *context,
                            const std::function<void(bool copied)> &done)
{
    const QString program = QStandardPaths::findExecutable(QStringLiteral("wl-copy"));
    if (program.isEmpty() || !isOpenToAll())
        return done(false);
    auto *process = new QProcess(context);
    QObject::connect(process, &QProcess::finished, context,
                     [process, done](int status, QProcess::ExitStatus ending) {
                         process->deleteLater();
                         done(ending == QProcess::NormalExit && status == 0);
                     });
    QObject::connect(process, &QProcess::errorOccurred, context,
                     [process, done](QProcess::ProcessError error) {
                         if (error != QProcess::FailedToStart)
                             return; // it finishes
                         process->deleteLater();
                         done(false);
                     });
    auto *limit = new QTimer(process);
    limit->setSingleShot(true);
    QObject::connect(limit, &QTimer::timeout, process, &QProcess::kill);
    limit->start(patience);
    // Its descendant that keeps the content must not keep these open.
    process->setStandardOutputFile(QProcess::nullDevice());
    process->setStandardErrorFile(QProcess::nullDevice());
    process->start(program, {QStringLiteral("--type"), QStringLiteral("text/plain;charset=utf-8")});
    process->write(text.toUtf8());
    process->closeWriteChannel();
}

} // namespace tidewick
