#include "elffile.h"

#include <QtCore/QFile>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <optional>
#include <type_traits>

#include <fcntl.h>
#include <link.h>
#include <sys/stat.h>
#include <unistd.h>

// Of the program or library that this is linked into.
extern "C" __attribute__((visibility("hidden"))) const ElfW(Ehdr) __ehdr_start;

namespace qel::inspection {

namespace {

using Header = ElfW(Ehdr);
using ProgramHeader = ElfW(Phdr);
using SectionHeader = ElfW(Shdr);
using DynamicEntry = ElfW(Dyn);

// Far above what linkers write, low enough that a hostile file costs neither time nor memory.
constexpr quint64 maximumText = 4096;
constexpr quint64 maximumSearchPath = 65536;
constexpr quint64 maximumMetaData = 16 << 20;
constexpr quint64 maximumEntries = 65536;
constexpr int maximumNeeded = 1024;
constexpr int maximumFolders = 256;
constexpr quint64 maximumScan = 512 << 20;

// Every access to the file goes through here and is checked against its size. Reading rather than
// mapping, because a mapped file that shrinks meanwhile would end the process.
class FileBytes
{
public:
    explicit FileBytes(const QString &path);
    ~FileBytes();
    Q_DISABLE_COPY(FileBytes)

    int error() const
    {
        return m_error;
    }
    bool isRegular() const
    {
        return m_regular;
    }
    quint64 size() const
    {
        return m_size;
    }
    bool contains(quint64 offset, quint64 length) const;
    bool read(quint64 offset, quint64 length, void *to) const;
    QByteArray bytes(quint64 offset, quint64 length) const;
    std::optional<QByteArray> text(quint64 offset, quint64 limit = maximumText) const;

    template<typename Record>
    bool read(quint64 offset, Record *to) const
    {
        static_assert(std::is_trivially_copyable_v<Record>);
        return read(offset, sizeof(Record), to);
    }

private:
    int m_descriptor = -1;
    int m_error = 0;
    bool m_regular = false;
    quint64 m_size = 0;
};

FileBytes::FileBytes(const QString &path)
{
    // Asked before opening as well: to open a device file can have effects of its own.
    struct stat status = {};
    const QByteArray name = QFile::encodeName(path);
    if (::stat(name.constData(), &status) != 0) {
        m_error = errno;
        return;
    }
    m_regular = S_ISREG(status.st_mode);
    if (!m_regular)
        return;
    m_descriptor = ::open(name.constData(), O_RDONLY | O_NONBLOCK | O_CLOEXEC);
    if (m_descriptor < 0 || ::fstat(m_descriptor, &status) != 0) {
        m_error = errno;
        return;
    }
    m_regular = S_ISREG(status.st_mode);
    m_size = quint64(status.st_size);
}

FileBytes::~FileBytes()
{
    if (m_descriptor >= 0)
        ::close(m_descriptor);
}

bool FileBytes::contains(quint64 offset, quint64 length) const
{
    return offset <= m_size && length <= m_size - offset;
}

bool FileBytes::read(quint64 offset, quint64 length, void *to) const
{
    if (!contains(offset, length))
        return false;
    auto *target = static_cast<char *>(to);
    while (length > 0) {
        const ssize_t count = ::pread(m_descriptor, target, length, off_t(offset));
        if (count < 0 && errno == EINTR)
            continue;
        if (count <= 0)
            return false;
        target += count;
        offset += quint64(count);
        length -= quint64(count);
    }
    return true;
}

QByteArray FileBytes::bytes(quint64 offset, quint64 length) const
{
    if (!contains(offset, length) || length > maximumMetaData)
        return {};
    QByteArray result(int(length), '\0');
    return read(offset, length, result.data()) ? result : QByteArray();
}

std::optional<QByteArray> FileBytes::text(quint64 offset, quint64 limit) const
{
    if (offset >= m_size)
        return std::nullopt;
    const QByteArray start = bytes(offset, std::min(limit, m_size - offset));
    const int end = start.indexOf('\0');
    return end < 0 ? std::nullopt : std::make_optional(start.left(end));
}

FileFinding problem(const char *code, const Sentence &text, const Sentence &remedy)
{
    return {FileFinding::Severity::Problem, QString::fromLatin1(code), text, remedy};
}

FileFinding damaged(const Sentence &what)
{
    return problem("damaged", {"The file is damaged: %1.", {what}}, "Copy or build it again.");
}

FileFinding notALibrary(const Sentence &text)
{
    return problem("not-a-shared-library", text,
                   "Move it out of the plugin folder: every file there is tried as a "
                   "driver.");
}

struct MachineName
{
    int machine;
    const char *name;
};

constexpr MachineName machineNames[] = {
    {EM_386, "32-bit x86"},     {EM_X86_64, "x86-64"}, {EM_ARM, "32-bit ARM"},
    {EM_AARCH64, "64-bit ARM"}, {EM_RISCV, "RISC-V"},  {EM_PPC64, "64-bit PowerPC"},
    {EM_S390, "IBM S/390"},     {EM_MIPS, "MIPS"},
};

Sentence machineName(int machine)
{
    const auto *known = std::find_if(std::begin(machineNames), std::end(machineNames),
                                     [=](const MachineName &n) { return n.machine == machine; });
    return known == std::end(machineNames)
        ? Sentence("a processor of kind %1", {QString::number(machine)})
        : Sentence(QString::fromLatin1(known->name));
}

// The kind of computer that is identified by the first bytes, which have one layout for all kinds.
struct Identity
{
    unsigned char ident[EI_NIDENT];
    quint16 type;
    quint16 machine;
};

// This program's own identity tells what this computer takes.
// As the linker has laid it out in memory: the program's file may be out of reach.
Identity ownIdentity()
{
    Identity own;
    std::memcpy(&own, &__ehdr_start, sizeof own);
    return own;
}

class LibraryReader
{
public:
    explicit LibraryReader(const QString &path)
        : m_file(path)
    { }

    SharedLibraryResult read();

private:
    using Failure = std::optional<FileFinding>;

    Failure checkFile();
    Failure checkForeignFormats();
    Failure checkIdentity();
    Failure readHeader();
    Failure readSegments();
    Failure readDynamicTable();
    Failure readSections();
    Failure readSection(const SectionHeader &section, const QByteArray &name);
    void readVersionNeeds(const SectionHeader &section, quint64 names);
    void readVersionDefinitions(const SectionHeader &section, quint64 names);
    std::optional<quint64> fileOffset(quint64 address) const;
    QStringList folders(quint64 nameOffset) const;

    FileBytes m_file;
    Header m_header = {};
    ProgramHeader m_dynamic = {};
    QVector<SectionHeader> m_sections;
    bool m_seenNeeds = false;
    bool m_seenDefinitions = false;
    SharedLibrary m_library;
};

LibraryReader::Failure LibraryReader::checkFile()
{
    if (m_file.error() == ENOENT || m_file.error() == ENOTDIR) {
        return problem("not-found", "There is no such file.", "Check the path.");
    }
    if (m_file.error() != 0) {
        return problem(
            "unreadable", {"The file cannot be read: %1.", {qt_error_string(m_file.error())}},
            "Let the user who runs the application read the file and enter its folders.");
    }
    if (!m_file.isRegular())
        return notALibrary("It is not an ordinary file.");
    if (m_file.size() == 0)
        return damaged("it is empty");
    return std::nullopt;
}

LibraryReader::Failure LibraryReader::checkForeignFormats()
{
    const QByteArray magic = m_file.bytes(0, std::min<quint64>(m_file.size(), SELFMAG));
    if (magic == QByteArray(ELFMAG, SELFMAG))
        return std::nullopt;
    const char *foreign = "It is made for %1.";
    const char *remedy = "Install the driver that is made for Linux.";
    if (magic.startsWith("MZ"))
        return problem("other-architecture", {foreign, {QStringLiteral("Windows")}}, remedy);
    for (const char *apple : {"\xcf\xfa\xed\xfe", "\xca\xfe\xba\xbe"}) {
        if (magic == QByteArray(apple, SELFMAG))
            return problem("other-architecture", {foreign, {QStringLiteral("macOS")}}, remedy);
    }
    return notALibrary("It is not a shared library.");
}

LibraryReader::Failure LibraryReader::checkIdentity()
{
    Identity identity = {};
    if (!m_file.read(0, &identity))
        return damaged("it ends within its header");
    const Identity own = ownIdentity();
    if (identity.ident[EI_DATA] != own.ident[EI_DATA])
        identity.machine = quint16(identity.machine << 8 | identity.machine >> 8);
    const bool sameKind = identity.ident[EI_CLASS] == own.ident[EI_CLASS]
        && identity.ident[EI_DATA] == own.ident[EI_DATA] && identity.machine == own.machine;
    if (!sameKind) {
        const bool wide = identity.ident[EI_CLASS] == ELFCLASS64;
        const bool bigEndian = identity.ident[EI_DATA] == ELFDATA2MSB;
        return problem(
            "other-architecture",
            {"It is made for another kind of computer: %1 (%2-bit, %3-endian); this one takes %4.",
             {machineName(identity.machine), QString::number(wide ? 64 : 32),
              bigEndian ? QStringLiteral("big") : QStringLiteral("little"),
              machineName(own.machine)}},
            {"Install the driver that is made for %1.", {machineName(own.machine)}});
    }
    const int abi = identity.ident[EI_OSABI];
    if (identity.ident[EI_VERSION] != EV_CURRENT || (abi != ELFOSABI_SYSV && abi != ELFOSABI_LINUX))
        return damaged("its header names an unknown format");
    if (identity.type == ET_EXEC)
        return notALibrary("It is a program, not a shared library.");
    if (identity.type == ET_REL)
        return notALibrary("It is an object file that was never linked.");
    if (identity.type != ET_DYN)
        return notALibrary("It is not a shared library.");
    return std::nullopt;
}

LibraryReader::Failure LibraryReader::readHeader()
{
    if (!m_file.read(0, &m_header))
        return damaged("it ends within its header");
    if (m_header.e_phentsize != sizeof(ProgramHeader) || m_header.e_phnum == 0
        || m_header.e_phnum == PN_XNUM)
        return damaged("its header does not say what to load");
    const bool hasSections = m_header.e_shoff != 0 && m_header.e_shnum != 0;
    if (hasSections && m_header.e_shentsize != sizeof(SectionHeader))
        return damaged("its header describes no valid table of sections");
    return std::nullopt;
}

LibraryReader::Failure LibraryReader::readSegments()
{
    bool hasDynamic = false;
    for (int i = 0; i < m_header.e_phnum; ++i) {
        ProgramHeader segment = {};
        if (!m_file.contains(m_header.e_phoff, quint64(i + 1) * sizeof segment)
            || !m_file.read(m_header.e_phoff + quint64(i) * sizeof segment, &segment))
            return damaged("it ends before the table of what to load");
        if (segment.p_type != PT_LOAD && segment.p_type != PT_DYNAMIC)
            continue;
        if (!m_file.contains(segment.p_offset, segment.p_filesz)) {
            return damaged(
                {"it has %1 bytes and says that it has more", {QString::number(m_file.size())}});
        }
        if (segment.p_type == PT_DYNAMIC) {
            m_dynamic = segment;
            hasDynamic = true;
        } else {
            if (segment.p_filesz > segment.p_memsz || segment.p_align == 0
                || (segment.p_vaddr - segment.p_offset) % segment.p_align != 0)
                return damaged("what it wants loaded does not fit into memory");
            m_library.segments.append({segment.p_offset, segment.p_vaddr, segment.p_filesz});
        }
    }
    if (!hasDynamic || m_library.segments.isEmpty())
        return damaged("it holds nothing that could be loaded");
    return std::nullopt;
}

std::optional<quint64> LibraryReader::fileOffset(quint64 address) const
{
    for (const SharedLibrary::Segment &segment : m_library.segments) {
        if (address >= segment.address && address - segment.address < segment.size)
            return segment.offset + (address - segment.address);
    }
    return std::nullopt;
}

QStringList LibraryReader::folders(quint64 nameOffset) const
{
    const QByteArray text = m_file.text(nameOffset, maximumSearchPath).value_or(QByteArray());
    return QFile::decodeName(text)
        .split(QLatin1Char(':'), Qt::SkipEmptyParts)
        .mid(0, maximumFolders);
}

LibraryReader::Failure LibraryReader::readDynamicTable()
{
    QVector<quint64> needed;
    std::optional<quint64> rpath, runpath, names;
    const quint64 count =
        std::min<quint64>(m_dynamic.p_filesz / sizeof(DynamicEntry), maximumEntries);
    for (quint64 i = 0; i < count; ++i) {
        DynamicEntry entry = {};
        if (!m_file.read(m_dynamic.p_offset + i * sizeof entry, &entry))
            return damaged("its table of dependent libraries cannot be read");
        if (entry.d_tag == DT_NULL)
            break;
        if (entry.d_tag == DT_FLAGS_1 && entry.d_un.d_val & DF_1_PIE)
            return notALibrary("It is a program, not a shared library.");
        if (entry.d_tag == DT_STRTAB)
            names = fileOffset(entry.d_un.d_ptr);
        else if (entry.d_tag == DT_RPATH)
            rpath = entry.d_un.d_val;
        else if (entry.d_tag == DT_RUNPATH)
            runpath = entry.d_un.d_val;
        else if (entry.d_tag == DT_NEEDED)
            needed.append(entry.d_un.d_val);
    }
    if (!names || needed.size() > maximumNeeded)
        return damaged("its table of dependent libraries makes no sense");

    // The sums may wrap around in a hostile file; the reading is checked all the same.
    if (rpath)
        m_library.rpath = folders(*names + *rpath);
    if (runpath)
        m_library.runpath = folders(*names + *runpath);
    for (const quint64 offset : std::as_const(needed)) {
        const auto name = m_file.text(*names + offset);
        if (!name || name->isEmpty())
            return damaged("the name of a dependent library cannot be read");
        m_library.needed.append(QFile::decodeName(*name));
    }
    return std::nullopt;
}

void LibraryReader::readVersionNeeds(const SectionHeader &section, quint64 names)
{
    quint64 at = section.sh_offset;
    int entries = 0;
    ElfW(Verneed) need = {};
    while (m_file.read(at, &need) && ++entries < maximumNeeded) {
        const auto library = m_file.text(names + need.vn_file);
        quint64 auxiliaryAt = at + need.vn_aux;
        ElfW(Vernaux) auxiliary = {};
        while (library && m_file.read(auxiliaryAt, &auxiliary) && ++entries < maximumNeeded) {
            const auto version = m_file.text(names + auxiliary.vna_name);
            if (version && !(auxiliary.vna_flags & VER_FLG_WEAK))
                m_library.versions.append({QFile::decodeName(*library), *version});
            if (auxiliary.vna_next == 0)
                break;
            auxiliaryAt += auxiliary.vna_next;
        }
        if (need.vn_next == 0)
            break;
        at += need.vn_next;
    }
}

void LibraryReader::readVersionDefinitions(const SectionHeader &section, quint64 names)
{
    quint64 at = section.sh_offset;
    ElfW(Verdef) definition = {};
    for (int i = 0; i < maximumNeeded && m_file.read(at, &definition); ++i) {
        ElfW(Verdaux) auxiliary = {};
        if (m_file.read(at + definition.vd_aux, &auxiliary)) {
            if (const auto name = m_file.text(names + auxiliary.vda_name))
                m_library.versionsDefined.append(*name);
        }
        if (definition.vd_next == 0)
            break;
        at += definition.vd_next;
    }
}

LibraryReader::Failure LibraryReader::readSection(const SectionHeader &section,
                                                  const QByteArray &name)
{
    if (section.sh_type == SHT_GNU_verneed || section.sh_type == SHT_GNU_verdef) {
        bool &seen = section.sh_type == SHT_GNU_verneed ? m_seenNeeds : m_seenDefinitions;
        if (seen || section.sh_link >= quint64(m_sections.size()))
            return std::nullopt;
        seen = true;
        const quint64 names = m_sections.at(int(section.sh_link)).sh_offset;
        if (section.sh_type == SHT_GNU_verneed)
            readVersionNeeds(section, names);
        else
            readVersionDefinitions(section, names);
    } else if (name == ".note.qt.metadata") {
        m_library.hasNewerMetaDataNote = true;
    } else if (name == ".qtmetadata" && !m_library.hasMetaDataSection) {
        if (section.sh_type == SHT_NOBITS)
            return notALibrary("It holds only the debugging information of a library.");
        if (!m_file.contains(section.sh_offset, section.sh_size))
            return damaged("it ends before its plugin metadata");
        if (section.sh_size > maximumMetaData)
            return damaged("its plugin metadata has an absurd size");
        m_library.hasMetaDataSection = true;
        m_library.metaDataOffset = section.sh_offset;
        m_library.metaData = m_file.bytes(section.sh_offset, section.sh_size);
    }
    return std::nullopt;
}

LibraryReader::Failure LibraryReader::readSections()
{
    if (m_header.e_shoff == 0 || m_header.e_shnum == 0)
        return std::nullopt;
    const quint64 size = quint64(m_header.e_shnum) * sizeof(SectionHeader);
    m_sections.resize(m_header.e_shnum);
    if (!m_file.read(m_header.e_shoff, size, m_sections.data())
        || m_header.e_shstrndx >= m_header.e_shnum)
        return damaged("it ends before its table of sections");
    const SectionHeader names = m_sections.at(m_header.e_shstrndx);
    for (const SectionHeader &section : std::as_const(m_sections)) {
        // Longer names are none of those that count.
        const auto name = section.sh_name < names.sh_size
            ? m_file.text(names.sh_offset + section.sh_name, 64)
            : std::nullopt;
        if (Failure failure = readSection(section, name.value_or(QByteArray())))
            return failure;
    }
    return std::nullopt;
}

SharedLibraryResult LibraryReader::read()
{
    // Sections before segments: the debugging information of a library, split from it, still has
    // both tables, but only the sections tell it from a damaged file.
    constexpr Failure (LibraryReader::*steps[])() = {
        &LibraryReader::checkFile,        &LibraryReader::checkForeignFormats,
        &LibraryReader::checkIdentity,    &LibraryReader::readHeader,
        &LibraryReader::readSections,     &LibraryReader::readSegments,
        &LibraryReader::readDynamicTable,
    };
    for (const auto step : steps) {
        if (const Failure failure = (this->*step)())
            return {false, {}, *failure};
    }
    return {true, m_library, {}};
}

} // namespace

SharedLibraryResult readSharedLibrary(const QString &path)
{
    return LibraryReader(path).read();
}

bool containsText(const QString &path, const SharedLibrary &library, const QByteArray &text)
{
    const FileBytes file(path);
    const QByteArray pattern = text + '\0';
    constexpr quint64 step = 1 << 20;
    quint64 scanned = 0;
    for (const SharedLibrary::Segment &segment : library.segments) {
        for (quint64 done = 0; done < segment.size; done += step) {
            scanned += step;
            if (scanned > maximumScan)
                return true;
            const quint64 start = segment.offset + done;
            const quint64 length =
                std::min(segment.size - done, step + quint64(pattern.size()) - 1);
            const QByteArray part = file.bytes(start, length);
            for (int at = part.indexOf(pattern); at >= 0; at = part.indexOf(pattern, at + 1)) {
                const quint64 found = start + quint64(at);
                if (found < library.metaDataOffset
                    || found - library.metaDataOffset >= quint64(library.metaData.size()))
                    return true;
            }
        }
    }
    return false;
}

} // namespace qel::inspection
