// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#pragma once

#include "ui/ledger/LedgerCard.h"

namespace tidewick {

/// The header of the ledger window: the newest ledger, and whether the stream is connected.
class LedgerHeader final : public LedgerCard
{
    Q_OBJECT

public:
    LedgerHeader(const LedgerLook &look, QWidget *parent);

    /// Sets the index of the newest ledger, or its placeholder.
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
