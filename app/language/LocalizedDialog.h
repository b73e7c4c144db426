// A dialog that follows the language of the program.
#pragma once

#include <QDialog>

/// Base of windows and dialogs. What derives from it sets all its texts in retranslateUI() and
/// calls that once in its constructor.
class LocalizedDialog : public QDialog
{
    Q_OBJECT

public:
    explicit LocalizedDialog(QWidget* parent = nullptr, Qt::WindowFlags flags = {});

    /// Sets every visible text anew; called after each change of the language.
    virtual void retranslateUI() {}

protected:
    void changeEvent(QEvent* event) override;
};
