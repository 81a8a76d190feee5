// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#pragma once

#include "node/NodeController.h"
#include "node/Settings.h"
#include "platform/files/DefaultsWatch.h"
#include "ui/controls/CardWindow.h"
#include "ui/settings/SettingsChoices.h"

#include <QUrl>

#include <functional>
#include <vector>

namespace tidewick {

class Card;
class Picker;

/// What the settings window asks of the host. Real by default; a test puts its own in place.
struct SettingsHost
{
    SettingsHost();

    Defaults defaults = Defaults::standard();

    /// Shows a file or folder with the program that the desktop has for it. False when there is
    /// none.
    std::function<bool(const QUrl &)> openUrl;

    /// FileBrowser::reveal on the session's bus.
    std::function<void(const std::filesystem::path &, QObject *context,
                       const std::function<void()> &otherwise)>
        reveal;
};

/// The window "Tidewick Settings". A choice is stored the moment it is picked and applies from the
/// next start of the node; what others put into the store is shown as it comes. Owned by the
/// application, which destroys it before the controller; main thread only.
class SettingsWindow final : public CardWindow
{
    Q_OBJECT

public:
    explicit SettingsWindow(NodeController &node, SettingsHost host = SettingsHost(),
                            QWidget *parent = nullptr);

    /// Puts stored values that are out of their range in order, so that the pickers show what the
    /// node will use. Done each time the window is shown.
    void showWhatApplies();

protected:
    void showEvent(QShowEvent *event) override;

private:
    struct Question
    {
        Setting setting;
        QList<qint64> values;
        SettingsChoices::Label label;
        Picker *picker;
    };

    void makeRunning();
    void makeDiskSpace();
    void makeAdvanced();
    Picker *ask(Card &card, const QString &title, const Setting &setting,
                const QList<qint64> &values, const SettingsChoices::Label &label);
    TextLabel *addFootnote(const QString &text);

    void store(const Setting &setting, qint64 value);
    void showStored();
    void followNode();
    void open(const std::filesystem::path &path);
    void tell(const QString &trouble);

    NodeController &m_node;
    SettingsHost m_host;
    DefaultsWatch m_watch;
    std::vector<Question> m_questions;
    /// Null where the store is trimmed in another way.
    Picker *m_tidyPicker = nullptr;
    TextLabel *m_tidyFootnote = nullptr;
    TextLabel *m_storeNow = nullptr;
    TextLabel *m_trouble = nullptr;
};

} // namespace tidewick
