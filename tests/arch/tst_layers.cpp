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

/// What is wrong with `file` including `include`, both from the repository's root; empty if
/// nothing is.
QString includeFault(const Layers& layers, const QString& file, const QString& include)
{
    const QString what = file + u" includes "_s + include;
    const Layer* user = layerOf(layers, file);
    const Layer* used = layerOf(layers, include);
    if (!user)
        return file + u" belongs to no target"_s;
    if (!used)
        return what + u", which is no part of the program"_s;
    if (used != user && !user->mayUse.contains(used->target))
        return what + u": "_s + user->target + u" must not use "_s + used->target;
    return {};
}

/// What is wrong with the file. `exists` tells whether the repository holds a file.
QStringList fileFaults(const Layers& layers, const QString& file, const QString& text,
                       const std::function<bool(const QString&)>& exists)
{
    static const QRegularExpression pattern(uR"(^[ \t]*#[ \t]*include[ \t]*([<"])([^>"]+)[>"])"_s,
                                            QRegularExpression::MultilineOption);
    QStringList faults;
    const bool header = file.endsWith(u".h");
    const QString folder = file.left(file.lastIndexOf(u'/') + 1);
    const QString ownHeader = file.left(file.lastIndexOf(u'.')) + u".h"_s;
    const bool hasOwnHeader = !header && exists(ownHeader);

    if (!hasOwnHeader && !text.startsWith(u"// "))
        faults += file + u" does not begin with a comment that says what it is for"_s;
    if (header && !text.contains(u"\n#pragma once\n"))
        faults += file + u" has no #pragma once"_s;

    bool first = true;
    for (const QRegularExpressionMatch& match : pattern.globalMatch(text)) {
        const QString include = match.captured(2);
        if (first && hasOwnHeader && include != ownHeader)
            faults += file + u" does not include its own header first"_s;
        first = false;
        const bool quoted = match.captured(1) == u"\""_s;
        if (exists(include)) {
            const QString fault = includeFault(layers, file, include);
            if (!fault.isEmpty())
                faults += fault;
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
    void targetsUseOnlyTargetsAboveThem();
    void filesKeepToTheirLayer();
    void faultsAreFound_data();
    void faultsAreFound();

private:
    const QDir m_root{QStringLiteral(MVR_SOURCE_DIR)};
    const Layers m_layers = parseLayers(readFile(m_root.filePath(u"cmake/layers.txt"_s)));
};

void LayersTest::targetsUseOnlyTargetsAboveThem()
{
    QVERIFY(m_layers.size() > 5);
    QStringList above;
    for (const Layer& layer : m_layers) {
        for (const QString& used : layer.mayUse)
            QVERIFY2(above.contains(used), qPrintable(layer.target + u" uses "_s + used));
        above += layer.target;
    }
}

void LayersTest::filesKeepToTheirLayer()
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
            faults += fileFaults(m_layers, m_root.relativeFilePath(path), readFile(path), exists);
            ++files;
        }
    }
    QVERIFY(files > 20);
    QVERIFY2(faults.isEmpty(), qPrintable(u'\n' + faults.join(u'\n')));
}

void LayersTest::faultsAreFound_data()
{
    QTest::addColumn<QString>("file");
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("fault");

    const auto row = [](const char* name, const QString& file, const QString& text,
                        const QString& fault) { QTest::newRow(name) << file << text << fault; };
    row("all well", u"low/A.cpp"_s, u"#include \"low/A.h\"\n#include \"low/B.h\"\n#include <B>\n"_s,
        {});
    row("generated files", u"low/A.cpp"_s, u"#include \"low/A.h\"\n#include \"A.moc\"\n"_s, {});
    row("from an inner folder into the outer", u"high/in/C.h"_s,
        u"// C\n#pragma once\n#include \"low/A.h\"\n#include \"high/D.h\"\n"_s,
        u"high/in/C.h includes high/D.h: inner must not use high"_s);
    row("upwards", u"low/A.h"_s, u"// A\n#pragma once\n#include \"high/D.h\"\n"_s,
        u"low/A.h includes high/D.h: low must not use high"_s);
    row("upwards, in angle brackets", u"low/A.h"_s,
        u"// A\n#pragma once\n  #  include <high/in/C.h>\n"_s,
        u"low/A.h includes high/in/C.h: low must not use inner"_s);
    row("from the outer folder into the inner", u"high/D.h"_s,
        u"// D\n#pragma once\n#include \"high/in/C.h\"\n#include \"high/other/E.h\"\n"_s, {});
    row("a test's header", u"low/A.h"_s, u"// A\n#pragma once\n#include \"tests/T.h\"\n"_s,
        u"low/A.h includes tests/T.h, which is no part of the program"_s);
    row("own header late", u"low/A.cpp"_s, u"#include \"low/B.h\"\n#include \"low/A.h\"\n"_s,
        u"low/A.cpp does not include its own header first"_s);
    row("from beside", u"low/A.h"_s, u"// A\n#pragma once\n#include \"B.h\"\n"_s,
        u"low/A.h does not include B.h from the root"_s);
    row("unguarded header", u"low/A.h"_s, u"// A\n#include <B>\n"_s,
        u"low/A.h has no #pragma once"_s);
    row("no comment", u"low/main.cpp"_s, u"#include \"low/A.h\"\n"_s,
        u"low/main.cpp does not begin with a comment that says what it is for"_s);
    row("outside every layer", u"lower/A.h"_s, u"// A\n#pragma once\n#include \"low/A.h\"\n"_s,
        u"lower/A.h belongs to no target"_s);
}

void LayersTest::faultsAreFound()
{
    QFETCH(const QString, file);
    QFETCH(const QString, text);
    QFETCH(const QString, fault);

    const Layers layers = parseLayers(u"# target | folder | may use\n"
                                      "low   | low     |\n"
                                      "inner | high/in | low\n"
                                      "high  | high    | inner low\n"_s);
    QCOMPARE(layers.size(), 3);
    const QStringList files{u"low/A.h"_s,     u"low/B.h"_s,        u"high/D.h"_s,
                            u"high/in/C.h"_s, u"high/other/E.h"_s, u"tests/T.h"_s};
    const auto exists = [&files](const QString& path) { return files.contains(path); };
    QCOMPARE(fileFaults(layers, file, text, exists).join(u'\n'), fault);
}

QTEST_GUILESS_MAIN(LayersTest)
#include "tst_layers.moc"
