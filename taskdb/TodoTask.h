// The record of one task.
#pragma once

#include <QDateTime>
#include <QSharedDataPointer>
#include <QString>
#include <QUuid>

#include <limits>

/// One task, as an implicitly shared value. The setters change this copy and then the shared
/// store; the underscore forms change this copy only.
class TodoTask
{
public:
    using Id = QUuid;

    /// daysToEvent() of a task without a due date.
    static constexpr int noDueDate = 2147483647;

    /// An empty record: null identifier, empty texts, not completed, no times.
    TodoTask();
    TodoTask(const TodoTask& other);
    TodoTask(TodoTask&& other) noexcept;
    ~TodoTask();
    TodoTask& operator=(const TodoTask& other);
    TodoTask& operator=(TodoTask&& other) noexcept;

    /// Whether all fields are the same.
    [[nodiscard]] bool operator==(const TodoTask& other) const;

    /// Empties the record and gives it a fresh identifier and the current time as creation time.
    void create();
    void clear();
    /// Fills the record from the texts of the database file; times are milliseconds since
    /// 1970-01-01 UTC. A missing creation time becomes the current time. Returns whether the
    /// identifier is valid.
    bool load(QStringView id, const QString& name, const QString& notes, QStringView completed,
              QStringView due, QStringView created, QStringView completedAt, QStringView deletedAt);

    [[nodiscard]] Id id() const;
    [[nodiscard]] QString name() const;
    [[nodiscard]] QString notes() const;
    [[nodiscard]] bool completed() const;
    // Local times; invalid where the task has none.
    [[nodiscard]] QDateTime timeDue() const;
    [[nodiscard]] QDateTime timeCreated() const;
    [[nodiscard]] QDateTime timeCompleted() const;
    [[nodiscard]] QDateTime timeDeleted() const;

    /// No name, no notes and no due date.
    [[nodiscard]] bool empty() const;
    /// Calendar days from today to the due date, negative when overdue; noDueDate without one.
    [[nodiscard]] int daysToEvent() const;
    /// The trimmed name, with the trimmed notes in parentheses when there are any.
    [[nodiscard]] QString toString() const;

    void rename(const QString& name);
    void setNotes(const QString& notes);
    /// An invalid time clears the due date.
    void setTimeDue(const QDateTime& time);
    /// Sets or clears the completion time with the flag. Changes no group.
    void setCompleted(bool completed);

    // Each returns whether the record changed.
    bool _rename(const QString& name);
    bool _setNotes(const QString& notes);
    bool _setTimeDue(const QDateTime& time);
    bool _setCompleted(bool completed, const QDateTime& time);

    /// Times as the file keeps them, for the writer: milliseconds since 1970-01-01 UTC, or noTime.
    struct RawTimes
    {
        qint64 due;
        qint64 created;
        qint64 completed;
        qint64 deleted;

        bool operator==(const RawTimes& other) const = default;
    };
    static constexpr qint64 noTime = std::numeric_limits<qint64>::min();
    [[nodiscard]] RawTimes rawTimes() const;

private:
    struct Data;
    QSharedDataPointer<Data> d;
};

Q_DECLARE_TYPEINFO(TodoTask, Q_RELOCATABLE_TYPE);
