#ifndef QELFRONTEND_PLATECSV_H
#define QELFRONTEND_PLATECSV_H

#include "export.h"
#include "plate.h"

#include <qeldevices/deviceinfo.h>

#include <QtCore/QByteArray>

namespace qel::frontend {

/// @file
/// Plates as comma-separated values: UTF-8, quoted and ended with CR LF as RFC 4180 has it, with a
/// point in numbers, each in the fewest digits that give the same value back. A well that was not
/// measured is an empty cell, an infinite value "inf" or "-inf".

/// One grid for each read, separated by an empty line, in the layout of the `plater` format: the
/// top left cell names the values ("450 nm (OD)"), columns are numbered, rows lettered.
QELFRONTEND_EXPORT QByteArray plateCsv(const Plate &plate);

/// The first line of tidyCsv(), the names of its columns.
QELFRONTEND_EXPORT QByteArray tidyCsvHeader();

/// One line for each well and read, in the columns device, serial, started_at, temperature_celsius,
/// read, wavelength_nm, integration_time_ms, well, row, column, value, unit. Reads and columns are
/// numbered from 1; what is not known is empty.
QELFRONTEND_EXPORT QByteArray tidyCsv(const Plate &plate, const devices::DeviceInfo &device);

} // namespace qel::frontend

#endif
