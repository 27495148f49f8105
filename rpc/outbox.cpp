#include "outbox.h"

#include "wire.h"

namespace qel::rpc {

bool Outbox::add(const wire::Event &event, int kind)
{
    if (kind != 0 && !m_entries.empty() && m_entries.back().kind == kind) {
        m_size -= m_entries.back().size;
        m_entries.pop_back();
    }
    m_entries.push_back({event, kind, memoryOf(event)});
    m_size += m_entries.back().size;
    return m_size <= maximumSize;
}

void Outbox::drop(quint64 number)
{
    while (!m_entries.empty() && m_entries.front().event.number() <= number) {
        m_size -= m_entries.front().size;
        m_entries.pop_front();
    }
}

void Outbox::clear()
{
    m_entries.clear();
    m_size = 0;
}

} // namespace qel::rpc
