// The panel that an empty list shows: what the group is for.
#pragma once

#include "taskdb/FocusGroup.h"

#include <QIcon>
#include <QLabel>

class LinkLabel;

/// The group's icon, faded, beside a short text. Has a fixed size.
class GroupHintWidget : public QLabel
{
    Q_OBJECT

public:
    /// The hint on a group, as rich text in the language of the moment.
    [[nodiscard]] static QString hintForGroup(const FocusGroup::Id& id);

    GroupHintWidget(const QIcon& icon, const QString& text, QWidget* parent);

    void updateIcon(const QIcon& icon);
    /// `text`: rich text, and so nothing that a user wrote.
    void setText(const QString& text);

Q_SIGNALS:
    /// A link in the text was activated; `target` is what it refers to.
    void headStart(const QString& target);

protected:
    bool event(QEvent* event) override;
    void paintEvent(QPaintEvent* event) override;

private:
    void _drawIcon();
    void _makeRoom();

    QLabel* m_iconLabel;
    LinkLabel* m_textLabel;
    QIcon m_icon;
};
