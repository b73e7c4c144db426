// The palette of all self-painted widgets.
#pragma once

#include "app/base/dynamic_singleton.h"

#include <QColor>

#include <array>

namespace fancy {

/// What each colour of the palette is for. The numbers are fixed.
enum ESlot
{
    ThumbHover = 0,
    ThumbRest = 1,
    DueNow = 2,
    Done = 3,
    DueLater = 4,
    DueSoon = 5,
    White = 6,
    RowPlain = 7,
    RowEdited = 8,
    RowSelected = 9,
    RowCompleted = 10,
    PanelFill = 11,
    GroupSelected = 12,
    TextDark = 13,
    Frame = 14,
    FrameStrong = 15,
    GroupHighlight = 16,
    ButtonFill = 17,
    ButtonText = 18,
};

/// The nineteen colours, by slot. Reached through dynamic_singleton<StyleHelper>.
class StyleHelper
{
public:
    StyleHelper();
    Q_DISABLE_COPY_MOVE(StyleHelper)

    /// The colour of a slot, 0 to 18; an invalid colour for any other number.
    [[nodiscard]] QColor color(int slot) const;

private:
    std::array<QColor, 19> m_colors;
};

/// The colour of a slot of the program's palette.
[[nodiscard]] QColor color(ESlot slot);

/// A float colour component as a channel, 0 to 255: the fraction is cut off, and what is not a
/// number gives 0.
[[nodiscard]] int clamp(float component);

} // namespace fancy
