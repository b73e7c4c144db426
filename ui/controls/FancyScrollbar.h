// A thin scroll bar without arrows.
#pragma once

#include <QScrollBar>

class QAbstractScrollArea;

class FancyScrollbar : public QScrollBar
{
    Q_OBJECT

public:
    explicit FancyScrollbar(Qt::Orientation orientation, QWidget* parent = nullptr);

    /// Gives the area two of them, and a corner of their colour between.
    static void installOn(QAbstractScrollArea* area);

    /// 10 pixels across the bar.
    [[nodiscard]] QSize sizeHint() const override;

protected:
    void enterEvent(QEnterEvent* event) override;
    void leaveEvent(QEvent* event) override;
    void paintEvent(QPaintEvent* event) override;

private:
    [[nodiscard]] QRect _thumbRect() const;
};
