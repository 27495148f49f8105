#include "hosttrail.h"

#include <atomic>
#include <iterator>
#include <new>

#include <fcntl.h>
#include <sys/mman.h>
#include <unistd.h>

namespace qel::rpc {

namespace {

struct Entry
{
    bool hasReturned;
    char driver[80];
    char call[120];
};

} // namespace

struct TrailPage
{
    std::atomic<quint32> beats{0};
    std::atomic<quint32> current{0};
    Entry entries[2] = {}; // so that one is whole while the other is written
};

// Where nobody reads it, until leaveIn().
static TrailPage ownPage;
static TrailPage *leftPage = &ownPage;

static TrailPage *map(int descriptor)
{
    void *memory =
        ::mmap(nullptr, sizeof(TrailPage), PROT_READ | PROT_WRITE, MAP_SHARED, descriptor, 0);
    return memory == MAP_FAILED ? nullptr : static_cast<TrailPage *>(memory);
}

// The other process may have written anything.
template<int size>
static QString read(const char (&text)[size])
{
    return QString::fromUtf8(text, int(qstrnlen(text, size)));
}

static LastCall read(const TrailPage &page)
{
    const Entry entry = page.entries[page.current % std::size(page.entries)];
    return {read(entry.driver), read(entry.call), entry.hasReturned};
}

static void leave(const LastCall &call)
{
    const quint32 next = leftPage->current + 1;
    Entry &entry = leftPage->entries[next % std::size(leftPage->entries)];
    entry.hasReturned = call.hasReturned;
    qstrncpy(entry.driver, call.driver.toUtf8().constData(), sizeof entry.driver);
    qstrncpy(entry.call, call.call.toUtf8().constData(), sizeof entry.call);
    leftPage->current = next;
}

QString LastCall::name() const
{
    return driver.isEmpty() ? call : driver + QStringLiteral(": ") + call;
}

QString LastCall::text() const
{
    if (call.isEmpty())
        return QString();
    return (hasReturned ? QStringLiteral("after ") : QStringLiteral("in ")) + name();
}

HostTrail::~HostTrail()
{
    forget();
}

void HostTrail::forget()
{
    if (m_page)
        ::munmap(m_page, sizeof(TrailPage));
    m_page = nullptr;
}

int HostTrail::renew()
{
    forget();
    const int memory = ::memfd_create("qeldevices-trail", MFD_CLOEXEC | MFD_ALLOW_SEALING);
    if (memory < 0)
        return -1;
    // A host that made it shorter would have this process crash.
    const bool isSound = ::ftruncate(memory, sizeof(TrailPage)) == 0
        && ::fcntl(memory, F_ADD_SEALS, F_SEAL_SHRINK | F_SEAL_GROW | F_SEAL_SEAL) == 0;
    m_page = isSound ? map(memory) : nullptr;
    if (m_page) {
        new (m_page) TrailPage;
        return memory;
    }
    ::close(memory);
    return -1;
}

quint32 HostTrail::beats() const
{
    return m_page ? m_page->beats.load() : 0;
}

LastCall HostTrail::lastCall() const
{
    return m_page ? read(*m_page) : LastCall();
}

bool HostTrail::leaveIn(int descriptor)
{
    TrailPage *page = map(descriptor);
    if (page)
        leftPage = page;
    return page;
}

void HostTrail::beat()
{
    ++leftPage->beats;
}

TrailMark::TrailMark(const QString &driver, const QString &call)
    : m_outer(read(*leftPage))
{
    leave({driver, call, false});
}

TrailMark::~TrailMark()
{
    if (!m_outer.call.isEmpty() && !m_outer.hasReturned) {
        leave(m_outer);
        return;
    }
    LastCall own = read(*leftPage);
    own.hasReturned = true;
    leave(own);
}

} // namespace qel::rpc
