#include "ui/SelectIconWidget.h"

#include "ui/controls/FancyScrollbar.h"
#include "ui/controls/Outline.h"
#include "ui/controls/StyleHelper.h"
#include "ui/icons/IconsHelper.h"

#include <QEvent>
#include <QPainter>
#include <QStyledItemDelegate>

using namespace Qt::StringLiterals;

namespace {

constexpr QSize pictureSize(48, 48);
constexpr int itemSpacing = 10;
constexpr int lowestHeight = 105;
constexpr int smallestWidth = 400;
constexpr qreal cornerRadius = 4;
constexpr QColor frameColour(0xbf, 0xbf, 0xbf);
/// On either side of a name.
constexpr int padding = 3;
const QString newGroupKey = u"star_green"_s;

/// Frames the current icon in the colours of the program instead of tinting it.
class IconDelegate final : public QStyledItemDelegate
{
public:
    using QStyledItemDelegate::QStyledItemDelegate;

    void paint(QPainter* painter, const QStyleOptionViewItem& option,
               const QModelIndex& index) const override
    {
        if (option.state & QStyle::State_Selected) {
            const bool focused = option.state & QStyle::State_HasFocus;
            painter->save();
            painter->setRenderHint(QPainter::Antialiasing);
            painter->setPen(fancy::color(focused ? fancy::FrameStrong : fancy::Frame));
            painter->setBrush(fancy::color(fancy::PanelFill));
            painter->drawRoundedRect(QRectF(option.rect).adjusted(0.5, 0.5, -0.5, -0.5),
                                     cornerRadius, cornerRadius);
            painter->restore();
        }
        QStyledItemDelegate::paint(painter, option, index);
    }

    QSize sizeHint(const QStyleOptionViewItem& option, const QModelIndex& index) const override
    {
        return QStyledItemDelegate::sizeHint(option, index) + QSize(2 * padding, 0);
    }

protected:
    void initStyleOption(QStyleOptionViewItem* option, const QModelIndex& index) const override
    {
        QStyledItemDelegate::initStyleOption(option, index);
        option->state &= ~(QStyle::State_Selected | QStyle::State_HasFocus);
    }
};

} // namespace

SelectIconWidget::SelectIconWidget(QWidget* parent)
    : QListWidget(parent)
{
    setFrameStyle(Box | Plain);
    setViewMode(IconMode);
    setMovement(Static);
    setIconSize(pictureSize);
    setEditTriggers(NoEditTriggers);
    setWrapping(false);
    setSpacing(itemSpacing);
    setHorizontalScrollBar(new FancyScrollbar(Qt::Horizontal, this));
    setVerticalScrollBar(new FancyScrollbar(Qt::Vertical, this));
    setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setHorizontalScrollMode(ScrollPerPixel);
    setItemDelegate(new IconDelegate(this));
    connect(this, &QListWidget::itemClicked, this, &SelectIconWidget::_onItemActivated);
    connect(this, &QListWidget::itemDoubleClicked, this, &SelectIconWidget::_onItemDoubleClicked);
    _fetchIcons();
    _fitHeight();
}

QString SelectIconWidget::iconKey() const
{
    return m_keys.value(currentRow());
}

QString SelectIconWidget::iconName(const QString& key) const
{
    return m_catalogue.value(key).first;
}

void SelectIconWidget::setIconKey(const QString& key)
{
    const qsizetype row = m_keys.indexOf(key.isEmpty() ? newGroupKey : key);
    const QSignalBlocker notTheUser(this);
    // Unlike setCurrentRow(), this keeps the first row from becoming current with the focus.
    setCurrentIndex(model()->index(static_cast<int>(row), 0));
    _showCurrent();
}

QSize SelectIconWidget::minimumSizeHint() const
{
    return {smallestWidth, QListWidget::minimumSizeHint().height()};
}

void SelectIconWidget::scrollTo(const QModelIndex& index, ScrollHint hint)
{
    QListWidget::scrollTo(index, hint);
    if (!index.isValid())
        return;
    // The view alone leaves an item flush with the edge, or short of it by a pixel.
    const QRect item = visualRect(index).adjusted(-itemSpacing, 0, itemSpacing, 0);
    QScrollBar* bar = horizontalScrollBar();
    if (item.left() < 0)
        bar->setValue(bar->value() + item.left());
    else if (item.right() >= viewport()->width())
        bar->setValue(bar->value() + item.right() + 1 - viewport()->width());
}

bool SelectIconWidget::event(QEvent* event)
{
    if (event->type() != QEvent::Paint)
        return QListWidget::event(event);
    // At some scales the style's frame has gaps.
    QPainter painter(this);
    fancy::drawOutline(painter, rect(), frameColour);
    return true;
}

void SelectIconWidget::currentChanged(const QModelIndex& current, const QModelIndex& previous)
{
    QListWidget::currentChanged(current, previous);
    // At some scales the frame of an icon covers a part of the pixels around it.
    viewport()->update();
    if (current.isValid())
        Q_EMIT iconChanged(iconKey());
}

void SelectIconWidget::changeEvent(QEvent* event)
{
    QListWidget::changeEvent(event);
    if (event->type() == QEvent::LanguageChange)
        _renameItems();
    if (event->type() == QEvent::FontChange || event->type() == QEvent::StyleChange)
        _fitHeight();
}

QItemSelectionModel::SelectionFlags
SelectIconWidget::selectionCommand(const QModelIndex& index, const QEvent* /*event*/) const
{
    // What is marked is always what iconKey() tells: no modifier takes the mark off the current
    // row.
    return index.isValid() ? QItemSelectionModel::ClearAndSelect : QItemSelectionModel::NoUpdate;
}

void SelectIconWidget::_onItemActivated(QListWidgetItem* item)
{
    Q_EMIT iconChanged(m_keys.value(row(item)));
}

void SelectIconWidget::_onItemDoubleClicked(QListWidgetItem* item)
{
    Q_EMIT iconDoubleClicked(m_keys.value(row(item)));
}

void SelectIconWidget::_fetchIcons()
{
    const auto& helper = dynamic_singleton<IconsHelper>::inst();
    helper.fetchFocusGroupIcons(m_catalogue);
    m_keys = helper.focusGroupIconKeys();
    for (const QString& key : std::as_const(m_keys)) {
        const auto& [name, icon] = m_catalogue[key];
        addItem(new QListWidgetItem(icon, name));
    }
}

void SelectIconWidget::_renameItems()
{
    dynamic_singleton<IconsHelper>::inst().fetchFocusGroupIcons(m_catalogue);
    for (int i = 0; i < count(); ++i)
        item(i)->setText(iconName(m_keys.at(i)));
    scheduleDelayedItemsLayout();
    _showCurrent();
}

/// The view cuts off items that are taller than itself.
void SelectIconWidget::_fitHeight()
{
    const int height = sizeHintForRow(0) + 2 * itemSpacing +
                       horizontalScrollBar()->sizeHint().height() + 2 * frameWidth();
    setMinimumHeight(qMax(lowestHeight, height));
}

void SelectIconWidget::_showCurrent()
{
    // Before it has its size, the view would scroll too far; when shown, it scrolls by itself.
    if (isVisible())
        scrollTo(currentIndex());
}
