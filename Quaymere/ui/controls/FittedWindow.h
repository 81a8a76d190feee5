// SPDX-FileCopyrightText: 2026 the Tidewick authors
// SPDX-License-Identifier: MIT

#pragma once

#include <QWidget>

class QScrollArea;

namespace tidewick {

/// A window as large as its content, which scrolls if the screen is too low for it. The content
/// reports its height through heightForWidth(). Main thread only.
class FittedWindow : public QWidget
{
    Q_OBJECT

public:
    /// Bound, as by default, the window is no larger than its screen. A window that is only
    /// rendered to a picture may be larger.
    void setBoundByScreen(bool bound);

protected:
    /// Subclasses call fit() once the content is complete.
    FittedWindow(QWidget *content, QWidget *parent);

    /// Must be called when the size of the content may have changed.
    void fit();

    /// Scrolls until this part of the content is visible.
    void ensureVisible(QWidget *part);

    /// The width for the content, if the screen is that wide.
    virtual int wantedWidth() const = 0;

    /// Called before the content is measured. A subclass with parts that scroll by themselves
    /// lowers them here, so that the content fits this size if it can.
    virtual void adaptContent(QSize room);

    /// Resizes the content to this width and to the height that it needs for it.
    virtual void fitContent(int width);

    void showEvent(QShowEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;
    void changeEvent(QEvent *event) override;

private:
    void followScreen();
    void fillWindow();

    QScrollArea *m_area;
    QWidget *m_content;
    bool m_isBoundByScreen = true;
    QMetaObject::Connection m_screenChange;
};

} // namespace tidewick
