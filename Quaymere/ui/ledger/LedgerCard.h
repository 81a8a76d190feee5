// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#pragma once

#include "ui/ledger/LedgerLook.h"

#include <QWidget>

namespace tidewick {

/// A part of the ledger window on its own card: a surface with rounded corners, a hairline border
/// and an optional title.
class LedgerCard : public QWidget
{
    Q_OBJECT

public:
    /// The look must outlive the card.
    LedgerCard(const LedgerLook &look, const QString &title, QWidget *parent);

    bool hasTitle() const { return !m_title.isEmpty(); }

    /// Called when the look has changed.
    virtual void lookChanged() { update(); }

protected:
    const Palette &colors() const { return m_look.colors; }
    const LedgerMetrics &metrics() const { return m_look.metrics; }
    bool isStill() const { return m_look.still; }
    bool isOld() const { return m_look.old; }

    /// The colours of figures and of the texts beside them, fainter while they are old.
    const QColor &figureColor() const { return isOld() ? colors().ink3 : colors().ink; }
    const QColor &besideColor() const { return isOld() ? colors().ink3 : colors().ink2; }

    /// The card's parts are laid out from left to right. These two return where a part goes, and
    /// how its text is aligned, in the card's layout direction.
    QRect visual(const QRect &part) const;
    Qt::Alignment visual(Qt::Alignment alignment) const;

    /// Paints the whole area: background, card and title.
    void paintCard(QPainter &painter, const QRect &area) const;

    /// Draws one line of text in a part of the card.
    void paintLine(QPainter &painter, const QRect &part, Qt::Alignment alignment, const QFont &font,
                   const QColor &color, const QString &text) const;

    /// The line of the title, over the whole width of the card's content.
    QRect titleRect() const;

    /// The space behind the title.
    QRect besideTitle() const;

    /// The space below the title.
    QRect content() const;

private:
    const LedgerLook &m_look;
    QString m_title;
};

} // namespace tidewick
