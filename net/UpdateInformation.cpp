#include "net/UpdateInformation.h"

#include "net/Json.h"

using namespace Qt::StringLiterals;

namespace {
constexpr auto updatesKey = "updates"_L1;
constexpr auto idKey = "id"_L1;
constexpr auto versionKey = "version"_L1;
constexpr auto urlKey = "url"_L1;

bool isObject(const QVariant& value)
{
    return value.typeId() == QMetaType::QVariantMap;
}
} // namespace

void UpdateInformation::ProductInfo::load(const QString& id, const QString& version,
                                          const QString& url, const QString& text)
{
    m_id = id;
    m_version = ProductVersion(version);
    m_url = QUrl(url);
    m_text = text;
}

bool UpdateInformation::ProductInfo::valid() const
{
    return !m_id.isEmpty() && m_version.isValid() && m_url.isValid();
}

UpdateInformation::UpdateInformation(QByteArray* response)
{
    if (!response)
        return;
    bool parsed = false;
    const QVariant root = QtJson::Json::parse(QString::fromUtf8(*response), parsed);
    if (!parsed || !isObject(root))
        return;
    const QVariant updates = root.toMap().value(updatesKey);
    if (updates.typeId() != QMetaType::QVariantList)
        return;
    const QVariantList products = updates.toList();
    for (const QVariant& product : products) {
        if (isObject(product))
            _load(product.toMap());
    }
}

void UpdateInformation::_load(const QVariantMap& product)
{
    ProductInfo info;
    info.load(product.value(idKey).toString(), product.value(versionKey).toString(),
              product.value(urlKey).toString(), {});
    if (!info.valid())
        return;
    m_products.insert(info.id(), info);
    m_valid = true;
}
