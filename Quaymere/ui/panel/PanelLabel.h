// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#pragma once

#include "ui/controls/WrappedText.h"

#include <QLabel>

namespace tidewick {

/// A text of the node panel that is for reading, not choosing. Its words can be selected and
/// copied. Screen readers see a label. It lays out its text itself, because a QLabel breaks lines
/// only between words.
class PanelLabel final : public QLabel
{
    Q_OBJECT

public:
    /// The text is drawn in the palette's colour for this role, with this margin and padding.
    PanelLabel(QPalette::ColorRole color, int sideMargin, int padding, QWidget *parent);

    /// Gives the text a background, in the palette's ToolTipBase, and wider line spacing for
    /// sentences.
    void setFramed();

    void setWholeText(const QString &text);

    /// Sets whether the text is fainter, because its figure is no longer updated. To be called
    /// after setWholeText(), which describes the text as a current one.
    void setOld(bool old);

    int heightForWidth(int width) const override;

protected:
    void paintEvent(QPaintEvent *event) override;
    void changeEvent(QEvent *event) override;
    void mousePressEvent(QMouseEvent *event) override;
    void mouseMoveEvent(QMouseEvent *event) override;
    void mouseReleaseEvent(QMouseEvent *event) override;
    void mouseDoubleClickEvent(QMouseEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;
    void focusOutEvent(QFocusEvent *event) override;
    void contextMenuEvent(QContextMenuEvent *event) override;

private:
    QString selectedText() const;
    void select(const WrappedText::Range &range);

    WrappedText m_text;
    WrappedText::Range m_selected;
    bool m_isFramed = false;
    bool m_isOld = false;
};

} // namespace tidewick
