// A language for tests of what follows a change of language.
#pragma once

#include <QTranslator>

/// Has every text in capitals while it is installed.
class Capitals : public QTranslator
{
public:
    [[nodiscard]] bool isEmpty() const override { return false; }
    [[nodiscard]] QString translate(const char* /*context*/, const char* text,
                                    const char* /*comment*/, int /*n*/) const override
    {
        return QString::fromUtf8(text).toUpper();
    }
};
