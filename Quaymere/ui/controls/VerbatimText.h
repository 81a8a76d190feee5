// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#pragma once

#include <QTextEdit>

namespace tidewick {

/// A verbatim text in a fixed-width font on a card, which can be read, selected with mouse or
/// keyboard, and copied. It is as high as its lines; long lines wrap.
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
