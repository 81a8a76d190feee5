// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#pragma once

#include "ui/controls/FittedWindow.h"
#include "ui/controls/TextLabel.h"

class QVBoxLayout;

namespace tidewick {

class Card;

/// A window made of texts and cards, one below the other. Escape closes it. It is wider than asked
/// for where the font is so large that rows would not fit on a line.
class CardWindow : public FittedWindow
{
    Q_OBJECT

public:
    /// Dark or light, which it is at first.
    void setDark(bool dark);

protected:
    CardWindow(const QString &title, int width, QWidget *parent);

    /// What texts and cards are put into, and what they are children of.
    QVBoxLayout &column() const { return *m_column; }
    QWidget *form() const { return m_form; }

    /// A measure for the font that the window begins with.
    int points(int measure) const;

    void setMargins(int sides, int top, int bottom);

    /// Puts a text below what is there, so many points from it and from both sides.
    TextLabel *addText(TextLabel::Look look, const QString &text, int spaceAbove, int inset = 0);

    /// Puts an empty card with a heading below what is there.
    Card *addCard(const QString &heading, int spaceAbove);

    int wantedWidth() const override;
    void keyPressEvent(QKeyEvent *event) override;
    bool eventFilter(QObject *object, QEvent *event) override;

private:
    CardWindow(QWidget *form, const QString &title, int width, QWidget *parent);

    int m_width;
    bool m_dark = false;
    QWidget *m_form;
    QVBoxLayout *m_column;
};

} // namespace tidewick
