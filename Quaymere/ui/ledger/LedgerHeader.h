// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#pragma once

#include "ui/ledger/FigureText.h"
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
    /// Sets the text that says how old the newest ledger is; empty while it is current.
    void setAge(const QString &age);

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    void nameAnew();
    qreal paintIndex(QPainter &painter, const QRect &room) const;
    QRect status() const;
    int dotSize() const;
    void paintStatus(QPainter &painter, const QRect &pill) const;

    QString m_index;
    QString m_age;
    FigureText m_indexText;
    FigureText m_ageText;
    bool m_connected = false;
};

} // namespace tidewick
