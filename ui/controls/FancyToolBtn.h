// A flat tool button.
#pragma once

#include <QToolButton>

class QStyleOptionToolButton;

/// Shows its icon, its text or the icon above the text, as its button style says, on a fill that
/// only gets a frame under the pointer. Return presses it as Space does.
class FancyToolBtn : public QToolButton
{
    Q_OBJECT

public:
    explicit FancyToolBtn(QWidget* parent = nullptr);

protected:
    void enterEvent(QEnterEvent* event) override;
    void leaveEvent(QEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void keyReleaseEvent(QKeyEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void hideEvent(QHideEvent* event) override;
    void changeEvent(QEvent* event) override;
    void paintEvent(QPaintEvent* event) override;

private:
    void _drawFill(QPainter& painter, const QStyleOptionToolButton& option) const;
    void _adaptLabel(QStyleOptionToolButton& option) const;
    [[nodiscard]] bool _isHot() const;

    bool m_pressed = false;
};
