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

/// The menu-bar application on a desktop. Every request to quit, whether from the menu, a signal,
/// the session or another program, takes the same path: the node stops first, then the event loop
/// ends with 0.
class QuaymereApp final : public QApplication
{
    Q_OBJECT

public:
    QuaymereApp(int &argc, char **argv);
    ~QuaymereApp() override;

    /// Runs as the only instance until the user quits. Returns the exit status of the process.
    int run(SingleInstance &instance, const Guards &guards);

protected:
    bool event(QEvent *event) override;

private:
    void runAction(const QString &action);

    std::optional<AppDelegate> m_appDelegate;
    std::optional<DesktopFaces> m_faces;
    std::optional<Notices> m_notices;
};

} // namespace tidewick
