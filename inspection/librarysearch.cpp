#include "librarysearch.h"

#include <QtCore/QFile>
#include <QtCore/QFileInfo>
#include <QtCore/QSet>

#include <algorithm>
#include <cstring>
#include <memory>
#include <utility>
#include <vector>

#include <link.h>
#include <sys/auxv.h>

namespace qel::inspection {

namespace {

constexpr int maximumLibraries = 1000;
constexpr int maximumFolders = 1000;

// The cache of the dynamic loader: a header, entries, and texts that the entries point to.
struct CacheHeader
{
    char magic[20];
    quint32 entries;
    quint32 textSize;
    quint32 unused[5];
};

struct CacheEntry
{
    quint32 flags;
    quint32 name;
    quint32 path;
    quint32 system;
    quint64 hardware;
};

QString textAt(const QByteArray &bytes, quint32 offset)
{
    if (offset >= quint32(bytes.size()))
        return {};
    const int end = bytes.indexOf('\0', int(offset));
    return end < 0 ? QString() : QFile::decodeName(bytes.mid(int(offset), end - int(offset)));
}

QMultiHash<QString, QString> readSystemCache()
{
    QFile file(QStringLiteral("/etc/ld.so.cache"));
    if (!file.open(QIODevice::ReadOnly))
        return {};
    // Older systems put a table of an older form in front.
    QByteArray bytes = file.readAll();
    bytes.remove(0, std::max(0, bytes.indexOf("glibc-ld.so.cache1.1")));
    CacheHeader header = {};
    if (bytes.size() < int(sizeof header))
        return {};
    std::memcpy(&header, bytes.constData(), sizeof header);

    QMultiHash<QString, QString> cache;
    const quint64 room = (quint64(bytes.size()) - sizeof header) / sizeof(CacheEntry);
    for (quint64 i = 0; i < std::min<quint64>(header.entries, room); ++i) {
        CacheEntry entry = {};
        std::memcpy(&entry, bytes.constData() + sizeof header + i * sizeof entry, sizeof entry);
        cache.insert(textAt(bytes, entry.name), textAt(bytes, entry.path));
    }
    return cache;
}

QHash<QString, QString> loadedLibraries()
{
    QHash<QString, QString> loaded;
    const auto note = [](dl_phdr_info *info, size_t, void *data) {
        const QString path = QFile::decodeName(info->dlpi_name);
        static_cast<QHash<QString, QString> *>(data)->insert(path.section(QLatin1Char('/'), -1),
                                                             path);
        return 0;
    };
    dl_iterate_phdr(note, &loaded);
    loaded.remove(QString());
    return loaded;
}

// What "$LIB" stands for, "lib64" or "lib/x86_64-linux-gnu" for instance: the folder that the C
// library lies in, below / or /usr.
QString systemFolderName(const QHash<QString, QString> &loaded)
{
    QString folder = QFileInfo(loaded.value(QStringLiteral("libc.so.6"))).absolutePath();
    if (folder.startsWith(QLatin1String("/usr/")))
        folder.remove(0, 4);
    return folder.mid(1);
}

QStringList systemFolders()
{
    QStringList folders;
#if defined(__x86_64__)
    const QString triplet = QStringLiteral("x86_64-linux-gnu");
#elif defined(__aarch64__)
    const QString triplet = QStringLiteral("aarch64-linux-gnu");
#else
    const QString triplet;
#endif
    for (const char *folder : {"/lib/", "/usr/lib/"}) {
        if (!triplet.isEmpty())
            folders.append(QLatin1String(folder) + triplet);
    }
    return folders
        + QStringList{QStringLiteral("/lib64"), QStringLiteral("/usr/lib64"),
                      QStringLiteral("/lib"), QStringLiteral("/usr/lib")};
}

} // namespace

// A library under examination and who asked for it, which decides where its own needs are sought.
struct LibrarySearch::Node
{
    QString path;
    SharedLibrary library;
    const Node *neededBy = nullptr;

    // As the dynamic loader does it; `lib` is the name of the system's folder for libraries.
    QStringList expanded(const QStringList &folders, const QString &lib) const
    {
        const std::pair<QString, QString> words[] = {
            {QStringLiteral("ORIGIN"), QFileInfo(path).absolutePath()},
            {QStringLiteral("LIB"), lib},
            {QStringLiteral("PLATFORM"),
             QString::fromLatin1(reinterpret_cast<const char *>(::getauxval(AT_PLATFORM)))},
        };
        QStringList result;
        for (QString folder : folders) {
            for (const auto &[word, meaning] : words) {
                folder.replace(QStringLiteral("${%1}").arg(word), meaning);
                folder.replace(u'$' + word, meaning);
            }
            result.append(folder);
        }
        return result;
    }
};

LibrarySearch::LibrarySearch()
    : m_environmentFolders(
        qEnvironmentVariable("LD_LIBRARY_PATH").split(QLatin1Char(':'), Qt::SkipEmptyParts))
    , m_loaded(loadedLibraries())
    , m_cache(readSystemCache())
    , m_lib(systemFolderName(m_loaded))
{ }

QStringList LibrarySearch::foldersFor(const Node &neededBy) const
{
    QStringList folders;
    if (neededBy.library.runpath.isEmpty()) {
        // The older kind of entry counts for the needs of needs, too.
        for (const Node *node = &neededBy; node && folders.size() < maximumFolders;
             node = node->neededBy) {
            if (node->library.runpath.isEmpty())
                folders += node->expanded(node->library.rpath, m_lib);
        }
    }
    folders += m_environmentFolders;
    return folders + neededBy.expanded(neededBy.library.runpath, m_lib);
}

QString LibrarySearch::find(const QString &name, const Node &neededBy, SharedLibrary *found) const
{
    QStringList candidates;
    if (name.contains(QLatin1Char('/'))) {
        candidates = neededBy.expanded({name}, m_lib);
    } else {
        const auto ownFolders = foldersFor(neededBy);
        for (const QString &folder : ownFolders)
            candidates.append(folder + QLatin1Char('/') + name);
        candidates += m_cache.values(name);
        const auto defaultFolders = systemFolders();
        for (const QString &folder : defaultFolders)
            candidates.append(folder + QLatin1Char('/') + name);
    }
    // Like the loader, pass over files that are made for another kind of computer.
    for (const QString &candidate : std::as_const(candidates)) {
        if (!QFileInfo::exists(candidate))
            continue;
        const SharedLibraryResult result = readSharedLibrary(candidate);
        if (result.ok) {
            *found = result.library;
            return candidate;
        }
    }
    return {};
}

LibrarySearch::Result LibrarySearch::resolve(const QString &path,
                                             const SharedLibrary &library) const
{
    Result result;
    QHash<QString, Node> found; // by name
    std::vector<std::unique_ptr<Node>> nodes;
    nodes.push_back(std::make_unique<Node>(Node{path, library, nullptr}));
    for (size_t i = 0; i < nodes.size(); ++i) {
        const Node *node = nodes[i].get();
        for (const QString &name : node->library.needed) {
            if (found.contains(name) || found.size() >= maximumLibraries)
                continue;
            Node next = {m_loaded.value(name), {}, node};
            const bool isLoaded = !next.path.isEmpty();
            if (isLoaded)
                next.library = readSharedLibrary(next.path).library;
            else
                next.path = find(name, *node, &next.library);
            found.insert(name, next);
            result.dependencies.append({name, node->path, next.path});
            if (!isLoaded && !next.path.isEmpty())
                nodes.push_back(std::make_unique<Node>(next));
        }
    }
    for (const auto &node : nodes) {
        for (const SharedLibrary::VersionNeed &need : std::as_const(node->library.versions)) {
            const Node supplier = found.value(need.library);
            const QByteArrayList &defined = supplier.library.versionsDefined;
            if (!defined.isEmpty() && !defined.contains(need.version)) {
                result.missingVersions.append(
                    {supplier.path, QString::fromUtf8(need.version), node->path});
            }
        }
    }
    return result;
}

} // namespace qel::inspection
