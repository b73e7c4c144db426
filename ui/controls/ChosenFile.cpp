#include "ui/controls/ChosenFile.h"

#include "app/base/PathHelper.h"
#include "app/base/ProductHelper.h"

#include <QFileInfo>

#include <cerrno>

using namespace Qt::StringLiterals;

QString ChosenFile::write(QWidget* parent, const Prompt::SaveQuestion& question,
                          const std::function<SafeWriteResult(const QString& path)>& write)
{
    const QString path = Prompt::askSaveFile(parent, question);
    if (path.isEmpty())
        return {};
    QString trouble = _refusal(path);
    if (trouble.isEmpty())
        trouble = _failure(path, write(path));
    if (trouble.isEmpty())
        return path;

    Prompt::Question box;
    box.icon = QMessageBox::Critical;
    box.title = ProductHelper::productDisplayName();
    box.text = trouble;
    Prompt::ask(parent, box);
    return {};
}

QString ChosenFile::_refusal(const QString& path)
{
    if (PathHelper::isOwnFile(path)) {
        return tr("The file \"%1\" belongs to %2 itself. Please choose another one.")
            .arg(path, ProductHelper::productDisplayName());
    }
    // Such as a pipe, which would wait for a reader.
    const QFileInfo file(path);
    return file.exists() && !file.isFile() ? _notOpened(path) : QString();
}

QString ChosenFile::_failure(const QString& path, const SafeWriteResult& result)
{
    switch (result.state) {
    case ESafeWrite::done:
        return {};
    case ESafeWrite::openFailed:
        return _notOpened(path);
    case ESafeWrite::writeFailed:
    case ESafeWrite::updateFailed:
        break;
    }
    return tr("Failed to write the file \"%1\". Nothing was changed.").arg(path) + u"\n\n"_s +
           reason(result.error);
}

QString ChosenFile::_notOpened(const QString& path)
{
    return tr("Failed to open file \"%1\" for writing.").arg(path);
}

QString ChosenFile::reason(int error)
{
    switch (error) {
    case ENOSPC:
    case EDQUOT:
        return tr("There is no room left on the disk.");
    case EACCES:
    case EPERM:
        return tr("You have no permission to write there.");
    case ENOENT:
    case ENOTDIR:
        return tr("The folder is gone.");
    case EROFS:
        return tr("The disk can only be read.");
    case 0:
        return tr("The reason is unknown.");
    default:
        return tr("The system says: %1.").arg(qt_error_string(error));
    }
}
