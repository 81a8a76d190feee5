// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#pragma once

#include <QObject>
#include <QPointer>
#include <QUrl>

#include <functional>
#include <map>

class QWidget;

namespace tidewick {

class Appearance;
class NodeController;

/// The application's windows by identifier. Each window is created when it is first requested, and
/// there is at most one of each. Closing a window destroys it. Main thread only.
class Windows final : public QObject
{
    Q_OBJECT

public:
    using OpenUrl = std::function<bool(const QUrl &)>;

    /// The windows show the node and follow the appearance when it changes; both must outlive this
    /// object. The windows pass URLs for other programs to openUrl.
    Windows(NodeController &node, const Appearance &appearance, OpenUrl openUrl);
    ~Windows() override;

    /// Opens the window with this identifier, or brings it forward if it is already open. The
    /// identifier is "settings", "ledger" or "about".
    void open(const QString &identifier);

    /// Returns the open window with this identifier, or null if it is not open.
    QWidget *window(const QString &identifier) const;

private:
    struct Scene
    {
        std::function<QWidget *()> make;
        QPointer<QWidget> window;
    };

    QWidget *makeLedger(const OpenUrl &openUrl);

    const Appearance &m_appearance;

    std::map<QString, Scene> m_scenes;
};

} // namespace tidewick
