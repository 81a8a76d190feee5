// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#pragma once

#include "ui/controls/WrappedText.h"

#include <QLabel>

namespace tidewick {

/// A text of the node panel that is read, not chosen; its words can be selected and copied. A label
/// to assistive software; as a QLabel alone it would break lines between words only.
class PanelLabel final : public QLabel
{
    Q_OBJECT

public:
    /// Drawn in the palette's colour of that role, with the text's margin and padding.
    PanelLabel(QPalette::ColorRole color, int sideMargin, int padding, QWidget *parent);

    /// With a ground of its own around the text, in the palette's ToolTipBase, and set wider, since
    /// it holds sentences.
    void setFramed();

    void setWholeText(const QString &text);
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
};

} // namespace tidewick
