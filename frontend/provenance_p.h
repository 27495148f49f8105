#ifndef QELFRONTEND_PROVENANCE_P_H
#define QELFRONTEND_PROVENANCE_P_H

#include <QtCore/QtGlobal>

#include <memory>

namespace qel::frontend {

/// Watches, as long as it lives, which plugin registers which drivers. One at a time.
///
/// The broker logs each plugin right after it has registered its drivers and was recorded: that is
/// the moment when the new drivers and the plugin are known together.
class RegistrationWatch
{
public:
    RegistrationWatch();
    ~RegistrationWatch();
    Q_DISABLE_COPY(RegistrationWatch)

    struct State;

private:
    const std::unique_ptr<State> m_state;
};

} // namespace qel::frontend

#endif
