// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#pragma once

#include "ui/controls/CardWindow.h"
#include "ui/icon/SquareStatusImage.h"

class QHBoxLayout;

namespace tidewick {

class AdviceBox;
class LogCard;
class PushButton;

/// A message in a window of its own, with the mark beside it and a row of buttons below it. All
/// text is plain. The default button has the focus at first, and Return presses it unless another
/// button has the focus. The dialog is deleted when it is closed. Main thread only.
class Dialog final : public CardWindow
{
    Q_OBJECT

public:
    /// What a dialog says. Everything but the headline may be empty and is then left out.
    struct Message
    {
        QString headline;
        QString text;
        /// Many lines, for example of a log, which may be long.
        QString log;
        QString advice;
    };

    /// The width is in points for text of 10 points.
    Dialog(const SquareStatusImage &mark, int width);

    void setMessage(const Message &message);

    /// Adds a line below the message's text and the earlier lines, with this much space above it,
    /// in points.
    void addLine(TextLabel::Look look, const QString &text, int spaceAbove);

    /// Adds a button at the start or at the end of the row.
    PushButton *addButtonAtStart(const QString &text);
    PushButton *addButtonAtEnd(const QString &text);

    void setDefaultButton(PushButton *button);

    /// Shows the dialog in front of all other windows.
    void present();

    /// Closes the dialog with the answer yes.
    void accept();

signals:
    /// Emitted when the dialog is closed, in whichever way. The answer is yes only after accept().
    void closed(bool isAccepted);

protected:
    int wantedWidth() const override;
    void adaptContent(QSize room) override;
    void showEvent(QShowEvent *event) override;
    void closeEvent(QCloseEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;
    bool eventFilter(QObject *object, QEvent *event) override;

private:
    void makeHeader(const SquareStatusImage &mark);
    void makeParts();
    PushButton *addButton(const QString &text, int position);
    QString description() const;
    void paintHalo();

    int m_leastWidth;
    bool m_isAccepted = false;
    QVBoxLayout *m_lines = nullptr;
    TextLabel *m_headline = nullptr;
    TextLabel *m_text = nullptr;
    LogCard *m_log = nullptr;
    AdviceBox *m_advice = nullptr;
    QHBoxLayout *m_buttons = nullptr;
    PushButton *m_default = nullptr;
};

} // namespace tidewick
