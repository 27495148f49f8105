#ifndef QELFRONTEND_RUNJSON_H
#define QELFRONTEND_RUNJSON_H

#include "export.h"
#include "plate.h"
#include "run.h"

#include <qeldevices/devicebroker.h>
#include <qeldevices/deviceinfo.h>

#include <QtCore/QJsonObject>

#include <optional>

namespace qel::frontend {

/// All that is known of a run that is kept.
struct RunRecord
{
    devices::DeviceInfo device; ///< the instrument
    /// The plugin of the device's driver, as pluginOfDevice() finds it.
    std::optional<devices::DeviceBroker::DevicePluginInfo> plugin;
    devices::Device::DeviceFeature feature; ///< what ran
    QVariant descriptor;                    ///< what the device said of the feature
    QVariant configuration;                 ///< what the feature ran with
    Outcome outcome;                        ///< how it ended, with the result
    int number = 0;    ///< of the run within its series, from 1; 0 for a single run
    int count = 0;     ///< of runs that the series is to have
    QString note = {}; ///< of the user
};

/// A run that was read back from its document.
struct RunDocument
{
    /// What the document tells with types: all but the descriptor and the configuration, which is
    /// there in the form of writeConfiguration() in `json`.
    RunRecord record;
    std::optional<Plate> plate; ///< of a measurement
    QJsonObject json;           ///< the document as it stands
};

/// The version of the document that runToJson() writes. It rises when a reader of the one before
/// could not read the new one; keys may be added at any time.
constexpr int runJsonVersion = 1;

/// An instrument's identity: "interface", "driver", "location", "name" and "serial", all strings.
QELFRONTEND_EXPORT QJsonObject deviceToJson(const devices::DeviceInfo &device);

// clang-format off
/// A run as a JSON document for programs:
///
/// | Key             | Value                                                                   |
/// |-----------------|-------------------------------------------------------------------------|
/// | "format"        | "qeldevices-run"                                                        |
/// | "version"       | runJsonVersion                                                          |
/// | "library"       | version() of the library                                                |
/// | "device"        | deviceToJson()                                                          |
/// | "plugin"        | "file", "manufacturer" and "version" of the driver's plugin, or null    |
/// | "feature"       | the enumerator, for instance "DF_Orientation"                           |
/// | "configuration" | as readConfiguration() takes it                                         |
/// | "startedAt"     | ISO 8601 in UTC, when the feature was executed                          |
/// | "elapsed"       | seconds that the run took from then on                                  |
/// | "run"           | "number" and "of" in a series; absent for a single run                  |
/// | "note"          | the user's; absent where there is none                                  |
/// | "result"        | exactly what the device delivered, as fromJson() reads it               |
/// | "plate"         | the result of a measurement once more in plain JSON; absent for others  |
///
/// The plate holds "rows", "columns", "unit", "startedAt" (ISO 8601 or null), "temperature" (°C or
/// null), "integrationTime" (ms or null), "maximum" (of the detector, or null) and "reads": objects
/// with "label", "wavelength" (nm or null), "values", an array of rows, each an array of numbers (null
/// where not measured, "inf" or "-inf" beyond all numbers), and "saturated", the names of the wells
/// whose value is the maximum or more.
///
/// @return nothing, and a sentence in `problem`, when the result cannot be written or is that of a
/// measurement and not shaped as one
// clang-format on
QELFRONTEND_EXPORT std::optional<QJsonObject> runToJson(const RunRecord &record, QString *problem);

/// Reads what runToJson() wrote.
/// @return nothing, and a sentence in `problem`, when `json` is no such document, is of another
/// version or holds a result that is none
QELFRONTEND_EXPORT std::optional<RunDocument> readRunDocument(const QJsonObject &json,
                                                              QString *problem);
/// As above, from the text of the document.
QELFRONTEND_EXPORT std::optional<RunDocument> readRunDocument(const QByteArray &text,
                                                              QString *problem);

// clang-format off
/// A run that has no result as a JSON document, which no reader takes for one that has: "library",
/// "device", "plugin", "feature", "configuration", "startedAt", "elapsed", "run" and "note" are as in
/// runToJson(), and beside them stand
///
/// | Key         | Value                                                                       |
/// |-------------|-----------------------------------------------------------------------------|
/// | "format"    | "qeldevices-run-error"                                                      |
/// | "version"   | runJsonVersion                                                              |
/// | "outcome"   | how it ended, for instance "timed-out"                                      |
/// | "errorCode" | of the device; 0 for none                                                   |
/// | "errorId"   | its translation id; empty for none                                          |
/// | "sentence"  | what happened, in the user's language                                       |
/// | "details"   | the driver's; may be empty                                                  |
/// | "delivered" | Outcome::delivered as fromJson() reads it, a value of a type that JSON      |
/// |             | cannot tell as text; null where nothing was delivered                       |
// clang-format on
QELFRONTEND_EXPORT QJsonObject failureToJson(const RunRecord &record);

} // namespace qel::frontend

#endif
