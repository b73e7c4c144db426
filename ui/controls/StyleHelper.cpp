#include "ui/controls/StyleHelper.h"

#include "app/base/dynamic_singleton.h"

namespace fancy {

StyleHelper::StyleHelper()
{
    m_colors[ThumbHover] = QColor(0x1b75bb);
    m_colors[ThumbRest] = QColor(0xb0cce4);
    m_colors[DueNow] = QColor(0xf2c9c8);
    m_colors[Done] = QColor(0xc9e2a9);
    m_colors[DueLater] = QColor(0xc6e9f3);
    m_colors[DueSoon] = QColor(0xfff2b9);
    m_colors[White] = QColor(0xffffff);
    m_colors[RowPlain] = QColor(0xffffff);
    m_colors[RowEdited] = QColor(0xf6fbff);
    m_colors[RowSelected] = QColor(0xc6d0da);
    m_colors[RowCompleted] = m_colors[RowPlain];
    m_colors[PanelFill] = QColor(0xeaf4fe);
    m_colors[GroupSelected] = QColor(0xffffff);
    m_colors[TextDark] = QColor(0x0a4776);
    m_colors[Frame] = m_colors[ThumbRest];
    m_colors[FrameStrong] = m_colors[ThumbHover];
    m_colors[GroupHighlight] = m_colors[Done];
    m_colors[ButtonFill] = QColor(0xf6fbff);
    m_colors[ButtonText] = m_colors[TextDark];
}

QColor StyleHelper::color(int slot) const
{
    if (slot < 0 || slot >= static_cast<int>(m_colors.size()))
        return {};
    return m_colors[static_cast<std::size_t>(slot)];
}

QColor color(ESlot slot)
{
    return dynamic_singleton<StyleHelper>::inst().color(slot);
}

int clamp(float component)
{
    if (component > 255.0F)
        return 255;
    return component > 0.0F ? static_cast<int>(component) : 0;
}

} // namespace fancy
