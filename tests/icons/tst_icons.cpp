// Names become the right pictures, sharp at every scale.
#include "taskdb/TaskStorage.h"
#include "ui/icons/IconsHelper.h"
#include "ui/icons/PictureIcon.h"

#include <QImage>
#include <QPainter>
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
        for (const QString& name : {u"toolbar_new"_s, u"toolbar_edit"_s, u"toolbar_cleanup"_s,
                                    u"view_normal"_s, u"view_compact"_s})
            _verifyPicture(u":/icons/"_s + name, 24);
        for (const QString& name : {u"edit_note"_s, u"edit_duedate"_s})
            _verifyPicture(u":/icons/"_s + name, 16);
        for (const QString& name : {u"flat-N"_s, u"flat-P"_s, u"done-N"_s, u"done-P"_s})
            _verifyPicture(u":/icons_checkbox/checkbox_"_s + name, 16);
        for (const int size : {16, 32, 48, 256}) {
            const QString file = u":/icons/one_"_s + QString::number(size);
            QVERIFY(showsBothScales(m_icons->appIcon(0, {}), size, file));
            QVERIFY(showsBothScales(m_icons->appIcon(size, u"_none"_s), size, file));
        }
        for (const icons::EKnownIcon icon : {icons::ResetDate, icons::NextMonth})
            QVERIFY(!m_icons->knownIcon(icon).isNull());
        QVERIFY(showsBothScales(m_icons->knownIcon(icons::PreviousMonth), 16,
                                u":/calendar/icon_prev_month_16"_s));
    }

    void pictureForTheRoom()
    {
        const QIcon icon = m_icons->icon(u"home"_s);
        const auto shownAt = [&icon](int room, qreal ratio) {
            return icon.pixmap(QSize(room, room), ratio).size();
        };
        QCOMPARE(shownAt(24, 1.0), QSize(24, 24));
        QCOMPARE(shownAt(64, 1.0), QSize(48, 48));
        QCOMPARE(shownAt(20, 1.5), QSize(30, 30));
        QCOMPARE(shownAt(48, 3.0), QSize(144, 144));
    }

    void paintsSharplyAndCentred()
    {
        QImage canvas(128, 128, QImage::Format_ARGB32_Premultiplied);
        canvas.setDevicePixelRatio(2.0);
        canvas.fill(Qt::transparent);
        QPainter painter(&canvas);
        m_icons->icon(u"home"_s).paint(&painter, QRect(0, 0, 64, 64));
        painter.end();
        canvas.setDevicePixelRatio(1.0);
        QCOMPARE(canvas.copy(16, 16, 96, 96), comparable(QImage(u":/icons_focus/home_48@2x"_s)));
    }

    void disabledLooksDisabled()
    {
        const QIcon icon = m_icons->icon(u"home"_s);
        const QSize size(20, 20);
        QVERIFY(icon.pixmap(size, 1.0, QIcon::Disabled).toImage() !=
                icon.pixmap(size, 1.0).toImage());
    }

    void missingPicturesAreLeftOut()
    {
        QVERIFY(icons::fromPictures({u":/icons/none"_s}).isNull());
        const QIcon icon = icons::fromPictures({u":/icons/none"_s, u":/icons/one_16"_s});
        QCOMPARE(icon.availableSizes(), QList<QSize>{QSize(16, 16)});
        // Not decodable: nothing to see, and nothing worse.
        QVERIFY(icons::fromPictures({u":/icons/not_a_picture"_s}).pixmap(QSize(16, 16)).isNull());
        QVERIFY(m_icons->appIcon(17, {}).isNull());
    }

    void onlyTheTrayIconNeverVaries()
    {
        QCOMPARE(m_icons->appIconSmall(u"_busy"_s).availableSizes(), QList<QSize>{QSize(32, 32)});
        QVERIFY(shows(m_icons->trayIcon(u"_busy"_s), 16, 1.0, u":/icons/one_16"_s));
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
    static void _verifyPicture(const QString& file, int edge)
    {
        QVERIFY2(showsBothScales(icons::fromPictures({file}), edge, file), qPrintable(file));
    }

    const IconsHelper* m_icons = nullptr;
};

QTEST_MAIN(TestIcons)
#include "tst_icons.moc"
