// The one place that turns names into icons.
#pragma once

#include "app/base/dynamic_singleton.h"
#include "taskdb/FocusGroup.h"

#include <QCoreApplication>
#include <QHash>
#include <QIcon>
#include <QPair>

namespace icons {

/// The small fixed icons of the calendar.
enum EKnownIcon
{
    ResetDate = 0,
    NextMonth = 1,
    PreviousMonth = 2
};

} // namespace icons

/// The program's icons and the catalogue of those a custom group can have. Interface thread;
/// reached through dynamic_singleton<IconsHelper>.
class IconsHelper
{
    Q_DECLARE_TR_FUNCTIONS(IconsHelper)

public:
    IconsHelper();
    Q_DISABLE_COPY_MOVE(IconsHelper)

    /// The application icon of 16, 32, 48 or 256 pixels, from the picture with the suffix where
    /// there is one; with size 0 an icon of all four plain pictures; null for any other size.
    [[nodiscard]] QIcon appIcon(int size, const QString& suffix) const;
    [[nodiscard]] QIcon appIconSmall(const QString& suffix) const;
    /// The tray icon, which never varies: the suffix is ignored.
    [[nodiscard]] QIcon trayIcon(const QString& suffix) const;
    /// Null for a value that is none of the enumerators.
    [[nodiscard]] QIcon knownIcon(icons::EKnownIcon icon) const;

    /// The catalogue icon of a key, as groups store it; null for an empty or unknown key.
    [[nodiscard]] QIcon icon(const QString& key) const;
    /// The keys of the catalogue in their fixed order.
    [[nodiscard]] QStringList focusGroupIconKeys() const;
    /// Fills `out` with the display names, in the language of the moment, and icons by key.
    /// Always true.
    bool fetchFocusGroupIcons(QHash<QString, QPair<QString, QIcon>>& out) const;

    /// The icon of a group: the catalogue's for its icon name, or else the fixed one of a
    /// built-in group, or else a yellow star; null for the null identifier.
    [[nodiscard]] QIcon groupIcon(const FocusGroup::Id& id, const QString& iconName,
                                  bool isEmpty) const;

private:
    QHash<QString, QIcon> m_catalogue;
};
