#include "ui/GroupHintWidget.h"

#include "taskdb/TaskStorage.h"
#include "ui/controls/LinkLabel.h"
#include "ui/controls/StyleHelper.h"

#include <QEvent>
#include <QHBoxLayout>
#include <QPainter>
#include <QTextDocumentFragment>

namespace {
constexpr QSize panelSize(300, 180);
constexpr QSize iconSize(48, 48);
constexpr QMargins margins(25, 30, 25, 30);
constexpr int smallestMargin = 6;
constexpr int spacing = 15;
constexpr int textPixels = 11;
constexpr qreal faded = 0.4;
} // namespace

QString GroupHintWidget::hintForGroup(const FocusGroup::Id& id)
{
    if (id == TaskStorage::ms_inboxId)
        return tr("<html><head><style>a { color: #1b75bb; text-decoration: none; } </style></head>"
                  "<body>This is Inbox, a default group to hold all new incoming tasks.<br>"
                  "Looks like it's empty right now. Lets have some fun, "
                  "<a href=inboxheadstart>click here</a> to fill it up with some predefined "
                  "tasks.<br><br>"
                  "Use \"Add group\" from the context menu on the group panel to add another "
                  "group.</body></html>");
    if (id == TaskStorage::ms_trashId)
        return tr("Trash group holds all the tasks that you have ever deleted.<br>"
                  "You can restore deleted tasks by dragging them back to one of the existing "
                  "groups.<br><br>"
                  "If you delete a task from Trash - it's gone...");
    if (id == TaskStorage::ms_completedId)
        return tr("This group holds all the tasks that were completed by you and logged.");
    return tr("This is your custom group.<br><br>Add more groups to focus on similar tasks");
}

GroupHintWidget::GroupHintWidget(const QIcon& icon, const QString& text, QWidget* parent)
    : QLabel(parent)
    , m_iconLabel(new QLabel)
    , m_textLabel(new LinkLabel)
{
    auto* layout = new QHBoxLayout(this);
    layout->setContentsMargins(margins);
    layout->setSpacing(spacing);
    layout->addWidget(m_iconLabel, 0, Qt::AlignTop);
    layout->addWidget(m_textLabel, 1, Qt::AlignTop);

    m_textLabel->setWordWrap(true);
    m_textLabel->setTextFormat(Qt::RichText);
    QFont font = m_textLabel->font();
    font.setPixelSize(textPixels);
    m_textLabel->setFont(font);
    QPalette palette = m_textLabel->palette();
    QColor color = palette.color(QPalette::WindowText);
    color.setAlphaF(static_cast<float>(faded));
    palette.setColor(QPalette::WindowText, color);
    m_textLabel->setPalette(palette);
    connect(m_textLabel, &QLabel::linkActivated, this, &GroupHintWidget::headStart);

    setFixedSize(panelSize);
    updateIcon(icon);
    setText(text);
}

void GroupHintWidget::updateIcon(const QIcon& icon)
{
    m_icon = icon;
    _drawIcon();
}

void GroupHintWidget::setText(const QString& text)
{
    m_textLabel->setText(text);
    setAccessibleName(QTextDocumentFragment::fromHtml(text).toPlainText().simplified());
    _makeRoom();
}

/// Narrows the margins below and then above for a text that would be cut off otherwise.
void GroupHintWidget::_makeRoom()
{
    const int width =
        panelSize.width() - margins.left() - iconSize.width() - spacing - margins.right();
    const int spare = panelSize.height() - m_textLabel->heightForWidth(width);
    const int bottom = qBound(smallestMargin, spare - margins.top(), margins.bottom());
    const int top = qBound(smallestMargin, spare - bottom, margins.top());
    layout()->setContentsMargins(margins.left(), top, margins.right(), bottom);
}

bool GroupHintWidget::event(QEvent* event)
{
    // The text's font may have changed.
    if (event->type() == QEvent::LayoutRequest)
        _makeRoom();
    const bool mayRescale =
        event->type() == QEvent::Show || event->type() == QEvent::ScreenChangeInternal;
    if (mayRescale && !qFuzzyCompare(m_iconLabel->pixmap(Qt::ReturnByValue).devicePixelRatio(),
                                     devicePixelRatioF()))
        _drawIcon();
    return QLabel::event(event);
}

void GroupHintWidget::_drawIcon()
{
    const qreal ratio = devicePixelRatioF();
    QPixmap canvas(iconSize * ratio);
    canvas.setDevicePixelRatio(ratio);
    canvas.fill(Qt::transparent);
    QPainter painter(&canvas);
    painter.setOpacity(faded);
    painter.drawPixmap(0, 0, m_icon.pixmap(iconSize, ratio));
    painter.end();
    m_iconLabel->setPixmap(canvas);
}

void GroupHintWidget::paintEvent(QPaintEvent* /*event*/)
{
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(fancy::color(fancy::ThumbRest));
    painter.setBrush(fancy::color(fancy::PanelFill));
    painter.drawRoundedRect(1, 1, width() - 2, height() - 2, 5, 5);
}
