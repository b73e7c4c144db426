#include "app/FontFinder.h"

#include <QFontMetrics>
#include <QGuiApplication>

#include <fontconfig/fontconfig.h>

using namespace Qt::StringLiterals;

FontFinder::FontFinder()
    : m_configuration([] { FcInit(); })
{
}

void FontFinder::findApplicationFont()
{
    m_font = std::jthread([font = QGuiApplication::font()] {
        (void)QFontMetrics(font).horizontalAdvance(u"Mivora"_s);
    });
}
