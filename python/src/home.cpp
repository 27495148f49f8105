#include "home.h"

#include "instrument.h"

#include <qelfrontend/startup.h>

#include <qeldevices/devicebroker.h>
#include <qeldevices/qeldevices_global.h>

#include <QtCore/QCoreApplication>
#include <QtCore/QDir>
#include <QtCore/QEventLoop>
#include <QtCore/QFileInfo>
#include <QtCore/QLocale>
#include <QtCore/QLoggingCategory>
#include <QtCore/QSet>
#include <QtCore/QThread>
#include <QtCore/QTimer>

#include <dlfcn.h>
#include <pthread.h>
#include <unistd.h>

#include <atomic>
#include <csignal>
#include <cstdio>
#include <future>
#include <mutex>
#include <thread>

using qel::devices::DeviceBroker;

namespace qelpython {

namespace {

// Never destroyed: a thread that a driver does not give back outlives everything.
struct Books
{
    std::mutex startMutex;
    std::mutex mutex; // guards context
    QObject *context = nullptr;
    std::atomic<QThread *> thread{nullptr};
    std::thread ownThread;
    std::promise<void> ended;
    QSet<Instrument *> instruments;
    bool ownsApplication = false;
    pid_t process = 0; // a fork has these books, but not the thread
};

Books &books()
{
    static auto *books = new Books;
    return *books;
}

// The drivers that are installed along with the library stand in bin/devicedrivers below its
// prefix. The library itself looks beside the executable, which is the interpreter here.
QString siblingDrivers()
{
    Dl_info library{};
    if (dladdr(reinterpret_cast<void *>(&qel::devices::version), &library) == 0)
        return {};
    QDir folder = QFileInfo(QString::fromLocal8Bit(library.dli_fname)).absoluteDir();
    for (int depth = 0; depth < 3 && folder.cdUp(); ++depth) {
        const QString drivers = folder.filePath(QStringLiteral("bin/devicedrivers"));
        if (QFileInfo(drivers).isDir())
            return drivers;
    }
    return {};
}

void startUp(const Home::Options &options)
{
    // An exception says what the library would log about a device.
    QLoggingCategory::setFilterRules(QStringLiteral("qel.devices*.debug=false\n"
                                                    "qel.devices*.info=false\n"
                                                    "qel.devices.warning=false"));
    QLocale::setDefault(
        QLocale(options.language == QLatin1String("de") ? QLocale::German : QLocale::English));
    const QString drivers = siblingDrivers();
    if (!drivers.isEmpty())
        DeviceBroker::loadAllDevicePlugins(drivers);
    const QStringList problems = qel::frontend::startLibrary(options.pluginFolders);
    for (const QString &problem : problems)
        qWarning("qeldevices: %s", qPrintable(problem));
}

void live(const Home::Options &options, std::promise<void> *ready)
{
    // The interpreter's main thread is the one that signals are for.
    sigset_t all;
    sigfillset(&all);
    pthread_sigmask(SIG_BLOCK, &all, nullptr);

    static int count = 1;
    static char name[] = "python";
    static char *arguments[] = {name, nullptr};
    // Qt takes the thread that has loaded it for the main one, and warns of this one.
    const auto handler =
        qInstallMessageHandler([](QtMsgType, const QMessageLogContext &, const QString &) {});
    QCoreApplication application(count, arguments);
    qInstallMessageHandler(handler);
    startUp(options);
    auto *context = new QObject;
    books().context = context;
    books().thread = QThread::currentThread();
    ready->set_value();
    QCoreApplication::exec();
    {
        const std::lock_guard lock(books().mutex);
        books().context = nullptr;
    }
    delete context;
    // In their own thread, not along with the process's static objects.
    DeviceBroker::DRIVERS.clear();
}

// Leaves without the static destructors, which the thread left behind could be using.
void leaveAtOnce(int status, void *)
{
    std::fflush(nullptr);
    _exit(status);
}

void endAllInstruments(const std::function<void()> &done)
{
    const auto left = std::make_shared<int>(1);
    const auto oneLess = [left, done] {
        if (--*left == 0)
            done();
    };
    const auto instruments = books().instruments;
    for (Instrument *instrument : instruments) {
        ++*left;
        instrument->end(oneLess);
    }
    oneLess();
}

QString startIn(QCoreApplication *application, const Home::Options &options)
{
    auto *context = new QObject;
    context->moveToThread(application->thread());
    const auto begin = [context, options] {
        startUp(options);
        books().context = context;
        books().thread = context->thread();
    };
    if (application->thread() == QThread::currentThread()) {
        begin();
        return {};
    }
    const auto started = std::make_shared<std::promise<void>>();
    QMetaObject::invokeMethod(context, [started, begin] {
        begin();
        started->set_value();
    });
    if (started->get_future().wait_for(std::chrono::seconds(10)) == std::future_status::ready)
        return {};
    return QStringLiteral("this process has a Qt application whose event loop does not run; start "
                          "its exec(), or use qeldevices from the application's thread");
}

} // namespace

QString Home::start(const Options &options)
{
    const std::lock_guard lock(books().startMutex);
    if (isRunning())
        return {};
    books().process = getpid();
    if (QCoreApplication *application = QCoreApplication::instance())
        return startIn(application, options);
    // The context of GLib that goes with the first event loop is for the interpreter's thread,
    // where a user interface may need it.
    const bool hasGlib = !qEnvironmentVariableIsSet("QT_NO_GLIB");
    if (hasGlib)
        qputenv("QT_NO_GLIB", "1");
    std::promise<void> ready;
    books().ownsApplication = true;
    books().ownThread = std::thread([&ready, options] {
        live(options, &ready);
        books().ended.set_value();
    });
    ready.get_future().wait();
    if (hasGlib)
        qunsetenv("QT_NO_GLIB");
    return {};
}

void Home::stop(std::chrono::milliseconds patience)
{
    if (!isRunning())
        return;
    if (!books().ownsApplication) {
        if (isCurrentThread() && QCoreApplication::instance()) {
            QEventLoop loop;
            QTimer::singleShot(patience, &loop, &QEventLoop::quit);
            QTimer::singleShot(0, &loop, [&] { endAllInstruments([&] { loop.quit(); }); });
            loop.exec();
        }
        books().thread = nullptr;
        return;
    }
    post([] { endAllInstruments([] { QCoreApplication::quit(); }); });
    books().thread = nullptr;
    if (books().ended.get_future().wait_for(patience) == std::future_status::ready)
        books().ownThread.join();
    else
        on_exit(&leaveAtOnce, nullptr);
}

bool Home::isRunning()
{
    return books().thread != nullptr && books().process == getpid();
}

bool Home::isCurrentThread()
{
    return isRunning() && !books().ownsApplication && books().thread == QThread::currentThread();
}

void Home::post(std::function<void()> work)
{
    if (books().process != getpid())
        return;
    const std::lock_guard lock(books().mutex);
    if (books().context)
        QMetaObject::invokeMethod(books().context, std::move(work), Qt::QueuedConnection);
}

void Home::enter(Instrument *instrument)
{
    books().instruments.insert(instrument);
}

void Home::leave(Instrument *instrument)
{
    books().instruments.remove(instrument);
}

} // namespace qelpython
