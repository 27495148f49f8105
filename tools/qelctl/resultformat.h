#ifndef QELCTL_RESULTFORMAT_H
#define QELCTL_RESULTFORMAT_H

#include <qelfrontend/run.h>

#include <qeldevices/device.h>

#include <QtCore/QByteArray>
#include <QtCore/QJsonObject>
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

/// Whether `format` may stand in a file called `path`: "x.csv" holds Csv or Plate, "x.json" and
/// "x.jsonl" Json, "x.txt" Table; other names hold anything.
bool fitsSuffix(Format format, const QString &path);
/// The format that a file called `path` holds; nothing where the name does not say.
std::optional<Format> formatOfSuffix(const QString &path);

/// Whether results of `feature` can be printed in `format`.
bool isFormatFor(Format format, qel::devices::Device::DeviceFeature feature);

/// What the user wants of the formats.
struct ResultStyle
{
    char delimiter = ','; ///< of comma-separated values
    char decimal = '.';   ///< of comma-separated values
    QString note;
};

/// What formatResult() needs to know beside the outcome.
struct ResultContext
{
    const qel::devices::Device *device = nullptr;
    qel::devices::Device::DeviceFeature feature = qel::devices::Device::DF_None;
    int number = 1;          ///< of the run within its command, from 1
    int count = 1;           ///< of the command's runs; JSON is one document a line with several
    bool isFirst = true;     ///< nothing stands before it
    bool toTerminal = false; ///< the table may be coloured and is fitted to the width
    ResultStyle style;
};

/// The result of a run as text to be printed.
/// @return nothing, and a sentence in `problem`, when the result is not shaped as it should be
std::optional<QByteArray> formatResult(const qel::frontend::Outcome &outcome, Format format,
                                       const ResultContext &context, QString *problem);

/// A run without a result as a JSON document; `code` is the ExitCode that the tool ends with.
QJsonObject errorDocument(const qel::frontend::Outcome &outcome, int code,
                          const ResultContext &context);

/// The same of a run that did not get as far as a device, for the reason complained of last.
/// @param feature DF_None where it is not known either
QJsonObject refusalDocument(qel::devices::Device::DeviceFeature feature, int code);

} // namespace qelctl

#endif
