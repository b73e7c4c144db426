// Names become the right pictures, sharp at every scale.
#include "taskdb/TaskStorage.h"
#include "ui/icons/IconsHelper.h"
#include "ui/icons/PictureIcon.h"

#include <QImage>
#include <QTest>

using namespace Qt::StringLiterals;

namespace {

QImage comparable(QImage image)
{
    image.setDevicePixelRatio(1.0);
    return image.convertToFormat(QImage::Format_ARGB32_Premultiplied);
}

/// Whether the icon shows the file's pixels, unscaled, at the size and pixel ratio.
bool shows(const QIcon& icon, int edge, qreal ratio, const QString& file)
{
    const QPixmap pixmap = icon.pixmap(QSize(edge, edge), ratio);
    return pixmap.deviceIndependentSize() == QSizeF(edge, edge) && !QImage(file).isNull() &&
           comparable(pixmap.toImage()) == comparable(QImage(file));
}

bool showsBothScales(const QIcon& icon, int edge, const QString& file)
{
    return shows(icon, edge, 1.0, file) && shows(icon, edge, 2.0, file + u"@2x"_s);
}

bool showsGroup(const QIcon& icon, const QString& key)
{
    const QString file = u":/icons_focus/"_s + key;
    return showsBothScales(icon, 20, file + u"_20"_s) && showsBothScales(icon, 48, file + u"_48"_s);
}

} // namespace

class TestIcons : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase()
    {
        // As in the program: only what is built into the libraries reads pictures.
        QCoreApplication::setLibraryPaths({});
        m_icons = &dynamic_singleton<IconsHelper>::inst();
    }

    void cleanupTestCase() { dynamic_singleton<IconsHelper>::destroy(); }

    void picturesAreThere()
    {
        for (const int size : {16, 32, 48, 256}) {
            const QString file = u":/icons/one_"_s + QString::number(size);
            QVERIFY(showsBothScales(m_icons->appIcon(0, {}), size, file));
            QVERIFY(showsBothScales(m_icons->appIcon(size, u"_none"_s), size, file));
        }
    }

    void catalogue()
    {
        const QStringList keys = m_icons->focusGroupIconKeys();
        QCOMPARE(keys.size(), 15);
        QHash<QString, QPair<QString, QIcon>> fetched = {{u"stale"_s, {}}};
        QVERIFY(m_icons->fetchFocusGroupIcons(fetched));
        QCOMPARE(fetched.size(), keys.size());
        for (const QString& key : keys)
            QVERIFY2(showsGroup(fetched.value(key).second, key), qPrintable(key));
        QVERIFY(m_icons->icon(u"trash_full"_s).isNull());
    }

    void groupIcon()
    {
        const QUuid custom = QUuid::createUuid();
        const QUuid completed = TaskStorage::ms_completedId;
        const QUuid trash = TaskStorage::ms_trashId;
        QVERIFY(showsGroup(m_icons->groupIcon(custom, u"home"_s, true), u"home"_s));
        QVERIFY(showsGroup(m_icons->groupIcon(custom, u"nope"_s, true), u"star_yellow"_s));
        QVERIFY(showsGroup(m_icons->groupIcon(TaskStorage::ms_inboxId, {}, true), u"inbox"_s));
        QVERIFY(showsGroup(m_icons->groupIcon(completed, u"nope"_s, false), u"completed"_s));
        QVERIFY(showsGroup(m_icons->groupIcon(trash, {}, true), u"trash_empty"_s));
        QVERIFY(showsGroup(m_icons->groupIcon(trash, {}, false), u"trash_full"_s));
        QVERIFY(showsGroup(m_icons->groupIcon(trash, u"money"_s, false), u"money"_s));
        QVERIFY(m_icons->groupIcon({}, u"home"_s, true).isNull());
    }

private:
    const IconsHelper* m_icons = nullptr;
};

QTEST_MAIN(TestIcons)
#include "tst_icons.moc"
