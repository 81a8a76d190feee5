// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#pragma once

#include <QTextEdit>

namespace tidewick {

/// A text as it stands, in letters of one width, on a card: to be read, selected with mouse or
/// keyboard, and copied. As high as its lines, which are broken where they are too long.
class VerbatimText final : public QTextEdit
{
    Q_OBJECT

public:
    VerbatimText(const QString &name, const QString &text, QWidget *parent);

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override { return sizeHint(); }
    bool hasHeightForWidth() const override { return true; }
    int heightForWidth(int width) const override;

protected:
    void paintEvent(QPaintEvent *event) override;
    void changeEvent(QEvent *event) override;

private:
    void takeFont();
};

} // namespace tidewick
