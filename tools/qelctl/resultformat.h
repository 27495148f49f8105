#ifndef QELCTL_RESULTFORMAT_H
#define QELCTL_RESULTFORMAT_H

#include <qelfrontend/run.h>

#include <qeldevices/device.h>

#include <QtCore/QByteArray>
#include <QtCore/QString>

#include <optional>

namespace qelctl {

/// In which form a result is printed.
enum class Format {
    Table, ///< for people
    Plate, ///< comma-separated values in the shape of the plate
    Csv,   ///< comma-separated values, one line a well and read
    Json,  ///< everything that is known of the run
};

/// The format called `name`.
std::optional<Format> formatNamed(const QString &name);

/// Whether results of `feature` can be printed in `format`.
bool isFormatFor(Format format, qel::devices::Device::DeviceFeature feature);

/// What formatResult() needs to know beside the outcome.
struct ResultContext
{
    const qel::devices::Device *device;
    qel::devices::Device::DeviceFeature feature;
    int number;      ///< of the run within its command, from 0
    bool oneOfMany;  ///< the command runs more than once; JSON is one document a line then
    bool toTerminal; ///< the table may be coloured and is fitted to the width
};

/// The result of a run as text to be printed.
/// @return nothing, and a sentence in `problem`, when the result is not shaped as it should be
std::optional<QByteArray> formatResult(const qel::frontend::Outcome &outcome, Format format,
                                       const ResultContext &context, QString *problem);

} // namespace qelctl

#endif
