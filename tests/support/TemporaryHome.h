// A home directory of a test's own.
#pragma once

#include <QTemporaryDir>

/// Sets HOME to a fresh folder for as long as it lives, and puts the old one back. Nothing that
/// a test does reaches the real home.
class TemporaryHome
{
public:
    TemporaryHome();
    ~TemporaryHome();
    Q_DISABLE_COPY_MOVE(TemporaryHome)

    [[nodiscard]] QString path() const { return m_dir.path(); }
    [[nodiscard]] QString filePath(const QString& name) const { return m_dir.filePath(name); }

private:
    QByteArray m_oldHome;
    QTemporaryDir m_dir;
};
