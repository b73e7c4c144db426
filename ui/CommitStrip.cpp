#include "ui/CommitStrip.h"

#include "app/base/Clock.h"
#include "app/base/ProductHelper.h"
#include "app/core/TaskCore.h"
#include "ui/ElidedLabel.h"
#include "ui/controls/AccessibleFactory.h"
#include "ui/controls/ChosenFile.h"
#include "ui/controls/StyleHelper.h"

#include <QAccessibleWidget>
#include <QBoxLayout>
#include <QDir>
#include <QLabel>
#include <QLocale>
#include <QPainter>
#include <QPainterPath>
#include <QPushButton>

using namespace Qt::StringLiterals;

namespace {

constexpr int signSize = 20;
constexpr int gap = 8;
constexpr QMargins margins(gap + signSize + gap, gap, gap, gap);
constexpr QMargins narrowMargins(gap, gap, gap, gap);
constexpr int buttonPadding = 16;
/// The label's least width beside the buttons.
constexpr int textWidth = 180;

/// With the day, unless that is today.
QString shownTime(const QDateTime& time)
{
    const QLocale locale;
    return time.date() == Clock::today() ? locale.toString(time.time(), QLocale::ShortFormat)
                                         : locale.toString(time, QLocale::ShortFormat);
}

QString withSeconds(const QDateTime& time)
{
    const QLocale locale;
    QString format = locale.timeFormat(QLocale::ShortFormat);
    format.replace(u"mm"_s, u"mm:ss"_s);
    return locale.toString(time.time(), format);
}

void drawSign(QPainter& painter, const QRectF& area)
{
    QPainterPath triangle;
    triangle.moveTo(area.center().x(), area.top() + 1);
    triangle.lineTo(area.right() - 1, area.bottom() - 2);
    triangle.lineTo(area.left() + 1, area.bottom() - 2);
    triangle.closeSubpath();
    const QColor color = fancy::color(fancy::TextDark);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(QPen(color, 2, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
    painter.setBrush(fancy::color(fancy::White));
    painter.drawPath(triangle);
    const qreal middle = area.center().x();
    painter.drawLine(QPointF(middle, area.top() + 7), QPointF(middle, area.top() + 11));
    painter.drawPoint(QPointF(middle, area.top() + 15));
}

} // namespace

CommitStrip::CommitStrip(QWidget* parent)
    : LocalizedWidget(parent)
    , m_label(new QLabel(this))
    , m_shortLabel(new ElidedLabel(this))
    , m_tryButton(new QPushButton(this))
    , m_copyButton(new QPushButton(this))
{
    // Screen readers speak a notification when it is shown.
    installAccessible<CommitStrip, QAccessibleWidget, QAccessible::Notification>();

    m_label->setTextFormat(Qt::RichText);
    m_label->setWordWrap(true);
    QPalette colors = m_label->palette();
    colors.setColor(QPalette::WindowText, fancy::color(fancy::TextDark));
    m_label->setPalette(colors);
    m_shortLabel->setPalette(colors);
    m_shortLabel->hide();
    QFont bold = m_shortLabel->font();
    bold.setBold(true);
    m_shortLabel->setFont(bold);
    m_buttons = new QHBoxLayout;
    m_buttons->setSpacing(gap);
    for (QPushButton* button : {m_tryButton, m_copyButton}) {
        // A click must not take the focus from a task's form, nor Return in the list press it.
        button->setFocusPolicy(Qt::TabFocus);
        button->setAutoDefault(false);
        m_buttons->addWidget(button);
    }
    m_layout = new QHBoxLayout(this);
    m_layout->setContentsMargins(margins);
    m_layout->setSpacing(gap);
    m_layout->addWidget(m_label, 1);
    m_layout->addWidget(m_shortLabel);
    m_layout->addLayout(m_buttons);
    connect(m_tryButton, &QPushButton::clicked, this, &CommitStrip::_tryNow);
    connect(m_copyButton, &QPushButton::clicked, this, &CommitStrip::_saveCopy);
}

void CommitStrip::setFailure(const CommitFailure& failure)
{
    m_failure = failure;
    retranslateUI();
}

void CommitStrip::retranslateUI()
{
    const QString latest = tr("Last tried at %1.").arg(withSeconds(m_failure.latest));
    m_label->setText(u"<b>"_s + _headline().toHtmlEscaped() + u"</b><br>"_s +
                     _reason().toHtmlEscaped() + u' ' + latest.toHtmlEscaped());
    // The cause comes first: where there is no room, the end is cut.
    m_shortLabel->setText(tr("Not saved!") + u' ' + _reason() + u' ' + _headline());
    setAccessibleName(_headline() + u' ' + _reason());
    _arrange();
}

QString CommitStrip::_headline() const
{
    const QString since = shownTime(m_failure.since);
    if (m_failure.cause == CommitFailure::thread) {
        return tr("Since %1 your changes are saved only when %2 ends.")
            .arg(since, ProductHelper::productDisplayName());
    }
    return tr("Saving your changes has failed since %1.").arg(since);
}

QString CommitStrip::_reason() const
{
    return m_failure.cause == CommitFailure::thread
               ? tr("The system starts no further thread, which saving needs.")
               : ChosenFile::reason(m_failure.error);
}

void CommitStrip::insertIntoTabOrder(QWidget* before)
{
    setTabOrder(before, m_tryButton);
    setTabOrder(m_tryButton, m_copyButton);
}

/// The outcome comes as the next failure, or as the end of all of them. The button stays as it is:
/// disabled it would hand the focus on.
void CommitStrip::_tryNow()
{
    taskStorage().saveNow();
}

void CommitStrip::_saveCopy()
{
    const QString name = u"tasks-"_s + Clock::today().toString(Qt::ISODate) + u".xml"_s;
    // The strip may be gone when the user has answered.
    [[maybe_unused]] const QString path = ChosenFile::write(
        window(), {tr("Save a copy"), QDir::homePath(), tr("XML files (*.xml)"), name},
        [](const QString& chosen) { return taskStorage().saveCopy(chosen); });
}

/// Text beside buttons where there is room, else one above the other; in the narrowest pane one
/// line of text, without the sign.
void CommitStrip::_arrange()
{
    const QString tryText = tr("Try now");
    const QString copyText = tr("Save a copy…");
    m_tryButton->setText(tryText);
    m_tryButton->setAccessibleName(tryText);
    m_copyButton->setText(copyText);
    m_copyButton->setAccessibleName(copyText);
    const int buttons = m_tryButton->sizeHint().width() + gap + m_copyButton->sizeHint().width();
    const int room = width() - margins.left() - margins.right();
    m_isNarrow = room < buttons;
    m_label->setVisible(!m_isNarrow);
    m_shortLabel->setVisible(m_isNarrow);
    m_layout->setContentsMargins(m_isNarrow ? narrowMargins : margins);
    m_layout->setDirection(room < textWidth + gap + buttons ? QBoxLayout::TopToBottom
                                                            : QBoxLayout::LeftToRight);
    m_buttons->setDirection(m_isNarrow ? QBoxLayout::TopToBottom : QBoxLayout::LeftToRight);
    if (m_isNarrow) {
        const int textRoom = width() - narrowMargins.left() - narrowMargins.right() - buttonPadding;
        for (QPushButton* button : {m_tryButton, m_copyButton})
            button->setText(
                button->fontMetrics().elidedText(button->text(), Qt::ElideRight, textRoom));
    }
}

void CommitStrip::resizeEvent(QResizeEvent* event)
{
    LocalizedWidget::resizeEvent(event);
    _arrange();
}

void CommitStrip::paintEvent(QPaintEvent* /*event*/)
{
    QPainter painter(this);
    painter.fillRect(rect(), fancy::color(fancy::DueNow));
    painter.fillRect(0, 0, width(), 1, fancy::color(fancy::Frame));
    if (!m_isNarrow)
        drawSign(painter,
                 QRectF(gap, m_label->geometry().center().y() - signSize / 2, signSize, signSize));
}
