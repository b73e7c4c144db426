// How a result looks.
#pragma once

#include "taskdb/search/TaskQuery.h"

#include <QFont>

class QPainter;
class QRect;
struct Command;
struct FoundTask;

/// Paints single rows and says how tall they are. Made anew when the font changes.
class ResultPainter
{
public:
    explicit ResultPainter(const QFont& font = {});

    // In logical pixels.
    [[nodiscard]] int commandHeight() const { return m_commandHeight; }
    [[nodiscard]] int taskHeight() const { return m_taskHeight; }

    /// On one line: the icon, the text with what matched in bold, the keys at the right end.
    void paintCommand(QPainter& painter, const QRect& area, const Command& command,
                      const TaskQuery& query) const;
    /// On two lines: the name and the date; the groups and the piece of the notes.
    void paintTask(QPainter& painter, const QRect& area, const FoundTask& task) const;

private:
    void _paintDate(QPainter& painter, QRect& line, const FoundTask& task) const;
    void _paintGroups(QPainter& painter, QRect& line, const FoundTask& task) const;

    QFont m_font;
    QFont m_smallFont;
    int m_commandHeight = 0;
    int m_taskHeight = 0;
};
