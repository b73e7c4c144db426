// Names become the right pictures, sharp at every scale.
#include "taskdb/TaskStorage.h"
#include "ui/icons/IconsHelper.h"

#include <QImage>
#include <QTest>

using namespace Qt::StringLiterals;

namespace {

/// Whether the icon shows the file's pixels, unscaled, and its twin's where there are twice as
/// many.
bool shows(const QIcon& icon, int edge, const QString& file)
{
    const auto pixels = [](QImage image) {
        image.setDevicePixelRatio(1.0);
        return image.convertToFormat(QImage::Format_ARGB32_Premultiplied);
    };
    const QSize size(edge, edge);
    return !icon.isNull() && pixels(icon.pixmap(size, 1.0).toImage()) == pixels(QImage(file)) &&
           pixels(icon.pixmap(size, 2.0).toImage()) == pixels(QImage(file + u"@2x"_s));
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
            QVERIFY(shows(m_icons.appIcon(0, {}), size, file));
            QVERIFY(shows(m_icons.appIcon(size, u"_none"_s), size, file));
        }
        QCOMPARE(m_icons.focusGroupIconKeys().size(), 15);
        for (const QString& key : m_icons.focusGroupIconKeys())
            QVERIFY2(shows(m_icons.icon(key), 20, u":/icons_focus/%1_20"_s.arg(key)),
                     qPrintable(key));
    }

    void groupIcon()
    {
        const QUuid custom = QUuid::createUuid();
        const QUuid trash = TaskStorage::ms_trashId;
        for (const auto& [icon, key] :
             {std::pair(m_icons.groupIcon(custom, u"home"_s, true), u"home"_s),
              {m_icons.groupIcon(custom, u"nope"_s, true), u"star_yellow"_s},
              {m_icons.groupIcon(TaskStorage::ms_inboxId, {}, true), u"inbox"_s},
              {m_icons.groupIcon(trash, {}, true), u"trash_empty"_s},
              {m_icons.groupIcon(trash, {}, false), u"trash_full"_s},
              {m_icons.groupIcon(trash, u"money"_s, false), u"money"_s}})
            QVERIFY2(shows(icon, 20, u":/icons_focus/%1_20"_s.arg(key)), qPrintable(key));
    }

private:
    const IconsHelper m_icons;
};

QTEST_MAIN(TestIcons)
#include "tst_icons.moc"
