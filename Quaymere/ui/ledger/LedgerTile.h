// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#pragma once

#include "ui/ledger/FigureText.h"
#include "ui/ledger/LedgerCard.h"

namespace tidewick {

/// A figure of the ledger window with its label above and its unit below.
class LedgerTile final : public LedgerCard
{
    Q_OBJECT

public:
    LedgerTile(const LedgerLook &look, const QString &label, QWidget *parent);

    void setFigure(const QString &figure, const QString &unit);

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    QString m_label;
    QString m_figure;
    QString m_unit;
    FigureText m_figureText;
    FigureText m_unitText;
};

} // namespace tidewick
