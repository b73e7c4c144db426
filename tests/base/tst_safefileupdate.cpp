// Replacing a file: swap, permissions, and every way of failing with the old version kept.
#include "app/base/CSafeFileUpdate.h"
#include "tests/base/Files.h"
#include "tests/support/DiskFaults.h"
#include "tests/support/LogWatch.h"

#include <QDir>
#include <QTemporaryDir>

#include <cerrno>
#include <memory>
#include <sys/stat.h>

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
        const auto all = QDir(m_dir.path()).entryInfoList(QDir::AllEntries | QDir::NoDotAndDotDot);
        for (const QFileInfo& entry : all) {
            const QString text = QString::fromUtf8(contentsOf(entry.filePath()));
            entries += entry.fileName() + (entry.isDir() ? u"/"_s : u'=' + text);
        }
        return entries.join(u' ');
    }

private:
    QTemporaryDir m_dir;
};

/// A megabyte in small pieces, as the writers of XML bring it.
constexpr qint64 fileSize = 1'000'000;

bool writePieces(QIODevice& device)
{
    for (qint64 written = 0; written < fileSize; written += 100)
        device.write(QByteArray(100, 'n'));
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
        row("backup is a folder", u"x=old x.bak/"_s, {}, u"x=old x.bak/ x.new=new"_s);
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
        ::umask(before);
        QCOMPARE(m_folder->content(), u"link=new old=new x=new x.new=mine y=new"_s);
        QVERIFY(QFileInfo(m_folder->path(u"link"_s)).isSymLink());
        QCOMPARE(modeOf(m_folder->path(u"old"_s)), 0604U);
        QCOMPARE(modeOf(m_folder->path(u"x"_s)), 0640U);
        QCOMPARE(modeOf(m_folder->path(u"y"_s)), 0600U);
    }

    void failedWritesKeepTheOldVersion()
    {
        m_folder->fill(u"x=old x.bak=older"_s);
        const auto failsWith = [this](const FileProducer& produce, int error) {
            const SafeWriteResult result = replaceFileSafely(m_folder->path(u"x"_s), produce);
            QCOMPARE(result.state, ESafeWrite::writeFailed);
            QCOMPARE(result.error, error);
            QCOMPARE(m_folder->content(), u"x=old x.bak=older"_s);
        };
        for (const qint64 room : {qint64{0}, fileSize - 1}) {
            DiskFaults::failWritesAfter(room, ENOSPC, "x.new");
            failsWith(writePieces, ENOSPC);
        }
        // An error that is over by the next write.
        DiskFaults::failWritesAfter(fileSize / 2, EIO, "x.new", 1);
        failsWith(writePieces, EIO);
        DiskFaults::failNext("fdatasync", EDQUOT, "x.new");
        failsWith(writePieces, EDQUOT);
        failsWith([](QIODevice& device) { return !writePieces(device); }, 0);
        QCOMPARE(replaceFileSafely(m_folder->path(u"gone/x"_s), writePieces).error, ENOENT);
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
    std::unique_ptr<LogWatch> m_log;
    std::unique_ptr<Folder> m_folder;
};

QTEST_GUILESS_MAIN(TestSafeFileUpdate)
#include "tst_safefileupdate.moc"
