// The plainest windows: what starting any program of this toolkit costs.
// Usage: barewindow [TEXT [DATABASE]]. With a text the window shows it, and so has to find fonts;
// a database is loaded before that.

#include "taskdb/TaskStorage.h"
#include "taskdb/TaskStorageReader.h"

#include <QApplication>
#include <QFile>
#include <QLabel>
#include <QScreen>

int main(int argc, char** argv)
{
    const QApplication app(argc, argv);
    const QStringList arguments = QCoreApplication::arguments();
    TaskStorage store({});
    if (arguments.size() > 2) {
        QFile file(arguments.at(2));
        if (!file.open(QIODevice::ReadOnly) ||
            TaskStorageReader(&store).read(&file) != TaskStorage::NoError)
            qFatal("the database does not load");
    }
    QWidget window;
    window.resize(800, 450);
    window.move(window.screen()->geometry().center() - window.rect().center());
    const QString text = arguments.value(1);
    if (!text.isEmpty())
        new QLabel(text, &window);
    window.show();
    return QApplication::exec();
}
