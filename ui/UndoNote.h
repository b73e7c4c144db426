// The note that says what was done and offers the way back.
#pragma once

#include "app/language/LocalizedWidget.h"

#include <QPointer>

class ElidedLabel;
class QBoxLayout;
class QTimer;
class QToolButton;

/// Floats over the lower edge of another widget and goes by itself after a while. Never takes the
/// focus; screen readers take it for a notification.
class UndoNote : public LocalizedWidget
{
    Q_OBJECT

public:
    /// What the button offers.
    enum EOffer
    {
        undo,
        redo
    };

    /// Shows itself at once. Belongs to the window of `area`, over which it stays wherever that is
    /// moved within the window.
    UndoNote(const QString& text, EOffer offer, QWidget* area);

    /// Takes the note away before its time; it deletes itself.
    void dismiss();

    void retranslateUI() override;

    bool eventFilter(QObject* watched, QEvent* event) override;

Q_SIGNALS:
    /// The button was clicked; the note is already gone.
    void wanted();

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    void _click();
    void _place();

    EOffer m_offer;
    QPointer<QWidget> m_area;
    ElidedLabel* m_label;
    QToolButton* m_button;
    QBoxLayout* m_layout;
    QTimer* m_timer;
};
