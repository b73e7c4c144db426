#include "tests/support/TemporaryHome.h"

#include <QDir>

TemporaryHome::TemporaryHome()
    : m_oldHome(qgetenv("HOME"))
{
    Q_ASSERT(m_dir.isValid());
    qputenv("HOME", m_dir.path().toUtf8());
    if (QDir::homePath() != m_dir.path())
        qFatal("the home directory could not be replaced");
}

TemporaryHome::~TemporaryHome()
{
    qputenv("HOME", m_oldHome);
}
