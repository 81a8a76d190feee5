// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#pragma once

#include <QWidget>

class QTextEdit;

namespace tidewick {

/// A card with a verbatim text in a fixed-width font, such as the end of a log, to read, select and
/// copy. Long lines do not wrap, and both directions scroll. Its contents margins are the space
/// around it.
class LogCard final : public QWidget
{
    Q_OBJECT

public:
    explicit LogCard(QWidget *parent);

    void setText(const QString &text);

    /// Sets the name that screen readers have for the text.
    void setTextName(const QString &name);

    /// Limits the height, space around the card included. A few lines stay visible nevertheless.
    void setHeightLimit(int limit);

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override { return sizeHint(); }

protected:
    void paintEvent(QPaintEvent *event) override;
    void showEvent(QShowEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;
    void changeEvent(QEvent *event) override;
    bool eventFilter(QObject *object, QEvent *event) override;

private:
    void takeFont();
    void spreadLines();
    int heightOf(int lines) const;
    void placeText();

    QTextEdit *m_text;
    int m_heightLimit = QWIDGETSIZE_MAX;
};

} // namespace tidewick
