#include "ui/controls/ApplicationPalette.h"

#include <QApplication>
#include <QPalette>
#include <QToolTip>

#include <array>
#include <utility>

namespace {

bool isDarker(const QPalette& colours, QPalette::ColorRole ground, QPalette::ColorRole text)
{
    return colours.color(QPalette::Active, ground).lightness() <
           colours.color(QPalette::Active, text).lightness();
}

bool isDark(const QPalette& colours)
{
    return isDarker(colours, QPalette::Base, QPalette::Text) ||
           isDarker(colours, QPalette::Window, QPalette::WindowText);
}

/// The usual one, where no desktop brings its own.
QPalette lightPalette()
{
    constexpr QRgb black = 0x000000;
    constexpr QRgb white = 0xffffff;
    constexpr QRgb window = 0xefefef;
    constexpr QRgb faded = 0xbebebe;
    constexpr std::array colors = {
        std::pair(QPalette::WindowText, black),
        std::pair(QPalette::Button, window),
        std::pair(QPalette::Light, white),
        std::pair(QPalette::Midlight, 0xcacacaU),
        std::pair(QPalette::Dark, 0x9f9f9fU),
        std::pair(QPalette::Mid, 0xb8b8b8U),
        std::pair(QPalette::Text, black),
        std::pair(QPalette::BrightText, white),
        std::pair(QPalette::ButtonText, black),
        std::pair(QPalette::Base, white),
        std::pair(QPalette::Window, window),
        std::pair(QPalette::Shadow, 0x767676U),
        std::pair(QPalette::Highlight, 0x308cc6U),
        std::pair(QPalette::HighlightedText, white),
        std::pair(QPalette::Link, 0x0000ffU),
        std::pair(QPalette::LinkVisited, 0xff00ffU),
        std::pair(QPalette::AlternateBase, 0xf7f7f7U),
        std::pair(QPalette::ToolTipBase, 0xffffdcU),
        std::pair(QPalette::ToolTipText, black),
    };
    QPalette palette;
    for (const auto& [role, color] : colors)
        palette.setColor(role, QColor::fromRgb(color));
    palette.setColor(QPalette::PlaceholderText, QColor(0, 0, 0, 128));
    for (const auto role : {QPalette::WindowText, QPalette::Text, QPalette::ButtonText})
        palette.setColor(QPalette::Disabled, role, QColor::fromRgb(faded));
    palette.setColor(QPalette::Disabled, QPalette::Base, QColor::fromRgb(window));
    palette.setColor(QPalette::Disabled, QPalette::Highlight, QColor::fromRgb(0x919191));
    return palette;
}

} // namespace

void fancy::replaceDarkPalette()
{
    // It also replaces what the desktop has chosen for menus and the like apart.
    if (isDark(QApplication::palette()))
        QApplication::setPalette(lightPalette());
    // Light desktops may have dark tool tips.
    const QPalette toolTips = QToolTip::palette();
    if (isDark(toolTips) || isDarker(toolTips, QPalette::ToolTipBase, QPalette::ToolTipText))
        QToolTip::setPalette(lightPalette());
}
