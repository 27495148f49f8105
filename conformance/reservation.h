#ifndef QEL_CONFORMANCE_RESERVATION_H
#define QEL_CONFORMANCE_RESERVATION_H

#include <QtCore/QString>

#include <memory>

class QLockFile;

namespace qel::conformance {

/// Keeps two checks from working with one instrument at once: each would blame the driver for what
/// the other does.
///
/// It holds among the checks of one user on one machine; other programs are not kept out.
class Reservation
{
public:
    Reservation();
    ~Reservation();

    /// Reserves the instrument until the end of this object's life. Empty when that succeeds, or
    /// when there is no place to note it; otherwise who has it, in words.
    QString take(const QString &instrument);

private:
    QString m_instrument;
    std::unique_ptr<QLockFile> m_lock;
};

} // namespace qel::conformance

#endif
