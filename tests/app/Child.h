// A process under test whose output is read line by line.
#pragma once

#include <QProcess>

/// Killed when it goes out of scope.
class Child
{
public:
    /// The frame's test program with `arguments`.
    explicit Child(const QStringList& arguments)
    {
        m_process.setProgram(QStringLiteral(MVR_FRAME_CHILD));
        m_process.setArguments(arguments);
    }
    ~Child()
    {
        m_process.kill();
        m_process.waitForFinished();
    }
    Q_DISABLE_COPY_MOVE(Child)

    QProcess& process() { return m_process; }
    void start() { m_process.start(); }

    /// The next line of output; empty when the process ended, or said nothing for half a minute.
    QString line()
    {
        while (!m_process.canReadLine()) {
            if (!m_process.waitForReadyRead(30000))
                return QString::fromUtf8(m_process.readLine()).trimmed();
        }
        return QString::fromUtf8(m_process.readLine()).trimmed();
    }

    void command(const QString& text)
    {
        m_process.write(text.toUtf8() + '\n');
        m_process.waitForBytesWritten();
    }

    /// Waits for the end. Returns the exit code, or -1 after a crash, a signal or a time-out.
    int exitCode()
    {
        if (m_process.state() != QProcess::NotRunning && !m_process.waitForFinished(30000))
            return -1;
        return m_process.exitStatus() == QProcess::NormalExit ? m_process.exitCode() : -1;
    }

private:
    QProcess m_process;
};
