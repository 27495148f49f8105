<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="de_DE">
<context>
    <name></name>
    <message id="laboratory-ORIGIN">
        <source></source>
        <translation>Aus dem Labor</translation>
    </message>
    <message id="libqeldevices-ERROR_DEVICE_UNKNOWN">
        <source></source>
        <translation>Das Labor kennt den Fehler nicht.</translation>
    </message>
</context>
</TS>
