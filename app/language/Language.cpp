#include "app/language/Language.h"

#include "app/base/ProgramSettings.h"
#include "app/base/dynamic_singleton.h"

#include <QCoreApplication>
#include <QDir>
#include <QLocale>
#include <QTranslator>

using namespace Qt::StringLiterals;

namespace {

constexpr auto root = ":/Language/"_L1;

QFileInfo catalogue(const QString& localeId, QLatin1StringView name)
{
    const QFileInfo exact(root + localeId + u'/' + name);
    return exact.exists() ? exact : QFileInfo(root + localeId.section(u'_', 0, 0) + u'/' + name);
}

std::unique_ptr<QTranslator> loaded(const QFileInfo& file)
{
    auto translator = std::make_unique<QTranslator>();
    if (!file.exists() || !translator->load(file.filePath()))
        return nullptr;
    return translator;
}

/// Puts `next`, which may be none, in the place of `current`.
void replace(std::unique_ptr<QTranslator>& current, std::unique_ptr<QTranslator> next)
{
    if (current)
        QCoreApplication::removeTranslator(current.get());
    current = std::move(next);
    if (current)
        QCoreApplication::installTranslator(current.get());
}

} // namespace

// Q_INIT_RESOURCE declares a function of the global namespace.
void initLanguages()
{
    Q_INIT_RESOURCE(languages);
}

Language::Language()
    : m_available(defaultLanguage())
{
    const QStringList names = QDir(root).entryList();
    for (const QString& name : names) {
        if (isValidLocale(name))
            m_available.append(name);
    }
}

Language::~Language() = default;

QString Language::defaultLanguage()
{
    return u"en_US"_s;
}

QString Language::language()
{
    return dynamic_singleton<Language>::inst().m_language;
}

QStringList Language::availableLanguages()
{
    return dynamic_singleton<Language>::inst().m_available;
}

bool Language::setLanguage(const QString& localeId)
{
    auto& self = dynamic_singleton<Language>::inst();
    const QLocale locale(localeId);
    SLanguage files;
    if (locale2FileInfo(localeId, files)) {
        if (!self._install(files))
            return false;
    } else if (locale.language() == QLocale::English) {
        self._removeTranslators();
    } else {
        return false;
    }
    QLocale::setDefault(locale);
    self.m_language = localeId;
    return true;
}

/// A missing or damaged catalogue of Qt is no failure: only standard buttons stay English.
bool Language::_install(const SLanguage& files)
{
    std::unique_ptr<QTranslator> translator = loaded(files.program);
    if (!translator)
        return false;
    replace(m_translator, std::move(translator));
    replace(m_qtTranslator, loaded(files.qt));
    return true;
}

void Language::_removeTranslators()
{
    replace(m_translator, nullptr);
    replace(m_qtTranslator, nullptr);
}

void Language::loadLanguageSettings()
{
    const QString& localeId = dynamic_singleton<ProgramSettings>::inst().uiLanguage;
    if (!localeId.isEmpty())
        setLanguage(localeId);
}

void Language::followDesktop()
{
    setLanguage(dynamic_singleton<Language>::inst()._desktopLanguage());
}

/// The first of the desktop's languages that is offered, or else the default one.
QString Language::_desktopLanguage() const
{
    const QStringList wanted = QLocale::system().uiLanguages();
    for (const QString& name : wanted) {
        const QLocale locale(name);
        if (m_available.contains(locale.name()))
            return locale.name();
        for (const QString& id : m_available) {
            if (QLocale(id).language() == locale.language())
                return id;
        }
    }
    return defaultLanguage();
}

void Language::saveLanguageSettings()
{
    dynamic_singleton<ProgramSettings>::inst().uiLanguage = language();
}

bool Language::isValidLocale(const QString& localeId)
{
    if (QLocale(localeId).language() == QLocale::C)
        return false;
    SLanguage files;
    return locale2FileInfo(localeId, files);
}

bool Language::locale2FileInfo(const QString& localeId, SLanguage& out)
{
    out.program = catalogue(localeId, "translation"_L1);
    out.qt = catalogue(localeId, "qt_translation"_L1);
    return out.program.exists();
}
