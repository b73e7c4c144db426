#include "app/base/Unique.h"

#include <QByteArrayView>

#include <uuid/uuid.h>

QUuid Unique::generate()
{
    uuid_t bytes;
    uuid_generate(bytes);
    return QUuid::fromRfc4122(QByteArrayView(bytes, sizeof bytes));
}

QString Unique::toString(const QUuid& id)
{
    return id.isNull() ? QString() : id.toString(QUuid::WithoutBraces);
}
