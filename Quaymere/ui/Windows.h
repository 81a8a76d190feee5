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

/// The application's windows by identifier: each is made when it is first asked for, and there is
/// one of each at most. Closing one destroys it. Main thread only.
class Windows final : public QObject
{
    Q_OBJECT

public:
    using OpenUrl = std::function<bool(const QUrl &)>;

    /// The windows show the node and look as the appearance says, also when that changes; both
    /// outlive this. What they show by other programs goes through openUrl.
    Windows(NodeController &node, const Appearance &appearance, OpenUrl openUrl);
    ~Windows() override;

    /// Opens the window of that identifier, or brings it forward where it is open already. One of
    /// "settings", "ledger" and "about".
    void open(const QString &identifier);

    /// The open window of that identifier; null when it is not open.
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
