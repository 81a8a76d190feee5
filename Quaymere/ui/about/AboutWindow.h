// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#pragma once

#include "node/NodeController.h"
#include "ui/controls/CardWindow.h"

namespace tidewick {

class VerbatimText;
class Disclosure;
class TextLabel;

/// The "About Tidewick" window. It describes the application and shows its version and the node's,
/// the node's current memory and storage use, and the details of the build. Owned by the
/// application, which destroys it before the controller; main thread only.
class AboutWindow final : public CardWindow
{
    Q_OBJECT

public:
    /// The version is the application's, if it has one.
    explicit AboutWindow(NodeController &node, const std::optional<QString> &version = std::nullopt,
                         QWidget *parent = nullptr);

private:
    void makeHeader(const QString &versionLine);
    void makeTexts(bool hasMossgrid);
    void makeFigures();
    void makeBuildDetails(const QString &buildInfo);

    void followNode();
    void openDetails(bool open);

    NodeController &m_node;
    TextLabel *m_memory = nullptr;
    TextLabel *m_store = nullptr;
    Disclosure *m_disclosure = nullptr;
    VerbatimText *m_details = nullptr;
};

} // namespace tidewick
