// Names become the right pictures, sharp at every scale.
#include "taskdb/TaskStorage.h"
#include "ui/icons/IconsHelper.h"

#include <QImage>
#include <QTest>

using namespace Qt::StringLiterals;

namespace {

/// Whether the icon shows the file's pixels, unscaled, at the size and pixel ratio.
bool shows(const QIcon& icon, int edge, qreal ratio, const QString& file)
{
    QImage image = icon.pixmap(QSize(edge, edge), ratio).toImage();
    image.setDevicePixelRatio(1.0);
    const QImage::Format format = QImage::Format_ARGB32_Premultiplied;
    return image.width() == edge * ratio &&
           image.convertToFormat(format) == QImage(file).convertToFormat(format);
}

bool showsGroup(const QIcon& icon, const QString& key)
{
    const QString file = u":/icons_focus/%1_20"_s.arg(key);
    return shows(icon, 20, 1.0, file) && shows(icon, 20, 2.0, file + u"@2x"_s);
}

} // namespace

class TestIcons : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    // As in the program: only what is built into the libraries reads pictures.
    void initTestCase() { QCoreApplication::setLibraryPaths({}); }

    void picturesAreThere()
    {
        for (const int size : {16, 32, 48, 256}) {
            const QString file = u":/icons/one_%1"_s.arg(size);
            QVERIFY(shows(m_icons.appIcon(0, {}), size, 1.0, file));
            QVERIFY(shows(m_icons.appIcon(size, u"_none"_s), size, 2.0, file + u"@2x"_s));
        }
        QCOMPARE(m_icons.focusGroupIconKeys().size(), 15);
        for (const QString& key : m_icons.focusGroupIconKeys())
            QVERIFY2(showsGroup(m_icons.icon(key), key), qPrintable(key));
    }

    void groupIcon()
    {
        const QUuid custom = QUuid::createUuid();
        const QUuid trash = TaskStorage::ms_trashId;
        QVERIFY(showsGroup(m_icons.groupIcon(custom, u"home"_s, true), u"home"_s));
        QVERIFY(showsGroup(m_icons.groupIcon(custom, u"nope"_s, true), u"star_yellow"_s));
        QVERIFY(showsGroup(m_icons.groupIcon(TaskStorage::ms_inboxId, {}, true), u"inbox"_s));
        QVERIFY(showsGroup(m_icons.groupIcon(trash, {}, true), u"trash_empty"_s));
        QVERIFY(showsGroup(m_icons.groupIcon(trash, {}, false), u"trash_full"_s));
        QVERIFY(showsGroup(m_icons.groupIcon(trash, u"money"_s, false), u"money"_s));
    }

private:
    const IconsHelper m_icons;
};

QTEST_MAIN(TestIcons)
#include "tst_icons.moc"
