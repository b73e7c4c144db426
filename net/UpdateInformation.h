// What the update check found out.
#pragma once

#include "app/base/ProductVersion.h"

#include <QHash>
#include <QMetaType>
#include <QUrl>

/// The current versions of products, as the service tells them. A value.
class UpdateInformation
{
public:
    class ProductInfo
    {
    public:
        /// `version` and `url` as texts, whatever they hold; valid() tells whether they are usable.
        void load(const QString& id, const QString& version, const QString& url,
                  const QString& text);

        /// Whether there is an id, a version of which all is known, and a well-formed address.
        [[nodiscard]] bool valid() const;

        [[nodiscard]] const QString& id() const { return m_id; }
        [[nodiscard]] const ProductVersion& version() const { return m_version; }
        /// Where to download it.
        [[nodiscard]] const QUrl& url() const { return m_url; }
        [[nodiscard]] const QString& text() const { return m_text; }

    private:
        QString m_id;
        ProductVersion m_version;
        QUrl m_url;
        QString m_text;
    };

    /// Invalid and empty.
    UpdateInformation() = default;
    /// Takes what is usable of the service's answer; invalid and empty if nothing is, or without
    /// an answer.
    explicit UpdateInformation(QByteArray* response);

    /// Whether the answer held any usable product.
    [[nodiscard]] bool valid() const { return m_valid; }
    /// By product id.
    [[nodiscard]] const QHash<QString, ProductInfo>& products() const { return m_products; }

private:
    void _load(const QVariantMap& product);

    bool m_valid = false;
    QHash<QString, ProductInfo> m_products;
};

Q_DECLARE_METATYPE(UpdateInformation)
