// The plainest windows: what starting any program of this toolkit costs.
// Usage: barewindow [TEXT]. With a text the window shows it, and so has to find fonts.

#include <QApplication>
#include <QLabel>
#include <QScreen>

int main(int argc, char** argv)
{
    const QApplication app(argc, argv);
    QWidget window;
    window.resize(800, 450);
    window.move(window.screen()->geometry().center() - window.rect().center());
    const QString text = QCoreApplication::arguments().value(1);
    if (!text.isEmpty())
        new QLabel(text, &window);
    window.show();
    return QApplication::exec();
}
