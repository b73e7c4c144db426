// A tiny framed button with a picture.
#pragma once

#include <QAbstractButton>
#include <QPixmap>

class TinyButton : public QAbstractButton
{
    Q_OBJECT

public:
    explicit TinyButton(QWidget* parent = nullptr);

    void setPixmap(const QPixmap& pixmap);

    [[nodiscard]] QSize sizeHint() const override;

protected:
    // It looks the same under the pointer.
    void enterEvent(QEnterEvent* event) override;
    void leaveEvent(QEvent* event) override;
    void paintEvent(QPaintEvent* event) override;

private:
    QPixmap m_pixmap;
};
