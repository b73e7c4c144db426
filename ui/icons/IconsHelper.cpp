#include "ui/icons/IconsHelper.h"

#include "taskdb/TaskStorage.h"
#include "ui/icons/PictureIcon.h"

#include <QFile>

using namespace Qt::StringLiterals;

namespace {

struct CatalogueEntry
{
    QLatin1StringView key;
    const char* name;
};

constexpr CatalogueEntry catalogue[] = {
    {"star"_L1, QT_TRANSLATE_NOOP("IconsHelper", "Starred")},
    {"star_blue"_L1, QT_TRANSLATE_NOOP("IconsHelper", "Blue Star")},
    {"star_green"_L1, QT_TRANSLATE_NOOP("IconsHelper", "Green Star")},
    {"star_red"_L1, QT_TRANSLATE_NOOP("IconsHelper", "Red Star")},
    {"star_yellow"_L1, QT_TRANSLATE_NOOP("IconsHelper", "Yellow Star")},
    {"inbox"_L1, QT_TRANSLATE_NOOP("IconsHelper", "Inbox")},
    {"completed"_L1, QT_TRANSLATE_NOOP("IconsHelper", "Completed")},
    {"completed2"_L1, QT_TRANSLATE_NOOP("IconsHelper", "To Check")},
    {"trash_empty"_L1, QT_TRANSLATE_NOOP("IconsHelper", "Trash")},
    {"home"_L1, QT_TRANSLATE_NOOP("IconsHelper", "Home")},
    {"internet"_L1, QT_TRANSLATE_NOOP("IconsHelper", "Internet")},
    {"someday"_L1, QT_TRANSLATE_NOOP("IconsHelper", "Some Day")},
    {"party"_L1, QT_TRANSLATE_NOOP("IconsHelper", "Party Time")},
    {"mobile"_L1, QT_TRANSLATE_NOOP("IconsHelper", "Calls")},
    {"money"_L1, QT_TRANSLATE_NOOP("IconsHelper", "Money")},
};

QIcon focusIcon(const QString& key)
{
    const QString name = u":/icons_focus/"_s + key;
    return icons::fromPictures({name + u"_20"_s, name + u"_48"_s});
}

QString appPicture(int size)
{
    return u":/icons/one_"_s + QString::number(size);
}

QString builtInKey(const FocusGroup::Id& id, bool isEmpty)
{
    if (id == TaskStorage::ms_inboxId)
        return u"inbox"_s;
    if (id == TaskStorage::ms_trashId)
        return isEmpty ? u"trash_empty"_s : u"trash_full"_s;
    if (id == TaskStorage::ms_completedId)
        return u"completed"_s;
    return u"star_yellow"_s;
}

} // namespace

IconsHelper::IconsHelper()
{
    icons::initPictures();
    for (const CatalogueEntry& entry : catalogue) {
        const QIcon icon = focusIcon(entry.key);
        if (!icon.isNull())
            m_catalogue.insert(entry.key, icon);
    }
}

QIcon IconsHelper::appIcon(int size, const QString& suffix) const
{
    switch (size) {
    case 0:
        return icons::fromPictures(
            {appPicture(16), appPicture(32), appPicture(48), appPicture(256)});
    case 16:
    case 32:
    case 48:
    case 256: {
        const QString plain = appPicture(size);
        const QString varied = plain + suffix;
        return icons::fromPictures({QFile::exists(varied) ? varied : plain});
    }
    default:
        return {};
    }
}

QIcon IconsHelper::appIconSmall(const QString& suffix) const
{
    return appIcon(16, suffix);
}

QIcon IconsHelper::trayIcon(const QString& suffix) const
{
    Q_UNUSED(suffix)
    return appIconSmall({});
}

QIcon IconsHelper::knownIcon(icons::EKnownIcon icon) const
{
    switch (icon) {
    case icons::ResetDate:
        return icons::fromPictures({u":/calendar/icon_reset_16"_s});
    case icons::NextMonth:
        return icons::fromPictures({u":/calendar/icon_next_month_16"_s});
    case icons::PreviousMonth:
        return icons::fromPictures({u":/calendar/icon_prev_month_16"_s});
    }
    return {};
}

QIcon IconsHelper::icon(const QString& key) const
{
    return m_catalogue.value(key);
}

QStringList IconsHelper::focusGroupIconKeys() const
{
    QStringList keys;
    for (const CatalogueEntry& entry : catalogue) {
        if (m_catalogue.contains(entry.key))
            keys.append(entry.key);
    }
    return keys;
}

bool IconsHelper::fetchFocusGroupIcons(QHash<QString, QPair<QString, QIcon>>& out) const
{
    out.clear();
    for (const CatalogueEntry& entry : catalogue) {
        const auto found = m_catalogue.constFind(entry.key);
        if (found != m_catalogue.cend())
            out.insert(entry.key, {tr(entry.name), *found});
    }
    return true;
}

QIcon IconsHelper::groupIcon(const FocusGroup::Id& id, const QString& iconName, bool isEmpty) const
{
    if (id.isNull())
        return {};
    const QIcon chosen = icon(iconName);
    return chosen.isNull() ? focusIcon(builtInKey(id, isEmpty)) : chosen;
}
