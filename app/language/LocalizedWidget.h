// A widget that follows the language of the program.
#pragma once

#include <QWidget>

/// Base of widgets with texts. What derives from it sets all its texts in retranslateUI() and
/// calls that once in its constructor.
class LocalizedWidget : public QWidget
{
    Q_OBJECT

public:
    explicit LocalizedWidget(QWidget* parent = nullptr, Qt::WindowFlags flags = {});

    /// Sets every visible text anew; called after each change of the language.
    virtual void retranslateUI() {}

protected:
    void changeEvent(QEvent* event) override;
};
