/// @file
/// The device error codes.
#ifndef QELDEVICES_DEVICEERRORS_H
#define QELDEVICES_DEVICEERRORS_H

namespace qel::devices {

/// What can be wrong with a device: the values of Device::errorCode().
///
/// Codes cross the plugin boundary as plain `int`s, so the values never change. The translation id
/// of a code is its enumerator's name behind "libqeldevices-"; a code that is not listed here is
/// reported with the id of ERROR_DEVICE_UNKNOWN.
enum DeviceErrorCode : int {
    /// The device is working properly.
    NO_DEVICE_ERROR = 0,
    /// An unknown error occurred.
    ERROR_DEVICE_UNKNOWN = 0x8000,
    /// The device reported an internal error condition.
    ERROR_DEVICE_VENDOR_SPECIFIC = 0x8001,
    /// The device cannot be opened.
    ERROR_DEVICE_CANT_OPEN = 0x8002,
    /// The device is not ready.
    ERROR_DEVICE_NOT_READY = 0x8003,
    /// The device did not respond.
    ERROR_DEVICE_TIMEOUT = 0x8004,
    /// Communication with the device failed.
    ERROR_DEVICE_CANT_WRITE = 0x8005,
    /// Data sent by the device carried a wrong checksum.
    ERROR_DEVICE_CHECKSUM_MISMATCH = 0x8006,
    /// The configuration does not allow the operation.
    ERROR_DEVICE_INVALID_CONFIGURATION = 0x8007,
    /// The device is not calibrated.
    ERROR_DEVICE_NOT_CALIBRATED = 0x8008,
    /// The device has been disconnected.
    ERROR_DEVICE_DISCONNECTED = 0x8009,
    /// The device's bootloader cannot start its firmware.
    ERROR_DEVICE_BOOT_FAIL = 0x800A,
    /// The device speaks a newer protocol than its driver.
    ERROR_DEVICE_API_TOO_NEW = 0x800B,
};

} // namespace qel::devices

#endif
