// Names become the right pictures, sharp at every scale.
#include "taskdb/TaskStorage.h"
#include "ui/icons/IconsHelper.h"

#include <QImage>
#include <QTest>

using namespace Qt::StringLiterals;

namespace {

/// Whether the icon shows the pixels of the key's file, unscaled, and its twin's where there are
/// twice as many.
bool shows(const QIcon& icon, const QString& key)
{
    const auto pixels = [](QImage image) {
        image.setDevicePixelRatio(1.0);
        return image.convertToFormat(QImage::Format_ARGB32_Premultiplied);
    };
    const QString file = u":/icons_focus/%1_20"_s.arg(key);
    const QSize size(20, 20);
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

    void groupIcons()
    {
        QCOMPARE(m_icons.focusGroupIconKeys().size(), 15);
        for (const QString& key : m_icons.focusGroupIconKeys())
            QVERIFY2(shows(m_icons.icon(key), key), qPrintable(key));
        const QUuid trash = TaskStorage::ms_trashId;
        for (const auto& [icon, key] :
             {std::pair(m_icons.groupIcon(QUuid::createUuid(), u"nope"_s, true), u"star_yellow"_s),
              {m_icons.groupIcon(trash, {}, true), u"trash_empty"_s},
              {m_icons.groupIcon(trash, {}, false), u"trash_full"_s}})
            QVERIFY2(shows(icon, key), qPrintable(key));
    }

private:
    const IconsHelper m_icons;
};

QTEST_MAIN(TestIcons)
#include "tst_icons.moc"
