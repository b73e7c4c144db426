// The strip that says that changes are not on the disk.
#pragma once

#include "app/language/LocalizedWidget.h"
#include "taskdb/CommitFailure.h"

class ElidedLabel;
class QBoxLayout;
class QLabel;
class QPushButton;

/// Stands above the toolbar for as long as the database cannot be written. Says since when and why,
/// tries again on demand, and writes a copy elsewhere. Takes no focus by itself; screen readers
/// take it for a notification.
class CommitStrip : public LocalizedWidget
{
    Q_OBJECT

public:
    explicit CommitStrip(QWidget* parent = nullptr);

    /// `failure`: one with a cause.
    void setFailure(const CommitFailure& failure);

    /// Has Tab reach the buttons after `before`, a widget of the same window.
    void insertIntoTabOrder(QWidget* before);

    void retranslateUI() override;

protected:
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;

private:
    [[nodiscard]] QString _headline() const;
    [[nodiscard]] QString _reason() const;
    void _tryNow();
    void _saveCopy();
    void _arrange();

    CommitFailure m_failure;
    QLabel* m_label;
    ElidedLabel* m_shortLabel; // in its place where there is next to no room
    bool m_isNarrow = false;
    QPushButton* m_tryButton;
    QPushButton* m_copyButton;
    QBoxLayout* m_layout;
    QBoxLayout* m_buttons;
};
