// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#pragma once

#include "ui/controls/WrappedText.h"

#include <QLabel>

namespace tidewick {

/// A text of a window made of cards: plain, on as many lines as its width takes, in one of the
/// looks that such windows have. Its font follows its window's; its contents margins are the space
/// around it.
class TextLabel final : public QLabel
{
    Q_OBJECT

public:
    enum class Look {
        Title,     ///< the application's name
        Subtitle,  ///< what stands below it
        Headline,  ///< above paragraphs
        Heading,   ///< above a card
        Paragraph, ///< to be read
        Footnote,  ///< below a card
        Alarm,     ///< what went wrong
        Label,     ///< what a row is about
        Name,      ///< what a figure is about
        Figure,    ///< beside a name
        Value,     ///< at the end of a row
    };

    TextLabel(Look look, const QString &text, QWidget *parent);

    void setWholeText(const QString &text);

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;
    int heightForWidth(int width) const override;

protected:
    void paintEvent(QPaintEvent *event) override;
    void changeEvent(QEvent *event) override;

private:
    void takeFont();

    Look m_look;
    WrappedText m_text;
};

} // namespace tidewick
