#ifndef RPC_OUTBOX_H
#define RPC_OUTBOX_H

#include "instruments.pb.h"

#include <QtCore/QtGlobal>

#include <cstddef>
#include <deque>

namespace qel::rpc {

/// The numbered events that the peer is not known to have heard.
class Outbox
{
public:
    /// Of events of the same `kind` that follow each other only the last is kept; 0 is the kind of
    /// those that are all kept.
    /// @return false when there is too much in it now
    bool add(const wire::Event &event, int kind);
    /// The peer has heard every event up to `number`.
    void drop(quint64 number);
    void clear();

    /// Calls `receive` for each event, in their order.
    template<typename Receiver>
    void forEach(Receiver &&receive) const
    {
        for (const Entry &entry : m_entries)
            receive(entry.event);
    }

private:
    static constexpr std::size_t maximumSize = 64 * 1024 * 1024; // bytes

    struct Entry
    {
        wire::Event event;
        int kind;
        std::size_t size;
    };

    std::deque<Entry> m_entries;
    std::size_t m_size = 0;
};

} // namespace qel::rpc

#endif
