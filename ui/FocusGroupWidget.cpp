#include "ui/FocusGroupWidget.h"

#include "app/base/dynamic_singleton.h"
#include "app/core/GroupName.h"
#include "app/core/TaskCore.h"
#include "ui/CountWidget.h"
#include "ui/DragGroup.h"
#include "ui/ElidedLabel.h"
#include "ui/PlainToolTip.h"
#include "ui/controls/StyleHelper.h"
#include "ui/icons/IconsHelper.h"

#include <QHBoxLayout>
#include <QHelpEvent>
#include <QLabel>
#include <QPainter>
#include <QToolTip>

#include <algorithm>
#include <utility>

using namespace Qt::StringLiterals;

namespace {

constexpr qreal cornerRadius = 5;
constexpr int iconSize = 20;
constexpr qsizetype longestName = 500;
constexpr qreal highlightOpacity = 0.6;
constexpr QColor highlightFrame(0xA9, 0xC2, 0x89);
constexpr int titleLightness = 150; // per cent
constexpr std::array sectionColours = {fancy::DueNow, fancy::DueSoon, fancy::DueLater};

} // namespace

FocusGroupWidget::FocusGroupWidget(const FocusGroup::Id& id, QWidget* parent)
    : QWidget(parent)
    , m_id(id)
    , m_icon(new QLabel(this))
    , m_name(new ElidedLabel(this))
    , m_countBar(new CountWidget(static_cast<int>(sectionColours.size()), this))
{
    _createLayout();
    setAttribute(Qt::WA_Hover);
    _setIcon();
    _setName();
}

void FocusGroupWidget::_createLayout()
{
    m_icon->setFixedSize(iconSize, iconSize);
    // Its tool tip is the entry's, which tells of the key as well.
    m_name->setAttribute(Qt::WA_TransparentForMouseEvents);
    m_name->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Fixed);
    const QColor dark = fancy::color(fancy::TextDark);
    QPalette colours = m_name->palette();
    colours.setColor(QPalette::WindowText, dark);
    m_name->setPalette(colours);
    for (size_t i = 0; i < sectionColours.size(); ++i) {
        const int section = static_cast<int>(i);
        m_countBar->setSectionColor(section, fancy::color(sectionColours.at(i)));
        m_countBar->setSectionTitleColor(section, dark.lighter(titleLightness));
    }

    auto* layout = new QHBoxLayout(this);
    layout->setContentsMargins(3, 3, 3, 4);
    layout->setSpacing(5);
    layout->addWidget(m_icon);
    layout->addWidget(m_name, 1);
    layout->addWidget(m_countBar, 0, Qt::AlignVCenter);
}

const FocusGroup& FocusGroupWidget::group() const
{
    if (m_recordOutdated) {
        m_group = taskStorage().getGroup(m_id);
        m_recordOutdated = false;
    }
    return m_group;
}

void FocusGroupWidget::invalidate()
{
    m_recordOutdated = true;
    m_uncounted = true;
}

bool FocusGroupWidget::hasOtherSize() const
{
    return taskStorage().getGroup(m_id).tasks().size() != m_shownSize;
}

void FocusGroupWidget::refresh(TaskSections& sections)
{
    m_uncounted = false;
    m_shownSize = group().tasks().size();
    if ((m_shownSize == 0) != m_shownEmpty)
        _setIcon();
    m_counts = sections.count(group().tasks());
    _showCounts();
}

void FocusGroupWidget::recount(const TaskSections::Change& change)
{
    if (change.before != TaskSections::none)
        --m_counts.at(static_cast<size_t>(change.before));
    if (change.after != TaskSections::none)
        ++m_counts.at(static_cast<size_t>(change.after));
    _showCounts();
}

void FocusGroupWidget::_showCounts()
{
    const QSize before = m_countBar->sizeHint();
    for (int section = 0; section < m_countBar->sectionsCount(); ++section)
        m_countBar->setSectionValue(section, m_counts.at(static_cast<size_t>(section)));
    m_countBar->update();
    _setAccessibleName();
    if (m_countBar->sizeHint() != before)
        m_countBar->updateGeometry();
}

void FocusGroupWidget::setProperties(const QString& name, const QString& iconName)
{
    const HistoryStep step(taskHistory(), {EAction::editGroup, m_id});
    FocusGroup record = group();
    record.rename(name);
    record.setIconName(iconName);
    m_recordOutdated = true;
    _setIcon();
    _setName();
}

void FocusGroupWidget::_setBit(uint bit, bool on)
{
    const uint state = on ? m_state | bit : m_state & ~bit;
    if (std::exchange(m_state, state) != state)
        update();
}

void FocusGroupWidget::setSelected(bool selected)
{
    _setBit(selectedBit, selected);
}

void FocusGroupWidget::setHighlighted(bool highlighted)
{
    _setBit(highlightBit, highlighted);
}

void FocusGroupWidget::_setIcon()
{
    m_shownEmpty = group().tasks().isEmpty();
    const QIcon icon =
        dynamic_singleton<IconsHelper>::inst().groupIcon(m_id, group().iconName(), m_shownEmpty);
    m_icon->setPixmap(icon.pixmap(QSize(iconSize, iconSize), devicePixelRatioF()));
}

/// On one line, and no longer than anybody could read.
QString FocusGroupWidget::_shownName() const
{
    return shownGroupName(group()).left(longestName).simplified();
}

void FocusGroupWidget::_setName()
{
    m_name->setText(_shownName());
    _setAccessibleName();
}

/// The name and what the count bar says.
void FocusGroupWidget::_setAccessibleName()
{
    QStringList parts = {_shownName()};
    const std::array texts = {tr("%1 due now"), tr("%1 soon"), tr("%1 later")};
    for (size_t section = 0; section < texts.size(); ++section) {
        if (m_counts.at(section) > 0)
            parts += texts.at(section).arg(m_counts.at(section));
    }
    setAccessibleName(parts.join(u", "_s));
}

/// The full name where it is cut, and the key.
QString FocusGroupWidget::_toolTip() const
{
    const QString name = _shownName();
    if (m_shortcut.isEmpty() && !m_name->isElided())
        return {};
    return plainToolTip(m_shortcut.isEmpty() ? name : u"%1 (%2)"_s.arg(name, m_shortcut));
}

bool FocusGroupWidget::event(QEvent* event)
{
    if (event->type() != QEvent::ToolTip)
        return QWidget::event(event);
    QToolTip::showText(static_cast<QHelpEvent*>(event)->globalPos(), _toolTip(), this);
    return true;
}

void FocusGroupWidget::paintEvent(QPaintEvent* event)
{
    if (m_state != 0) {
        QPainter painter(this);
        painter.setRenderHint(QPainter::Antialiasing);
        QColor frame = fancy::color(isDragOver() ? fancy::FrameStrong : fancy::Frame);
        QColor fill = fancy::color(selected() ? fancy::GroupSelected : fancy::PanelFill);
        if (highlighted()) {
            painter.setOpacity(highlightOpacity);
            frame = highlightFrame;
            fill = fancy::color(fancy::GroupHighlight);
        }
        painter.setPen(QPen(frame, 1));
        painter.setBrush(fill);
        painter.drawRoundedRect(QRectF(1, 1, width() - 2, height() - 3), cornerRadius,
                                cornerRadius);
    }
    QWidget::paintEvent(event);
}

void FocusGroupWidget::changeEvent(QEvent* event)
{
    QWidget::changeEvent(event);
    if (event->type() == QEvent::LanguageChange)
        _setName();
}

void FocusGroupWidget::enterEvent(QEnterEvent* /*event*/)
{
    m_state |= hoverBit;
}

void FocusGroupWidget::leaveEvent(QEvent* /*event*/)
{
    m_state &= ~hoverBit;
}

bool FocusGroupWidget::accepts(const DragGroup& drag) const
{
    if (drag.type() == DragGroup::GroupDrag)
        return TaskStorage::isCustom(m_id) && drag.groupId() != m_id;
    if (drag.tasks().contains(m_id))
        return false;
    const auto held = [this](const TodoTask::Id& id) { return group().contains(id); };
    return std::none_of(drag.tasks().cbegin(), drag.tasks().cend(),
                        [held](const QList<TodoTask::Id>& ids) {
                            return std::any_of(ids.cbegin(), ids.cend(), held);
                        });
}

void FocusGroupWidget::setDragOver(bool over)
{
    _setBit(dragOverBit, over);
}

void FocusGroupWidget::take(DragGroup& drag)
{
    if (drag.type() == DragGroup::GroupDrag) {
        const HistoryStep step(taskHistory(), {EAction::moveGroup, drag.groupId()});
        taskStorage().moveGroup(m_id, drag.groupId());
    } else {
        _takeTasks(drag);
    }
}

/// Into Trash and Completed tasks are always moved.
void FocusGroupWidget::_takeTasks(DragGroup& drag)
{
    const bool copies = drag.isCopy() && !TaskStorage::isArchive(m_id);
    drag.setResult(copies ? DragGroup::Copied : DragGroup::Moved);
    const HistoryStep step(taskHistory(), {copies ? EAction::copyTasks : EAction::moveTasks,
                                           copies ? m_id : drag.tasks().cbegin().key()});
    for (auto source = drag.tasks().cbegin(); source != drag.tasks().cend(); ++source) {
        if (copies)
            taskStorage().addTasks(m_id, source.value());
        else
            taskStorage().moveTasks(source.key(), m_id, source.value());
    }
}
