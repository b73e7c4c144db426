// A two-state check box drawn from four pictures.
#pragma once

#include <QAbstractButton>
#include <QHash>
#include <QIcon>

/// A check box without text, 16 x 16, that never takes the focus. Subclasses bring the pictures.
class FancyCheckbox : public QAbstractButton
{
    Q_OBJECT

public:
    explicit FancyCheckbox(QWidget* parent = nullptr);

    /// How opaque the picture is drawn, 0 to 1; at first 1.
    void setIconOpacity(double opacity);

    [[nodiscard]] QSize sizeHint() const override;

Q_SIGNALS:
    /// The box was checked (1) or unchecked (0), by the user or by code.
    void stateChanged(int state);

protected:
    enum EIcon
    {
        Unchecked = 0,
        UncheckedPressed = 1,
        Checked = 2,
        CheckedPressed = 3
    };
    using Icons = QHash<EIcon, QIcon>;

    void setIcons(const Icons& icons);

    bool hitButton(const QPoint& pos) const override;
    void checkStateSet() override;
    void nextCheckState() override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void hideEvent(QHideEvent* event) override;
    void paintEvent(QPaintEvent* event) override;

private:
    void _emitIfChanged();
    [[nodiscard]] EIcon _iconIndex() const;

    Icons m_icons;
    bool m_checked = false;
    bool m_pressed = false;
    bool m_hover = false;
    double m_iconOpacity = 1.0;
};
