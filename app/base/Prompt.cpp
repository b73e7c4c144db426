#include "app/base/Prompt.h"

namespace {
Prompt::Answerer presetAnswerer;
}

QMessageBox::StandardButton Prompt::ask(QWidget* parent, const Question& question)
{
    if (presetAnswerer)
        return presetAnswerer(question);
    QMessageBox box(question.icon, question.title, question.text, question.buttons, parent);
    box.setTextFormat(question.format);
    box.setDefaultButton(question.defaultButton);
    return static_cast<QMessageBox::StandardButton>(box.exec());
}

void Prompt::setAnswerer(const Answerer& answerer)
{
    presetAnswerer = answerer;
}
