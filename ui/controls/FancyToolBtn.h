// A flat tool button.
#pragma once

#include <QToolButton>

class QStyleOptionToolButton;
class QStylePainter;

/// Shows its icon, its text or the icon above the text, as its button style says, on a fill that
/// only gets a frame under the pointer.
class FancyToolBtn : public QToolButton
{
    Q_OBJECT

public:
    explicit FancyToolBtn(QWidget* parent = nullptr);

protected:
    void enterEvent(QEnterEvent* event) override;
    void leaveEvent(QEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void hideEvent(QHideEvent* event) override;
    void paintEvent(QPaintEvent* event) override;

private:
    void _drawFill(QPainter& painter, const QStyleOptionToolButton& option) const;
    void _drawContent(QStylePainter& painter, const QStyleOptionToolButton& option) const;
    void _drawText(QStylePainter& painter, const QStyleOptionToolButton& option,
                   const QRect& area) const;
    [[nodiscard]] bool _isHot() const;

    bool m_pressed = false;
};
