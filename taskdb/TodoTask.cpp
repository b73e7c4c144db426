#include "taskdb/TodoTask.h"

#include "app/base/Clock.h"
#include "taskdb/IdText.h"
#include "taskdb/SharedStorage.h"
#include "taskdb/TaskStorage.h"

using namespace Qt::StringLiterals;

struct TodoTask::Data : QSharedData
{
    Id id;
    bool completed = false; // in the padding before the strings: records are many
    QString name;
    QString notes;
    RawTimes times{noTime, noTime, noTime, noTime};
};

namespace {

qint64 toRaw(const QDateTime& time)
{
    return time.isValid() ? time.toMSecsSinceEpoch() : TodoTask::noTime;
}

QDateTime fromRaw(qint64 time)
{
    return time == TodoTask::noTime ? QDateTime() : QDateTime::fromMSecsSinceEpoch(time);
}

/// Reads a number of at most 18 plain digits, as nearly all times are, in a fraction of the time
/// that QStringView takes. Returns whether the text is one.
bool readPlainNumber(QStringView text, qint64& value)
{
    if (text.size() > 18)
        return false;
    value = 0;
    for (QChar c : text) {
        const uint digit = c.unicode() - uint{u'0'};
        if (digit > 9)
            return false;
        value = value * 10 + digit;
    }
    return true;
}

/// Reads a time; text that is no time leaves it as it is.
void loadTime(QStringView text, qint64& time)
{
    // Beyond this many milliseconds a calendar date may not exist any more.
    constexpr qint64 surelyValid = Q_INT64_C(8'000'000'000'000'000);

    if (text.isEmpty())
        return;
    qint64 value = 0;
    if (!readPlainNumber(text, value)) {
        bool ok = false;
        value = text.toLongLong(&ok, 10);
        if (!ok)
            return;
    }
    const bool valid = (value > -surelyValid && value < surelyValid) || fromRaw(value).isValid();
    if (valid)
        time = value;
}

} // namespace

TodoTask::TodoTask()
{
    static const QSharedDataPointer<Data> emptyRecord(new Data);
    d = emptyRecord;
}

TodoTask::TodoTask(const TodoTask& other) = default;
TodoTask::TodoTask(TodoTask&& other) noexcept = default;
TodoTask::~TodoTask() = default;
TodoTask& TodoTask::operator=(const TodoTask& other) = default;
TodoTask& TodoTask::operator=(TodoTask&& other) noexcept = default;

bool TodoTask::operator==(const TodoTask& other) const
{
    return d == other.d ||
           (d->id == other.d->id && d->completed == other.d->completed &&
            d->times == other.d->times && d->name == other.d->name && d->notes == other.d->notes);
}

void TodoTask::create()
{
    clear();
    d->id = Id::createUuid();
    d->times.created = Clock::nowMs();
}

void TodoTask::clear()
{
    *this = TodoTask();
}

bool TodoTask::load(QStringView id, const QString& name, const QString& notes,
                    QStringView completed, QStringView due, QStringView created,
                    QStringView completedAt, QStringView deletedAt)
{
    d = new Data;
    d->id = idFromText(id);
    d->name = name;
    d->notes = notes;
    d->completed = completed == u"yes";
    loadTime(due, d->times.due);
    loadTime(created, d->times.created);
    loadTime(completedAt, d->times.completed);
    loadTime(deletedAt, d->times.deleted);
    if (d->times.created == noTime)
        d->times.created = Clock::nowMs();
    return !d->id.isNull();
}

TodoTask::Id TodoTask::id() const
{
    return d->id;
}

QString TodoTask::name() const
{
    return d->name;
}

QString TodoTask::notes() const
{
    return d->notes;
}

bool TodoTask::completed() const
{
    return d->completed;
}

QDateTime TodoTask::timeDue() const
{
    return fromRaw(d->times.due);
}

QDateTime TodoTask::timeCreated() const
{
    return fromRaw(d->times.created);
}

QDateTime TodoTask::timeCompleted() const
{
    return fromRaw(d->times.completed);
}

QDateTime TodoTask::timeDeleted() const
{
    return fromRaw(d->times.deleted);
}

TodoTask::RawTimes TodoTask::rawTimes() const
{
    return d->times;
}

bool TodoTask::empty() const
{
    return d->name.isEmpty() && d->notes.isEmpty() && d->times.due == noTime;
}

int TodoTask::daysToEvent() const
{
    if (d->times.due == noTime)
        return noDueDate;
    constexpr qint64 furthest = noDueDate - 1;
    return static_cast<int>(qBound(-furthest, Clock::now().daysTo(timeDue()), furthest));
}

QString TodoTask::toString() const
{
    const QString notes = d->notes.trimmed();
    const QString name = d->name.trimmed();
    return notes.isEmpty() ? name : QString(name + u" ("_s + notes + u')');
}

void TodoTask::rename(const QString& name)
{
    if (_rename(name))
        writeThrough(&TaskStorage::renameTask, id(), name);
}

void TodoTask::setNotes(const QString& notes)
{
    if (_setNotes(notes))
        writeThrough(&TaskStorage::attachNotesToTask, id(), notes);
}

void TodoTask::setTimeDue(const QDateTime& time)
{
    if (_setTimeDue(time))
        writeThrough(&TaskStorage::setTaskDueTime, id(), time);
}

void TodoTask::setCompleted(bool completed)
{
    const QDateTime time = completed ? Clock::now() : QDateTime();
    if (_setCompleted(completed, time))
        writeThrough(&TaskStorage::completeTask, id(), completed, time);
}

// The comparisons read through constData(): a mere look must not detach a shared record.

bool TodoTask::_rename(const QString& name)
{
    if (d.constData()->name == name)
        return false;
    d->name = name;
    return true;
}

bool TodoTask::_setNotes(const QString& notes)
{
    if (d.constData()->notes == notes)
        return false;
    d->notes = notes;
    return true;
}

bool TodoTask::_setTimeDue(const QDateTime& time)
{
    const qint64 raw = toRaw(time);
    if (d.constData()->times.due == raw)
        return false;
    d->times.due = raw;
    return true;
}

bool TodoTask::_setCompleted(bool completed, const QDateTime& time)
{
    if (d.constData()->completed == completed)
        return false;
    d->completed = completed;
    d->times.completed = toRaw(time);
    return true;
}
