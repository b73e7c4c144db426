// The row of icons that a group can have.
#pragma once

#include <QHash>
#include <QIcon>
#include <QListWidget>
#include <QPair>

/// Offers the icons of the catalogue, in its order, in one row that scrolls. The icon of the
/// current row is the chosen one, by mouse or by keys.
class SelectIconWidget : public QListWidget
{
    Q_OBJECT

public:
    explicit SelectIconWidget(QWidget* parent);

    /// The key of the current row; empty when there is none.
    [[nodiscard]] QString iconKey() const;
    /// The display name of an icon; empty for a key that is not in the catalogue.
    [[nodiscard]] QString iconName(const QString& key) const;
    /// Makes the row of `key` current and scrolls to it. An empty key stands for the icon of a new
    /// group; with a key that is not in the catalogue no row is current.
    void setIconKey(const QString& key);

    /// Wide enough for several icons: the dialog around is as small as it can be.
    [[nodiscard]] QSize minimumSizeHint() const override;
    /// Leaves a little room beside the item, where there is any.
    void scrollTo(const QModelIndex& index, ScrollHint hint = EnsureVisible) override;

Q_SIGNALS:
    /// An icon was clicked, or chosen by keys.
    void iconChanged(const QString& key);
    void iconDoubleClicked(const QString& key);

protected:
    bool event(QEvent* event) override;
    void currentChanged(const QModelIndex& current, const QModelIndex& previous) override;
    void changeEvent(QEvent* event) override;
    [[nodiscard]] QItemSelectionModel::SelectionFlags
    selectionCommand(const QModelIndex& index, const QEvent* event) const override;

private Q_SLOTS:
    void _onItemActivated(QListWidgetItem* item);
    void _onItemDoubleClicked(QListWidgetItem* item);

private:
    void _fetchIcons();
    void _renameItems();
    void _fitHeight();
    void _showCurrent();

    QHash<QString, QPair<QString, QIcon>> m_catalogue;
    QStringList m_keys;
};
