#include "taskdb/DatabaseBackups.h"

#include "app/base/CSafeFileUpdate.h"
#include "app/base/Clock.h"
#include "app/base/LogHelper.h"
#include "app/base/PathHelper.h"

#include <QDir>
#include <QMap>
#include <QMutexLocker>
#include <QRegularExpression>
#include <QSet>

#include <filesystem>
#include <system_error>
#include <utility>

using namespace Qt::StringLiterals;

namespace {

constexpr int keptDays = 7;
constexpr int keptWeeks = 5;
constexpr int keptMonths = 12;
constexpr int keptExtras = 7;
constexpr qint64 blockSize = 256 * 1024;

const auto dayFormat = u"yyyy-MM-dd"_s;
const auto extraFormat = u"yyyy-MM-dd-HHmmss"_s;

QString backupName(const QString& stamp)
{
    return u"database-"_s + stamp + u".xml"_s;
}

bool hardLink(const QString& from, const QString& to)
{
    std::error_code error;
    std::filesystem::create_hard_link(QFile::encodeName(from).toStdString(),
                                      QFile::encodeName(to).toStdString(), error);
    return !error;
}

bool copyInto(QIODevice& target, QFile& source)
{
    while (!source.atEnd()) {
        const QByteArray block = source.read(blockSize);
        if (block.isEmpty() || target.write(block) != block.size())
            return false;
    }
    return source.error() == QFile::NoError;
}

/// The Sunday that ends the day's week.
QDate weekOf(const QDate& day)
{
    return day.addDays(Qt::Sunday - day.dayOfWeek());
}

QDate monthOf(const QDate& day)
{
    return {day.year(), day.month(), 1};
}

template <typename Key>
QSet<QString> newest(const QMap<Key, QString>& names, int count)
{
    const QStringList sorted = names.values();
    const QStringList kept = sorted.mid(qMax(qsizetype{0}, sorted.size() - count));
    return {kept.begin(), kept.end()};
}

} // namespace

DatabaseBackups::DatabaseBackups(const QString& folder)
    : m_folder(folder)
{
}

DatabaseBackups::~DatabaseBackups() = default;

void DatabaseBackups::keep(const QString& previous, bool lostMost)
{
    if (!m_enabled || !QFile::exists(previous))
        return;
    const QDateTime now = Clock::now();
    _keepAs(backupName(now.toString(dayFormat)), previous);
    if (lostMost)
        _keepAs(backupName(now.toString(extraFormat)), previous);
}

void DatabaseBackups::_keepAs(const QString& name, const QString& previous)
{
    const QString path = m_folder + u'/' + name;
    if (QFile::exists(path))
        return;
    const QMutexLocker lock(&m_mutex);
    if (!PathHelper::makePath(m_folder + u'/')) {
        _logOncePerDay(path, u"its folder cannot be made"_s);
        return;
    }
    if (hardLink(previous, path)) {
        _thinOut();
        return;
    }
    // Opened now: the next commit takes the name away, but not the content.
    auto source = std::make_unique<QFile>(previous);
    if (source->open(QIODevice::ReadOnly))
        m_pending.push_back({path, std::move(source)});
    else
        _logOncePerDay(path, source->errorString());
}

void DatabaseBackups::copyPending()
{
    std::vector<Pending> pending;
    {
        const QMutexLocker lock(&m_mutex);
        pending.swap(m_pending);
    }
    for (const Pending& copy : pending) {
        if (QFile::exists(copy.path))
            continue;
        QFile::remove(copy.path + u".new"_s); // left behind by a kill
        const SafeWriteResult result =
            writeFileSafely(copy.path, EFileAccess::userOnly,
                            [&copy](QIODevice& device) { return copyInto(device, *copy.source); });
        const QMutexLocker lock(&m_mutex);
        if (result.state == ESafeWrite::done)
            _thinOut();
        else
            _logOncePerDay(copy.path, qt_error_string(result.error));
    }
}

/// Removes what has become superfluous.
void DatabaseBackups::_thinOut() const
{
    const QDir folder(m_folder);
    const QStringList names = folder.entryList(QDir::Files | QDir::Hidden);
    for (const QString& name : superfluous(names, Clock::today()))
        QFile::remove(folder.filePath(name));
}

DatabaseBackups::Stamp DatabaseBackups::stampOf(const QString& name)
{
    static const QRegularExpression pattern(u"^database-(\\d{4}-\\d{2}-\\d{2})(-\\d{6})?\\.xml$"_s);
    const QRegularExpressionMatch match = pattern.match(name);
    const Stamp stamp{QDate::fromString(match.captured(1), dayFormat),
                      QTime::fromString(match.captured(2), u"-HHmmss"_s)};
    return match.hasCaptured(2) && !stamp.time.isValid() ? Stamp() : stamp;
}

QStringList DatabaseBackups::superfluous(const QStringList& names, const QDate& today)
{
    QMap<QDate, QString> days;
    QMap<QDate, QString> weeks;
    QMap<QDate, QString> months;
    QMap<QString, QString> extras;
    QStringList sorted = names;
    sorted.sort();
    for (const QString& name : std::as_const(sorted)) {
        const auto [day, time] = stampOf(name);
        if (!day.isValid() || day > today)
            continue;
        if (time.isValid()) {
            extras.insert(name, name);
            continue;
        }
        days.insert(day, name);
        if (weekOf(day) <= today)
            weeks.insert(weekOf(day), name);
        if (!months.contains(monthOf(day)))
            months.insert(monthOf(day), name);
    }
    const QSet<QString> kept = newest(days, keptDays) | newest(weeks, keptWeeks) |
                               newest(months, keptMonths) | newest(extras, keptExtras);
    QStringList removed;
    for (const QString& name : days.values() + extras.values()) {
        if (!kept.contains(name))
            removed += name;
    }
    return removed;
}

void DatabaseBackups::_logOncePerDay(const QString& path, const QString& reason)
{
    if (m_logged == Clock::today())
        return;
    m_logged = Clock::today();
    MVR_LOG_WARN(u"Failed to make the backup "_s + path + u": "_s + reason);
}
