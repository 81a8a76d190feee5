// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#pragma once

#include "ui/controls/WrappedText.h"

#include <QLabel>

namespace tidewick {

/// A text in a card window: plain, wrapped to its width, in one of the looks of such windows. Its
/// font follows the window's. Its contents margins are the space around it.
class TextLabel final : public QLabel
{
    Q_OBJECT

public:
    enum class Look {
        Title,     ///< the application's name
        Subtitle,  ///< below the title
        Headline,  ///< above paragraphs
        Heading,   ///< above a card
        Paragraph, ///< running text
        Footnote,  ///< below a card
        Alarm,     ///< an error
        Label,     ///< the label of a row
        Name,      ///< the label of a figure
        Figure,    ///< beside a name
        Value,     ///< at the end of a row
        Message,   ///< the first line of a dialog
        Path,      ///< a file or folder, in a fixed-width font
        Advice,    ///< advice, in a box
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
    qreal spaceAbove() const;

    Look m_look;
    WrappedText m_text;
};

} // namespace tidewick
