// The bar of numbers at the end of a group's entry.
#pragma once

#include <QColor>
#include <QList>
#include <QWidget>

/// A few numbers side by side, each on a colour of its own; those that are zero are left out, and
/// with them all there is no bar.
class CountWidget : public QWidget
{
    Q_OBJECT

public:
    struct CountSection
    {
        bool showZero = false;
        int value = 0;
        QColor color;
        QColor titleColor;
    };

    /// `sections`: how many numbers there are; at least one.
    CountWidget(int sections, QWidget* parent);

    [[nodiscard]] int sectionsCount() const { return static_cast<int>(m_sections.size()); }
    // Each ignores a section that does not exist.
    void setSectionValue(int section, int value);
    void setSectionColor(int section, const QColor& color);
    void setSectionTitleColor(int section, const QColor& color);
    /// 0 for a section that does not exist.
    [[nodiscard]] int sectionValue(int section) const;
    /// Where the section is drawn, or a null rectangle while it is not.
    [[nodiscard]] QRect sectionRect(int section) const;

    [[nodiscard]] QSize minimumSizeHint() const override;
    [[nodiscard]] QSize sizeHint() const override { return minimumSizeHint(); }

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    [[nodiscard]] bool _exists(int section) const;
    void _findActive();
    [[nodiscard]] int _boxWidth(qsizetype place) const;
    void _paintSection(QPainter& painter, qsizetype place, const QRect& box) const;

    QList<CountSection> m_sections;
    QList<int> m_active; // the sections that are drawn
    bool m_everCounted = false;
};
