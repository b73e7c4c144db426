#include "taskdb/search/TaskSearch.h"

#include "app/base/OptionalThread.h"
#include "taskdb/TaskStorage.h"
#include "taskdb/search/TaskQuery.h"

#include <QElapsedTimer>

#include <algorithm>
#include <compare>
#include <limits>
#include <sys/resource.h>
#include <unistd.h>
#include <utility>
#include <vector>

namespace {

/// As many as are handed over while the search goes on; more than fit on a screen.
constexpr std::size_t batchSize = 200;
constexpr qint64 firstBatchMs = 4;
constexpr qint64 batchIntervalMs = 50;
/// Between two looks at the clock and at whether the search is still wanted.
constexpr qsizetype stride = 64;

/// In the order of the results.
struct Match
{
    SearchCorpus::EState state;
    TaskQuery::ERank rank;
    qint64 due;
    qsizetype place; // in the corpus

    auto operator<=>(const Match&) const = default;
};

qint64 dueOrLast(const SearchCorpus::Entry& entry)
{
    return entry.due == TodoTask::noTime ? std::numeric_limits<qint64>::max() : entry.due;
}

QList<TodoTask::Id> idsOf(const std::vector<Match>& matches, const SearchCorpus& corpus)
{
    QList<TodoTask::Id> ids;
    ids.reserve(static_cast<qsizetype>(matches.size()));
    for (const Match& match : matches)
        ids.append(corpus.entries().at(match.place).id);
    return ids;
}

std::vector<Match> bestOf(const std::vector<Match>& matches)
{
    std::vector<Match> best(std::min(matches.size(), batchSize));
    std::partial_sort_copy(matches.cbegin(), matches.cend(), best.begin(), best.end());
    return best;
}

/// When the next results are to be handed over.
class BatchClock
{
public:
    BatchClock() { m_since.start(); }

    [[nodiscard]] bool isTime(std::size_t count)
    {
        if (count == 0 || (m_since.elapsed() < m_wait && (!m_isFirst || count < batchSize)))
            return false;
        m_isFirst = false;
        m_wait = batchIntervalMs;
        m_since.restart();
        return true;
    }

private:
    QElapsedTimer m_since;
    qint64 m_wait = firstBatchMs;
    bool m_isFirst = true;
};

} // namespace

TaskSearch::TaskSearch(const TaskStorage& storage, QObject* parent)
    : QObject(parent)
    , m_storage(storage)
{
}

TaskSearch::~TaskSearch()
{
    ++m_number;
    m_thread = {};
}

void TaskSearch::start(const QString& text)
{
    const Job job{++m_number, text};
    if (!m_thread.joinable())
        m_thread = startOptionalThread([this](const std::stop_token& stop) { _work(stop); });
    if (!m_thread.joinable()) {
        _search(job, {});
        return;
    }
    {
        const std::lock_guard lock(m_mutex);
        m_next = job;
    }
    m_wake.notify_one();
}

void TaskSearch::_work(const std::stop_token& stop)
{
    // The interface comes first, wherever there are fewer processors than threads.
    ::setpriority(PRIO_PROCESS, static_cast<id_t>(::gettid()), 10);
    while (!stop.stop_requested()) {
        std::unique_lock lock(m_mutex);
        if (!m_wake.wait(lock, stop, [this] { return m_next.has_value(); }))
            return;
        const Job job = *std::exchange(m_next, std::nullopt);
        lock.unlock();
        _search(job, stop);
    }
}

void TaskSearch::_search(const Job& job, const std::stop_token& stop)
{
    if (!m_corpus.follow(m_storage, stop))
        return;
    const TaskQuery query(job.text);
    const QList<SearchCorpus::Entry>& entries = m_corpus.entries();
    std::vector<Match> matches;
    BatchClock clock;
    for (qsizetype i = 0; i < entries.size() && !query.isEmpty(); ++i) {
        if (i % stride == 0) {
            if (m_number != job.number)
                return;
            if (clock.isTime(matches.size()))
                _deliver(job, idsOf(bestOf(matches), m_corpus), false);
        }
        const SearchCorpus::Entry& entry = entries.at(i);
        const TaskQuery::ERank rank =
            query.matchFolded(m_corpus.name(entry), m_corpus.notes(entry));
        if (rank != TaskQuery::NoMatch)
            matches.push_back({entry.state, rank, dueOrLast(entry), i});
    }
    std::sort(matches.begin(), matches.end());
    _deliver(job, idsOf(matches, m_corpus), true);
}

void TaskSearch::_deliver(const Job& job, const QList<TodoTask::Id>& ids, bool complete)
{
    QMetaObject::invokeMethod(
        this,
        [this, number = job.number, ids, complete] {
            if (number == m_number)
                Q_EMIT found(ids, complete);
        },
        Qt::QueuedConnection);
}
