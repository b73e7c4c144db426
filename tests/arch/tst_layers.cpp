// The layers hold: no file includes what cmake/layers.txt does not allow its target.
#include <QDir>
#include <QDirIterator>
#include <QFile>
#include <QFileInfo>
#include <QRegularExpression>
#include <QTest>

#include <functional>

using namespace Qt::StringLiterals;

namespace {

struct Layer
{
    QString target;
    QString folder;
    QStringList mayUse;
};
using Layers = QList<Layer>;

Layers parseLayers(const QString& text)
{
    Layers layers;
    for (const QString& line : text.split(u'\n')) {
        const QStringList fields = line.split(u'|');
        if (line.startsWith(u'#') || fields.size() != 3)
            continue;
        layers.append({fields.at(0).trimmed(), fields.at(1).trimmed(),
                       fields.at(2).split(u' ', Qt::SkipEmptyParts)});
    }
    return layers;
}

/// The layer with the longest folder that holds the file, or null.
const Layer* layerOf(const Layers& layers, const QString& path)
{
    const Layer* found = nullptr;
    for (const Layer& layer : layers) {
        const bool holds = path.startsWith(layer.folder + u'/');
        if (holds && (!found || layer.folder.size() > found->folder.size()))
            found = &layer;
    }
    return found;
}

/// What is wrong with the file. `exists` tells whether the repository holds a file.
QStringList fileFaults(const Layers& layers, const QString& file, const QString& text,
                       const std::function<bool(const QString&)>& exists)
{
    static const QRegularExpression pattern(uR"(^[ \t]*#[ \t]*include[ \t]*([<"])([^>"]+)[>"])"_s,
                                            QRegularExpression::MultilineOption);
    QStringList faults;
    const QString folder = file.left(file.lastIndexOf(u'/') + 1);
    const Layer* user = layerOf(layers, file);
    if (!user)
        faults += file + u" belongs to no target"_s;
    for (const QRegularExpressionMatch& match : pattern.globalMatch(text)) {
        const QString include = match.captured(2);
        const QString what = file + u" includes "_s + include;
        const bool quoted = match.captured(1) == u"\""_s;
        if (exists(include)) {
            const Layer* used = layerOf(layers, include);
            if (!used)
                faults += what + u", which is no part of the program"_s;
            else if (user && used != user && !user->mayUse.contains(used->target))
                faults += what + u": "_s + user->target + u" must not use "_s + used->target;
        } else if (quoted && exists(folder + include)) {
            faults += file + u" does not include "_s + include + u" from the root"_s;
        }
    }
    return faults;
}

QString readFile(const QString& path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? QString::fromUtf8(file.readAll()) : QString();
}

} // namespace

class LayersTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void targetsUseOnlyTargetsAboveThem()
    {
        QVERIFY(m_layers.size() > 5);
        QStringList above;
        for (const Layer& layer : m_layers) {
            for (const QString& used : layer.mayUse)
                QVERIFY2(above.contains(used), qPrintable(layer.target + u" uses "_s + used));
            above += layer.target;
        }
    }

    void filesKeepToTheirLayer()
    {
        const auto exists = [this](const QString& path) {
            return QFileInfo(m_root.filePath(path)).isFile();
        };
        QStringList faults;
        int files = 0;
        for (const QString& folder : {u"app"_s, u"taskdb"_s, u"ui"_s, u"net"_s}) {
            QDirIterator it(m_root.filePath(folder), {u"*.h"_s, u"*.cpp"_s}, QDir::Files,
                            QDirIterator::Subdirectories);
            while (it.hasNext()) {
                const QString path = it.next();
                faults +=
                    fileFaults(m_layers, m_root.relativeFilePath(path), readFile(path), exists);
                ++files;
            }
        }
        QVERIFY(files > 20);
        QVERIFY2(faults.isEmpty(), qPrintable(u'\n' + faults.join(u'\n')));
    }

    void faultsAreFound_data()
    {
        QTest::addColumn<QString>("file");
        QTest::addColumn<QString>("includes");
        QTest::addColumn<QString>("fault");
        const auto row = [](const char* name, const QString& file, const QString& includes,
                            const QString& fault) {
            QTest::newRow(name) << file << includes << fault;
        };
        row("all well", u"low/A.cpp"_s, u"\"low/A.h\" \"low/B.h\" <B> \"A.moc\""_s, {});
        row("from the outer folder into the inner", u"high/D.h"_s, u"\"high/in/C.h\""_s, {});
        row("from an inner folder into the outer", u"high/in/C.h"_s, u"\"low/A.h\" \"high/D.h\""_s,
            u"high/in/C.h includes high/D.h: inner must not use high"_s);
        row("upwards, in angle brackets", u"low/A.h"_s, u"<high/in/C.h>"_s,
            u"low/A.h includes high/in/C.h: low must not use inner"_s);
        row("a test's header", u"low/A.h"_s, u"\"tests/T.h\""_s,
            u"low/A.h includes tests/T.h, which is no part of the program"_s);
        row("from beside", u"low/A.h"_s, u"\"B.h\""_s,
            u"low/A.h does not include B.h from the root"_s);
        row("outside every layer", u"lower/A.h"_s, u"\"low/A.h\""_s,
            u"lower/A.h belongs to no target"_s);
    }
    void faultsAreFound()
    {
        QFETCH(const QString, file);
        QFETCH(const QString, includes);
        QFETCH(const QString, fault);
        const Layers layers = parseLayers(u"# target | folder | may use\n"
                                          "low   | low     |\n"
                                          "inner | high/in | low\n"
                                          "high  | high    | inner low\n"_s);
        const QStringList files{u"low/A.h"_s, u"low/B.h"_s, u"high/D.h"_s, u"high/in/C.h"_s,
                                u"tests/T.h"_s};
        const auto exists = [&files](const QString& path) { return files.contains(path); };
        QString text;
        for (const QString& include : includes.split(u' '))
            text += u"  #  include "_s + include + u'\n';
        QCOMPARE(fileFaults(layers, file, text, exists).join(u'\n'), fault);
    }

private:
    const QDir m_root{QStringLiteral(MVR_SOURCE_DIR)};
    const Layers m_layers = parseLayers(readFile(m_root.filePath(u"cmake/layers.txt"_s)));
};

QTEST_GUILESS_MAIN(LayersTest)
#include "tst_layers.moc"
