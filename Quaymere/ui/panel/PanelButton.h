// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#pragma once

#include "ui/controls/Button.h"
#include "ui/controls/WrappedText.h"

namespace tidewick {

/// A command of the node panel. It acts as a button for keyboard, mouse and screen readers, with
/// two exceptions. A click does not give it the focus, so that the fill stays at the keyboard's
/// command. The second click of a double click does nothing, because the button may stand for
/// another command by then.
class PanelButton final : public Button
{
    Q_OBJECT

public:
    explicit PanelButton(QWidget *parent);

    /// Screen readers do not hear of a change while the button has the focus, because they would
    /// read out each new figure.
    void setWholeText(const QString &text);
    QString wholeText() const { return m_text.text(); }
    /// Tells screen readers the current text in any case.
    void nameAnew();

    void setChoosable(bool choosable);

    /// Sets whether the text is fainter, because its figure is no longer updated. To be called
    /// after setWholeText(), which describes the text as a current one.
    void setOld(bool old);

    /// Shows the button as focused, although it may be disabled and therefore unable to have the
    /// focus.
    void setHeld(bool held);

    int heightForWidth(int width) const override;
    QSize sizeHint() const override;

protected:
    void paintEvent(QPaintEvent *event) override;
    void changeEvent(QEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;
    void focusOutEvent(QFocusEvent *event) override;
    void mouseDoubleClickEvent(QMouseEvent *event) override;

private:
    WrappedText m_text;
    bool m_held = false;
    bool m_isOld = false;
};

} // namespace tidewick
