<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="de_DE">
<context>
    <name></name>
    <message id="libqeldevices-NO_DEVICE_ERROR">
        <source></source>
        <translation>The device is working properly.</translation>
    </message>
    <message id="libqeldevices-ERROR_DEVICE_UNKNOWN">
        <source></source>
        <translation>An unknown error occurred.</translation>
    </message>
    <message id="libqeldevices-ERROR_DEVICE_VENDOR_SPECIFIC">
        <source></source>
        <translation>The device reported an internal error condition.</translation>
    </message>
    <message id="libqeldevices-ERROR_DEVICE_CANT_OPEN">
        <source></source>
        <translation>The device cannot be opened.</translation>
    </message>
    <message id="libqeldevices-ERROR_DEVICE_NOT_READY">
        <source></source>
        <translation>The device is not ready.</translation>
    </message>
    <message id="libqeldevices-ERROR_DEVICE_TIMEOUT">
        <source></source>
        <translation>The device did not respond.</translation>
    </message>
    <message id="libqeldevices-ERROR_DEVICE_CANT_WRITE">
        <source></source>
        <translation>Error communicating with the device.</translation>
    </message>
    <message id="libqeldevices-ERROR_DEVICE_CHECKSUM_MISMATCH">
        <source></source>
        <translation>Checksum mismatch in data sent from device.</translation>
    </message>
    <message id="libqeldevices-ERROR_DEVICE_INVALID_CONFIGURATION">
        <source></source>
        <translation>The operation could not be completed due to an invalid configuration.</translation>
    </message>
    <message id="libqeldevices-ERROR_DEVICE_NOT_CALIBRATED">
        <source></source>
        <translation>The device is not calibrated.</translation>
    </message>
    <message id="libqeldevices-ERROR_DEVICE_DISCONNECTED">
        <source></source>
        <translation>The device has been disconnected.</translation>
    </message>
    <message id="libqeldevices-ERROR_DEVICE_BOOT_FAIL">
        <source></source>
        <translation>Bootloader can&apos;t start the firmwware.</translation>
    </message>
    <message id="libqeldevices-ERROR_DEVICE_API_TOO_NEW">
        <source></source>
        <translation>The device has a unsupported, newer api version.</translation>
    </message>
</context>
</TS>
