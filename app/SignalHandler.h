// Turns the signals that end programs into an orderly shutdown.
#pragma once

#include <QObject>

#include <memory>

class QSocketNotifier;

/// While one exists, SIGTERM, SIGINT and SIGHUP end every event loop of the program, whose exit
/// code is then 0, and a write past a file-size limit fails instead of killing the program.
/// Signals that were ignored before stay so. One at a time; made on the interface thread, after
/// the application object.
class SignalHandler : public QObject
{
    Q_OBJECT

public:
    explicit SignalHandler(QObject* parent = nullptr);

    /// From then on, writing to a pipe or display that is gone fails instead of killing the
    /// program. To be called first of all; programs started from here are not affected.
    static void surviveBrokenPipes();
    /// From then on the signals do nothing: what is left of the program ends by itself.
    ~SignalHandler() override;
    Q_DISABLE_COPY_MOVE(SignalHandler)

private:
    void _onSignal();

    int m_readEnd = -1;
    int m_writeEnd = -1;
    std::unique_ptr<QSocketNotifier> m_notifier;
};
