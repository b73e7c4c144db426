#include "ui/controls/EulaDialog.h"

#include "app/base/ProductHelper.h"
#include "ui/controls/FancyScrollbar.h"

#include <QLabel>
#include <QPushButton>
#include <QTextEdit>
#include <QVBoxLayout>

namespace {
constexpr QSize dialogSize(490, 410);
constexpr QMargins dialogMargins(12, 12, 12, 12);
constexpr int textMargin = 10;
} // namespace

EulaDialog::EulaDialog(QWidget* parent, const QString& html, bool acceptMode)
    : LocalizedDialog(parent)
{
    setWindowModality(Qt::WindowModal);
    auto* text = new QTextEdit(this);
    text->setReadOnly(true);
    text->setAcceptRichText(true);
    text->setLineWrapMode(QTextEdit::WidgetWidth);
    text->setVerticalScrollBar(new FancyScrollbar(Qt::Vertical, text));
    text->setHtml(html);
    text->document()->setDocumentMargin(textMargin);

    auto* buttons = new QHBoxLayout;
    if (acceptMode) {
        m_hint = new QLabel(this);
        m_hint->setTextFormat(Qt::PlainText);
        m_hint->setWordWrap(true);
        buttons->addWidget(m_hint, 1);
    } else {
        buttons->addStretch();
    }
    m_acceptButton = new QPushButton(this);
    m_acceptButton->setDefault(true);
    connect(m_acceptButton, &QPushButton::clicked, this, &EulaDialog::accept);
    buttons->addWidget(m_acceptButton);
    if (acceptMode) {
        m_rejectButton = new QPushButton(this);
        connect(m_rejectButton, &QPushButton::clicked, this, &EulaDialog::reject);
        buttons->addWidget(m_rejectButton);
    }

    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(dialogMargins);
    layout->setSpacing(dialogMargins.top());
    layout->addWidget(text, 1);
    layout->addLayout(buttons);
    setFixedSize(dialogSize);
    EulaDialog::retranslateUI();
}

void EulaDialog::retranslateUI()
{
    setWindowTitle(tr("%1 License Agreement").arg(ProductHelper::productDisplayName()));
    if (!m_hint) {
        m_acceptButton->setText(tr("OK"));
        return;
    }
    m_hint->setText(tr("Scroll down to read the rest of the license agreement."));
    m_acceptButton->setText(tr("Accept"));
    m_rejectButton->setText(tr("Reject"));
}
