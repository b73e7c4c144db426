// Replacing a file: names, swap, and every way of failing with the old version kept.
#include "app/base/CSafeFileUpdate.h"
#include "tests/support/DiskFaults.h"
#include "tests/support/LogWatch.h"

#include <QDir>
#include <QTemporaryDir>
#include <QTest>

#include <atomic>
#include <cerrno>
#include <csignal>
#include <memory>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>

using namespace Qt::StringLiterals;

namespace {

/// A folder whose whole content reads as one text: "file=text", "folder/", "link>target".
class Folder
{
public:
    [[nodiscard]] QString path(const QString& name) const { return m_dir.filePath(name); }

    void fill(const QString& entries) const
    {
        for (const QString& entry : entries.split(u' ', Qt::SkipEmptyParts)) {
            const QStringList link = entry.split(u'>');
            const QStringList file = entry.split(u'=');
            if (entry.endsWith(u'/'))
                QVERIFY(QDir(m_dir.path()).mkdir(entry.chopped(1)));
            else if (link.size() == 2)
                QVERIFY(QFile::link(link.last(), path(link.first())));
            else
                write(file.first(), file.last().toUtf8());
        }
    }

    void write(const QString& name, const QByteArray& bytes) const
    {
        QFile file(path(name));
        QVERIFY(file.open(QIODevice::WriteOnly));
        QCOMPARE(file.write(bytes), bytes.size());
    }

    [[nodiscard]] QString content() const
    {
        QStringList entries;
        const QDir::Filters all = QDir::AllEntries | QDir::System | QDir::Hidden;
        for (const QFileInfo& entry :
             QDir(m_dir.path()).entryInfoList(all | QDir::NoDotAndDotDot, QDir::Name)) {
            if (entry.isSymLink()) {
                entries += entry.fileName() + u'>' + QFileInfo(entry.symLinkTarget()).fileName();
            } else if (entry.isDir()) {
                entries += entry.fileName() + u'/';
            } else {
                QFile file(entry.filePath());
                entries +=
                    entry.fileName() + u'=' +
                    (file.open(QIODevice::ReadOnly) ? QString::fromUtf8(file.readAll()) : u"?"_s);
            }
        }
        return entries.join(u' ');
    }

private:
    QTemporaryDir m_dir;
};

/// A megabyte in small pieces, as the writers of XML bring it.
constexpr int pieceCount = 10000;
constexpr qint64 pieceSize = 100;
constexpr qint64 fileSize = pieceCount * pieceSize;

bool writePieces(QIODevice& device)
{
    const QByteArray piece(pieceSize, 'n');
    for (int i = 0; i < pieceCount; ++i)
        device.write(piece);
    return true;
}

mode_t modeOf(const QString& path)
{
    struct stat status = {};
    return ::stat(QFile::encodeName(path).constData(), &status) == 0 ? status.st_mode & 07777 : 0;
}

} // namespace

class TestSafeFileUpdate : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        m_log = std::make_unique<LogWatch>();
        m_folder = std::make_unique<Folder>();
    }
    void cleanup()
    {
        DiskFaults::reset();
        const QStringList unexpected = m_log->take();
        m_log.reset();
        QCOMPARE(unexpected, QStringList());
    }

    void temporaryName_data()
    {
        QTest::addColumn<QString>("present");
        QTest::addColumn<QString>("chosen");
        QTest::newRow("free") << u"x=a x.bak=b"_s << u"x.new"_s;
        QTest::newRow("one taken") << u"x.new=a"_s << u"x.new_0"_s;
        QTest::newRow("two taken") << u"x.new=a x.new_0=a"_s << u"x.new_1"_s;
        QTest::newRow("gap") << u"x.new=a x.new_1=a"_s << u"x.new_0"_s;
        QTest::newRow("by a folder") << u"x.new/"_s << u"x.new_0"_s;
        QTest::newRow("by a dangling link") << u"x.new>nowhere"_s << u"x.new_0"_s;
    }
    void temporaryName()
    {
        QFETCH(QString, present);
        m_folder->fill(present);
        QFETCH(QString, chosen);
        const CSafeFileUpdate update(m_folder->path(u"x"_s));
        QCOMPARE(update.temporaryPath(), m_folder->path(chosen));
    }
    void temporaryNamesRunOut()
    {
        m_folder->write(u"x.new"_s, "a");
        for (int n = 0; n < 1000; ++n)
            m_folder->write(u"x.new_"_s + QString::number(n), "a");
        QCOMPARE(CSafeFileUpdate(m_folder->path(u"x"_s)).temporaryPath(),
                 m_folder->path(u"x.new_1000"_s));
        QCOMPARE(m_log->take(), QStringList());

        m_folder->write(u"x.new_1000"_s, "a");
        QCOMPARE(CSafeFileUpdate(m_folder->path(u"x"_s)).temporaryPath(),
                 m_folder->path(u"x.new_1001"_s));
        QCOMPARE(m_log->take(), QStringList{u"Critical Eh-h... Houston, we have a problem!"_s});
    }

    void update_data()
    {
        QTest::addColumn<QString>("before");
        QTest::addColumn<QStringList>("faults");
        QTest::addColumn<QString>("after");
        const QStringList noLinks{u"link:x"_s};
        const QStringList lastFails{u"rename:.new"_s};
        const QStringList noLinksLastFails = noLinks + lastFails;
        const QStringList noBackup{u"link:x"_s, u"rename:.bak"_s};

        QTest::newRow("first version") << u""_s << QStringList() << u"x=new"_s;
        QTest::newRow("target gone") << u"x.bak=b"_s << QStringList() << u"x=new x.bak=b"_s;
        QTest::newRow("second version") << u"x=old"_s << QStringList() << u"x=new x.bak=old"_s;
        QTest::newRow("third version")
            << u"x=old x.bak=b"_s << QStringList() << u"x=new x.bak=old"_s;
        QTest::newRow("backup is a folder")
            << u"x=old x.bak/"_s << QStringList() << u"x=old x.bak/ x.new=new"_s;
        QTest::newRow("backup is a dangling link")
            << u"x=old x.bak>gone"_s << QStringList() << u"x=new x.bak=old"_s;
        QTest::newRow("target is a link")
            << u"real=old x>real"_s << QStringList() << u"real=old x=new x.bak>real"_s;
        QTest::newRow("last step fails")
            << u"x=old x.bak=b"_s << lastFails << u"x=old x.bak=old x.new=new"_s;
        QTest::newRow("no links") << u"x=old x.bak=b"_s << noLinks << u"x=new x.bak=old"_s;
        QTest::newRow("no links, last step fails")
            << u"x=old x.bak=b"_s << noLinksLastFails << u"x.bak=old x.new=new"_s;
        QTest::newRow("no links, no backup") << u"x=old"_s << noBackup << u"x=old x.new=new"_s;
    }
    void update()
    {
        QFETCH(QString, before);
        QFETCH(QStringList, faults);
        QFETCH(QString, after);
        m_folder->fill(before);
        const CSafeFileUpdate update(m_folder->path(u"x"_s));
        m_folder->write(u"x.new"_s, "new");
        for (const QString& fault : faults) {
            const QByteArrayList parts = fault.toUtf8().split(':');
            DiskFaults::failNext(parts.first().constData(), EPERM, parts.last().constData());
        }

        QCOMPARE(update.update(), !after.contains(u"x.new"));
        QCOMPARE(DiskFaults::failures(), faults.size());
        QCOMPARE(m_folder->content(), after);
    }
    void updateWithoutTemporaryFile()
    {
        m_folder->fill(u"x=old x.bak=b"_s);
        QVERIFY(!CSafeFileUpdate(m_folder->path(u"x"_s)).update());
        QCOMPARE(m_folder->content(), u"x=old x.bak=b"_s);
    }

    void targetIsNeverMissing()
    {
        m_folder->fill(u"x=old"_s);
        const QByteArray target = QFile::encodeName(m_folder->path(u"x"_s));
        std::atomic<bool> watching{true};
        std::atomic<int> seen{0};
        std::atomic<int> missing{0};
        std::thread watcher([&] {
            while (watching) {
                missing += ::access(target.constData(), F_OK) == 0 ? 0 : 1;
                ++seen;
            }
        });
        int refused = 0;
        for (int i = 0; i < 500 || seen < 500; ++i) {
            const CSafeFileUpdate update(m_folder->path(u"x"_s));
            m_folder->write(u"x.new"_s, "new");
            refused += update.update() ? 0 : 1;
        }
        watching = false;
        watcher.join();
        QCOMPARE(refused, 0);
        QCOMPARE(missing, 0);
    }

    void replace_data()
    {
        QTest::addColumn<int>("mode");
        QTest::newRow("private") << 0600;
        QTest::newRow("beyond the umask") << 0666;
        QTest::newRow("read-only") << 0444;
    }
    void replace()
    {
        QFETCH(int, mode);
        const QString path = m_folder->path(u"x"_s);
        m_folder->fill(u"x=old"_s);
        QCOMPARE(::chmod(QFile::encodeName(path).constData(), static_cast<mode_t>(mode)), 0);
        mode_t whileWriting = 0;
        const SafeWriteResult result = replaceFileSafely(path, [&](QIODevice& device) {
            whileWriting = modeOf(m_folder->path(u"x.new"_s));
            return writePieces(device);
        });

        QCOMPARE(result.state, ESafeWrite::done);
        QCOMPARE(result.temporaryPath, m_folder->path(u"x.new"_s));
        QCOMPARE(m_folder->content(), u"x="_s + QString(fileSize, u'n') + u" x.bak=old"_s);
        QCOMPARE(whileWriting, static_cast<mode_t>(mode));
        QCOMPARE(modeOf(path), static_cast<mode_t>(mode));
    }

    void writeFails_data()
    {
        QTest::addColumn<qint64>("room");
        QTest::addColumn<int>("error");
        QTest::addColumn<int>("times");
        QTest::newRow("disk full at once") << qint64{0} << ENOSPC << DiskFaults::always;
        QTest::newRow("disk full midway") << fileSize / 2 << ENOSPC << DiskFaults::always;
        QTest::newRow("disk full at the end") << fileSize - 1 << ENOSPC << DiskFaults::always;
        QTest::newRow("I/O error midway") << fileSize / 2 << EIO << DiskFaults::always;
        QTest::newRow("transient I/O error") << fileSize / 2 << EIO << 1;
        QTest::newRow("quota for a moment") << qint64{0} << EDQUOT << 1;
    }
    void writeFails()
    {
        QFETCH(qint64, room);
        QFETCH(int, error);
        QFETCH(int, times);
        DiskFaults::failWritesAfter(room, error, "x.new", times);
        _verifyOldIsKept(writePieces);
        QVERIFY(DiskFaults::failures() > 0);
    }
    void syncFails()
    {
        DiskFaults::failNext("fdatasync", EIO, "x.new");
        _verifyOldIsKept(writePieces);
        QCOMPARE(DiskFaults::failures(), 1);
    }
    void producerFails()
    {
        _verifyOldIsKept([](QIODevice& device) { return !writePieces(device); });
    }
    void fileSizeLimit()
    {
        const auto oldHandler = std::signal(SIGXFSZ, SIG_IGN);
        rlimit limit{};
        ::getrlimit(RLIMIT_FSIZE, &limit);
        const rlim_t old = std::exchange(limit.rlim_cur, rlim_t{fileSize / 2});
        ::setrlimit(RLIMIT_FSIZE, &limit);
        _verifyOldIsKept(writePieces);
        limit.rlim_cur = old;
        ::setrlimit(RLIMIT_FSIZE, &limit);
        std::signal(SIGXFSZ, oldHandler);
    }
    void producerLearnsOfTheFailure()
    {
        DiskFaults::failWritesAfter(0, ENOSPC, "x.new");
        qint64 last = 0;
        _verifyOldIsKept([&last](QIODevice& device) {
            last = device.write(QByteArray(fileSize, 'n'));
            return true;
        });
        QCOMPARE(last, -1);
    }

    void readOnlyFolder()
    {
        m_folder->fill(u"x=old"_s);
        const QByteArray folder = QFile::encodeName(m_folder->path(u"."_s));
        QCOMPARE(::chmod(folder.constData(), 0555), 0);
        // In a child that is not root, whom permissions do not stop.
        const pid_t child = ::fork();
        if (child == 0) {
            const bool user = ::getuid() != 0 || ::setuid(65534) == 0;
            const SafeWriteResult result = replaceFileSafely(m_folder->path(u"x"_s), writePieces);
            ::_exit(user && result.state == ESafeWrite::openFailed ? 0 : 1);
        }
        int status = -1;
        QCOMPARE(::waitpid(child, &status, 0), child);
        QCOMPARE(::chmod(folder.constData(), 0700), 0);
        QCOMPARE(status, 0);
        QCOMPARE(m_folder->content(), u"x=old"_s);
    }
    void folderIsSynced()
    {
        // A file system that cannot do this has lost nothing yet.
        const QByteArray folder = QFile::encodeName(m_folder->path(QString()));
        DiskFaults::failNext("fsync", EINVAL, folder.chopped(1).constData());
        QCOMPARE(replaceFileSafely(m_folder->path(u"x"_s), writePieces).state, ESafeWrite::done);
        QCOMPARE(DiskFaults::failures(), 1);
    }
    void swapFails()
    {
        m_folder->fill(u"x=old x.bak/"_s);
        const SafeWriteResult result = replaceFileSafely(
            m_folder->path(u"x"_s), [](QIODevice& device) { return device.write("new") == 3; });
        QCOMPARE(result.state, ESafeWrite::updateFailed);
        QCOMPARE(m_folder->content(), u"x=old x.bak/ x.new=new"_s);
    }

private:
    void _verifyOldIsKept(const std::function<bool(QIODevice&)>& produce)
    {
        m_folder->fill(u"x=old x.bak=older"_s);
        const SafeWriteResult result = replaceFileSafely(m_folder->path(u"x"_s), produce);
        QCOMPARE(result.state, ESafeWrite::writeFailed);
        QCOMPARE(m_folder->content(), u"x=old x.bak=older"_s);
    }

    std::unique_ptr<LogWatch> m_log;
    std::unique_ptr<Folder> m_folder;
};

QTEST_GUILESS_MAIN(TestSafeFileUpdate)
#include "tst_safefileupdate.moc"
