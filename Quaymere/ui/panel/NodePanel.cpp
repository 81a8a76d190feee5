// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#include "ui/panel/NodePanel.h"

#include "ui/controls/ControlPalette.h"
#include "ui/controls/TextScale.h"
#include "ui/panel/PanelMetrics.h"
#include "ui/panel/PanelRows.h"

#include <QCloseEvent>
#include <QShortcut>

namespace tidewick {

NodePanel::NodePanel(QWidget *parent) : NodePanel(new PanelRows, parent) {}

NodePanel::NodePanel(PanelRows *rows, QWidget *parent) : FittedWindow(rows, parent), m_rows(rows)
{
    setWindowTitle(QStringLiteral("Tidewick"));
    setPalette(controlPalette(m_scheme));
    new QShortcut(QKeySequence::Cancel, this, this, &NodePanel::dismiss);
    connect(m_rows, &PanelRows::commandChosen, this, &NodePanel::commandChosen);
    connect(m_rows, &PanelRows::heightChanged, this, &NodePanel::fit);
    connect(m_rows, &PanelRows::focusMoved, this, &NodePanel::ensureVisible);
    fit();
}

void NodePanel::setRows(const QList<MenuRow> &rows)
{
    m_rows->setRows(rows);
}

void NodePanel::setIcon(const QIcon &icon)
{
    m_rows->setIcon(icon);
}

void NodePanel::setHint(const QString &hint)
{
    m_rows->setHint(hint);
}

void NodePanel::setScheme(Scheme scheme)
{
    if (scheme == m_scheme)
        return;
    m_scheme = scheme;
    setPalette(controlPalette(scheme));
}

void NodePanel::closeEvent(QCloseEvent *event)
{
    // Whoever asks for it: with Qt 6.4 a close request of a Wayland compositor looks like a call of
    // close(). The application quits without closing windows.
    event->ignore();
    dismiss();
}

void NodePanel::dismiss()
{
    if (m_isOnlyFace)
        showMinimized();
    else
        hide();
}

int NodePanel::wantedWidth() const
{
    return TextScale::scaled(font(), PanelMetrics::width);
}

/// Lays out the rows immediately, even if the size stays the same: rows may have changed position.
void NodePanel::fitContent(int width)
{
    m_rows->fit(width);
}

} // namespace tidewick
