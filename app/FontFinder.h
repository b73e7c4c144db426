// Finding the fonts while the rest of the program comes up.
#pragma once

#include <QtGlobal>

#include <thread>

/// Has other threads read the font configuration and look up the program's font, each as early as
/// it can be done: together that takes longer than loading a thousand tasks. Whoever needs a font
/// sooner waits for them inside the toolkit. The destructor waits for both.
class FontFinder
{
public:
    /// Starts reading the configuration; needs no application object.
    FontFinder();
    Q_DISABLE_COPY_MOVE(FontFinder)

    /// Starts the look-up; needs the application object.
    void findApplicationFont();

private:
    std::jthread m_configuration;
    std::jthread m_font;
};
