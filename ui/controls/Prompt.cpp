#include "ui/controls/Prompt.h"

#include <QFileDialog>
#include <QFileInfo>
#include <QLayout>

namespace {
Prompt::Answerer presetAnswerer;
Prompt::SaveAnswerer presetSaveAnswerer;

/// A dialog of the desktop's has asked about the name as typed. If there is a file of the name with
/// the suffix, it goes without one: nobody has agreed to lose that file.
QString chosenFile(QFileDialog& dialog)
{
    const bool isDesktops = !dialog.layout();
    const QString path = dialog.selectedFiles().constFirst();
    if (!isDesktops || !QFileInfo::exists(path))
        return path;
    dialog.setDefaultSuffix({});
    return dialog.selectedFiles().constFirst();
}
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
    dialog.setDefaultSuffix(question.suffix);
    dialog.selectFile(question.name);
    if (parent)
        dialog.setWindowModality(Qt::WindowModal);
    return dialog.exec() == QDialog::Accepted ? chosenFile(dialog) : QString();
}

void Prompt::setAnswerer(const Answerer& answerer)
{
    presetAnswerer = answerer;
}

void Prompt::setSaveAnswerer(const SaveAnswerer& answerer)
{
    presetSaveAnswerer = answerer;
}
