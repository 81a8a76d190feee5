// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#pragma once

#include "ui/controls/WrappedText.h"

#include <QAbstractButton>

namespace tidewick {

/// A command of the node panel. A button to keyboard, mouse and assistive software, but for this:
/// it does not take the focus when it is clicked, so that the fill stays where the keyboard is, and
/// of a double click the second half does nothing, since by then it may stand for another command.
class PanelButton final : public QAbstractButton
{
    Q_OBJECT

public:
    explicit PanelButton(QWidget *parent);

    void setWholeText(const QString &text);
    void setChoosable(bool choosable);

    /// Shown as having the focus, which disabled widgets cannot have.
    void setHeld(bool held);

    int heightForWidth(int width) const override;
    QSize sizeHint() const override;

protected:
    void paintEvent(QPaintEvent *event) override;
    void changeEvent(QEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;
    void mouseDoubleClickEvent(QMouseEvent *event) override;

private:
    WrappedText m_text;
    bool m_held = false;
};

} // namespace tidewick
