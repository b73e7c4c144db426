// The language of the user interface: which there are, and the switch from one to another.
#pragma once

#include <QFileInfo>
#include <QStringList>

#include <memory>

class QTranslator;

/// Has the resources with the translations found. To be called once, before Language is used.
void initLanguages();

/// A singleton behind static functions. English is built in; every other language is a folder
/// below ":/Language" that is called like its locale id, such as "ru_RU", or like the language
/// part of it, and holds compiled catalogues. Interface thread.
class Language
{
public:
    struct SLanguage
    {
        QFileInfo program;
        QFileInfo qt;
    };

    Language();
    ~Language();
    Q_DISABLE_COPY_MOVE(Language)

    [[nodiscard]] static QString defaultLanguage();

    /// The locale id that was set last; empty before that.
    [[nodiscard]] static QString language();
    /// The locale ids to choose from, the default one first.
    [[nodiscard]] static QStringList availableLanguages();

    /// Switches texts and default locale. Widgets learn of it by QEvent::LanguageChange, from the
    /// event loop. Returns false, and changes nothing, when there is no readable catalogue; English
    /// needs none.
    static bool setLanguage(const QString& localeId);

    /// Sets the language that the program settings name, if they name one.
    static void loadLanguageSettings();
    /// Sets the language of the desktop, if it is one of those to choose from, or else the default
    /// one; the program settings stay as they are.
    static void followDesktop();
    /// Puts the current language into the program settings.
    static void saveLanguageSettings();

    /// Whether `localeId` names a known locale that has a catalogue.
    [[nodiscard]] static bool isValidLocale(const QString& localeId);
    /// Where the catalogues of `localeId` are, or would be. Returns whether the program's exists.
    static bool locale2FileInfo(const QString& localeId, SLanguage& out);

private:
    [[nodiscard]] bool _install(const SLanguage& files);
    void _removeTranslators();
    [[nodiscard]] QString _desktopLanguage() const;

    QString m_language;
    QStringList m_available;
    std::unique_ptr<QTranslator> m_translator;
    std::unique_ptr<QTranslator> m_qtTranslator;
};
