#include "ui/EditGroupDialog.h"

#include "ui/SelectIconWidget.h"
#include "ui/controls/FancyLineEdit.h"
#include "ui/controls/OneLine.h"
#include "ui/controls/Prompt.h"
#include "ui/controls/StyleHelper.h"

#include <QLabel>
#include <QPushButton>
#include <QVBoxLayout>

using namespace Qt::StringLiterals;

namespace {

constexpr QMargins panelMargins(25, 20, 25, 20);
constexpr QMargins buttonMargins(25, 10, 25, 10);
/// Between the icons and what belongs to the name.
constexpr int sectionSpacing = 8;
constexpr int buttonSpacing = 8;
constexpr QColor separatorColour(0xbf, 0xbf, 0xbf);
constexpr int patience = 9;

QString strong(const QString& text)
{
    return u"<strong>%1</strong>"_s.arg(text);
}

/// The colours of the panel, whatever those of the desktop are.
QPalette panelColours(QPalette colours)
{
    colours.setColor(QPalette::Window, Qt::white);
    colours.setColor(QPalette::Base, Qt::white);
    colours.setColor(QPalette::WindowText, fancy::color(fancy::TextDark));
    colours.setColor(QPalette::Text, fancy::color(fancy::TextDark));
    colours.setColor(QPalette::Highlight, fancy::color(fancy::FrameStrong));
    colours.setColor(QPalette::HighlightedText, Qt::white);
    return colours;
}

} // namespace

EditGroupDialog::EditGroupDialog(QWidget* parent)
    : LocalizedDialog(parent)
    , m_isNew(true)
{
    _init();
}

EditGroupDialog::EditGroupDialog(const QString& name, const QString& iconName, QWidget* parent)
    : LocalizedDialog(parent)
    , m_isNew(false)
    , m_storedName(name)
    , m_storedIcon(iconName)
{
    _init();
}

void EditGroupDialog::_init()
{
    setWindowModality(Qt::WindowModal);
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(0);
    layout->addWidget(_createPanel(), 1);
    layout->addWidget(_createSeparator());
    layout->addLayout(_createButtons());

    // A stored name may be longer than what can be typed.
    m_name->setMaxLength(qMax(m_name->maxLength(), static_cast<int>(m_storedName.size())));
    m_name->setText(m_storedName);
    m_name->setFocus();
    m_icons->setIconKey(m_storedIcon);
    connect(m_icons, &SelectIconWidget::iconChanged, this, &EditGroupDialog::_onIconChanged);
    connect(m_icons, &SelectIconWidget::iconDoubleClicked, this,
            &EditGroupDialog::_onIconDoubleClicked);
    connect(m_name, &QLineEdit::textEdited, this, &EditGroupDialog::_onTextEdited);
    EditGroupDialog::retranslateUI();
}

QWidget* EditGroupDialog::_createPanel()
{
    auto* panel = new QWidget(this);
    panel->setPalette(panelColours(palette()));
    panel->setAutoFillBackground(true);
    m_iconsTitle = new QLabel;
    m_iconsTitle->setTextFormat(Qt::RichText);
    m_icons = new SelectIconWidget(panel);
    m_nameTitle = new QLabel;
    m_nameTitle->setTextFormat(Qt::RichText);
    m_name = new FancyLineEdit;

    auto* layout = new QVBoxLayout(panel);
    layout->setContentsMargins(panelMargins);
    layout->addWidget(m_iconsTitle);
    layout->addWidget(m_icons);
    layout->addSpacing(sectionSpacing);
    layout->addWidget(m_nameTitle);
    layout->addWidget(m_name);
    return panel;
}

QWidget* EditGroupDialog::_createSeparator()
{
    auto* line = new QWidget(this);
    line->setFixedHeight(1);
    line->setPalette(separatorColour);
    line->setAutoFillBackground(true);
    return line;
}

QLayout* EditGroupDialog::_createButtons()
{
    m_okButton = new QPushButton(this);
    m_okButton->setDefault(true);
    connect(m_okButton, &QPushButton::clicked, this, &EditGroupDialog::accept);
    m_cancelButton = new QPushButton(this);
    connect(m_cancelButton, &QPushButton::clicked, this, &EditGroupDialog::reject);

    auto* layout = new QHBoxLayout;
    layout->setContentsMargins(buttonMargins);
    layout->setSpacing(buttonSpacing);
    layout->addStretch(1);
    layout->addWidget(m_okButton);
    layout->addWidget(m_cancelButton);
    return layout;
}

void EditGroupDialog::retranslateUI()
{
    setWindowTitle(m_isNew ? tr("New group") : tr("Group properties"));
    m_icons->setAccessibleName(tr("Icon selection"));
    m_iconsTitle->setText(strong(tr("Icon selection")));
    m_name->setAccessibleName(tr("Group name"));
    m_nameTitle->setText(strong(tr("Group name")));
    m_okButton->setText(tr("OK"));
    m_cancelButton->setText(tr("Cancel"));
    setFixedSize(minimumSizeHint());
}

QString EditGroupDialog::groupName() const
{
    const QString name = m_name->text();
    return name == m_storedName ? name : fancy::onOneLine(name);
}

QString EditGroupDialog::iconName() const
{
    return m_isNew || m_iconChosen ? m_icons->iconKey() : m_storedIcon;
}

void EditGroupDialog::accept()
{
    if (!groupName().trimmed().isEmpty()) {
        LocalizedDialog::accept();
        return;
    }
    Prompt::Question box;
    box.icon = QMessageBox::Critical;
    box.title = windowTitle();
    box.text = tr("Please enter a group name to continue...");
    if (++m_refusals > patience) {
        m_refusals = 0;
        box.text = tr("Ok, now we all know that you're funny! Wanna play a real game?");
        box.buttons = QMessageBox::Yes | QMessageBox::No;
        box.defaultButton = QMessageBox::Yes;
    }
    Prompt::ask(this, box);
    m_name->setFocus();
}

void EditGroupDialog::_onIconChanged(const QString& key)
{
    m_iconChosen = true;
    if (m_typedName.isEmpty())
        m_name->setText(m_icons->iconName(key));
}

void EditGroupDialog::_onIconDoubleClicked(const QString& key)
{
    _onIconChanged(key);
    accept();
}

void EditGroupDialog::_onTextEdited(const QString& text)
{
    m_typedName = text;
}
