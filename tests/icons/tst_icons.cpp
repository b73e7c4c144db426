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
bool shows(const QIcon& icon, QSize size, qreal ratio, const QString& file)
{
    const QPixmap pixmap = icon.pixmap(size, ratio);
    return pixmap.deviceIndependentSize() == QSizeF(size) && !QImage(file).isNull() &&
           comparable(pixmap.toImage()) == comparable(QImage(file));
}

bool showsBothScales(const QIcon& icon, int edge, const QString& file)
{
    const QSize size(edge, edge);
    return shows(icon, size, 1.0, file) && shows(icon, size, 2.0, file + u"@2x"_s);
}

bool isSame(const QIcon& a, const QIcon& b, QSize size)
{
    return a.pixmap(size, 1.0).toImage() == b.pixmap(size, 1.0).toImage();
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

    void pictures_data()
    {
        QTest::addColumn<QString>("name");
        QTest::addColumn<int>("edge");
        const auto add = [](const QString& name, int edge) {
            QTest::newRow(qPrintable(name)) << name << edge;
        };
        for (const char* name :
             {"toolbar_new", "toolbar_edit", "toolbar_cleanup", "view_normal", "view_compact"})
            add(u":/icons/"_s + QLatin1StringView(name), 24);
        add(u":/icons/edit_note"_s, 16);
        add(u":/icons/edit_duedate"_s, 16);
        for (const char* name : {"flat-N", "flat-P", "done-N", "done-P"})
            add(u":/icons_checkbox/checkbox_"_s + QLatin1StringView(name), 16);
    }

    void pictures()
    {
        QFETCH(const QString, name);
        QFETCH(const int, edge);
        QVERIFY(showsBothScales(icons::fromPictures({name}), edge, name));
    }

    void pictureForTheRoom_data()
    {
        QTest::addColumn<int>("room");
        QTest::addColumn<qreal>("ratio");
        QTest::addColumn<QSize>("devicePixels");
        QTest::newRow("smaller than all") << 16 << 1.0 << QSize(16, 16);
        QTest::newRow("between") << 24 << 1.0 << QSize(24, 24);
        QTest::newRow("larger than all") << 64 << 1.0 << QSize(48, 48);
        QTest::newRow("fractional scale") << 20 << 1.5 << QSize(30, 30);
        QTest::newRow("large fractional") << 48 << 1.25 << QSize(60, 60);
        QTest::newRow("beyond the doubled") << 48 << 3.0 << QSize(144, 144);
    }

    void pictureForTheRoom()
    {
        QFETCH(const int, room);
        QFETCH(const qreal, ratio);
        QFETCH(const QSize, devicePixels);
        const QIcon icon = m_icons->icon(u"home"_s);
        QCOMPARE(icon.pixmap(QSize(room, room), ratio).size(), devicePixels);
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
        const QImage disabled = icon.pixmap(QSize(20, 20), 1.0, QIcon::Disabled).toImage();
        QCOMPARE(disabled.size(), QSize(20, 20));
        QVERIFY(disabled != icon.pixmap(QSize(20, 20), 1.0).toImage());
    }

    void missingPicturesAreLeftOut()
    {
        QVERIFY(icons::fromPictures({}).isNull());
        QVERIFY(icons::fromPictures({u":/icons/none"_s}).isNull());
        const QIcon icon = icons::fromPictures({u":/icons/none"_s, u":/icons/one_16"_s});
        QCOMPARE(icon.availableSizes(), QList<QSize>{QSize(16, 16)});
        // Not decodable: nothing to see, and nothing worse.
        QVERIFY(icons::fromPictures({u":/icons/not_a_picture"_s}).pixmap(QSize(16, 16)).isNull());
    }

    void appIcon_data()
    {
        QTest::addColumn<int>("size");
        QTest::addColumn<QString>("suffix");
        QTest::addColumn<QList<QSize>>("sizes");
        using Sizes = QList<QSize>;
        const QSize s16(16, 16);
        const QSize s32(32, 32);
        const QSize s48(48, 48);
        const QSize s256(256, 256);
        QTest::newRow("16") << 16 << u""_s << Sizes{s16};
        QTest::newRow("32") << 32 << u""_s << Sizes{s32};
        QTest::newRow("48") << 48 << u""_s << Sizes{s48};
        QTest::newRow("256") << 256 << u""_s << Sizes{s256};
        QTest::newRow("all") << 0 << u"_busy"_s << Sizes{s16, s32, s48, s256};
        QTest::newRow("no such size") << 64 << u""_s << Sizes{};
        QTest::newRow("negative") << -1 << u""_s << Sizes{};
        QTest::newRow("unknown suffix") << 16 << u"_none"_s << Sizes{s16};
        QTest::newRow("known suffix") << 16 << u"_busy"_s << Sizes{s32};
        QTest::newRow("suffix of another size") << 48 << u"_busy"_s << Sizes{s48};
    }

    void appIcon()
    {
        QFETCH(const int, size);
        QFETCH(const QString, suffix);
        QFETCH(const QList<QSize>, sizes);
        const QIcon icon = m_icons->appIcon(size, suffix);
        QCOMPARE(icon.isNull(), sizes.isEmpty());
        QCOMPARE(icon.availableSizes(), sizes);
        for (const QSize& each : sizes) {
            const QString name = u":/icons/one_"_s + QString::number(each.width());
            QVERIFY(showsBothScales(icon, each.width(), name) || suffix == u"_busy"_s);
        }
    }

    void trayIconNeverVaries()
    {
        QVERIFY(isSame(m_icons->trayIcon(u"_busy"_s), m_icons->appIcon(16, {}), {32, 32}));
        QVERIFY(!isSame(m_icons->appIconSmall(u"_busy"_s), m_icons->appIcon(16, {}), {32, 32}));
    }

    void knownIcon()
    {
        const QStringList names = {u"icon_reset_16"_s, u"icon_next_month_16"_s,
                                   u"icon_prev_month_16"_s};
        for (int i = 0; i < names.size(); ++i) {
            const QIcon icon = m_icons->knownIcon(static_cast<icons::EKnownIcon>(i));
            QVERIFY(showsBothScales(icon, 16, u":/calendar/"_s + names.at(i)));
        }
        QVERIFY(m_icons->knownIcon(static_cast<icons::EKnownIcon>(3)).isNull());
    }

    void catalogue()
    {
        const QStringList keys = {
            u"star"_s,     u"star_blue"_s, u"star_green"_s, u"star_red"_s,    u"star_yellow"_s,
            u"inbox"_s,    u"completed"_s, u"completed2"_s, u"trash_empty"_s, u"home"_s,
            u"internet"_s, u"someday"_s,   u"party"_s,      u"mobile"_s,      u"money"_s};
        const QStringList names = {u"Starred"_s,     u"Blue Star"_s, u"Green Star"_s, u"Red Star"_s,
                                   u"Yellow Star"_s, u"Inbox"_s,     u"Completed"_s,  u"To Check"_s,
                                   u"Trash"_s,       u"Home"_s,      u"Internet"_s,   u"Some Day"_s,
                                   u"Party Time"_s,  u"Calls"_s,     u"Money"_s};
        QCOMPARE(m_icons->focusGroupIconKeys(), keys);

        QHash<QString, QPair<QString, QIcon>> fetched = {{u"stale"_s, {}}};
        QVERIFY(m_icons->fetchFocusGroupIcons(fetched));
        QCOMPARE(fetched.size(), keys.size());
        for (int i = 0; i < keys.size(); ++i) {
            const auto [name, icon] = fetched.value(keys.at(i));
            QCOMPARE(name, names.at(i));
            QVERIFY(showsBothScales(icon, 20, u":/icons_focus/"_s + keys.at(i) + u"_20"_s));
            QVERIFY(showsBothScales(icon, 48, u":/icons_focus/"_s + keys.at(i) + u"_48"_s));
        }
        QVERIFY(m_icons->icon({}).isNull());
        QVERIFY(m_icons->icon(u"trash_full"_s).isNull());
    }

    void groupIcon_data()
    {
        QTest::addColumn<QUuid>("id");
        QTest::addColumn<QString>("iconName");
        QTest::addColumn<bool>("isEmpty");
        QTest::addColumn<QString>("shown");
        const QUuid custom = QUuid::createUuid();
        const QUuid trash = TaskStorage::ms_trashId;
        QTest::newRow("none") << QUuid() << u"home"_s << true << QString();
        QTest::newRow("own icon") << custom << u"home"_s << true << u"home"_s;
        QTest::newRow("unknown icon") << custom << u"nope"_s << true << u"star_yellow"_s;
        QTest::newRow("no icon") << custom << u""_s << false << u"star_yellow"_s;
        QTest::newRow("inbox") << TaskStorage::ms_inboxId << u""_s << true << u"inbox"_s;
        QTest::newRow("inbox, own icon")
            << TaskStorage::ms_inboxId << u"star"_s << true << u"star"_s;
        QTest::newRow("completed")
            << TaskStorage::ms_completedId << u"nope"_s << false << u"completed"_s;
        QTest::newRow("empty trash") << trash << u""_s << true << u"trash_empty"_s;
        QTest::newRow("full trash") << trash << u""_s << false << u"trash_full"_s;
        QTest::newRow("full trash, own icon") << trash << u"money"_s << false << u"money"_s;
    }

    void groupIcon()
    {
        QFETCH(const QUuid, id);
        QFETCH(const QString, iconName);
        QFETCH(const bool, isEmpty);
        QFETCH(const QString, shown);
        const QIcon icon = m_icons->groupIcon(id, iconName, isEmpty);
        QCOMPARE(icon.isNull(), shown.isEmpty());
        if (shown.isEmpty())
            return;
        QVERIFY(showsBothScales(icon, 20, u":/icons_focus/"_s + shown + u"_20"_s));
        QVERIFY(showsBothScales(icon, 48, u":/icons_focus/"_s + shown + u"_48"_s));
    }

private:
    const IconsHelper* m_icons = nullptr;
};

QTEST_MAIN(TestIcons)
#include "tst_icons.moc"
