#include "ui/controls/PrefsDialog.h"

#include "app/base/PathHelper.h"
#include "app/base/Platform.h"
#include "app/base/ProductHelper.h"
#include "app/base/ProgramSettings.h"
#include "app/base/dynamic_singleton.h"
#include "app/language/Language.h"
#include "app/notify/NotifyHelper.h"
#include "ui/icons/IconsHelper.h"

#include <QCheckBox>
#include <QComboBox>
#include <QLabel>
#include <QPushButton>
#include <QTabWidget>
#include <QVBoxLayout>

using namespace Qt::StringLiterals;

namespace {
constexpr QSize tabIconSize(20, 20);
constexpr QMargins dialogMargins(12, 12, 12, 12);
constexpr QMargins tabMargins(16, 16, 16, 16);
constexpr int rowSpacing = 10;
constexpr int comboWidth = 160;

ProgramSettings& settings()
{
    return dynamic_singleton<ProgramSettings>::inst();
}

QString languageName(const QString& code)
{
    return code == Language::defaultLanguage()
               ? u"English"_s
               : QLocale::languageToString(QLocale(code).language());
}
} // namespace

PrefsDialog::PrefsDialog(QWidget* parent)
    : LocalizedDialog(parent)
    , m_canNotify(NotifyHelper().isAvailable())
{
    // Modal for the whole program it would block XEMBED trays.
    setWindowModality(Qt::WindowModal);
    m_tabs = new QTabWidget(this);
    m_tabs->setIconSize(tabIconSize);
    m_tabs->addTab(_createGeneralTab(), dynamic_singleton<IconsHelper>::inst().icon(u"inbox"_s),
                   {});
    m_okButton = new QPushButton(this);
    m_okButton->setDefault(true);
    connect(m_okButton, &QPushButton::clicked, this, &PrefsDialog::accept);

    auto* buttons = new QHBoxLayout;
    buttons->addStretch();
    buttons->addWidget(m_okButton);
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(dialogMargins);
    layout->setSpacing(dialogMargins.top());
    layout->addWidget(m_tabs);
    layout->addLayout(buttons);
    PrefsDialog::retranslateUI();
}

PrefsDialog::~PrefsDialog()
{
    if (m_isChanged)
        settings().save(PathHelper::settingsFile());
}

QWidget* PrefsDialog::_createGeneralTab()
{
    auto* tab = new QWidget(m_tabs);
    const auto addBox = [tab](bool checked) {
        auto* box = new QCheckBox(tab);
        box->setChecked(checked);
        return box;
    };
    m_notifications = addBox(settings().showNotifications);
    m_runAtStartup = addBox(settings().runOnSystemStartup);
    m_runAtStartup->setVisible(platform::canSetProgramToRunAtStartup());
    m_openWindow = addBox(settings().openWindowOnStartup);
    connect(m_notifications, &QCheckBox::stateChanged, this,
            &PrefsDialog::_notificationsStateChanged);
    connect(m_runAtStartup, &QCheckBox::stateChanged, this,
            &PrefsDialog::_runAtStartupStateChanged);
    connect(m_openWindow, &QCheckBox::stateChanged, this, &PrefsDialog::_openWindowStateChanged);

    auto* line = new QFrame(tab);
    line->setFrameStyle(QFrame::HLine | QFrame::Plain);
    line->setForegroundRole(QPalette::Mid);
    line->setFixedHeight(1);

    auto* layout = new QVBoxLayout(tab);
    layout->setContentsMargins(tabMargins);
    layout->setSpacing(rowSpacing);
    layout->addWidget(m_notifications);
    layout->addWidget(m_runAtStartup);
    layout->addWidget(m_openWindow);
    layout->addWidget(line);
    layout->addLayout(_createLanguageRow());
    layout->addStretch();
    return tab;
}

QLayout* PrefsDialog::_createLanguageRow()
{
    m_languageLabel = new QLabel(m_tabs);
    m_languages = new QComboBox(m_tabs);
    m_languages->setMinimumWidth(comboWidth);
    m_languageLabel->setBuddy(m_languages);
    _fillLanguages();
    connect(m_languages, &QComboBox::currentIndexChanged, this, &PrefsDialog::_onLanguageChanged);
    connect(m_languages, &QComboBox::activated, this, &PrefsDialog::_onLanguageActivated);

    auto* row = new QHBoxLayout;
    row->addWidget(m_languageLabel);
    row->addStretch();
    row->addWidget(m_languages);
    return row;
}

void PrefsDialog::_fillLanguages()
{
    m_languageCodes = Language::availableLanguages();
    for (const QString& code : std::as_const(m_languageCodes))
        m_languages->addItem(languageName(code));
    m_languages->setCurrentIndex(
        qMax(0, static_cast<int>(m_languageCodes.indexOf(Language::language()))));
}

void PrefsDialog::retranslateUI()
{
    setWindowTitle(tr("%1 Preferences").arg(ProductHelper::productDisplayName()));
    m_tabs->setTabText(0, tr("General"));
    m_notifications->setText(tr("Show notifications"));
    // The box stays enabled: the desktop may learn to show them later.
    m_notifications->setToolTip(m_canNotify ? QString()
                                            : tr("This desktop shows no notifications"));
    m_runAtStartup->setText(tr("Run on system startup"));
    m_openWindow->setText(tr("Open window on startup"));
    m_languageLabel->setText(tr("Language"));
    m_okButton->setText(tr("OK"));
    ensurePolished();
    layout()->activate();
    setFixedSize(sizeHint());
}

void PrefsDialog::_notificationsStateChanged(int state)
{
    m_isChanged = true;
    settings().showNotifications = state == Qt::Checked;
}

void PrefsDialog::_runAtStartupStateChanged(int state)
{
    m_isChanged = true;
    settings().runOnSystemStartup = state == Qt::Checked;
    platform::setProgramToRunAtStartup(PathHelper::executablePath(), settings().runOnSystemStartup);
}

void PrefsDialog::_openWindowStateChanged(int state)
{
    m_isChanged = true;
    settings().openWindowOnStartup = state == Qt::Checked;
}

void PrefsDialog::_onLanguageChanged(int index)
{
    m_isChanged = true;
    // Only a choice is stored: a stored language that is not available stays until there is one.
    if (Language::setLanguage(m_languageCodes.value(index)))
        Language::saveLanguageSettings();
}

/// Choosing the entry that is shown changes no index, but the language may not be stored yet.
void PrefsDialog::_onLanguageActivated(int index)
{
    if (settings().uiLanguage != m_languageCodes.value(index))
        _onLanguageChanged(index);
}
