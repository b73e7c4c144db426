// A home directory of a test's own.
#pragma once

#include <QDir>
#include <QTemporaryDir>

/// Sets HOME to a fresh folder for as long as it lives, and puts the old one back. Nothing that
/// a test does reaches the real home.
class TemporaryHome
{
public:
    TemporaryHome()
        : m_oldHome(qgetenv("HOME"))
    {
        Q_ASSERT(m_dir.isValid());
        qputenv("HOME", m_dir.path().toUtf8());
        if (QDir::homePath() != m_dir.path())
            qFatal("the home directory could not be replaced");
    }
    ~TemporaryHome() { qputenv("HOME", m_oldHome); }
    Q_DISABLE_COPY_MOVE(TemporaryHome)

    [[nodiscard]] QString path() const { return m_dir.path(); }
    [[nodiscard]] QString filePath(const QString& name) const { return m_dir.filePath(name); }

private:
    QByteArray m_oldHome;
    QTemporaryDir m_dir;
};
