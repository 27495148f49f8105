#include <qelinspection/inspection.h>
#include <qelinspection/loadtrial.h>

#include <qeldevices/devicebroker.h>
#include <qeldevices/qeldevices_global.h>

#include <QtCore/QElapsedTimer>
#include <QtCore/QRandomGenerator>
#include <QtCore/QTemporaryDir>
#include <QtTest/QtTest>

#include <cstring>
#include <functional>

#include <elf.h>
#include <sys/stat.h>
#include <unistd.h>

using namespace qel::inspection;

// Makes one broken file out of the bytes of a working driver.
using Breaking = std::function<void(QByteArray *)>;
Q_DECLARE_METATYPE(Breaking)

class TestInspection : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void agreesWithLoading_data();
    void agreesWithLoading();
    void findsDependencies_data();
    void findsDependencies();
    void survivesTruncation();
    void survivesMutation();
    void reportsUnreadable();
    void inspectsFolder();
    void knowsFoldersOfInit();
    void seesLikelyShadowed_data();
    void seesLikelyShadowed();
    void survivesLoading();

private:
    QVector<LoadOutcome> load(const QStringList &files) const;

    QByteArray m_driver;
};

static QString builtFile(const QString &name)
{
    return QStringLiteral(FILES "/") + name;
}

static QByteArray readFile(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

static bool writeFile(const QString &path, const QByteArray &bytes)
{
    // To empty a file before it is written is slow on some file systems.
    QFile file(path);
    return file.open(QIODevice::ReadWrite) && file.write(bytes) == bytes.size()
        && file.resize(bytes.size());
}

static QStringList codes(const FileReport &report)
{
    QStringList result;
    for (const FileFinding &finding : report.findings)
        result.append(finding.code);
    return result;
}

QVector<LoadOutcome> TestInspection::load(const QStringList &files) const
{
    return tryLoading(files, QCoreApplication::applicationFilePath(), {QStringLiteral("load")},
                      std::chrono::seconds(2));
}

void TestInspection::initTestCase()
{
    m_driver = readFile(builtFile(QStringLiteral("driver.so")));
    QVERIFY(m_driver.size() > 1000);
}

static Breaking set(int offset, const QByteArray &bytes)
{
    return [=](QByteArray *file) { file->replace(offset, bytes.size(), bytes); };
}

// Bytes at a distance from the start of Qt's metadata.
static Breaking setMetaData(int distance, const QByteArray &bytes)
{
    return [=](QByteArray *file) {
        file->replace(file->indexOf("QTMETADATA !") + distance, bytes.size(), bytes);
    };
}

// Every place that says `from`, inside or outside the metadata, or both.
enum Where { Inside = 1, Outside = 2, Everywhere = 3 };
static Breaking renamed(const QByteArray &from, const QByteArray &to, Where where = Everywhere)
{
    return [=](QByteArray *file) {
        const int metaData = file->indexOf("QTMETADATA !");
        for (int at = file->indexOf(from); at >= 0; at = file->indexOf(from, at + 1)) {
            const bool isInside = at > metaData && at < metaData + 300;
            if (where & (isInside ? Inside : Outside))
                file->replace(at, to.size(), to);
        }
    };
}

// Keeps the first only, as linkers do not agree on their order, and Qt stops at the one it seeks.
static void cutSections(QByteArray *file)
{
    Elf64_Ehdr header;
    std::memcpy(&header, file->constData(), sizeof header);
    file->truncate(int(header.e_shoff) + header.e_shentsize);
}

static void growLastSegment(QByteArray *file)
{
    Elf64_Ehdr header;
    std::memcpy(&header, file->constData(), sizeof header);
    for (int i = header.e_phnum - 1; i >= 0; --i) {
        const int at = int(header.e_phoff) + i * int(sizeof(Elf64_Phdr));
        Elf64_Phdr segment;
        std::memcpy(&segment, file->constData() + at, sizeof segment);
        if (segment.p_type != PT_LOAD)
            continue;
        segment.p_filesz = segment.p_memsz = quint64(file->size());
        std::memcpy(file->data() + at, &segment, sizeof segment);
        return;
    }
}

void TestInspection::agreesWithLoading_data()
{
    QTest::addColumn<QString>("source");
    QTest::addColumn<Breaking>("breaking");
    QTest::addColumn<QString>("code");
    QTest::addColumn<bool>("isProblem");
    QTest::addColumn<QString>("mention");

    const QString driver = QStringLiteral("driver.so");
    const Breaking none = [](QByteArray *) {};
    const auto row = [&](const char *name, const Breaking &breaking, const char *code,
                         bool isProblem, const char *mention, const QString &source = QString()) {
        QTest::newRow(name) << (source.isEmpty() ? driver : source) << breaking
                            << QString::fromLatin1(code) << isProblem
                            << QString::fromLatin1(mention);
    };
    const auto problem = [&](const char *name, const Breaking &breaking, const char *code,
                             const char *mention, const QString &source = QString()) {
        row(name, breaking, code, true, mention, source);
    };
    const auto replaced = [](const QByteArray &bytes) {
        return [=](QByteArray *file) { *file = bytes; };
    };
    const QByteArray rightId = QelDevicePlugin_iid;
    const QByteArray otherId = QByteArray(rightId).replace("1.0", "2.0");

    row("working", none, "", false, "");
    row("older Qt", setMetaData(14, "\x0e"), "", false, "");
    row("debug build", setMetaData(15, "\x01"), "", false, "");
    row(
        "lacks two keys",
        [](QByteArray *file) {
            renamed("manufacturer", "manufacturex", Inside)(file);
            renamed("curl", "curx", Inside)(file);
        },
        "missing-metadata", false, "\"manufacturer\", \"url\"");
    row("version is no string", renamed("version\x63", "version\x83\x01\x02\x03", Inside),
        "missing-metadata", false, "\"version\"");
    row("other id in metadata only", renamed(rightId, otherId, Inside), "wrong-interface", false,
        "com.xelvra.DevicePlugin/2.0");

    problem("other id", renamed(rightId, otherId), "wrong-interface",
            "com.xelvra.DevicePlugin/2.0");
    problem("plugin of another kind", none, "wrong-interface", "org.example.Printer/1.0",
            QStringLiteral("otherinterface.so"));
    problem("other id in code only", renamed(rightId, otherId, Outside), "interface-not-listed",
            "does not implement");
    problem("newer Qt", setMetaData(14, "\x10"), "other-qt", "built for Qt 5.16");
    problem("Qt 6", setMetaData(13, QByteArray("\x06\x00", 2)), "other-qt", "built for Qt 6.0");
    problem("Qt 4", setMetaData(13, "\x04"), "other-qt", "built for Qt 4.15");
    problem("metadata of Qt 6", none, "other-qt", "built for Qt 6", QStringLiteral("newerqt.so"));
    problem("metadata of unknown form", setMetaData(12, "\x01"), "not-a-qt-plugin", "unknown form");
    problem("metadata without signature", setMetaData(0, "X"), "not-a-qt-plugin", "unknown form");
    problem("metadata that is no map", setMetaData(16, "\x01"), "not-a-qt-plugin", "damaged");
    problem("metadata of absurd depth", setMetaData(16, QByteArray(150, '\x81')), "not-a-qt-plugin",
            "damaged");
    problem("metadata of absurd length", setMetaData(16, "\xbf\x02\x7b\x7f\xff\xff\xff\xff"),
            "not-a-qt-plugin", "damaged");
    problem("library", none, "not-a-qt-plugin", "not a Qt plugin",
            QStringLiteral("libqelinner.so"));

    problem("32-bit", set(EI_CLASS, "\x01"), "other-architecture", "32-bit, little-endian");
    problem("big-endian", set(EI_DATA, "\x02"), "other-architecture", "big-endian");
    problem("other processor", set(18, QByteArray("\xb7\x00", 2)), "other-architecture",
            "64-bit ARM (64-bit, little-endian)");
    problem("unnamed processor", set(18, "\x12\x34"), "other-architecture", "kind 13330");
    problem("Windows", replaced("MZ\x90"), "other-architecture", "Windows");
    problem("macOS", replaced("\xcf\xfa\xed\xfe...."), "other-architecture", "macOS");

    problem("text", replaced("#!/bin/sh\n"), "not-a-shared-library", "not a shared library");
    problem("program", set(16, "\x02"), "not-a-shared-library", "a program");
    problem("program of today", none, "not-a-shared-library", "a program",
            QCoreApplication::applicationFilePath());
    problem("object file", set(16, "\x01"), "not-a-shared-library", "never linked");
    problem("empty", replaced({}), "damaged", "empty");
    problem(
        "header only", [](QByteArray *file) { file->truncate(20); }, "damaged", "header");
    problem("sections cut off", cutSections, "damaged", "sections");
    problem("segment beyond the end", growLastSegment, "damaged", "says that it has more");
    problem("missing library", renamed("libQt5Core.so.5", "libQt5Kore.so.5"), "missing-library",
            "needs the library libQt5Kore.so.5, which");
    problem("newer version of a library",
            renamed(QByteArray("\0Qt_5\0", 6), QByteArray("\0Qt_9\0", 6)), "older-library",
            "\"Qt_9\"");
}

void TestInspection::agreesWithLoading()
{
    QFETCH(const QString, source);
    QFETCH(const Breaking, breaking);
    QFETCH(const QString, code);
    QFETCH(const bool, isProblem);
    QFETCH(const QString, mention);

    const QTemporaryDir folder;
    const QString path = folder.filePath(QStringLiteral("plugin.txt"));
    QByteArray bytes = readFile(QFileInfo(source).isAbsolute() ? source : builtFile(source));
    breaking(&bytes);
    QVERIFY(writeFile(path, bytes));

    const FileReport report = inspectFile(path);
    QCOMPARE(codes(report), code.isEmpty() ? QStringList() : QStringList{code});
    QCOMPARE(report.verdict(),
             code.isEmpty()  ? Verdict::Usable
                 : isProblem ? Verdict::NotUsable
                             : Verdict::UsableWithWarnings);
    if (!code.isEmpty()) {
        QVERIFY2(report.findings.first().text.english().contains(mention),
                 qPrintable(report.findings.first().text.english()));
        QVERIFY(!report.findings.first().remedy.english().isEmpty());
    }
    const LoadOutcome outcome = load({path}).first();
    QVERIFY2((outcome.kind == LoadOutcome::Kind::Loaded) == !isProblem,
             qPrintable(outcome.reason.english()));
}

void TestInspection::findsDependencies_data()
{
    QTest::addColumn<QStringList>("helpers");
    QTest::addColumn<QString>("environment");
    QTest::addColumn<QStringList>("missing");

    const QString helper = QStringLiteral("libqelhelper.so");
    const QString inner = QStringLiteral("libqelinner.so");
    QTest::newRow("none") << QStringList() << QString() << QStringList{helper};
    QTest::newRow("one, not its own")
        << QStringList{QStringLiteral("helpers/") + helper} << QString() << QStringList{inner};
    QTest::newRow("both") << QStringList{QStringLiteral("helpers/") + helper,
                                         QStringLiteral("helpers/") + inner}
                          << QString() << QStringList();
    // "$LIB" is the folder of libraries below /usr.
    const QString lib =
        QLibraryInfo::location(QLibraryInfo::LibrariesPath).section(QLatin1Char('/'), 2)
        + QLatin1Char('/');
    QTest::newRow("in the system's folder names")
        << QStringList{lib + helper, lib + inner} << QString() << QStringList();
    QTest::newRow("from the environment")
        << QStringList{QStringLiteral("else/") + helper, QStringLiteral("else/") + inner}
        << QStringLiteral("else") << QStringList();
    QTest::newRow("out of reach") << QStringList{QStringLiteral("else/") + helper,
                                                 QStringLiteral("else/") + inner}
                                  << QString() << QStringList{helper};
    QTest::newRow("first found is of another kind")
        << QStringList{QStringLiteral("foreign/") + helper, QStringLiteral("helpers/") + helper,
                       QStringLiteral("helpers/") + inner}
        << QStringLiteral("foreign") << QStringList();
}

void TestInspection::findsDependencies()
{
    QFETCH(const QStringList, helpers);
    QFETCH(const QString, environment);
    QFETCH(const QStringList, missing);

    const QTemporaryDir folder;
    const QString path = folder.filePath(QStringLiteral("needy.so"));
    QVERIFY(QFile::copy(builtFile(QStringLiteral("needy.so")), path));
    for (const QString &helper : helpers) {
        QVERIFY(QDir(folder.path()).mkpath(QFileInfo(helper).path()));
        QByteArray bytes = readFile(builtFile(QFileInfo(helper).fileName()));
        if (helper.startsWith(QLatin1String("foreign")))
            set(18, QByteArray("\xb7\x00", 2))(&bytes);
        QVERIFY(writeFile(folder.filePath(helper), bytes));
    }
    const QByteArray before = qgetenv("LD_LIBRARY_PATH");
    if (!environment.isEmpty())
        qputenv("LD_LIBRARY_PATH", QFile::encodeName(folder.filePath(environment)) + ':' + before);
    const FileReport report = inspectFile(path);
    const LoadOutcome outcome = load({path}).first();
    if (before.isEmpty())
        qunsetenv("LD_LIBRARY_PATH");
    else
        qputenv("LD_LIBRARY_PATH", before);

    QStringList found;
    for (const LibraryDependency &dependency : report.dependencies) {
        if (dependency.path.isEmpty())
            found.append(dependency.name);
    }
    QCOMPARE(found, missing);
    QCOMPARE(report.verdict(), missing.isEmpty() ? Verdict::Usable : Verdict::NotUsable);
    QVERIFY2((outcome.kind == LoadOutcome::Kind::Loaded) == missing.isEmpty(),
             qPrintable(outcome.reason.english()));
}

void TestInspection::survivesTruncation()
{
    const QTemporaryDir folder;
    const QString path = folder.filePath(QStringLiteral("short.so"));
    QVERIFY(writeFile(path, m_driver));
    for (int length = m_driver.size() - 1; length >= 0; --length) {
        QCOMPARE(::truncate(QFile::encodeName(path).constData(), length), 0);
        const FileReport report = inspectFile(path);
        QVERIFY2(report.verdict() == Verdict::NotUsable && report.findings.size() == 1,
                 qPrintable(QString::number(length)));
    }
}

namespace {

// Breaks files in the places that matter, the same way on every run.
class Mutator
{
public:
    explicit Mutator(const QByteArray &file)
        : m_file(file)
    {
        Elf64_Ehdr header;
        std::memcpy(&header, file.constData(), sizeof header);
        addRegion(0, sizeof header);
        addRegion(header.e_phoff, header.e_phnum * sizeof(Elf64_Phdr));
        addRegion(header.e_shoff, header.e_shnum * sizeof(Elf64_Shdr));
        for (int i = 0; i < header.e_shnum; ++i) {
            Elf64_Shdr section;
            std::memcpy(&section, file.constData() + header.e_shoff + i * sizeof section,
                        sizeof section);
            if (section.sh_type == SHT_DYNAMIC || section.sh_type == SHT_STRTAB
                || section.sh_type == SHT_GNU_verneed)
                addRegion(section.sh_offset, section.sh_size);
        }
        addRegion(quint64(file.indexOf("QTMETADATA !")), 200);
    }

    QByteArray next()
    {
        QByteArray file = m_file;
        for (int i = m_random.bounded(1, 6); i > 0; --i) {
            const Region region = m_regions.at(m_random.bounded(m_regions.size()));
            const int at = region.start + m_random.bounded(region.size);
            const QByteArray bytes = value(at);
            file.replace(at, bytes.size(), bytes);
        }
        if (m_random.bounded(8) == 0)
            file.truncate(m_random.bounded(file.size()));
        return file;
    }

private:
    struct Region
    {
        int start;
        int size;
    };

    void addRegion(quint64 start, quint64 size)
    {
        m_regions.append({int(start), int(size)});
    }

    QByteArray value(int at)
    {
        const int width = 1 << m_random.bounded(4);
        const quint64 values[] = {0,
                                  1,
                                  ~quint64(0),
                                  quint64(1) << 63,
                                  quint64(m_file.size()),
                                  quint64(m_file.size()) - 1,
                                  quint64(at),
                                  m_random.generate64(),
                                  quint64(uchar(m_file.at(at))) ^ (1u << m_random.bounded(8))};
        const quint64 chosen = values[m_random.bounded(int(std::size(values)))];
        return {reinterpret_cast<const char *>(&chosen), width};
    }

    QByteArray m_file;
    QVector<Region> m_regions;
    QRandomGenerator m_random{20201};
};

} // namespace

void TestInspection::survivesMutation()
{
    const QTemporaryDir folder;
    const QString path = folder.filePath(QStringLiteral("mutant.so"));
    Mutator mutator(m_driver);
    QSet<QString> seen;
    QElapsedTimer clock;
    for (int i = 0; i < 5000; ++i) {
        QVERIFY(writeFile(path, mutator.next()));
        clock.start();
        const FileReport report = inspectFile(path);
        QVERIFY2(clock.elapsed() < 5000, qPrintable(QString::number(i)));
        for (const FileFinding &finding : report.findings) {
            seen.insert(finding.code);
            QVERIFY2(!finding.text.english().isEmpty() && !finding.remedy.english().isEmpty(),
                     qPrintable(finding.code));
        }
    }
    // Otherwise the corpus would say nothing about what lies behind the first checks.
    for (const char *code :
         {"damaged", "other-architecture", "not-a-shared-library", "not-a-qt-plugin", "other-qt",
          "wrong-interface", "missing-metadata", "missing-library", "older-library"})
        QVERIFY2(seen.contains(QLatin1String(code)), code);
}

void TestInspection::reportsUnreadable()
{
    const QTemporaryDir folder;
    const QByteArray root = QFile::encodeName(folder.path());
    const QString file = folder.filePath(QStringLiteral("driver.so"));
    const QString closed = folder.filePath(QStringLiteral("closed"));
    QVERIFY(writeFile(file, m_driver) && QDir().mkdir(closed));
    QVERIFY(writeFile(closed + QStringLiteral("/inner.so"), m_driver));
    QCOMPARE(::chmod(root.constData(), 0755), 0);
    QCOMPARE(::chmod(QFile::encodeName(file).constData(), 0), 0);
    QCOMPARE(::chmod(QFile::encodeName(closed).constData(), 0), 0);

    // The superuser may read everything.
    const bool isSuperuser = ::geteuid() == 0;
    if (isSuperuser)
        QCOMPARE(::setresuid(65534, 65534, 0), 0);
    const FolderReport report = inspectFolder(folder.path());
    const FileReport inner = inspectFile(closed + QStringLiteral("/inner.so"));
    if (isSuperuser)
        QCOMPARE(::setresuid(0, 0, 0), 0);
    QCOMPARE(::chmod(QFile::encodeName(closed).constData(), 0700), 0);

    QCOMPARE(report.files.size(), 2);
    for (const FileReport &entry : report.files) {
        QCOMPARE(codes(entry), QStringList{QStringLiteral("unreadable")});
        QCOMPARE(entry.verdict(), Verdict::NotUsable);
    }
    QCOMPARE(report.files.at(0).path, file);
    QCOMPARE(report.files.at(1).path, closed);
    QCOMPARE(codes(inner), QStringList{QStringLiteral("unreadable")});
}

void TestInspection::inspectsFolder()
{
    const QTemporaryDir folder;
    const QDir dir(folder.path());
    for (const char *path : {"deep/er", ".hidden", "elsewhere"})
        QVERIFY(dir.mkpath(QString::fromLatin1(path)));
    for (const char *path : {"a.so", "deep/er/b.so", ".c.so", ".hidden/d.so"})
        QVERIFY(writeFile(dir.filePath(QString::fromLatin1(path)), m_driver));
    for (const char *path : {"README", ".keep"})
        QVERIFY(writeFile(dir.filePath(QString::fromLatin1(path)), "text"));
    const auto link = [&](const char *target, const char *name) {
        return ::symlink(target, QFile::encodeName(dir.filePath(QLatin1String(name))).constData())
            == 0;
    };
    QVERIFY(link("a.so", "file-link") && link("deep", "folder-link") && link("gone", "lost-link"));
    QVERIFY(::mkfifo(QFile::encodeName(dir.filePath(QStringLiteral("fifo"))).constData(), 0600)
            == 0);

    const FolderReport report = inspectFolder(folder.path());
    QVERIFY(report.exists);
    QMap<QString, QString> found;
    for (const FileReport &file : report.files)
        found.insert(dir.relativeFilePath(file.path), codes(file).join(QLatin1Char(' ')));
    const QMap<QString, QString> expected{
        {QStringLiteral("README"), QStringLiteral("not-a-shared-library")},
        {QStringLiteral("a.so"), QString()},
        {QStringLiteral("deep/er/b.so"), QString()},
        {QStringLiteral("file-link"), QString()},
        {QStringLiteral(".c.so"), QStringLiteral("hidden")},
        {QStringLiteral(".hidden/d.so"), QStringLiteral("hidden")},
        {QStringLiteral("folder-link"), QStringLiteral("linked-folder")},
        {QStringLiteral("lost-link"), QStringLiteral("dangling-link")}};
    QCOMPARE(found, expected);

    // The first ones are those that the library tries, in its order.
    const int before = qel::devices::DeviceBroker::LOADERS.size();
    qel::devices::DeviceBroker::loadAllDevicePlugins(folder.path());
    const int count = qel::devices::DeviceBroker::LOADERS.size() - before;
    QCOMPARE(count, 4);
    for (int i = 0; i < count; ++i) {
        QCOMPARE(qel::devices::DeviceBroker::LOADERS.at(before + i)->fileName(),
                 QFileInfo(report.files.at(i).path).canonicalFilePath());
    }
    QVERIFY(!inspectFolder(dir.filePath(QStringLiteral("gone"))).exists);
}

static QStringList loadingMessages;

void TestInspection::knowsFoldersOfInit()
{
    loadingMessages.clear();
    const auto previous =
        qInstallMessageHandler([](QtMsgType, const QMessageLogContext &, const QString &message) {
            if (message.startsWith(QLatin1String("Loading device plugins from")))
                loadingMessages.append(message.section(QLatin1Char('"'), 1, 1));
        });
    qel::devices::init();
    qInstallMessageHandler(previous);
    QCOMPARE(pluginFolders(), loadingMessages);
}

void TestInspection::seesLikelyShadowed_data()
{
    QTest::addColumn<QStringList>("files"); // "PATH[=RESOURCE-ID]"; "!" before what is not usable
    QTest::addColumn<QVector<int>>("shadowed");

    const auto row = [](const char *name, const QStringList &files, const QVector<int> &shadowed) {
        QTest::newRow(name) << files << shadowed;
    };
    row("same id", {QStringLiteral("/a/x.so=1"), QStringLiteral("/b/y.so=1")}, {0});
    row("other ids", {QStringLiteral("/a/x.so=1"), QStringLiteral("/b/x.so=2")}, {});
    row("same name, one without id", {QStringLiteral("/a/x.so=1"), QStringLiteral("/b/x.so")}, {0});
    row("other names, no ids", {QStringLiteral("/a/x.so"), QStringLiteral("/b/y.so")}, {});
    row("three", {QStringLiteral("/a=1"), QStringLiteral("/b=2"), QStringLiteral("/c=1")}, {0});
    row("the later one is not usable", {QStringLiteral("/a/x.so=1"), QStringLiteral("!/b/x.so=1")},
        {});
}

void TestInspection::seesLikelyShadowed()
{
    QFETCH(const QStringList, files);
    QFETCH(const QVector<int>, shadowed);

    QVector<FileReport> reports(files.size());
    QVector<FileReport *> pointers;
    for (int i = 0; i < files.size(); ++i) {
        QString path = files.at(i).section(QLatin1Char('='), 0, 0);
        const QString id = files.at(i).section(QLatin1Char('='), 1);
        if (path.startsWith(QLatin1Char('!')))
            reports[i].addProblem(QStringLiteral("damaged"), QString(), QString());
        reports[i].path = path.remove(QLatin1Char('!'));
        if (!id.isEmpty())
            reports[i].plugin.metaData.insert(QStringLiteral("resource-id"), id);
        pointers.append(&reports[i]);
    }
    markLikelyShadowed(pointers);
    for (int i = 0; i < files.size(); ++i)
        QCOMPARE(reports.at(i).has(QStringLiteral("likely-shadowed")), shadowed.contains(i));
}

void TestInspection::survivesLoading()
{
    const QTemporaryDir folder;
    const QStringList names{QStringLiteral("alpha-1.so"),   QStringLiteral("crash.so"),
                            QStringLiteral("none.so"),      QStringLiteral("hang.so"),
                            QStringLiteral("beta.so"),      QStringLiteral("exit.so"),
                            QStringLiteral("text.so"),      QStringLiteral("crashlater.so"),
                            QStringLiteral("hanglater.so"), QStringLiteral("alpha-2.so")};
    QStringList files;
    QVector<FileReport> reports;
    for (const QString &name : names) {
        files.append(folder.filePath(name));
        const bool isText = name.startsWith(QLatin1String("text"));
        QVERIFY(writeFile(files.constLast(), isText ? QByteArray("text") : m_driver));
        reports.append({files.constLast(), {}, {}, {}, {}});
    }
    QVector<FileReport *> pointers;
    for (FileReport &report : reports)
        pointers.append(&report);
    addOutcomes(load(files), pointers);

    const QStringList expected{QStringLiteral("shadowed"),
                               QStringLiteral("does-not-load"),
                               QStringLiteral("no-driver"),
                               QStringLiteral("does-not-load"),
                               QString(),
                               QStringLiteral("does-not-load"),
                               QStringLiteral("does-not-load"),
                               QStringLiteral("does-not-list"),
                               QStringLiteral("does-not-list"),
                               QString()};
    for (int i = 0; i < names.size(); ++i)
        QCOMPARE(codes(reports.at(i)).join(QLatin1Char(' ')), expected.at(i));
    QVERIFY(reports.at(0).findings.first().text.english().contains(files.constLast()));
    QVERIFY(reports.at(1).findings.first().text.english().contains(QLatin1String("Aborted")));
    QVERIFY(reports.at(3).findings.first().text.english().contains(QLatin1String("2000 ms")));
    QVERIFY(reports.at(5).findings.first().text.english().contains(QLatin1String("exit(3)")));
    QCOMPARE(reports.at(4).drivers, QStringList{QStringLiteral("beta")});
    QVERIFY(
        reports.at(7).findings.first().text.english().contains(QLatin1String("\"crashlater\"")));
    QCOMPARE(reports.constLast().drivers, QStringList{QStringLiteral("alpha")});
}

int main(int argc, char *argv[])
{
    QCoreApplication application(argc, argv);
    if (application.arguments().value(1) == QLatin1String("load"))
        return serveLoadTrial();
    TestInspection test;
    return QTest::qExec(&test, argc, argv);
}

#include "tst_inspection.moc"
