// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#pragma once

#include "application/AppDelegate.h"
#include "application/DesktopFaces.h"
#include "application/Notices.h"
#include "desktop/SingleInstance.h"

#include <QApplication>

#include <optional>

namespace tidewick {

/// The menu-bar application on a desktop. Whatever asks it to end, the menu, a signal, the session
/// or another program, takes one way: the node stops first, then the event loop ends with 0.
class QuaymereApp final : public QApplication
{
    Q_OBJECT

public:
    QuaymereApp(int &argc, char **argv);
    ~QuaymereApp() override;

    /// Runs until the user quits, as the one instance. The process's exit status.
    int run(SingleInstance &instance, const DeathWatch &deathWatch);

protected:
    bool event(QEvent *event) override;

private:
    void runAction(const QString &action);

    std::optional<AppDelegate> m_appDelegate;
    std::optional<DesktopFaces> m_faces;
    std::optional<Notices> m_notices;
};

} // namespace tidewick
