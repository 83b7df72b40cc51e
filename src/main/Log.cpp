#include "main/Log.h"

#include <QDateTime>

namespace Planaria {

LogStream::LogStream(QTextStream *target) : stream(target) {}

LogStream &LogStream::operator<<(const char *text)
{
    return *this << QString::fromUtf8(text);
}

LogStream &LogStream::operator<<(const QString &text)
{
    const QMutexLocker lock(&mutex);
    *stream << text;
    return *this;
}

LogStream &LogStream::operator<<(QTextStream &(*manipulator)(QTextStream &))
{
    const QMutexLocker lock(&mutex);
    *stream << manipulator;
    return *this;
}

std::unique_ptr<Log> Log::singleton_;

void Log::setLogName(const QString &name)
{
    singleton_.reset(new Log);
    singleton_->file = std::make_unique<QFile>(name);
}

void Log::openLog()
{
    if (!singleton_)
        setLogName(QStringLiteral("out.log"));

    Log &log = *singleton_;
    if (log.file->isOpen())
        return;
    if (log.file->open(QIODevice::WriteOnly | QIODevice::Append | QIODevice::Text)) {
        log.stream = std::make_unique<QTextStream>(log.file.get());
    } else {
        log.lost.clear();
        log.stream = std::make_unique<QTextStream>(&log.lost, QIODevice::WriteOnly);
    }
    log.logStream = std::make_unique<LogStream>(log.stream.get());

    *log.beginLine() << "###################### LOG START ########################" << Qt::endl;
}

LogStream *Log::write()
{
    if (!singleton_ || !singleton_->file->isOpen())
        openLog();
    return singleton_->beginLine();
}

void Log::closeLog()
{
    singleton_.reset();
}

LogStream *Log::beginLine()
{
    *logStream << QDateTime::currentDateTimeUtc().toString(
        QStringLiteral("yyyy-MM-ddThh:mm:ss.zzzZ : "));
    return logStream.get();
}

} // namespace Planaria
