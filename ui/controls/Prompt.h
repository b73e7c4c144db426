// Message boxes and the save-file dialog, behind one seam that tests can answer for the user.
#pragma once

#include <QMessageBox>

#include <functional>

/// Shows modal boxes. Interface thread.
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

    struct SaveQuestion
    {
        QString caption;
        QString folder;   ///< where the dialog starts
        QString filter;   ///< as QFileDialog takes it
        QString name{};   ///< offered for the file; may be empty
        QString suffix{}; ///< for a name that the user chooses without one, such as "txt"
    };
    using SaveAnswerer = std::function<QString(const SaveQuestion&)>;

    /// Shows the box and returns the button that closed it.
    static QMessageBox::StandardButton ask(QWidget* parent, const Question& question);

    /// Asks for a file to write and returns its path as chosen; empty when cancelled. What is to
    /// be overwritten the user has confirmed.
    static QString askSaveFile(QWidget* parent, const SaveQuestion& question);

    // Each answers every later question of its kind instead of the user; an empty function ends
    // that.
    static void setAnswerer(const Answerer& answerer);
    static void setSaveAnswerer(const SaveAnswerer& answerer);
};
