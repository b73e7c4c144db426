// The plainest window: what starting any program of this toolkit costs.

#include <QApplication>
#include <QScreen>
#include <QWidget>

int main(int argc, char** argv)
{
    const QApplication app(argc, argv);
    QWidget window;
    window.resize(800, 450);
    window.move(window.screen()->geometry().center() - window.rect().center());
    window.show();
    return QApplication::exec();
}
