#ifndef QELCTL_SERIES_H
#define QELCTL_SERIES_H

#include "prompt.h"
#include "resultformat.h"
#include "resume.h"

#include <qelfrontend/run.h>

#include <qeldevices/device.h>

#include <QtCore/QElapsedTimer>
#include <QtCore/QJsonObject>
#include <QtCore/QStringList>

#include <optional>

namespace qelctl {

class Interrupt;
class Output;

/// What the command line of "run" asks for.
struct Request
{
    qel::devices::Device::DeviceFeature feature = qel::devices::Device::DF_None;
    QJsonObject configuration;
    QStringList assignments; ///< KEY=VALUE
    Format format = Format::Table;
    ResultStyle style;
    Prompt::Policy policy = Prompt::Policy::Ask;
    std::optional<int> timeout; ///< ms for each run; without it, a run may take as long as it lives
    int repeat = 1;
    Earlier earlier;             ///< what an earlier command has finished
    std::optional<int> interval; ///< ms from the start of one run to the start of the next
    bool progressAsJson = false;
    bool isTold = false; ///< a Series says what becomes of it, in the format asked for
};

/// How long, in milliseconds, a driver may show no sign of life where no time limit is given: it
/// must not hang a script, and one that shows progress may take its time.
constexpr int patience = 10 * 60 * 1000;

/// The runs of one command, one after another, on one device. Each result is kept before the next
/// run begins.
class Series
{
public:
    Series(qel::devices::Device *device, const Request &request, Output *output,
           Interrupt *interrupt);

    /// An exit code; unless it is Done, a complaint has been printed, and its document where the
    /// format is JSON.
    int perform();

private:
    qel::frontend::RunRequest makeRunRequest();
    int open();
    int performOne();
    void expectLife();
    ResultContext contextOf() const;
    int keep(const qel::frontend::Outcome &outcome);
    int failed(const qel::frontend::Outcome &outcome);
    void keepDelivered(const QJsonObject &document);
    void tellProgress(double progress, qint64 elapsed);
    QString whatIsKept(int runs) const;
    void tellWhatIsKept();
    void waitForNext(qint64 milliseconds);

    qel::devices::Device *m_device;
    Request m_request;
    Output *m_output;
    Interrupt *m_interrupt;
    Prompt m_prompt;
    int m_number; // of the run, from 1
    bool m_configurationRefused = false;
    bool m_intervalTooShort = false;
};

} // namespace qelctl

#endif
