#include "ui/controls/Prompt.h"

#include <QFileDialog>

namespace {
Prompt::Answerer presetAnswerer;
Prompt::SaveAnswerer presetSaveAnswerer;
} // namespace

QMessageBox::StandardButton Prompt::ask(QWidget* parent, const Question& question)
{
    if (presetAnswerer)
        return presetAnswerer(question);
    QMessageBox box(question.icon, question.title, question.text, question.buttons, parent);
    box.setTextFormat(question.format);
    box.setDefaultButton(question.defaultButton);
    if (parent)
        box.setWindowModality(Qt::WindowModal);
    return static_cast<QMessageBox::StandardButton>(box.exec());
}

QString Prompt::askSaveFile(QWidget* parent, const SaveQuestion& question)
{
    if (presetSaveAnswerer)
        return presetSaveAnswerer(question);
    QFileDialog dialog(parent, question.caption, question.folder, question.filter);
    dialog.setAcceptMode(QFileDialog::AcceptSave);
    dialog.selectFile(question.name);
    if (parent)
        dialog.setWindowModality(Qt::WindowModal);
    return dialog.exec() == QDialog::Accepted ? dialog.selectedFiles().constFirst() : QString();
}

void Prompt::setAnswerer(const Answerer& answerer)
{
    presetAnswerer = answerer;
}

void Prompt::setSaveAnswerer(const SaveAnswerer& answerer)
{
    presetSaveAnswerer = answerer;
}
