#include "ui/icons/PictureIcon.h"

#include <QFile>
#include <QGuiApplication>
#include <QIconEngine>
#include <QImageReader>
#include <QPainter>
#include <QPalette>
#include <QPixmapCache>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

int area(QSize size)
{
    return size.width() * size.height();
}

bool covers(QSize size, QSize wanted)
{
    return size.width() >= wanted.width() && size.height() >= wanted.height();
}

/// `size` as it is, or scaled down to fit into `room`.
QSize fitted(QSize size, QSize room)
{
    return covers(room, size) ? size : size.scaled(room, Qt::KeepAspectRatio);
}

QPixmap decode(const QString& name)
{
    const QString key = u"mvr_picture_"_s + name;
    QPixmap pixmap;
    if (!QPixmapCache::find(key, &pixmap)) {
        pixmap = QPixmap(name);
        // Scaling below counts in device pixels.
        pixmap.setDevicePixelRatio(1.0);
        QPixmapCache::insert(key, pixmap);
    }
    return pixmap;
}

QPixmap rendered(const QString& name, QSize deviceSize, QIcon::Mode mode)
{
    const QPixmap source = decode(name);
    if (source.size() == deviceSize && mode == QIcon::Normal)
        return source;

    const QString key = u"mvr_picture_%1_%2_%3_%4_%5"_s.arg(name)
                            .arg(deviceSize.width())
                            .arg(deviceSize.height())
                            .arg(mode)
                            .arg(QGuiApplication::palette().cacheKey());
    QPixmap pixmap;
    if (!QPixmapCache::find(key, &pixmap)) {
        pixmap = source.scaled(deviceSize, Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
        // The style's look of disabled and selected icons.
        if (mode != QIcon::Normal)
            pixmap = QIcon(pixmap).pixmap(deviceSize, 1.0, mode);
        QPixmapCache::insert(key, pixmap);
    }
    return pixmap;
}

/// The stock engine reads each file to learn its kind, and decides once for all screens whether
/// "@2x" variants are of use.
class PictureIconEngine final : public QIconEngine
{
public:
    explicit PictureIconEngine(const QStringList& names)
    {
        for (const QString& name : names)
            m_pictures.append({name, {}});
    }

    void paint(QPainter* painter, const QRect& rect, QIcon::Mode mode, QIcon::State state) override
    {
        const qreal ratio = painter->device()->devicePixelRatio();
        const QPixmap pixmap = scaledPixmap(rect.size() * ratio, mode, state, ratio);
        const QSizeF size = QSizeF(pixmap.size()) / ratio;
        const QPointF corner((rect.width() - size.width()) / 2,
                             (rect.height() - size.height()) / 2);
        painter->drawPixmap(QRectF(rect.topLeft() + corner, size), pixmap, pixmap.rect());
    }

    QSize actualSize(const QSize& size, QIcon::Mode, QIcon::State) override
    {
        return fitted(_sizeOf(_bestFor(size)), size);
    }

    QPixmap pixmap(const QSize& size, QIcon::Mode mode, QIcon::State state) override
    {
        return scaledPixmap(size, mode, state, 1.0);
    }

    /// `size` and the result are in device pixels.
    QPixmap scaledPixmap(const QSize& size, QIcon::Mode mode, QIcon::State, qreal scale) override
    {
        const QSize wanted = (QSizeF(size) / scale).toSize();
        const Picture& picture = _bestFor(wanted);
        const QSize natural = _sizeOf(picture);
        QSize deviceSize = fitted((QSizeF(natural) * scale).toSize(), size);
        const QString doubled = picture.name + u"@2x"_s;
        const bool useDoubled = !covers(natural, deviceSize) && QFile::exists(doubled);
        return rendered(useDoubled ? doubled : picture.name, deviceSize, mode);
    }

    QList<QSize> availableSizes(QIcon::Mode, QIcon::State) override
    {
        QList<QSize> sizes;
        for (const Picture& picture : m_pictures)
            sizes.append(_sizeOf(picture));
        return sizes;
    }

    bool isNull() override { return m_pictures.isEmpty(); }
    QString key() const override { return u"PictureIconEngine"_s; }
    QIconEngine* clone() const override { return new PictureIconEngine(*this); }

private:
    struct Picture
    {
        QString name;
        /// Invalid until somebody asks; only the file's header is read then.
        mutable QSize size;
    };

    static QSize _sizeOf(const Picture& picture)
    {
        if (!picture.size.isValid())
            picture.size = QImageReader(picture.name).size();
        return picture.size;
    }

    /// The smallest picture that needs no enlarging, or else the largest.
    const Picture& _bestFor(QSize wanted) const
    {
        const auto better = [wanted](const Picture& a, const Picture& b) {
            const QSize sizeA = _sizeOf(a);
            const QSize sizeB = _sizeOf(b);
            const bool coversA = covers(sizeA, wanted);
            if (coversA != covers(sizeB, wanted))
                return coversA;
            return coversA ? area(sizeA) < area(sizeB) : area(sizeA) > area(sizeB);
        };
        return *std::min_element(m_pictures.cbegin(), m_pictures.cend(), better);
    }

    QList<Picture> m_pictures;
};

} // namespace

// Q_INIT_RESOURCE declares a function of the global namespace.
static void registerPictures()
{
    Q_INIT_RESOURCE(mvr);
}

void icons::initPictures()
{
    [[maybe_unused]] static const bool done = (registerPictures(), true);
}

QIcon icons::fromPictures(const QStringList& names)
{
    initPictures();
    QStringList found;
    for (const QString& name : names) {
        if (QFile::exists(name))
            found.append(name);
    }
    return found.isEmpty() ? QIcon() : QIcon(new PictureIconEngine(found));
}
