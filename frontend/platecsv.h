#ifndef QELFRONTEND_PLATECSV_H
#define QELFRONTEND_PLATECSV_H

#include "export.h"
#include "plate.h"

#include <qeldevices/deviceinfo.h>

#include <QtCore/QByteArray>

namespace qel::frontend {

/// @file
/// Results as comma-separated values: UTF-8, quoted and ended with CR LF as RFC 4180 has it, each
/// number in the fewest digits that give the same value back. A well that was not measured is an
/// empty cell, an infinite value "inf" or "-inf". A text that a spreadsheet would take for a
/// formula, because it begins with =, +, -, @, a tab or a carriage return, gets an apostrophe in
/// front.

/// How values are written, and what goes beside them.
struct CsvOptions
{
    char delimiter = ','; ///< between the fields
    char decimal = '.';   ///< the decimal point; never the delimiter
    int run = 0;          ///< number of the run within its series, from 1; 0 for a single run
    QString note;         ///< of the user
};

/// One grid for each read, separated by an empty line, in the layout of the `plater` format: the
/// top left cell names the values ("450 nm (OD)"; of a series with run and time, "450 nm (OD), run
/// 2, 2026-05-04T10:00:00.000Z"), columns are numbered, rows lettered. A note has a line of its own
/// above.
QELFRONTEND_EXPORT QByteArray plateCsv(const Plate &plate, const CsvOptions &options = {});

/// The first line of tidyCsv(), the names of its columns.
QELFRONTEND_EXPORT QByteArray tidyCsvHeader(const CsvOptions &options = {});

/// One line for each well and read, in the columns device, serial, started_at, temperature_celsius,
/// read, wavelength_nm, integration_time_ms, well, row, column, value, unit, flag, run, note. Reads
/// and columns are numbered from 1; what is not known is empty. The flag is "saturated" for a value
/// at the maximum of the detector or beyond, and "not measured".
QELFRONTEND_EXPORT QByteArray tidyCsv(const Plate &plate, const devices::DeviceInfo &device,
                                      const CsvOptions &options = {});

/// The first line of valueCsv(), the names of its columns.
QELFRONTEND_EXPORT QByteArray valueCsvHeader(const CsvOptions &options = {});

/// A result that is no plate, one line for each of its entries, in the columns device, serial,
/// started_at, feature, key, value, unit, run, note. The key is empty where the result is a single
/// value.
/// @param unit of a single number; empty where there is none
QELFRONTEND_EXPORT QByteArray valueCsv(devices::Device::DeviceFeature feature,
                                       const QVariant &result, const QString &unit,
                                       const QDateTime &startedAt,
                                       const devices::DeviceInfo &device,
                                       const CsvOptions &options = {});

} // namespace qel::frontend

#endif
