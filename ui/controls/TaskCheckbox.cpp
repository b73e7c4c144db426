#include "ui/controls/TaskCheckbox.h"

#include "ui/icons/PictureIcon.h"

using namespace Qt::StringLiterals;

TaskCheckbox::TaskCheckbox(QWidget* parent)
    : FancyCheckbox(parent)
{
    setIcons(_pictures());
}

const FancyCheckbox::Icons& TaskCheckbox::_pictures()
{
    static const Icons pictures = {
        {Unchecked, icons::fromPictures({u":/icons_checkbox/checkbox_flat-N"_s})},
        {UncheckedPressed, icons::fromPictures({u":/icons_checkbox/checkbox_flat-P"_s})},
        {Checked, icons::fromPictures({u":/icons_checkbox/checkbox_done-N"_s})},
        {CheckedPressed, icons::fromPictures({u":/icons_checkbox/checkbox_done-P"_s})},
    };
    return pictures;
}
