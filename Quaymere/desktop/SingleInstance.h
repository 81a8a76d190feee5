// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#pragma once

#include <QDBusContext>
#include <QObject>

#include <memory>
#include <optional>

class QLockFile;

namespace tidewick {

/// Ensures that a user runs one Tidewick at a time. The first instance owns a name on the session
/// bus and implements org.freedesktop.Application there, so that later launches and the actions of
/// a desktop entry reach it. If there is no bus, a lock file shows that an instance is running; it
/// is in the runtime directory or, if there is none, beside the settings. Main thread only.
class SingleInstance final : public QObject, protected QDBusContext
{
    Q_OBJECT

public:
    enum class Claim {
        First,     ///< This is the first instance.
        ToldFirst, ///< Another instance is running and has come to the front.
        Refused,   ///< Another instance is running but cannot come to the front; see reason().
    };

    /// The application's bus name, which is also the name of its desktop entry.
    static constexpr const char *name = "org.tidewick.Tidewick";

    /// Takes the identifier that the launcher has given to this launch, if any.
    explicit SingleInstance(QByteArray launch = {});
    ~SingleInstance() override;

    /// Call once. Blocks until the bus and the first instance have answered.
    Claim claim();

    /// The reason for a refusal, as a text for the user who launched this instance.
    const QString &reason() const { return m_reason; }

    /// The identifier that the launcher has given to this launch; empty if there is none.
    const QByteArray &launch() const { return m_launch; }

    /// From now on, answers requests to come to the front with an error that gives this reason.
    void refuseCalls(const QString &why) { m_refusal = why; }

signals:
    /// What a launch with this identifier asked for has been done.
    void served(const QByteArray &launch);

    /// Another launch asks this instance to come to the front.
    void activated();

    /// The bus has started this instance on behalf of a launch.
    void launched();

    /// An action of the desktop entry was chosen: "live-ledger", "settings" or "quit".
    void actionActivated(const QString &action);

private:
    friend class ApplicationAdaptor;

    static bool hasSessionBus();
    bool takeLock(bool isOptional);
    std::optional<Claim> tellFirst();
    void activate(const QVariantMap &platformData);
    void activateAction(const QString &action, const QVariantMap &platformData);
    /// Returns whether calls are refused. If so, also refuses the current call.
    bool isRefused() const;

    std::unique_ptr<QLockFile> m_lock;
    QByteArray m_launch;
    QString m_reason;
    QString m_refusal;
    /// True from a start by the bus until the call that caused it has arrived.
    bool m_isStartedByBus;
};

} // namespace tidewick
