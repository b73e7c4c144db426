#include "ui/controls/OneLine.h"

#include <QString>

#include <algorithm>

using namespace Qt::StringLiterals;

QString fancy::onOneLine(QString text)
{
    const auto isBreak = [](QChar c) {
        return (c >= u'\t' && c <= u'\r') || c == QChar::LineSeparator ||
               c == QChar::ParagraphSeparator;
    };
    if (std::none_of(text.cbegin(), text.cend(), isBreak))
        return text;
    text.replace("\r\n"_L1, " "_L1);
    std::replace_if(text.begin(), text.end(), isBreak, u' ');
    return text;
}
