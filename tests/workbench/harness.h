#ifndef TESTS_WORKBENCH_HARNESS_H
#define TESTS_WORKBENCH_HARNESS_H

#include <instrumentlist.h>
#include <log.h>
#include <mainwindow.h>
#include <text.h>

#include <qelfrontend/startup.h>

#include <QtCore/QDir>
#include <QtCore/QFile>
#include <QtCore/QJsonArray>
#include <QtCore/QJsonDocument>
#include <QtCore/QJsonObject>
#include <QtCore/QSettings>
#include <QtCore/QTemporaryDir>
#include <QtTest/QtTest>
#include <QtWidgets/QLabel>
#include <QtWidgets/QPushButton>

#include <memory>

// A run under sanitizers on a machine that has other things to do.
constexpr int patience = 30000; // ms

/// A window on a simulated lab, with a history, settings and scenario of its own.
class Bench
{
public:
    Bench()
    {
        QCoreApplication::setOrganizationName(QStringLiteral("qeldevices-test"));
        QCoreApplication::setApplicationName(QStringLiteral("qelworkbench"));
        QSettings::setDefaultFormat(QSettings::IniFormat);
        QSettings::setPath(QSettings::IniFormat, QSettings::UserScope, m_folder.path());
        qelworkbench::useLanguage(QLocale(QLocale::English));
        m_line.scenario = m_folder.filePath(QStringLiteral("scenario.json"));
        m_line.folder = m_folder.filePath(QStringLiteral("runs"));
        qputenv("QELDEVICES_SIMULATOR", QFile::encodeName(m_line.scenario));
    }

    /// Describes the lab; once it is watched, the change is seen at the next search.
    void setUp(const QJsonArray &instruments, double timeScale = 0)
    {
        QFile file(m_line.scenario);
        QVERIFY(file.open(QIODevice::WriteOnly));
        file.write(QJsonDocument(QJsonObject{{QStringLiteral("timeScale"), timeScale},
                                             {QStringLiteral("instruments"), instruments}})
                       .toJson());
    }

    /// One instrument, with `rest` on top.
    void setUpOne(const QString &model, QJsonObject rest = {}, double timeScale = 0)
    {
        rest.insert(QStringLiteral("model"), model);
        setUp({rest}, timeScale);
    }

    /// Opens the window, and waits until the first instrument is ready.
    void open(bool waits = true)
    {
        m_window = std::make_unique<qelworkbench::MainWindow>(m_line);
        m_window->show();
        if (waits)
            QTRY_VERIFY_WITH_TIMEOUT(find<QPushButton>("start")->isEnabled(), 20000);
    }

    /// A folder that is searched for drivers in addition.
    void addPlugins(const QString &folder)
    {
        m_line.plugins.append(folder);
    }

    void close()
    {
        m_window.reset();
    }

    qelworkbench::MainWindow *window() const
    {
        return m_window.get();
    }

    qelworkbench::Instrument *instrument(int row = 0) const
    {
        return m_window->instruments()->at(row);
    }

    QString folder() const
    {
        return m_line.folder;
    }

    /// The widget of that name in the pane that is shown.
    template<typename Widget>
    Widget *find(const char *name) const
    {
        const auto all = m_window->findChildren<Widget *>(QString::fromLatin1(name));
        for (Widget *widget : all) {
            if (widget->isVisible())
                return widget;
        }
        return all.value(0);
    }

    void click(const char *name) const
    {
        auto *widget = find<QWidget>(name);
        // Nobody clicks what is grey.
        QVERIFY2(QTest::qWaitFor([widget] { return widget->isEnabled(); }, patience), name);
        QTest::mouseClick(widget, Qt::LeftButton);
    }

private:
    QTemporaryDir m_folder;
    qelworkbench::CommandLine m_line;
    std::unique_ptr<qelworkbench::MainWindow> m_window;
};

/// What tests do on a bench of their own.
class BenchTest : public QObject
{
protected:
    static void startLibrary()
    {
        qelworkbench::Log::instance();
        const Bench bench; // its environment is what the drivers start with
        QCOMPARE(qel::frontend::startLibrary({QStringLiteral(DRIVER_FOLDER)}), QStringList());
    }

    int kept() const
    {
        return QDir(m_bench->folder()).entryList({QStringLiteral("*.json")}).size();
    }

    QString banner() const
    {
        return m_bench->find<QLabel>("bannerText")->text();
    }

    void start()
    {
        m_bench->click("start");
        QVERIFY(m_bench->instrument()->isBusy());
    }

    std::unique_ptr<Bench> m_bench;
};

#endif
