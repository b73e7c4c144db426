#include "ui/PlainToolTip.h"

using namespace Qt::StringLiterals;

namespace {
constexpr qsizetype longestTip = 1000;
constexpr qsizetype longestWord = 40;
constexpr QChar breakHere(0x200B); // a space without width

/// Tool tips break lines at blanks only: a word of any length would make them as wide.
QString withBreaks(const QString& text)
{
    QString broken;
    qsizetype word = 0;
    for (const QChar c : text) {
        word = c.isSpace() ? 0 : word + 1;
        if (word > longestWord && !c.isLowSurrogate()) {
            broken += breakHere;
            word = 1;
        }
        broken += c;
    }
    return broken;
}
} // namespace

QString plainToolTip(const QString& text)
{
    QString shown = text.left(longestTip);
    if (shown.size() < text.size())
        shown += u'…';
    return u"<p style=\"white-space:pre-wrap\">"_s + withBreaks(shown).toHtmlEscaped() + u"</p>"_s;
}
