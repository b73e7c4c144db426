// Writing to a file that the user names, and saying what came of it.
#pragma once

#include "app/base/CSafeFileUpdate.h"
#include "ui/controls/Prompt.h"

#include <QCoreApplication>

#include <functional>

/// Interface thread.
class ChosenFile
{
    Q_DECLARE_TR_FUNCTIONS(ChosenFile)

public:
    /// Asks for a file and has `write` write it; tells the user if that fails. The program's own
    /// files, and what is no regular file, are refused. Returns the path as chosen, or nothing if
    /// nothing was written.
    [[nodiscard]] static QString
    write(QWidget* parent, const Prompt::SaveQuestion& question,
          const std::function<SafeWriteResult(const QString& path)>& write);

    /// Why the disk did not take something, as a sentence. `error`: from errno.h; 0 if unknown.
    [[nodiscard]] static QString reason(int error);

private:
    [[nodiscard]] static QString _refusal(const QString& path);
    [[nodiscard]] static QString _failure(const QString& path, const SafeWriteResult& result);
    [[nodiscard]] static QString _notOpened(const QString& path);
};
