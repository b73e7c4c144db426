// A process under test whose output is read line by line.
#pragma once

#include <QProcess>

#include <csignal>

/// Runs from its construction; killed when it goes out of scope.
class Child
{
public:
    explicit Child(
        const QString& program, const QStringList& arguments = {},
        const QProcessEnvironment& environment = QProcessEnvironment::systemEnvironment())
    {
        m_process.setProcessEnvironment(environment);
        m_process.start(program, arguments);
        m_process.waitForStarted();
    }
    ~Child()
    {
        m_process.kill();
        m_process.waitForFinished();
    }
    Q_DISABLE_COPY_MOVE(Child)

    [[nodiscard]] qint64 id() const { return m_process.processId(); }
    [[nodiscard]] bool isRunning() const { return m_process.state() == QProcess::Running; }
    void signal(int number) const { ::kill(static_cast<pid_t>(id()), number); }
    void command(const QString& text)
    {
        m_process.write(text.toUtf8() + '\n');
        m_process.waitForBytesWritten();
    }

    /// The next line of output; empty when the process ended, or said nothing for half a minute.
    QString line()
    {
        while (!m_process.canReadLine() && m_process.waitForReadyRead(patienceMs)) {
        }
        return QString::fromUtf8(m_process.readLine()).trimmed();
    }
    QString errors() { return QString::fromUtf8(m_process.readAllStandardError()); }

    /// Waits for the end. Returns the exit code, or -1 after a crash, a signal or a time-out.
    int exitCode()
    {
        if (isRunning() && !m_process.waitForFinished(patienceMs))
            return -1;
        return m_process.exitStatus() == QProcess::NormalExit ? m_process.exitCode() : -1;
    }

private:
    static constexpr int patienceMs = 30000;

    QProcess m_process;
};
