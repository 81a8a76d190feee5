// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#pragma once

#include "ui/controls/FittedWindow.h"
#include "ui/controls/Scheme.h"
#include "ui/controls/TextLabel.h"

class QVBoxLayout;

namespace tidewick {

class Card;

/// A window with a column of texts and cards. Escape closes it. It becomes wider than requested if
/// the font is so large that rows would not fit on a line.
class CardWindow : public FittedWindow
{
    Q_OBJECT

public:
    /// Sets the colours; light ones are the default.
    void setScheme(Scheme scheme);

protected:
    CardWindow(const QString &title, int width, QWidget *parent);

    /// The layout that texts and cards go into, and the widget that is their parent.
    QVBoxLayout &column() const { return *m_column; }
    QWidget *form() const { return m_form; }

    /// Scales a measure for the window's initial font.
    int points(int measure) const;

    void setMargins(int sides, int top, int bottom);

    /// Adds a text below the existing content, with this much space above it and at both sides, in
    /// points.
    TextLabel *addText(TextLabel::Look look, const QString &text, int spaceAbove, int inset = 0);

    /// Adds an empty card with a heading below the existing content. The heading is inset as in
    /// addText().
    Card *addCard(const QString &heading, int spaceAbove, int inset = 0);

    int wantedWidth() const override;
    void keyPressEvent(QKeyEvent *event) override;
    bool eventFilter(QObject *object, QEvent *event) override;

private:
    CardWindow(QWidget *form, const QString &title, int width, QWidget *parent);

    int m_width;
    Scheme m_scheme;
    QWidget *m_form;
    QVBoxLayout *m_column;
};

} // namespace tidewick
