#include "app/base/ProductVersion.h"

#include <QList>

#include <array>
#include <tuple>

ProductVersion::ProductVersion(int major, int minor, int build)
    : m_major(major)
    , m_minor(minor)
    , m_build(build)
{
}

ProductVersion::ProductVersion(const QString& text)
{
    const auto pieces = QStringView(text).split(u'.', Qt::SkipEmptyParts);
    if (pieces.isEmpty() || pieces.size() > 3)
        return;
    std::array<int, 3> parts{};
    for (qsizetype i = 0; i < pieces.size(); ++i) {
        bool ok = false;
        parts.at(static_cast<size_t>(i)) = pieces.at(i).toInt(&ok, 10);
        if (!ok)
            return;
    }
    *this = ProductVersion(parts[0], parts[1], parts[2]);
}

QString ProductVersion::toString() const
{
    return QString::number(m_major) + u'.' + QString::number(m_minor) + u'.' +
           QString::number(m_build);
}

bool ProductVersion::operator<(const ProductVersion& other) const
{
    return std::tie(m_major, m_minor, m_build) <
           std::tie(other.m_major, other.m_minor, other.m_build);
}
