// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#pragma once

#include "ui/controls/Scheme.h"
#include "ui/menu/MenuRows.h"

#include <QMenu>

#include <array>

namespace tidewick {

/// A menu of the rows. It has a fixed set of actions and changes only those that differ, so that an
/// open menu stays still under the pointer and the bus carries only the changes. Main thread only.
class RowMenu final : public QMenu
{
    Q_OBJECT

public:
    /// Selects who draws the menu, and therefore how its texts are escaped.
    enum class Drawing {
        ByHost, ///< A tray host that receives the menu over D-Bus.
        ByUs,   ///< Qt.
    };

    explicit RowMenu(Drawing drawing);

    void setRows(const QList<MenuRow> &rows);

    /// Sets the colours of a menu that we draw; light ones are the default.
    void setScheme(Scheme scheme);

signals:
    void commandChosen(tidewick::MenuCommand command);

protected:
    void initStyleOption(QStyleOptionMenuItem *option, const QAction *action) const override;

private:
    void addPlace(MenuPlace place);
    void setRow(QAction &action, const MenuRow &row) const;
    QString escaped(QString text) const;

    Drawing m_drawing;
    std::array<QAction *, menuPlaceCount> m_actions{};
    std::array<MenuCommand, menuPlaceCount> m_commands{};
};

} // namespace tidewick
