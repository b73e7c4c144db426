// The field for a date, with a calendar that pops up below it.
#pragma once

#include "ui/controls/FancyLineEdit.h"
#include "ui/controls/HintedEdit.h"

#include <QDateTime>

class CalendarPopup;

/// A date is typed in the program's date format or picked. The calendar is there while the field
/// has the focus; whoever takes the editing elsewhere within the window closes it. A text that is
/// no date changes nothing and is marked for as long as it stands there.
class DateWidget : public QWidget
{
    Q_OBJECT

public:
    DateWidget(const QDateTime& value, QWidget* parent);
    ~DateWidget() override;
    Q_DISABLE_COPY_MOVE(DateWidget)

    /// As if it had been picked: the field shows and selects it, and the signal tells of it.
    void setValue(const QDateTime& value);
    /// What stands in the field, as the first moment of that day; null when it is no date.
    [[nodiscard]] QDateTime getValue() const;

    /// False also ends its life.
    void showCalendarPopup(bool show);
    /// Moves the calendar to its field. To be called when the field was moved on the screen; the
    /// calendar hides as long as the field is scrolled out of view.
    void placePopup();

    /// The date format of the program's settings, with years of four digits.
    [[nodiscard]] static QString fixedDateFormat();

Q_SIGNALS:
    /// Typed or picked; null when the field was cleared.
    void valueChanged(const QDateTime& value);

protected:
    bool event(QEvent* event) override;
    void changeEvent(QEvent* event) override;
    void hideEvent(QHideEvent* event) override;
    void showEvent(QShowEvent* event) override;
    void moveEvent(QMoveEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;

private Q_SLOTS:
    void _onTextEdited(const QString& text);
    void _onReturn();
    void _onEditGotFocus(bool focused);
    void _onCalendarDateChanged(const QDateTime& dateTime);
    void _onParentWindowMoved();

private:
    void _createEdit();
    void _changeValue(const QDateTime& value);
    void _markWrongText();
    void _followWindow();
    void _stepAside();
    void _updateExample();
    [[nodiscard]] QPoint _popupPlace() const;

    HintedEditT<FancyLineEdit>* m_edit = nullptr;
    QDateTime m_value;
    CalendarPopup* m_popup = nullptr;
    bool m_aside = false; ///< the popup keeps away until the field gets the focus again
};
