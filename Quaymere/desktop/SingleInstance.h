// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#pragma once

#include <QDBusContext>
#include <QObject>

#include <memory>
#include <optional>

class QLockFile;

namespace tidewick {

/// Sees to it that a user runs one Tidewick at a time. The first one owns a name on the session bus
/// and answers there as org.freedesktop.Application, so that later launches and a desktop entry's
/// actions reach it; a lock in the runtime directory, or beside the settings where that is missing,
/// tells where there is no bus. Main thread only.
class SingleInstance final : public QObject, protected QDBusContext
{
    Q_OBJECT

public:
    enum class Claim {
        First,     ///< This is the one.
        ToldFirst, ///< Another runs, and has come forward.
        Refused,   ///< Another runs that cannot come forward; reason() says why.
    };

    /// The application's name on the bus, and that of its desktop entry.
    static constexpr const char *name = "org.tidewick.Tidewick";

    SingleInstance();
    ~SingleInstance() override;

    /// Call once. Blocks while the bus and the first instance take to answer.
    Claim claim();

    /// A text for the person who launched this.
    const QString &reason() const { return m_reason; }

    /// From now on, who wants this one to come forward is told why it does not.
    void refuseCalls(const QString &why) { m_refusal = why; }

signals:
    /// Another launch wants this one to come forward.
    void activated();

    /// The bus has started this one for a launch.
    void launched();

    /// A desktop entry's action was chosen: "live-ledger", "settings" or "quit".
    void actionActivated(const QString &action);

private:
    friend class ApplicationAdaptor;

    static bool hasSessionBus();
    bool takeLock(bool isOptional);
    std::optional<Claim> tellFirst();
    void activate(const QVariantMap &platformData);
    void activateAction(const QString &action, const QVariantMap &platformData);
    /// Whether calls are refused; the present one is, then.
    bool isRefused() const;

    std::unique_ptr<QLockFile> m_lock;
    QString m_reason;
    QString m_refusal;
    /// Until the call for which the bus has started this program has come.
    bool m_isStartedByBus;
};

} // namespace tidewick
