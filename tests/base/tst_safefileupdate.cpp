// Replacing a file: names, swap, and every way of failing with the old version kept.
#include "app/base/CSafeFileUpdate.h"
#include "tests/base/Files.h"
#include "tests/support/DiskFaults.h"
#include "tests/support/LogWatch.h"

#include <QDir>
#include <QTemporaryDir>

#include <atomic>
#include <cerrno>
#include <memory>
#include <sys/stat.h>
#include <thread>
#include <unistd.h>

using namespace Qt::StringLiterals;

namespace {

/// A folder whose whole content reads as one text: "file=text folder/".
class Folder
{
public:
    [[nodiscard]] QString path(const QString& name) const { return m_dir.filePath(name); }

    void fill(const QString& entries) const
    {
        for (const QString& entry : entries.split(u' ', Qt::SkipEmptyParts)) {
            if (entry.endsWith(u'/')) {
                QVERIFY(QDir(m_dir.path()).mkdir(entry.chopped(1)));
                continue;
            }
            writeFile(path(entry.section(u'=', 0, 0)), entry.section(u'=', 1).toUtf8());
        }
    }

    [[nodiscard]] QString content() const
    {
        QStringList entries;
        const QDir dir(m_dir.path());
        for (const QString& name : dir.entryList(QDir::Files, QDir::Name))
            entries += name + u'=' + QString::fromUtf8(contentsOf(path(name)));
        for (const QString& name : dir.entryList(QDir::Dirs | QDir::NoDotAndDotDot, QDir::Name))
            entries += name + u'/';
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
        m_log.reset();
    }

    void temporaryName()
    {
        const auto chosen = [this] {
            return CSafeFileUpdate(m_folder->path(u"x"_s)).temporaryPath();
        };
        QCOMPARE(chosen(), m_folder->path(u"x.new"_s));
        m_folder->fill(u"x.new/ x.new_1=a"_s);
        QCOMPARE(chosen(), m_folder->path(u"x.new_0"_s));
    }

    void update_data()
    {
        QTest::addColumn<QString>("before");
        QTest::addColumn<QStringList>("faults");
        QTest::addColumn<QString>("after");
        const QStringList noLinks{u"link:x"_s};
        const QStringList lastFails{u"rename:.new"_s};
        const QStringList onlyRenames = noLinks + QStringList{u"renameat2:x"_s};
        const QStringList noBackup = onlyRenames + QStringList{u"rename:.bak"_s};

        const auto row = [](const char* name, const QString& before, const QStringList& faults,
                            const QString& after) {
            QTest::newRow(name) << before << faults << after;
        };
        const QString old = u"x=old x.bak=b"_s;
        row("first version", {}, {}, u"x=new"_s);
        row("next version", old, {}, u"x=new x.bak=old"_s);
        row("backup is a folder", u"x=old x.bak/"_s, {}, u"x=old x.new=new x.bak/"_s);
        row("last step fails", old, lastFails, u"x=old x.bak=old x.new=new"_s);
        row("no links", old, noLinks, u"x=new x.bak=old"_s);
        row("renames", old, onlyRenames, u"x=new x.bak=old"_s);
        row("renames, last step fails", old, onlyRenames + lastFails, u"x.bak=old x.new=new"_s);
        row("renames, no backup", u"x=old"_s, noBackup, u"x=old x.new=new"_s);
    }
    void update()
    {
        QFETCH(QString, before);
        QFETCH(QStringList, faults);
        QFETCH(QString, after);
        m_folder->fill(before);
        for (const QString& fault : faults) {
            const QByteArrayList parts = fault.toUtf8().split(':');
            DiskFaults::failNext(parts.first().constData(), EPERM, parts.last().constData());
        }
        const SafeWriteResult result = replaceFileSafely(
            m_folder->path(u"x"_s), [](QIODevice& device) { return device.write("new") == 3; });
        QCOMPARE(result.state,
                 after.contains(u"x.new") ? ESafeWrite::updateFailed : ESafeWrite::done);
        QVERIFY(result.state == ESafeWrite::done || result.error == EPERM ||
                result.error == EISDIR);
        QCOMPARE(DiskFaults::failures(), faults.size());
        QCOMPARE(m_folder->content(), after);
    }

    void targetIsNeverMissing_data()
    {
        QTest::addColumn<int>("refusedLinks");
        QTest::newRow("with hard links") << 0;
        QTest::newRow("without") << DiskFaults::always;
    }
    void targetIsNeverMissing()
    {
        QFETCH(const int, refusedLinks);
        DiskFaults::failNext("link", EPERM, "x", refusedLinks);
        m_folder->fill(u"x=old"_s);
        const QByteArray target = QFile::encodeName(m_folder->path(u"x"_s));
        std::atomic<bool> watching{true};
        std::atomic<int> seen{0};
        std::atomic<int> missing{0};
        std::thread watcher([&] {
            for (; watching; ++seen)
                missing += ::access(target.constData(), F_OK) == 0 ? 0 : 1;
        });
        int refused = 0;
        for (int i = 0; i < 500 || seen < 500; ++i) {
            const CSafeFileUpdate update(m_folder->path(u"x"_s));
            m_folder->fill(u"x.new=new"_s);
            refused += update.update() ? 0 : 1;
        }
        watching = false;
        watcher.join();
        QCOMPARE(refused, 0);
        QCOMPARE(missing, 0);
    }

    void newFileKeepsThePermissions()
    {
        const QString path = m_folder->path(u"x"_s);
        m_folder->fill(u"x=old"_s);
        // One private, one beyond the umask.
        for (const mode_t mode : {0600U, 0666U}) {
            QCOMPARE(::chmod(QFile::encodeName(path).constData(), mode), 0);
            mode_t whileWriting = 0;
            const SafeWriteResult result = replaceFileSafely(path, [&](QIODevice& device) {
                whileWriting = modeOf(m_folder->path(u"x.new"_s));
                return writePieces(device);
            });
            QCOMPARE(result.state, ESafeWrite::done);
            QCOMPARE(whileWriting, mode);
            QCOMPARE(modeOf(path), mode);
            QCOMPARE(QFileInfo(path).size(), fileSize);
        }
    }

    void chosenFile()
    {
        const mode_t before = ::umask(0026);
        m_folder->fill(u"x.new=mine old=old"_s);
        QVERIFY(QFile::link(m_folder->path(u"old"_s), m_folder->path(u"link"_s)));
        QCOMPARE(::chmod(QFile::encodeName(m_folder->path(u"old"_s)).constData(), 0604), 0);
        const auto write = [this](const QString& name, EFileAccess access) {
            return writeFileSafely(m_folder->path(name), access,
                                   [](QIODevice& device) { return device.write("new") == 3; })
                .state;
        };
        QCOMPARE(write(u"x"_s, EFileAccess::umask), ESafeWrite::done);
        QCOMPARE(write(u"y"_s, EFileAccess::userOnly), ESafeWrite::done);
        QCOMPARE(write(u"link"_s, EFileAccess::userOnly), ESafeWrite::done);
        DiskFaults::failNext("rename", EIO, "y");
        QCOMPARE(write(u"y"_s, EFileAccess::umask), ESafeWrite::updateFailed);
        ::umask(before);
        QCOMPARE(m_folder->content(), u"link=new old=new x=new x.new=mine y=new"_s);
        QVERIFY(QFileInfo(m_folder->path(u"link"_s)).isSymLink());
        QCOMPARE(modeOf(m_folder->path(u"old"_s)), 0604U);
        QCOMPARE(modeOf(m_folder->path(u"x"_s)), 0640U);
        QCOMPARE(modeOf(m_folder->path(u"y"_s)), 0600U);
    }

    void writeFails_data()
    {
        QTest::addColumn<qint64>("room");
        QTest::addColumn<int>("error");
        QTest::addColumn<int>("times");
        QTest::newRow("disk full at once") << qint64{0} << ENOSPC << DiskFaults::always;
        QTest::newRow("disk full at the end") << fileSize - 1 << ENOSPC << DiskFaults::always;
        QTest::newRow("transient I/O error") << fileSize / 2 << EIO << 1;
    }
    void writeFails()
    {
        QFETCH(qint64, room);
        QFETCH(int, error);
        QFETCH(int, times);
        DiskFaults::failWritesAfter(room, error, "x.new", times);
        _verifyOldIsKept(writePieces, error);
        QVERIFY(DiskFaults::failures() > 0);
    }
    void syncOrProducerFails()
    {
        _verifyOldIsKept([](QIODevice& device) { return !writePieces(device); }, 0);
        DiskFaults::failNext("fdatasync", EIO, "x.new");
        _verifyOldIsKept(writePieces, EIO);
        QCOMPARE(DiskFaults::failures(), 1);
    }
    void noFileCanBeMade()
    {
        const SafeWriteResult result = replaceFileSafely(m_folder->path(u"gone/x"_s), writePieces);
        QCOMPARE(result.state, ESafeWrite::openFailed);
        QCOMPARE(result.error, ENOENT);
    }
    void folderIsSynced()
    {
        // A file system that cannot do this has lost nothing yet.
        const QByteArray folder = QFile::encodeName(m_folder->path(QString()));
        DiskFaults::failNext("fsync", EINVAL, folder.chopped(1).constData());
        QCOMPARE(replaceFileSafely(m_folder->path(u"x"_s), writePieces).state, ESafeWrite::done);
        QCOMPARE(DiskFaults::failures(), 1);
    }

private:
    void _verifyOldIsKept(const FileProducer& produce, int error)
    {
        m_folder->fill(u"x=old x.bak=older"_s);
        const SafeWriteResult result = replaceFileSafely(m_folder->path(u"x"_s), produce);
        QCOMPARE(result.state, ESafeWrite::writeFailed);
        QCOMPARE(result.error, error);
        QCOMPARE(m_folder->content(), u"x=old x.bak=older"_s);
    }

    std::unique_ptr<LogWatch> m_log;
    std::unique_ptr<Folder> m_folder;
};

QTEST_GUILESS_MAIN(TestSafeFileUpdate)
#include "tst_safefileupdate.moc"
