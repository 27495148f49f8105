<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="en_US">
<context>
    <name></name>
    <message id="laboratory-ORIGIN">
        <source></source>
        <translation>From the laboratory</translation>
    </message>
    <message id="libqeldevices-ERROR_DEVICE_UNKNOWN">
        <source></source>
        <translation>The laboratory does not know.</translation>
    </message>
    <message id="laboratory-ENGLISH_ONLY">
        <source></source>
        <translation>Not in German</translation>
    </message>
</context>
</TS>
