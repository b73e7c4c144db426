// The tasks that show a new user around.
#pragma once

#include <QCoreApplication>
#include <QList>
#include <QString>

struct StarterTask
{
    Q_DECLARE_TR_FUNCTIONS(StarterTask)

public:
    QString name;
    QString notes;

    /// In the language of the moment.
    [[nodiscard]] static QList<StarterTask> all();
};
