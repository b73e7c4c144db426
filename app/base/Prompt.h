// Message boxes, behind one seam that tests can answer for the user.
#pragma once

#include <QMessageBox>

#include <functional>

/// Shows modal message boxes. Interface thread.
class Prompt
{
public:
    struct Question
    {
        QMessageBox::Icon icon = QMessageBox::NoIcon;
        QString title;
        QString text;
        QMessageBox::StandardButtons buttons = QMessageBox::Ok;
        QMessageBox::StandardButton defaultButton = QMessageBox::NoButton;
        /// Rich text only for texts of our own; what a user typed goes in escaped.
        Qt::TextFormat format = Qt::PlainText;
    };
    using Answerer = std::function<QMessageBox::StandardButton(const Question&)>;

    /// Shows the box and returns the button that closed it.
    static QMessageBox::StandardButton ask(QWidget* parent, const Question& question);

    /// Answers every later question instead of the user; an empty function ends that.
    static void setAnswerer(const Answerer& answerer);
};
