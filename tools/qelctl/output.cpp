#include "output.h"

#include "tool.h"

#include <QtCore/QFileInfo>

#include <algorithm>
#include <cstdio>

#include <sys/ioctl.h>
#include <unistd.h>

namespace qelctl {

std::unique_ptr<Output> Output::open(const QString &path, bool force, QString *problem)
{
    std::unique_ptr<Output> output(new Output);
    output->m_path = path;
    const QFileInfo target(path);
    if (path.isEmpty()) {
        auto file = std::make_unique<QFile>();
        file->open(STDOUT_FILENO, QIODevice::WriteOnly | QIODevice::Unbuffered);
        output->m_file = std::move(file);
    } else if (target.exists() && !target.isFile() && !target.isDir()) {
        output->m_file = std::make_unique<QFile>(path);
        output->m_file->open(QIODevice::WriteOnly | QIODevice::Unbuffered);
    } else if (target.isFile() && !force) {
        *problem = text("qelctl-file-exists", path);
        return nullptr;
    } else {
        output->m_file = std::make_unique<QSaveFile>(path);
        output->m_file->open(QIODevice::WriteOnly);
    }
    if (output->m_file->isOpen())
        return output;
    *problem = output->describe(output->m_file->errorString());
    return nullptr;
}

QString Output::describe(const QString &reason) const
{
    return m_path.isEmpty() ? text("qelctl-cannot-print", reason)
                            : text("qelctl-cannot-write", m_path, reason);
}

bool Output::isTerminal() const
{
    return m_path.isEmpty() && isatty(STDOUT_FILENO);
}

bool Output::write(const QByteArray &data, QString *problem)
{
    if (m_file->write(data) == data.size())
        return true;
    *problem = describe(m_file->errorString());
    return false;
}

bool Output::commit(QString *problem)
{
    auto *saved = qobject_cast<QSaveFile *>(m_file.get());
    const bool done = saved ? saved->commit() : m_file->flush();
    if (!done)
        *problem = describe(m_file->errorString());
    return done;
}

int printData(const QByteArray &data)
{
    QString problem;
    const auto output = Output::open(QString(), false, &problem);
    if (output && output->write(data, &problem) && output->commit(&problem))
        return Done;
    return fail(CannotWrite, problem);
}

bool showsColor()
{
    switch (globalOptions().color) {
    case Color::Always:
        return true;
    case Color::Never:
        return false;
    case Color::Auto:
        break;
    }
    return isatty(STDOUT_FILENO) && qgetenv("TERM") != "dumb" && qgetenv("NO_COLOR").isEmpty();
}

static bool progressShown = false;

int terminalWidth(int fileDescriptor)
{
    winsize size{};
    if (ioctl(fileDescriptor, TIOCGWINSZ, &size) == 0 && size.ws_col > 0)
        return size.ws_col;
    return 80;
}

void showProgress(double progress, qint64 elapsed)
{
    const int columns = terminalWidth(STDERR_FILENO);
    if (!isatty(STDERR_FILENO) || columns < 20)
        return;
    QByteArray remaining;
    if (progress > 0.02) {
        const int seconds = int(double(elapsed) * (1 - progress) / progress / 1000 + 0.5);
        remaining = QByteArray::number(seconds) + " s";
    }
    const int width = std::min(40, columns - 18);
    const int filled = int(std::clamp(progress, 0.0, 1.0) * width);
    const QByteArray line = "\r[" + QByteArray(filled, '#') + QByteArray(width - filled, ' ') + "] "
        + QByteArray::number(int(progress * 100)).rightJustified(3) + " % " + remaining + "\x1b[K";
    std::fwrite(line.constData(), 1, size_t(line.size()), stderr);
    std::fflush(stderr);
    progressShown = true;
}

void clearProgress()
{
    if (!progressShown)
        return;
    std::fputs("\r\x1b[K", stderr);
    std::fflush(stderr);
    progressShown = false;
}

} // namespace qelctl
