#include "output.h"

#include "statusline.h"
#include "terminaltext.h"
#include "tool.h"

#include <algorithm>
#include <cerrno>
#include <cstring>

#include <fcntl.h>
#include <poll.h>
#include <sys/ioctl.h>
#include <unistd.h>

namespace qelctl {

using qel::frontend::ResultFile;

static int descriptorOfData = STDOUT_FILENO;

void takeStandardOutput()
{
    for (const int stream : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO}) {
        // The lowest number that is free is the one that is closed.
        if (fcntl(stream, F_GETFD) < 0 && ::open("/dev/null", O_RDWR) < 0)
            return;
    }
    const int data = fcntl(STDOUT_FILENO, F_DUPFD_CLOEXEC, 10);
    if (data < 0 || dup2(STDERR_FILENO, STDOUT_FILENO) < 0)
        return;
    descriptorOfData = data;
}

int dataDescriptor()
{
    return descriptorOfData;
}

std::unique_ptr<Output> Output::open(const QString &path, Existing existing, QString *problem)
{
    std::unique_ptr<Output> output(new Output);
    if (path.isEmpty() || path == QLatin1String("-"))
        return output;
    output->m_path = path;
    output->m_file = ResultFile::open(path, existing, problem);
    if (output->m_file)
        return output;
    *problem = problem->isEmpty() ? text("qelctl-file-exists", path)
                                  : text("qelctl-cannot-write", path, *problem);
    return nullptr;
}

bool Output::isTerminal() const
{
    return !m_file && isatty(dataDescriptor());
}

bool Output::isFile() const
{
    return m_file != nullptr;
}

QString Output::path() const
{
    return m_path;
}

bool Output::write(const QByteArray &data, QString *problem)
{
    if (m_file) {
        if (m_file->add(data, problem))
            return true;
        *problem = text("qelctl-cannot-write", m_path, *problem);
        return false;
    }
    for (int done = 0; done < data.size();) {
        const ssize_t count =
            ::write(dataDescriptor(), data.constData() + done, size_t(data.size() - done));
        if (count < 0 && errno != EINTR) {
            *problem = text("qelctl-cannot-print", QString::fromLocal8Bit(strerror(errno)));
            return false;
        }
        done += int(std::max<ssize_t>(count, 0));
    }
    return true;
}

int printData(const QByteArray &data)
{
    clearStatus();
    QString problem;
    const auto output = Output::open(QString(), Output::Existing::Refuse, &problem);
    return output->write(data, &problem) ? int(Done) : fail(CannotWrite, problem);
}

ReaderWatch::ReaderWatch()
{
    connect(&m_timer, &QTimer::timeout, this, [this] {
        pollfd standardOutput{dataDescriptor(), 0, 0};
        if (poll(&standardOutput, 1, 0) > 0 && (standardOutput.revents & POLLERR) != 0) {
            m_timer.stop();
            emit gone();
        }
    });
    m_timer.start(500);
}

bool usesColor(bool toTerminal)
{
    switch (globalOptions().color) {
    case Color::Always:
        return true;
    case Color::Never:
        return false;
    case Color::Auto:
        break;
    }
    return toTerminal && !isTerminalDumb() && qEnvironmentVariableIsEmpty("NO_COLOR");
}

int terminalWidth(int fileDescriptor)
{
    winsize size{};
    if (ioctl(fileDescriptor, TIOCGWINSZ, &size) == 0 && size.ws_col > 0)
        return size.ws_col;
    return 80;
}

} // namespace qelctl
