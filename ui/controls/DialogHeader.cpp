#include "ui/controls/DialogHeader.h"

#include "ui/controls/StyleHelper.h"

#include <QLabel>
#include <QVBoxLayout>

namespace {

constexpr QRgb lineColor = 0xffbfbfbf;
constexpr int textMargin = 8;
constexpr int textSpacing = 12;

void fill(QWidget* widget, const QColor& color)
{
    QPalette colors = widget->palette();
    colors.setColor(QPalette::Window, color);
    widget->setPalette(colors);
    widget->setAutoFillBackground(true);
}

} // namespace

DialogHeader::DialogHeader(QWidget* parent)
    : QWidget(parent)
    , m_label(new QLabel(this))
{
    fill(this, Qt::white);
    m_label->setTextFormat(Qt::RichText);
    m_label->setWordWrap(true);
    m_label->setContentsMargins(textMargin, textSpacing, textMargin, textSpacing);
    QPalette colors = m_label->palette();
    colors.setColor(QPalette::WindowText, fancy::color(fancy::TextDark));
    m_label->setPalette(colors);
    auto* line = new QWidget(this);
    line->setFixedHeight(1);
    fill(line, QColor::fromRgb(lineColor));

    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(0);
    layout->addWidget(m_label);
    layout->addWidget(line);
}

void DialogHeader::setText(const QString& text)
{
    m_label->setText(text);
}
