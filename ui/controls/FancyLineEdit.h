// A line edit that selects its text when it gets the focus.
#pragma once

#include <QLineEdit>

class FancyLineEdit : public QLineEdit
{
    Q_OBJECT

public:
    explicit FancyLineEdit(QWidget* parent = nullptr);
    explicit FancyLineEdit(const QString& text, QWidget* parent = nullptr);

Q_SIGNALS:
    /// The edit got (true) or lost (false) the focus.
    void gotFocus(bool focused);

protected:
    void focusInEvent(QFocusEvent* event) override;
    void focusOutEvent(QFocusEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;

private:
    bool m_selectAllOnFocus = true;
    bool m_pendingSelect = false;
};
