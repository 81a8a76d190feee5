// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#pragma once

#include "ui/ledger/LedgerCard.h"

namespace tidewick {

/// The head of the ledger window: the newest ledger, and whether the stream flows.
class LedgerHeader final : public LedgerCard
{
    Q_OBJECT

public:
    LedgerHeader(const LedgerLook &look, QWidget *parent);

    /// The newest ledger's index, or what stands for it.
    void setLedger(const QString &index);
    void setConnected(bool connected);

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    void nameAnew();
    QRect status() const;
    void paintStatus(QPainter &painter) const;

    QString m_index;
    bool m_connected = false;
};

} // namespace tidewick
