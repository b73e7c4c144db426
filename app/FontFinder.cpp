#include "app/FontFinder.h"

#include "app/base/OptionalThread.h"

#include <QFontMetrics>
#include <QGuiApplication>

#include <fontconfig/fontconfig.h>

using namespace Qt::StringLiterals;

FontFinder::FontFinder()
    : m_configuration(startOptionalThread([] { FcInit(); }))
{
}

void FontFinder::findApplicationFont()
{
    m_font = startOptionalThread([font = QGuiApplication::font()] {
        (void)QFontMetrics(font).horizontalAdvance(u"Mivora"_s);
    });
}
