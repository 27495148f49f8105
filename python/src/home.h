#ifndef PYTHON_HOME_H
#define PYTHON_HOME_H

#include <QtCore/QString>
#include <QtCore/QStringList>

#include <chrono>
#include <functional>
#include <memory>

namespace qelpython {

class Instrument;

/// The one thread in which everything of Qt lives: an event loop of this module's own, or that of
/// the Qt application that is there already, for instance PyQt's.
///
/// Nothing here takes the interpreter's lock, and everything may be called from any thread.
class Home
{
public:
    /// How the library is started.
    struct Options
    {
        QStringList pluginFolders; ///< to load drivers from, before the library's own folders
        QString language;          ///< "de" or "en"; any other reads English
    };

    /// Starts the library; once. Returns when drivers can be asked.
    /// @return what is wrong, or an empty text
    static QString start(const Options &options);

    /// Ends every run by the ladder, closes every instrument and ends the event loop. What has not
    /// ended after `patience` is left behind: then the process exits without tidying up.
    static void stop(std::chrono::milliseconds patience);

    /// Whether start() has succeeded and stop() has not been called.
    static bool isRunning();
    /// Whether the caller is the event loop.
    static bool isCurrentThread();
    /// Has the event loop call `work`, after everything that was posted before. After stop(),
    /// `work` is dropped.
    static void post(std::function<void()> work);

    /// Books that stop() goes by; for the event loop only.
    static void enter(Instrument *instrument);
    static void leave(Instrument *instrument);
};

} // namespace qelpython

#endif
