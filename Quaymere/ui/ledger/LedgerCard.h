// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#pragma once

#include "ui/ledger/LedgerLook.h"

#include <QWidget>

namespace tidewick {

/// A part of the ledger window on a card of its own: a surface with round corners and a hairline
/// around it, and with a title where it has one.
class LedgerCard : public QWidget
{
    Q_OBJECT

public:
    /// The look outlives the card.
    LedgerCard(const LedgerLook &look, const QString &title, QWidget *parent);

    /// The look is another one.
    virtual void lookChanged() { update(); }

protected:
    const Palette &colors() const { return m_look.colors; }
    const LedgerMetrics &metrics() const { return m_look.metrics; }
    bool isStill() const { return m_look.still; }

    /// Covers all of the area: ground, card and title.
    void paintCard(QPainter &painter, const QRect &area) const;

    /// Where the title stands, over the whole width of what the card holds.
    QRect titleRect() const;

    /// To the right of the title.
    QRect besideTitle() const;

    /// Below the title.
    QRect content() const;

private:
    const LedgerLook &m_look;
    QString m_title;
};

} // namespace tidewick
