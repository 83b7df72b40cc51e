#pragma once

#include <QFile>
#include <QMutex>
#include <QMutexLocker>
#include <QString>
#include <QTextStream>

#include <memory>

namespace Planaria {

/// What a writer of a log line streams into: the text stream of the log, one item at a time under
/// a lock. The lock covers an item, not a line.
class LogStream final
{
public:
    /// @param target must outlive this object
    explicit LogStream(QTextStream *target);

    LogStream &operator<<(const char *text);
    LogStream &operator<<(const QString &text);
    /// Stream manipulators, of which `Qt::endl` ends the line and flushes it.
    LogStream &operator<<(QTextStream &(*manipulator)(QTextStream &));

private:
    QMutex mutex;
    QTextStream *stream;
};

/// The program's only log: one plain text file in the working directory, in which failed writes
/// leave their error text. It is opened, and marked with a start line, when the first line is
/// written, so a run without errors leaves no trace. Write as `*Log::write() << text << Qt::endl`.
///
/// While the file cannot be opened, lines are lost silently: a log must never stop the program.
class Log final
{
public:
    /// Closes the present file, if any, and names the one for the lines to come (not opened yet).
    static void setLogName(const QString &name);

    /// Opens the file for appending and writes the start mark.
    static void openLog();

    /// Begins a line with the UTC time. Opens "out.log" or the named file first where needed.
    static LogStream *write();

    /// Closes the file; the next line starts afresh with "out.log".
    static void closeLog();

private:
    Log() = default;

    LogStream *beginLine();

    static std::unique_ptr<Log> singleton_;

    // Destroyed from the last to the first: the streams go before the file they write to.
    std::unique_ptr<QFile> file;
    QString lost; // the present line, where the file cannot be opened
    std::unique_ptr<QTextStream> stream;
    std::unique_ptr<LogStream> logStream;
};

} // namespace Planaria
