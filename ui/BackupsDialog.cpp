#include "ui/BackupsDialog.h"

#include "app/base/ProductHelper.h"
#include "app/core/TaskCore.h"
#include "ui/PlainToolTip.h"
#include "ui/controls/DialogHeader.h"
#include "ui/controls/FancyScrollbar.h"
#include "ui/controls/Prompt.h"
#include "ui/controls/StyleHelper.h"

#include <QHeaderView>
#include <QLocale>
#include <QPainter>
#include <QPushButton>
#include <QStyledItemDelegate>
#include <QTreeWidget>
#include <QVBoxLayout>

#include <algorithm>
#include <utility>

using namespace Qt::StringLiterals;

namespace {

constexpr QSize smallestSize(480, 350);
constexpr QSize usualSize(620, 400);
constexpr QMargins buttonMargins(8, 10, 8, 10);
constexpr int buttonSpacing = 6;
constexpr int sidePadding = 6;
constexpr QSize paddings(2 * sidePadding, 10);
constexpr int titlePadding = sidePadding + 3; // as far in as the texts of the rows
constexpr QRgb unavailableColor = 0xff767676;

enum EColumn
{
    dateColumn,
    tasksColumn,
    groupsColumn,
    missingColumn,
};

/// Rows with room around their texts, and a flat colour for the chosen one.
class RowDelegate final : public QStyledItemDelegate
{
public:
    using QStyledItemDelegate::QStyledItemDelegate;

    void paint(QPainter* painter, const QStyleOptionViewItem& option,
               const QModelIndex& index) const override
    {
        if (option.state.testFlag(QStyle::State_Selected))
            painter->fillRect(option.rect, fancy::color(fancy::RowSelected));
        QStyleOptionViewItem plain = option;
        plain.state &= ~(QStyle::State_Selected | QStyle::State_MouseOver | QStyle::State_HasFocus);
        plain.rect.adjust(sidePadding, 0, -sidePadding, 0);
        QStyledItemDelegate::paint(painter, plain, index);
    }

    QSize sizeHint(const QStyleOptionViewItem& option, const QModelIndex& index) const override
    {
        return QStyledItemDelegate::sizeHint(option, index) + paddings;
    }
};

/// Column titles as flat as the rows.
class FlatHeader final : public QHeaderView
{
public:
    explicit FlatHeader(QWidget* parent)
        : QHeaderView(Qt::Horizontal, parent)
    {
    }

protected:
    void paintSection(QPainter* painter, const QRect& rect, int section) const override
    {
        painter->fillRect(rect, fancy::color(fancy::White));
        painter->fillRect(rect.left(), rect.bottom(), rect.width(), 1, fancy::color(fancy::Frame));
        painter->setPen(fancy::color(fancy::TextDark));
        const Qt::Alignment side = section == dateColumn ? Qt::AlignLeft : Qt::AlignRight;
        painter->drawText(rect.adjusted(titlePadding, 0, -titlePadding, 0), side | Qt::AlignVCenter,
                          model()->headerData(section, Qt::Horizontal).toString());
    }

    QSize sectionSizeFromContents(int section) const override
    {
        return QHeaderView::sectionSizeFromContents(section) + paddings;
    }
};

QString dateText(const BackupVersion& version)
{
    const QLocale locale;
    const QString day = locale.toString(version.date.date(), QLocale::LongFormat);
    return version.hasTime
               ? day + u", "_s + locale.toString(version.date.time(), QLocale::ShortFormat)
               : day;
}

} // namespace

void BackupsDialog::showMe(QWidget* parent, const Handler& bringBack, const Handler& goBack)
{
    showOne(parent, bringBack, goBack);
}

BackupsDialog::BackupsDialog(QWidget* parent, const Handler& bringBack, const Handler& goBack)
    : SingleDialog(parent)
    // Outlives the dialog by the file in hand: nobody waits for it then.
    , m_reader(new BackupReader(taskStorage(), parent))
{
    setWindowModality(Qt::WindowModal);
    setSizeGripEnabled(true);
    resize(usualSize);
    _createLayout();
    connect(this, &BackupsDialog::bringBackWanted, this, bringBack);
    connect(this, &BackupsDialog::returnWanted, this, goBack);
    connect(m_reader, &BackupReader::versionRead, this, &BackupsDialog::_addVersion);
    connect(m_reader, &BackupReader::allRead, this, &BackupsDialog::_onAllRead);
    connect(m_reader, &BackupReader::loaded, this, &BackupsDialog::_onLoaded);
    BackupsDialog::retranslateUI();
    m_list->setFocus(Qt::OtherFocusReason);
    m_reader->readAll();
}

BackupsDialog::~BackupsDialog()
{
    if (m_reader)
        m_reader->retire();
}

void BackupsDialog::_createLayout()
{
    m_header = new DialogHeader(this);
    _createList();
    auto* buttons = new QHBoxLayout;
    buttons->setContentsMargins(buttonMargins);
    buttons->setSpacing(buttonSpacing);
    m_bringBackButton = _addButton(buttons);
    m_returnButton = _addButton(buttons);
    buttons->addStretch();
    m_closeButton = _addButton(buttons);
    connect(m_bringBackButton, &QPushButton::clicked, this,
            [this] { _load(&BackupsDialog::bringBackWanted); });
    connect(m_returnButton, &QPushButton::clicked, this,
            [this] { _load(&BackupsDialog::returnWanted); });
    connect(m_closeButton, &QPushButton::clicked, this, &BackupsDialog::reject);

    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(0);
    layout->addWidget(m_header);
    layout->addWidget(m_list, 1);
    layout->addLayout(buttons);
}

void BackupsDialog::_createList()
{
    m_list = new QTreeWidget(this);
    m_list->setFrameShape(QFrame::NoFrame);
    m_list->setRootIsDecorated(false);
    m_list->setUniformRowHeights(true);
    m_list->setAllColumnsShowFocus(true);
    m_list->setColumnCount(missingColumn + 1);
    m_list->setItemDelegate(new RowDelegate(m_list));
    m_list->setHeader(new FlatHeader(m_list));
    m_list->header()->setStretchLastSection(false);
    m_list->header()->setSectionResizeMode(QHeaderView::ResizeToContents);
    m_list->header()->setSectionResizeMode(dateColumn, QHeaderView::Stretch);
    FancyScrollbar::installOn(m_list);
    QPalette colors = m_list->palette();
    colors.setColor(QPalette::Disabled, QPalette::Text, QColor::fromRgb(unavailableColor));
    m_list->setPalette(colors);
    m_note = new QTreeWidgetItem(m_list);
    m_note->setFlags(Qt::NoItemFlags);
    m_note->setFirstColumnSpanned(true);
    connect(m_list, &QTreeWidget::currentItemChanged, this, &BackupsDialog::_updateButtons);
}

QPushButton* BackupsDialog::_addButton(QLayout* layout)
{
    auto* button = new QPushButton(this);
    layout->addWidget(button);
    return button;
}

void BackupsDialog::retranslateUI()
{
    setWindowTitle(tr("Backups"));
    m_header->setText(tr("<strong>Choose the version you want to go back to</strong>"));
    m_list->setAccessibleName(tr("Earlier versions"));
    m_list->setHeaderLabels({tr("Date"), tr("Tasks"), tr("Groups"), tr("Missing now")});
    m_list->headerItem()->setToolTip(missingColumn,
                                     tr("Tasks of that version which no group has any more"));
    m_bringBackButton->setText(tr("Bring missing tasks back"));
    m_bringBackButton->setToolTip(tr("Puts them into a new group"));
    m_returnButton->setText(tr("Return to this version"));
    m_closeButton->setText(tr("Close"));
    for (int row = 0; row < m_versions.size(); ++row)
        _showRow(row);
    _showNote();
    _updateButtons();
    ensurePolished();
    setMinimumSize(smallestSize.expandedTo(layout()->totalMinimumSize()));
}

void BackupsDialog::_addVersion(const BackupVersion& version)
{
    const auto row = static_cast<int>(m_versions.size());
    m_versions += version;
    m_list->insertTopLevelItem(row, new QTreeWidgetItem);
    _showRow(row);
    if (_chosenRow() < 0 && version.error == TaskStorage::NoError)
        m_list->setCurrentItem(m_list->topLevelItem(row));
}

void BackupsDialog::_onAllRead()
{
    m_isReading = false;
    _showNote();
}

/// Why the version cannot be gone back to; empty if it can.
QString BackupsDialog::_trouble(const BackupVersion& version)
{
    if (!version.detail.isEmpty())
        return tr("The file cannot be read: %1").arg(version.detail);
    switch (version.error) {
    case TaskStorage::NoError:
        return {};
    case TaskStorage::NewerVersion:
        return tr("Written by a newer version of the program");
    case TaskStorage::CorruptedVersion:
    case TaskStorage::ReadFailure:
        break;
    }
    return tr("The file is damaged");
}

void BackupsDialog::_showRow(int row)
{
    const BackupVersion& version = m_versions.at(row);
    QTreeWidgetItem* item = m_list->topLevelItem(row);
    const QString date =
        version.isLast ? tr("Last version, %1").arg(dateText(version)) : dateText(version);
    const QString trouble = _trouble(version);
    if (!trouble.isEmpty()) {
        item->setText(dateColumn, date + u" – "_s + trouble);
        item->setToolTip(dateColumn, plainToolTip(trouble));
        item->setFlags(Qt::NoItemFlags);
        item->setFirstColumnSpanned(true);
        return;
    }
    item->setText(dateColumn, date);
    item->setToolTip(dateColumn, plainToolTip(date));
    const QLocale locale;
    for (const auto& [column, number] : {std::pair(tasksColumn, version.tasks),
                                         {groupsColumn, version.groups},
                                         {missingColumn, version.missing}}) {
        item->setText(column, locale.toString(number));
        item->setTextAlignment(column, Qt::AlignRight | Qt::AlignVCenter);
    }
}

void BackupsDialog::_showNote()
{
    m_note->setText(dateColumn, m_isReading ? tr("Reading…") : tr("There are no backups yet."));
    m_note->setHidden(!m_isReading && !m_versions.isEmpty());
}

int BackupsDialog::_chosenRow() const
{
    const int row = m_list->indexOfTopLevelItem(m_list->currentItem());
    const bool isVersion = row >= 0 && row < m_versions.size();
    return isVersion && m_versions.at(row).error == TaskStorage::NoError ? row : -1;
}

void BackupsDialog::_updateButtons()
{
    const int row = _chosenRow();
    const bool canLoad = row >= 0 && !m_wish;
    m_bringBackButton->setEnabled(canLoad && m_versions.at(row).missing > 0);
    m_returnButton->setEnabled(canLoad);
    // Never the one that replaces everything.
    (m_bringBackButton->isEnabled() ? m_bringBackButton : m_closeButton)->setDefault(true);
}

/// Has the chosen version read once more, this time with its content, and then makes the wish.
void BackupsDialog::_load(Wish wish)
{
    const int row = _chosenRow();
    if (row < 0 || !m_reader)
        return;
    m_wish = wish;
    _updateButtons();
    setCursor(Qt::BusyCursor);
    m_reader->load(m_versions.at(row));
}

void BackupsDialog::_onLoaded(const BackupContent& content)
{
    const Wish wish = std::exchange(m_wish, nullptr);
    unsetCursor();
    if (content.snapshot) {
        accept();
        Q_EMIT(this->*wish)(content);
        return;
    }
    const auto changed =
        std::find_if(m_versions.begin(), m_versions.end(), [&content](const auto& version) {
            return version.path == content.version.path;
        });
    *changed = content.version;
    _showRow(static_cast<int>(changed - m_versions.begin()));
    _updateButtons();

    Prompt::Question box;
    box.icon = QMessageBox::Warning;
    box.title = ProductHelper::productDisplayName();
    box.text =
        tr("This version cannot be gone back to any more.") + u"\n\n"_s + _trouble(content.version);
    Prompt::ask(this, box);
}
