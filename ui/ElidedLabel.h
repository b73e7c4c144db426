// A one-line label that never widens what it stands in.
#pragma once

#include <QLabel>

/// Shows its text, as plain text on one line, cut with an ellipsis where it is too long; the text
/// itself stays whole and is then offered as tool tip.
class ElidedLabel : public QLabel
{
    Q_OBJECT

public:
    explicit ElidedLabel(QWidget* parent = nullptr);

    [[nodiscard]] QSize minimumSizeHint() const override;
    [[nodiscard]] QSize sizeHint() const override;
    /// Whether the text is cut now.
    [[nodiscard]] bool isElided() const { return sizeHint().width() > width(); }

protected:
    bool event(QEvent* event) override;
    void paintEvent(QPaintEvent* event) override;

private:
    [[nodiscard]] QString _line() const;
};
